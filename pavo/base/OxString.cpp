#include "OxString.h"

#include <cwchar>
#include <cwctype>

#include "base/CaseFold.h"
#include "base/Utf8.h"

OxString OxString::fromUtf8(std::string_view utf8) { return OxString(pavo::fromUtf8(utf8)); }

std::string OxString::utf8() const { return pavo::toUtf8(m_str); }

int OxString::compare(const wchar_t* other) const {
    const int c = m_str.compare(other ? other : L"");
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

int OxString::compareNoCase(const wchar_t* other) const { return pavo::compareNoCase(m_str, other ? other : L""); }

namespace {

int toIndex(std::size_t pos) { return pos == std::wstring::npos ? -1 : static_cast<int>(pos); }

bool isBlank(wchar_t ch) { return std::iswspace(static_cast<wint_t>(ch)) != 0; }

bool inSet(wchar_t ch, const wchar_t* set) {
    return set ? std::wcschr(set, ch) != nullptr && ch != L'\0' : isBlank(ch);
}

} // namespace

int OxString::find(wchar_t ch, int start) const {
    if (start < 0) start = 0;
    if (start >= length()) return -1;
    return toIndex(m_str.find(ch, static_cast<size_t>(start)));
}

int OxString::find(const wchar_t* text, int start) const {
    if (!text || start < 0 || start > length()) return -1;
    return toIndex(m_str.find(text, static_cast<size_t>(start)));
}

int OxString::findOneOf(const wchar_t* set, int start) const {
    if (!set || !*set || start < 0 || start >= length()) return -1;
    return toIndex(m_str.find_first_of(set, static_cast<size_t>(start)));
}

int OxString::findRev(wchar_t ch) const { return toIndex(m_str.rfind(ch)); }

OxString OxString::mid(int start, int count) const {
    if (start < 0) start = 0;
    if (start >= length()) return OxString();
    const size_t n = count < 0 ? std::wstring::npos : static_cast<size_t>(count);
    return OxString(m_str.substr(static_cast<size_t>(start), n));
}

OxString OxString::left(int count) const {
    if (count <= 0) return OxString();
    return OxString(m_str.substr(0, static_cast<size_t>(count)));
}

OxString OxString::right(int count) const {
    if (count <= 0) return OxString();
    if (count >= length()) return *this;
    return OxString(m_str.substr(m_str.size() - static_cast<size_t>(count)));
}

OxString& OxString::trimLeft(const wchar_t* set) {
    size_t i = 0;
    while (i < m_str.size() && inSet(m_str[i], set))
        ++i;
    m_str.erase(0, i);
    return *this;
}

OxString& OxString::trimRight(const wchar_t* set) {
    size_t n = m_str.size();
    while (n > 0 && inSet(m_str[n - 1], set))
        --n;
    m_str.resize(n);
    return *this;
}

OxString& OxString::trimLeft(wchar_t ch) {
    const wchar_t set[2] = {ch, L'\0'};
    return trimLeft(set);
}

OxString& OxString::trimRight(wchar_t ch) {
    const wchar_t set[2] = {ch, L'\0'};
    return trimRight(set);
}

// Case mapping through the folding locale's tables so that every script
// converts, not just ASCII.
OxString& OxString::makeUpper() {
    for (wchar_t& ch : m_str)
        ch = pavo::upperCase(ch);
    return *this;
}

OxString& OxString::makeLower() {
    for (wchar_t& ch : m_str)
        ch = pavo::foldCase(ch);
    return *this;
}
