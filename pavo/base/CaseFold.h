// Case folding shared by OxString::compareNoCase, the database's name
// indexes, keyword matching and the wildcard matcher, so that they agree for
// every script (Latin, Greek, Cyrillic, ...).
#pragma once

#include <string>
#include <string_view>

namespace pavo {

// The simple case folding of one code point (final sigma folds like sigma).
wchar_t foldCase(wchar_t ch);
std::wstring foldCase(std::wstring_view text);
// The upper case of one code point, in every script (for makeUpper).
wchar_t upperCase(wchar_t ch);
// <0, 0, >0 like a comparison of the folded texts.
int compareNoCase(std::wstring_view a, std::wstring_view b);
bool equalNoCase(std::wstring_view a, std::wstring_view b);
// A hash of the folded text (for name indexes).
std::size_t hashNoCase(std::wstring_view text);

} // namespace pavo
