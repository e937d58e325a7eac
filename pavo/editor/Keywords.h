// Keyword lists "local _ global" and the matching rule of the command line.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pavo::editor {

class KeywordList {
public:
    KeywordList() = default;
    // Parses "A B C _A B C"; without "_" both halves are the same list.
    explicit KeywordList(std::wstring_view text);

    bool empty() const { return m_local.empty(); }
    const std::vector<std::wstring>& local() const { return m_local; }
    const std::vector<std::wstring>& global() const { return m_global; }

    // The position of the first keyword in list order that `answer` matches
    // (case ignored): the whole keyword, its abbreviation (its capital
    // letters), or a prefix reaching at least its last capital letter. An
    // answer starting with "_" is matched against the global keywords only.
    // Keywords without letters match only themselves.
    std::optional<size_t> match(std::wstring_view answer) const;
    // The global keyword at a position.
    const std::wstring& globalAt(size_t i) const { return m_global[i]; }

private:
    std::vector<std::wstring> m_local, m_global;
};

// True when `answer` matches `keyword` by the rule above.
bool keywordMatches(std::wstring_view keyword, std::wstring_view answer);

} // namespace pavo::editor
