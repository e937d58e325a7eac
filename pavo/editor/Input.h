// Where answers come from: a terminal (libedit), a script file or standard
// input that is not a terminal, or a list of lines (tests).
#pragma once

#include <istream>
#include <memory>
#include <string>
#include <vector>

namespace pavo::editor {

struct InputLine {
    enum Kind { Text, Cancel, End };
    Kind kind = End;
    std::string text; // UTF-8, without the line end
};

class InputSource {
public:
    virtual ~InputSource() = default;
    // Reads one answer after `prompt` (the last line of the prompt text; the
    // lines before it are already on the screen). `completions` are the
    // active prompt's keywords, for Tab completion on a terminal.
    virtual InputLine read(const std::wstring& prompt, const std::vector<std::wstring>& completions) = 0;
    virtual bool isTerminal() const = 0;
    // True when the host must echo each answer after its prompt (scripts).
    virtual bool echoes() const = 0;
    // The name shown in messages ("script.scr", "standard input").
    virtual std::string name() const = 0;
};

// One line is one answer; an empty line is Enter; a line "^C" is Escape.
// A trailing "\r" is dropped. Lines starting with '@' are dialog actions.
std::unique_ptr<InputSource> makeScriptInput(std::unique_ptr<std::istream> stream, std::string name);
std::unique_ptr<InputSource> makeLinesInput(std::vector<std::string> lines);
// libedit on the controlling terminal: history, Tab completion, Ctrl-C cancels.
std::unique_ptr<InputSource> makeTerminalInput(const std::string& historyFile);

} // namespace pavo::editor
