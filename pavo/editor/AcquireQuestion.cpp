#include "editor/AcquireQuestion.h"

#include "base/Utf8.h"
#include "editor/Editor.h"
#include "editor/NumberText.h"
#include "oxed.h"

namespace pavo::editor {

AcquireQuestion::AcquireQuestion() : m_editor(Editor::current()) {
    if (m_editor) m_flags = m_editor->takeInitGet().first;
}

AcquireQuestion::Answer AcquireQuestion::ask(const std::wstring& prompt, const std::vector<std::wstring>& completions) {
    for (;;) {
        const std::wstring text = m_refused && !prompt.starts_with(L'\n') ? L"\n" + prompt : prompt;
        m_refused = false;
        const InputLine line = m_editor->ask(text, completions);
        if (line.kind != InputLine::Text) return {Answer::Cancel, {}};
        const std::wstring typed = pavo::fromUtf8(line.text);
        const std::wstring_view word = trimBlanks(typed);
        if (!word.empty()) return {Answer::Text, std::wstring(word)};
        if (!(m_flags & OX_INP_NONULL)) {
            m_editor->setLastInput(L"");
            return {Answer::Enter, {}};
        }
    }
}

void AcquireQuestion::refuse(std::wstring_view message) {
    m_editor->output().write(message.starts_with(L'\n') ? std::wstring(message) : L"\n" + std::wstring(message));
    m_refused = true;
}

void AcquireQuestion::accepted(const std::wstring& text) { m_editor->setLastInput(text); }

} // namespace pavo::editor
