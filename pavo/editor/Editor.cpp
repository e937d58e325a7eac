#include "editor/Editor.h"

#include <climits>

#include "base/Utf8.h"
#include "editor/NumberText.h"
#include "editor/SystemVariables.h"
#include "oxed.h"

namespace pavo::editor {
namespace {

Editor* s_current = nullptr;

} // namespace

Editor::Editor(InputSource& input, Output& output, SystemVariables& variables)
    : m_input(&input), m_output(&output), m_variables(&variables) {}

Editor::~Editor() {
    if (s_current == this) s_current = nullptr;
}

Editor* Editor::current() { return s_current; }

void Editor::setCurrent(Editor* editor) { s_current = editor; }

InputLine Editor::ask(const std::wstring& prompt, const std::vector<std::wstring>& completions) {
    return askLine(prompt, completions, false);
}

InputLine Editor::askLine(const std::wstring& prompt, const std::vector<std::wstring>& completions, bool again) {
    for (;; again = true) {
        if (m_inputEnded) return InputLine{};
        const std::wstring text = again && !prompt.starts_with(L'\n') ? L"\n" + prompt : prompt;
        const std::size_t lastBreak = text.rfind(L'\n');
        const std::size_t lastLineStart = lastBreak == std::wstring::npos ? 0 : lastBreak + 1;
        if (m_input->isTerminal()) {
            // The line editor draws the prompt's last line itself, from the
            // start of a line.
            m_output->write(std::wstring_view(text).substr(0, lastLineStart));
            if (!m_output->atLineStart()) m_output->finishLine();
        } else {
            m_output->write(text);
        }
        m_output->flush();
        InputLine line = m_unread ? std::move(*m_unread) : m_input->read(text.substr(lastLineStart), completions);
        m_unread.reset();
        switch (line.kind) {
        case InputLine::Text:
            if (line.text.find('\0') != std::string::npos) {
                // Every name and text would end at it: the answer is not taken.
                std::wstring shown = pavo::fromUtf8(line.text);
                for (wchar_t& ch : shown)
                    if (ch == L'\0') ch = L'?';
                m_output->answered(shown, m_input->echoes());
                refuse(L"An answer cannot hold the NUL character; give it again.");
                continue;
            }
            m_output->answered(pavo::fromUtf8(line.text), m_input->echoes());
            break;
        case InputLine::Cancel:
            m_output->answered(L"*Cancel*", true);
            break;
        case InputLine::End:
            // A terminal goes on after Ctrl-D; a script or a pipe is used up.
            if (!m_input->isTerminal()) m_inputEnded = true;
            break;
        }
        return line;
    }
}

void Editor::refuse(const wchar_t* message) { m_output->write(std::wstring(L"\n") + message); }

void Editor::initGet(int flags, const wchar_t* keywords) {
    m_pending.flags = flags;
    m_pending.keywords = KeywordList(keywords ? keywords : L"");
    m_pending.set = true;
}

Editor::Pending Editor::takePending() {
    Pending pending = std::move(m_pending);
    m_pending = Pending{};
    return pending;
}

template <class Judge> int Editor::askUntilAnswered(const wchar_t* prompt, Judge&& judge) {
    const Pending pending = takePending();
    m_lastKeywords = pending.keywords;
    const std::wstring promptText = prompt ? prompt : L"";
    for (bool again = false;; again = true) {
        const InputLine line = askLine(promptText, pending.keywords.local(), again);
        if (line.kind != InputLine::Text) return STATUS_CANCEL;
        const std::wstring answer = pavo::fromUtf8(line.text);
        const std::wstring_view word = trimBlanks(answer);
        if (word.empty()) {
            if (pending.flags & OX_INP_NONULL) continue;
            m_lastInput = L"";
            return STATUS_NONE;
        }
        if (const std::optional<int> status = judge(pending, answer, word)) return *status;
    }
}

std::optional<std::wstring> Editor::keywordOrArbitrary(const Pending& pending, const std::wstring& answer,
                                                       std::wstring_view word) {
    if (const std::optional<size_t> i = pending.keywords.match(word)) return pending.keywords.globalAt(*i);
    if (pending.flags & OX_INP_ARBITRARY) return answer;
    return std::nullopt;
}

int Editor::getKword(const wchar_t* prompt, OxString& result) {
    const int status = askUntilAnswered(
        prompt, [&](const Pending& pending, const std::wstring& answer, std::wstring_view word) -> std::optional<int> {
            if (std::optional<std::wstring> chosen = keywordOrArbitrary(pending, answer, word)) {
                result = *chosen;
                m_lastInput = result;
                return STATUS_NORMAL;
            }
            refuse(L"Invalid option keyword.");
            return std::nullopt;
        });
    if (status == STATUS_NONE) result = L"";
    return status;
}

int Editor::getString(bool /*allowBlanks: blanks never end an answer*/, const wchar_t* prompt, OxString& result) {
    const Pending pending = takePending();
    m_lastKeywords = pending.keywords;
    const InputLine line = askLine(prompt ? prompt : L"", pending.keywords.local(), false);
    if (line.kind != InputLine::Text) return STATUS_CANCEL;
    result = pavo::fromUtf8(line.text);
    const std::optional<size_t> i = pending.keywords.match(trimBlanks(result.view()));
    m_lastInput = i ? OxString(pending.keywords.globalAt(*i)) : result;
    return STATUS_NORMAL;
}

int Editor::getNumber(const wchar_t* prompt, bool integer, double& result) {
    return askUntilAnswered(
        prompt, [&](const Pending& pending, const std::wstring& answer, std::wstring_view word) -> std::optional<int> {
            std::optional<double> value;
            if (integer) {
                const std::optional<long long> n = parseInteger(word);
                if (n && (*n < INT_MIN || *n > INT_MAX)) {
                    refuse(L"Requires an integer between -2147483648 and 2147483647.");
                    return std::nullopt;
                }
                if (n) value = static_cast<double>(*n);
            } else {
                value = parseReal(word);
            }
            if (value) {
                if ((pending.flags & OX_INP_NOZERO) && *value == 0) {
                    refuse(L"Requires a nonzero value.");
                    return std::nullopt;
                }
                if ((pending.flags & OX_INP_NONEG) && *value < 0) {
                    refuse(L"Value must be positive.");
                    return std::nullopt;
                }
                result = *value;
                m_lastInput = std::wstring(word);
                return STATUS_NORMAL;
            }
            if (std::optional<std::wstring> chosen = keywordOrArbitrary(pending, answer, word)) {
                m_lastInput = *chosen;
                return STATUS_KEYWORD;
            }
            refuse(integer ? L"Requires an integer value." : L"Requires numeric value.");
            return std::nullopt;
        });
}

int Editor::getReal(const wchar_t* prompt, double& result) { return getNumber(prompt, false, result); }

int Editor::getInt(const wchar_t* prompt, int& result) {
    double value = 0;
    const int status = getNumber(prompt, true, value);
    if (status == STATUS_NORMAL) result = static_cast<int>(value);
    return status;
}

std::pair<int, KeywordList> Editor::takeInitGet() {
    Pending pending = takePending();
    m_lastKeywords = pending.keywords;
    return {pending.flags, std::move(pending.keywords)};
}

int Editor::getInput(OxString& result) const {
    result = m_lastInput;
    return STATUS_NORMAL;
}

int Editor::errorNumber() const {
    resbuf value{};
    if (m_variables->get(L"ERRNO", value) != STATUS_NORMAL || value.restype != RTSHORT) return 0;
    return value.resval.rint;
}

void Editor::setErrorNumber(int value) { m_variables->setSessionInt(L"ERRNO", value); }

} // namespace pavo::editor
