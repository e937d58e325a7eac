#include "editor/Keywords.h"

#include <cwctype>

#include "base/CaseFold.h"

namespace pavo::editor {
namespace {

// An upper-case letter is one that case folding changes; this holds for every
// script CaseFold knows, independent of the C locale.
bool isCapital(wchar_t ch) { return pavo::foldCase(ch) != ch; }

std::vector<std::wstring> splitWords(std::wstring_view text) {
    std::vector<std::wstring> words;
    std::size_t pos = 0;
    while (pos < text.size()) {
        while (pos < text.size() && std::iswspace(static_cast<wint_t>(text[pos])))
            ++pos;
        std::size_t end = pos;
        while (end < text.size() && !std::iswspace(static_cast<wint_t>(text[end])))
            ++end;
        if (end > pos) words.emplace_back(text.substr(pos, end - pos));
        pos = end;
    }
    return words;
}

} // namespace

KeywordList::KeywordList(std::wstring_view text) {
    bool global = false;
    for (std::wstring& word : splitWords(text)) {
        if (!global && word[0] == L'_') {
            global = true;
            word.erase(0, 1);
            if (word.empty()) continue; // a lone "_" between the halves
        }
        (global ? m_global : m_local).push_back(std::move(word));
    }
    if (!global) m_global = m_local;
    if (m_local.empty()) m_local = m_global;
    // A global half shorter than the local one answers with the local
    // keyword, so that every local position has a result.
    for (std::size_t i = m_global.size(); i < m_local.size(); ++i)
        m_global.push_back(m_local[i]);
}

std::optional<size_t> KeywordList::match(std::wstring_view answer) const {
    const bool globalOnly = !answer.empty() && answer[0] == L'_';
    if (globalOnly) answer.remove_prefix(1);
    const std::vector<std::wstring>& keywords = globalOnly ? m_global : m_local;
    for (std::size_t i = 0; i < keywords.size(); ++i) {
        if (keywordMatches(keywords[i], answer)) return i;
    }
    return std::nullopt;
}

bool keywordMatches(std::wstring_view keyword, std::wstring_view answer) {
    if (answer.empty()) return false;
    if (pavo::equalNoCase(keyword, answer)) return true;
    std::wstring abbreviation;
    std::size_t lastCapital = std::wstring_view::npos;
    for (std::size_t i = 0; i < keyword.size(); ++i) {
        if (isCapital(keyword[i])) {
            abbreviation += keyword[i];
            lastCapital = i;
        }
    }
    // "?" and keywords written all in lower case have no short form.
    if (abbreviation.empty()) return false;
    if (pavo::equalNoCase(abbreviation, answer)) return true;
    return answer.size() > lastCapital && answer.size() <= keyword.size() &&
           pavo::equalNoCase(keyword.substr(0, answer.size()), answer);
}

} // namespace pavo::editor
