// One question of PavoAcquireInput on the session's command line: asks,
// takes the pending oxedInitGet flags (they apply to this input only),
// refuses and asks again, and records what oxedGetInput reports afterwards.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pavo::editor {

class Editor;

class AcquireQuestion {
public:
    AcquireQuestion();
    // False when there is no command line to ask on.
    bool ready() const { return m_editor != nullptr; }

    struct Answer {
        enum Kind { Text, Enter, Cancel };
        Kind kind = Cancel;
        std::wstring text; // trimmed of blanks; set for Text
    };
    // Asks `prompt` (on a new line after a refusal). Enter under the "refuse
    // Enter" flag is asked again; the end of the input is a cancel.
    Answer ask(const std::wstring& prompt, const std::vector<std::wstring>& completions = {});
    // Prints why the last answer was refused, on a line of its own.
    void refuse(std::wstring_view message);
    // The answer that oxedGetInput reports.
    void accepted(const std::wstring& text);

private:
    Editor* m_editor;
    int m_flags = 0;
    bool m_refused = false;
};

} // namespace pavo::editor
