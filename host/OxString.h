// The host's wide-character string: one wchar_t (32 bits) per code point.
#pragma once

#include <string>
#include <string_view>

#include "OxFormat.h"
#include "PavoExport.h"

class PAVO_HOST_API OxString {
public:
    OxString() = default;
    OxString(const wchar_t* s) : m_str(s ? s : L"") {}
    OxString(const wchar_t* s, int count) : m_str(s ? std::wstring(s, static_cast<size_t>(count)) : std::wstring()) {}
    OxString(std::wstring s) : m_str(std::move(s)) {}
    OxString(std::wstring_view s) : m_str(s) {}
    OxString(wchar_t ch, int count) : m_str(static_cast<size_t>(count > 0 ? count : 0), ch) {}

    // Decodes UTF-8; malformed sequences become U+FFFD.
    static OxString fromUtf8(std::string_view utf8);
    std::string utf8() const;

    const wchar_t* kwszPtr() const { return m_str.c_str(); }
    const wchar_t* constPtr() const { return m_str.c_str(); }
    operator const wchar_t*() const { return m_str.c_str(); }
    const std::wstring& str() const { return m_str; }
    std::wstring& str() { return m_str; }
    std::wstring_view view() const { return m_str; }

    int length() const { return static_cast<int>(m_str.size()); }
    int getLength() const { return length(); }
    bool isEmpty() const { return m_str.empty(); }
    void setEmpty() { m_str.clear(); }
    wchar_t getAt(int i) const { return i >= 0 && i < length() ? m_str[static_cast<size_t>(i)] : L'\0'; }
    void setAt(int i, wchar_t ch) {
        if (i >= 0 && i < length()) m_str[static_cast<size_t>(i)] = ch;
    }

    // Code point order.
    int compare(const wchar_t* other) const;
    // Order of the case-folded texts; 0 when equal ignoring case. Agrees with
    // the name indexes of the database and with the wildcard matcher.
    int compareNoCase(const wchar_t* other) const;
    bool isEqualNoCase(const wchar_t* other) const { return compareNoCase(other) == 0; }

    // Index of the first hit at or after `start`, or -1.
    int find(wchar_t ch, int start = 0) const;
    int find(const wchar_t* text, int start = 0) const;
    int findOneOf(const wchar_t* set, int start = 0) const;
    int findRev(wchar_t ch) const;

    OxString mid(int start, int count = -1) const;
    OxString left(int count) const;
    OxString right(int count) const;

    // Remove leading / trailing characters of `set`; a null set means white space.
    OxString& trimLeft(const wchar_t* set = nullptr);
    OxString& trimRight(const wchar_t* set = nullptr);
    OxString& trimLeft(wchar_t ch);
    OxString& trimRight(wchar_t ch);
    OxString& trim() { return trimRight().trimLeft(); }

    OxString& makeUpper();
    OxString& makeLower();

    OxString& append(const wchar_t* s) {
        if (s) m_str += s;
        return *this;
    }
    OxString& operator=(const wchar_t* s) {
        m_str = s ? s : L"";
        return *this;
    }
    OxString& operator+=(const OxString& s) {
        m_str += s.m_str;
        return *this;
    }
    OxString& operator+=(const wchar_t* s) { return append(s); }
    OxString& operator+=(wchar_t ch) {
        m_str += ch;
        return *this;
    }
    friend OxString operator+(const OxString& a, const OxString& b) { return OxString(a.m_str + b.m_str); }
    friend OxString operator+(const OxString& a, const wchar_t* b) { return OxString(a.m_str + (b ? b : L"")); }
    friend OxString operator+(const wchar_t* a, const OxString& b) { return OxString((a ? a : L"") + b.m_str); }

    bool operator==(const OxString& o) const { return m_str == o.m_str; }
    bool operator!=(const OxString& o) const { return m_str != o.m_str; }
    bool operator==(const wchar_t* o) const { return m_str == (o ? o : L""); }
    bool operator!=(const wchar_t* o) const { return !(*this == o); }
    bool operator<(const OxString& o) const { return compare(o.kwszPtr()) < 0; }

    // printf-style formatting into this string; see OxFormat.h.
    template <class... Args>
    OxString& format(const wchar_t* fmt, const Args&... args) {
        m_str = oxFormat(fmt ? fmt : L"", args...);
        return *this;
    }

    // Loads string `id` of the current resource library; false when absent.
    bool loadString(unsigned int id);

private:
    std::wstring m_str;
};

inline OxFormatArg::OxFormatArg(const OxString& s) : m_kind(Kind::Wide), m_wide(s.view()) {}
