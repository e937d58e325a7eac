// Type-safe printf-style formatting. A format call packs its arguments into
// OxFormatArg values (no C varargs), so a directive of the wrong type or
// without its argument can never read past the arguments: a missing
// argument prints the directive as text, a mismatched one is converted.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <type_traits>

#include "PavoExport.h"

class OxString;

class PAVO_HOST_API OxFormatArg {
public:
    enum class Kind { Signed, Unsigned, Real, Wide, Narrow, Pointer };

    template <class T, std::enable_if_t<std::is_integral_v<T> && std::is_signed_v<T> &&
                                            !std::is_same_v<T, wchar_t> && !std::is_same_v<T, char>,
                                        int> = 0>
    OxFormatArg(T v) : m_kind(Kind::Signed), m_int(static_cast<std::int64_t>(v)) {}
    template <class T, std::enable_if_t<std::is_integral_v<T> && std::is_unsigned_v<T> &&
                                            !std::is_same_v<T, bool>,
                                        int> = 0>
    OxFormatArg(T v) : m_kind(Kind::Unsigned), m_uint(static_cast<std::uint64_t>(v)) {}
    template <class T, std::enable_if_t<std::is_enum_v<T>, int> = 0>
    OxFormatArg(T v) : m_kind(Kind::Signed), m_int(static_cast<std::int64_t>(v)) {}
    OxFormatArg(bool v) : m_kind(Kind::Signed), m_int(v ? 1 : 0) {}
    OxFormatArg(char v) : m_kind(Kind::Signed), m_int(static_cast<unsigned char>(v)) {}
    OxFormatArg(wchar_t v) : m_kind(Kind::Signed), m_int(static_cast<std::int64_t>(v)) {}
    OxFormatArg(double v) : m_kind(Kind::Real), m_real(v) {}
    OxFormatArg(float v) : m_kind(Kind::Real), m_real(v) {}
    OxFormatArg(const wchar_t* s) : m_kind(Kind::Wide), m_wide(s ? s : L"") {}
    OxFormatArg(wchar_t* s) : m_kind(Kind::Wide), m_wide(s ? s : L"") {}
    OxFormatArg(const std::wstring& s) : m_kind(Kind::Wide), m_wide(s) {}
    OxFormatArg(std::wstring_view s) : m_kind(Kind::Wide), m_wide(s) {}
    OxFormatArg(const OxString& s);
    OxFormatArg(const char* s) : m_kind(Kind::Narrow), m_narrow(s ? s : "") {}
    OxFormatArg(char* s) : m_kind(Kind::Narrow), m_narrow(s ? s : "") {}
    OxFormatArg(const std::string& s) : m_kind(Kind::Narrow), m_narrow(s) {}
    OxFormatArg(std::nullptr_t) : m_kind(Kind::Pointer), m_ptr(nullptr) {}
    OxFormatArg(const void* p) : m_kind(Kind::Pointer), m_ptr(p) {}

    Kind kind() const { return m_kind; }
    std::int64_t asSigned() const;
    std::uint64_t asUnsigned() const;
    double asReal() const;
    std::wstring asWide() const;
    const void* pointer() const { return m_ptr; }
    std::wstring_view wide() const { return m_wide; }
    std::string_view narrow() const { return m_narrow; }

private:
    Kind m_kind;
    union {
        std::int64_t m_int;
        std::uint64_t m_uint;
        double m_real;
        const void* m_ptr;
    };
    std::wstring_view m_wide;
    std::string_view m_narrow;
};

// Formats `format` with `args`. Both %s and %ls print wide strings (and narrow
// UTF-8 ones); flags, width, precision and '*' follow printf.
PAVO_HOST_API std::wstring oxFormatV(std::wstring_view format, const OxFormatArg* args,
                                     std::size_t count);

template <class... Args>
std::wstring oxFormat(std::wstring_view format, const Args&... args) {
    if constexpr (sizeof...(Args) == 0) {
        return oxFormatV(format, nullptr, 0);
    } else {
        const OxFormatArg packed[] = {OxFormatArg(args)...};
        return oxFormatV(format, packed, sizeof...(Args));
    }
}
