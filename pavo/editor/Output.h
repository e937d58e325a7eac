// The command line's output: UTF-8 to a stream. It tracks whether the last
// line is an answered prompt, so that a text starting with "\n" after an
// answer does not leave an empty line, and an answer is always followed by a
// line end before other text.
#pragma once

#include <ostream>
#include <string>
#include <string_view>

namespace pavo::editor {

class Output {
public:
    // Errors go to `errors` when given (standard error), else with the rest.
    explicit Output(std::ostream& out, std::ostream* errors = nullptr)
        : m_out(&out), m_errors(errors ? errors : &out) {}
    void setStream(std::ostream& out) { m_out = &out; }
    std::ostream& stream() { return *m_out; }

    // Writes text as the command line shows it.
    void write(std::wstring_view text);
    // Writes an error, one line: on the error stream when it is another
    // one, after the current line of the output is ended.
    void error(std::wstring_view text);
    // The user answered: `echo` is written (scripts) or was typed (terminal).
    void answered(std::wstring_view echo, bool echoIt);
    // Ends the last line if anything is on it (at exit).
    void finishLine();
    // True when nothing is on the current line (a line editor may start).
    bool atLineStart() const { return m_atLineStart; }
    void flush();

private:
    std::ostream* m_out;
    std::ostream* m_errors;
    bool m_atLineStart = true;
    bool m_afterAnswer = true; // so that the very first line break is not an empty line
};

} // namespace pavo::editor
