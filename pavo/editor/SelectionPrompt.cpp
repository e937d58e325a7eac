#include "editor/SelectionPrompt.h"

#include <algorithm>
#include <unordered_set>

#include "OxString.h"
#include "base/Utf8.h"
#include "editor/Editor.h"
#include "editor/NumberText.h"
#include "editor/PointInput.h"
#include "editor/PointText.h"
#include "editor/SelectionVariables.h"
#include "oxut.h"

namespace pavo::editor::selection {
namespace {

const KeywordList& selectionKeywords() {
    static const KeywordList list(L"Window Crossing ALL Last Previous Remove Add"
                                  L" _Window Crossing ALL Last Previous Remove Add");
    return list;
}

class Selection {
public:
    Selection(Editor& editor, const PromptOptions& options, IdList& ids)
        : m_editor(editor), m_options(options), m_ids(ids) {}

    int run();

private:
    enum class Step { Go, End, Cancel };
    Step answer(const std::wstring& text);
    Step window(bool crossing);
    Step keyword(const std::wstring& word);
    // Adds or removes `found` and reports it ("2 found, 1 removed, 3 total").
    void apply(const IdList& found);
    void print(const std::wstring& text) { m_editor.output().write(text); }

    Editor& m_editor;
    const PromptOptions& m_options;
    IdList& m_ids;
    PickableSpace m_space;
    bool m_removing = false;
};

int Selection::run() {
    for (;;) {
        const std::wstring& prompt = m_removing ? m_options.removePrompt : m_options.selectPrompt;
        std::vector<std::wstring> completions = selectionKeywords().local();
        const auto& callers = m_options.callerKeywords.local();
        completions.insert(completions.end(), callers.begin(), callers.end());
        const InputLine line = m_editor.ask(prompt, completions);
        if (line.kind != InputLine::Text) return STATUS_CANCEL;
        switch (answer(fromUtf8(line.text))) {
        case Step::Go:
            break;
        case Step::End:
            return STATUS_NORMAL;
        case Step::Cancel:
            return STATUS_CANCEL;
        }
    }
}

Selection::Step Selection::answer(const std::wstring& text) {
    const std::wstring word(trimBlanks(text));
    if (word.empty()) return Step::End;
    if (const std::optional<OxGePoint3d> point = parsePoint(word)) {
        IdList found;
        if (const std::optional<OxDbObjectId> id = m_space.at(*point, pickBox(), m_options.filter))
            found.push_back(*id);
        apply(found);
        return Step::Go;
    }
    if (m_options.passKeywords) {
        const std::optional<size_t> i = m_options.callerKeywords.match(word);
        const bool selectionWord = selectionKeywords().match(word).has_value();
        if (i || (m_options.callerKeywords.empty() && !selectionWord)) {
            m_editor.setLastInput(i ? OxString(m_options.callerKeywords.globalAt(*i)) : OxString(word));
            OxedSSKwordCallback callback = state().keywordCallback;
            resbuf* result =
                callback ? callback(i ? m_options.callerKeywords.globalAt(*i).c_str() : word.c_str()) : nullptr;
            if (!result) return Step::Go;
            // A callback that answers ends the selection; its answer is ours to release.
            oxutRelRb(result);
            return Step::End;
        }
    }
    if (const std::optional<size_t> i = selectionKeywords().match(word))
        return keyword(selectionKeywords().globalAt(*i));
    print(L"\nInvalid selection. Expects a point or Window/Crossing/ALL/Last/Previous/Remove/Add.");
    return Step::Go;
}

Selection::Step Selection::keyword(const std::wstring& word) {
    if (word == L"Window" || word == L"Crossing") return window(word == L"Crossing");
    if (word == L"Remove" || word == L"Add") {
        m_removing = word == L"Remove";
        return Step::Go;
    }
    IdList found;
    if (word == L"ALL") {
        found = m_space.entities(m_options.filter);
    } else if (word == L"Last") {
        const IdList all = m_space.entities(m_options.filter);
        if (!all.empty()) found.push_back(all.back());
    } else if (word == L"Previous") {
        for (const OxDbObjectId& id : state().previous)
            if (m_space.isPickable(id, m_options.filter)) found.push_back(id);
        if (found.empty()) {
            print(L"\nNo previous selection set.");
            return Step::Go;
        }
    }
    apply(found);
    return Step::Go;
}

Selection::Step Selection::window(bool crossing) {
    const PointAnswer first = askPoint(m_editor, L"\nSpecify first corner: ");
    if (first.kind == PointAnswer::Cancel) return Step::Cancel;
    if (first.kind != PointAnswer::Point) return Step::Go;
    const PointAnswer second = askPoint(m_editor, L"\nSpecify opposite corner: ");
    if (second.kind == PointAnswer::Cancel) return Step::Cancel;
    if (second.kind != PointAnswer::Point) return Step::Go;
    apply(m_space.inWindow(first.point, second.point, crossing, m_options.filter));
    return Step::Go;
}

void Selection::apply(const IdList& found) {
    const bool hadAny = !m_ids.empty();
    int duplicates = 0, removed = 0;
    if (m_removing) {
        const std::unordered_set<OxDbObjectId> gone(found.begin(), found.end());
        const auto kept = std::remove_if(m_ids.begin(), m_ids.end(),
                                         [&](const OxDbObjectId& id) { return gone.count(id) != 0; });
        removed = static_cast<int>(m_ids.end() - kept);
        m_ids.erase(kept, m_ids.end());
    } else if (!hadAny) {
        // What one answer finds holds each object once: the common first
        // answer (ALL on a large drawing) needs no look-ups.
        m_ids = found;
    } else {
        std::unordered_set<OxDbObjectId> chosen(m_ids.begin(), m_ids.end());
        for (const OxDbObjectId& id : found) {
            if (chosen.insert(id).second)
                m_ids.push_back(id);
            else
                ++duplicates;
        }
    }
    std::wstring text = L"\n" + std::to_wstring(found.size()) + L" found";
    if (duplicates > 0)
        text += L" (" + std::to_wstring(duplicates) + (duplicates == 1 ? L" duplicate)" : L" duplicates)");
    if (m_removing) text += L", " + std::to_wstring(removed) + L" removed";
    if (hadAny || m_removing) text += L", " + std::to_wstring(m_ids.size()) + L" total";
    print(text);
}

} // namespace

int runSelectionPrompt(Editor& editor, const PromptOptions& options, IdList& ids) {
    return Selection(editor, options, ids).run();
}

} // namespace pavo::editor::selection
