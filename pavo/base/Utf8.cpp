#include "base/Utf8.h"

#include <iterator>
#include <utf8.h>

namespace pavo {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool isScalarValue(std::uint32_t cp) { return cp <= 0x10FFFF && (cp < 0xD800 || cp > 0xDFFF); }

} // namespace

std::wstring fromUtf8(std::string_view utf8) {
    std::wstring out;
    out.reserve(utf8.size());
    const char* it = utf8.data();
    const char* end = it + utf8.size();
    while (it < end) {
        const unsigned char lead = static_cast<unsigned char>(*it);
        if (lead < 0x80) { // the common case, without the library's checks
            out.push_back(static_cast<wchar_t>(lead));
            ++it;
            continue;
        }
        const char* start = it;
        std::uint32_t cp = 0;
        if (utf8::internal::validate_next(it, end, cp) == utf8::internal::UTF8_OK) {
            out.push_back(static_cast<wchar_t>(cp));
        } else {
            out.push_back(static_cast<wchar_t>(kReplacement));
            it = start + 1;
            // Skip the continuation bytes of the broken sequence.
            while (it < end && (static_cast<unsigned char>(*it) & 0xC0) == 0x80)
                ++it;
        }
    }
    return out;
}

std::string toUtf8(std::wstring_view wide) {
    std::string out;
    out.reserve(wide.size());
    auto sink = std::back_inserter(out);
    for (wchar_t ch : wide) {
        const auto cp = static_cast<std::uint32_t>(ch);
        if (cp < 0x80)
            out.push_back(static_cast<char>(cp));
        else
            utf8::unchecked::append(isScalarValue(cp) ? cp : static_cast<std::uint32_t>(kReplacement), sink);
    }
    return out;
}

} // namespace pavo
