#include "base/Quoted.h"

#include <cstdio>

#include "base/Utf8.h"

namespace pavo {

namespace {

constexpr std::size_t kLongest = 40;

} // namespace

std::wstring quoteValue(std::wstring_view text) {
    std::wstring out = L"\"";
    std::size_t shown = 0;
    for (wchar_t ch : text) {
        if (shown++ == kLongest) {
            out += L"...";
            break;
        }
        if (ch < 0x20 || ch == 0x7F) {
            wchar_t escape[8];
            std::swprintf(escape, 8, L"\\u%04X", static_cast<unsigned>(ch));
            out += escape;
        } else {
            out += ch;
        }
    }
    return out + L"\"";
}

std::string quoteValue(std::string_view utf8) { return toUtf8(quoteValue(fromUtf8(utf8))); }

} // namespace pavo
