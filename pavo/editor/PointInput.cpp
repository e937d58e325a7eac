#include "editor/PointInput.h"

#include "base/Utf8.h"
#include "editor/Editor.h"
#include "editor/NumberText.h"
#include "editor/PointText.h"

namespace pavo::editor {

PointAnswer askPoint(Editor& editor, const std::wstring& prompt, const KeywordList& keywords) {
    std::wstring text = prompt;
    for (;;) {
        const InputLine line = editor.ask(text, keywords.local());
        if (line.kind != InputLine::Text) return PointAnswer{};
        const std::wstring answer = fromUtf8(line.text);
        const std::wstring_view word = trimBlanks(answer);
        if (word.empty()) return PointAnswer{PointAnswer::None, {}, {}};
        if (const std::optional<OxGePoint3d> p = parsePoint(word)) return PointAnswer{PointAnswer::Point, *p, {}};
        if (const std::optional<size_t> i = keywords.match(word))
            return {PointAnswer::Keyword, {}, keywords.globalAt(*i)};
        editor.output().write(L"\nInvalid point.");
        text = prompt.starts_with(L'\n') ? prompt : L"\n" + prompt;
    }
}

} // namespace pavo::editor
