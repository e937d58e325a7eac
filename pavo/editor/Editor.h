// The command line of the session: prompts, answers, oxedInitGet state and
// the last input. The oxed* functions of the host API forward to the current
// editor.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Input.h"
#include "Keywords.h"
#include "Output.h"
#include "OxString.h"

namespace pavo::editor {

class SystemVariables;

class Editor {
public:
    Editor(InputSource& input, Output& output, SystemVariables& variables);
    ~Editor();

    static Editor* current();
    static void setCurrent(Editor* editor);

    InputSource& input() { return *m_input; }
    void setInput(InputSource& input) { m_input = &input; }
    Output& output() { return *m_output; }
    SystemVariables& variables() { return *m_variables; }

    // Prints `prompt` and reads one answer; echoes it in script mode. Once
    // a script's input has ended every read returns End at once (a
    // terminal goes on after Ctrl-D).
    InputLine ask(const std::wstring& prompt, const std::vector<std::wstring>& completions = {});
    // True once the input source is used up.
    bool inputEnded() const { return m_inputEnded; }
    // Gives `line` back: the next ask() answers with it instead of reading
    // (a script line that an open dialog did not take).
    void unread(InputLine line) { m_unread = std::move(line); }

    // oxedInitGet state (applies to the next input call only).
    void initGet(int flags, const wchar_t* keywords);
    // The input functions of the host API; statuses as documented there.
    int getKword(const wchar_t* prompt, OxString& result);
    int getString(bool allowBlanks, const wchar_t* prompt, OxString& result);
    int getReal(const wchar_t* prompt, double& result);
    int getInt(const wchar_t* prompt, int& result);
    int getInput(OxString& result) const;

    // For the pick and selection prompts, which read answers themselves: the
    // pending oxedInitGet flags and keywords (taken, as every input call
    // takes them), and the answer that oxedGetInput reports afterwards.
    std::pair<int, KeywordList> takeInitGet();
    void setLastInput(const OxString& text) { m_lastInput = text; }

    // ERRNO, set by the pick functions.
    int errorNumber() const;
    void setErrorNumber(int value);

private:
    struct Pending {
        int flags = 0;
        KeywordList keywords;
        bool set = false;
    };
    Pending takePending();
    // ask(), writing the prompt on a line of its own when `again` (after a
    // refusal message).
    InputLine askLine(const std::wstring& prompt, const std::vector<std::wstring>& completions, bool again);
    // Prints why an answer was refused; the prompt is asked again after it.
    void refuse(const wchar_t* message);
    // getReal and getInt: `integer` asks for an int.
    int getNumber(const wchar_t* prompt, bool integer, double& result);
    // The loop of the prompts that ask again after a refusal: takes the
    // pending initGet, asks, answers a blank line by the flags, and gives
    // any other answer to `judge(pending, answer, trimmed)`, which returns
    // the status or refuses it (nullopt) to have it asked again.
    template <class Judge> int askUntilAnswered(const wchar_t* prompt, Judge&& judge);
    // The global keyword that `word` abbreviates, or the whole answer when
    // arbitrary input is allowed.
    static std::optional<std::wstring> keywordOrArbitrary(const Pending& pending, const std::wstring& answer,
                                                          std::wstring_view word);

    InputSource* m_input;
    Output* m_output;
    SystemVariables* m_variables;
    Pending m_pending;
    KeywordList m_lastKeywords; // kept for oxedGetInput after string input
    OxString m_lastInput;
    std::optional<InputLine> m_unread;
    bool m_inputEnded = false;
};

} // namespace pavo::editor
