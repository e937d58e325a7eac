// Answers read line by line: script files, standard input that is not a
// terminal, and lists of lines given by tests.
#include <deque>

#include "editor/Input.h"

namespace pavo::editor {
namespace {

// One script line as an answer: "^C" is Escape, a trailing "\r" from a file
// written on another system is not part of the answer.
InputLine answerFromLine(std::string& line) {
    if (!line.empty() && line.back() == '\r') line.pop_back();
    InputLine answer;
    answer.kind = line == "^C" ? InputLine::Cancel : InputLine::Text;
    if (answer.kind == InputLine::Text) answer.text = std::move(line);
    return answer;
}

class StreamInput : public InputSource {
public:
    StreamInput(std::unique_ptr<std::istream> stream, std::string name)
        : m_stream(std::move(stream)), m_name(std::move(name)) {}

    InputLine read(const std::wstring&, const std::vector<std::wstring>&) override {
        std::string line;
        if (!m_stream || !std::getline(*m_stream, line)) return InputLine{};
        if (m_firstLine && line.starts_with("\xEF\xBB\xBF")) line.erase(0, 3); // byte order mark
        m_firstLine = false;
        return answerFromLine(line);
    }
    bool isTerminal() const override { return false; }
    bool echoes() const override { return true; }
    std::string name() const override { return m_name; }

private:
    std::unique_ptr<std::istream> m_stream;
    std::string m_name;
    bool m_firstLine = true;
};

class LinesInput : public InputSource {
public:
    explicit LinesInput(std::vector<std::string> lines) : m_lines(lines.begin(), lines.end()) {}

    InputLine read(const std::wstring&, const std::vector<std::wstring>&) override {
        if (m_lines.empty()) return InputLine{};
        std::string line;
        line.swap(m_lines.front());
        m_lines.pop_front();
        return answerFromLine(line);
    }
    bool isTerminal() const override { return false; }
    bool echoes() const override { return true; }
    std::string name() const override { return "input lines"; }

private:
    std::deque<std::string> m_lines;
};

} // namespace

std::unique_ptr<InputSource> makeScriptInput(std::unique_ptr<std::istream> stream, std::string name) {
    return std::make_unique<StreamInput>(std::move(stream), std::move(name));
}

std::unique_ptr<InputSource> makeLinesInput(std::vector<std::string> lines) {
    return std::make_unique<LinesInput>(std::move(lines));
}

} // namespace pavo::editor
