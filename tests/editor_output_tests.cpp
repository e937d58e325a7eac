// The command line's output: the line-end rule after answers, on scripts
// and on a terminal.
#include <gtest/gtest.h>

#include <sstream>

#include "editor/Editor.h"
#include "editor/SystemVariables.h"

using namespace pavo::editor;

namespace {

TEST(EditorOutput, ScriptEchoLineIsEndedOnce) {
    std::ostringstream out;
    Output output(out);
    output.write(L"Command: ");
    output.answered(L"-LAYER", true);
    output.write(L"\nCurrent layer: 0");
    output.write(L" (locked)");
    output.write(L"\nName: ");
    output.answered(L"Wände", true);
    output.write(L"Done.");
    output.finishLine();
    EXPECT_EQ(out.str(), "Command: -LAYER\nCurrent layer: 0 (locked)\nName: W\xC3\xA4nde\nDone.\n");
}

TEST(EditorOutput, TerminalEnterAlreadyEndedTheLine) {
    std::ostringstream out;
    Output output(out);
    output.answered(L"-LAYER", false);
    output.write(L"\nCurrent layer: 0");
    output.answered(L"ON", false);
    output.write(L"Done.");
    output.write(L"\n");
    output.finishLine(); // nothing left on the line
    EXPECT_EQ(out.str(), "Current layer: 0Done.\n");
    EXPECT_TRUE(output.atLineStart());
}

// A terminal stand-in: records what the line editor would draw.
class FakeTerminal : public InputSource {
public:
    explicit FakeTerminal(std::vector<std::string> answers) : m_answers(std::move(answers)) {}
    InputLine read(const std::wstring& prompt, const std::vector<std::wstring>& completions) override {
        prompts.push_back(prompt);
        lastCompletions = completions;
        if (m_next >= m_answers.size()) return {InputLine::End, {}};
        return {InputLine::Text, m_answers[m_next++]};
    }
    bool isTerminal() const override { return true; }
    bool echoes() const override { return false; }
    std::string name() const override { return "fake terminal"; }

    std::vector<std::wstring> prompts;
    std::vector<std::wstring> lastCompletions;

private:
    std::vector<std::string> m_answers;
    std::size_t m_next = 0;
};

TEST(EditorOutput, TerminalDrawsOnlyThePromptsLastLine) {
    std::ostringstream out;
    Output output(out);
    SystemVariables variables([] { return static_cast<OxDbDatabase*>(nullptr); });
    FakeTerminal terminal({"-LAYER", "x", "OF"});
    Editor editor(terminal, output, variables);
    OxString result;
    EXPECT_EQ(editor.getString(true, L"Command: ", result), STATUS_NORMAL);
    output.write(L"\nCurrent layer: 0");
    editor.initGet(0, L"ON OFf _ON OFf");
    EXPECT_EQ(editor.getKword(L"\nEnter an option [ON/OFf]: ", result), STATUS_NORMAL);
    EXPECT_EQ(result, L"OFf");
    EXPECT_EQ(terminal.prompts,
              (std::vector<std::wstring>{L"Command: ", L"Enter an option [ON/OFf]: ", L"Enter an option [ON/OFf]: "}));
    EXPECT_EQ(terminal.lastCompletions, (std::vector<std::wstring>{L"ON", L"OFf"}));
    // What the host itself wrote; the typed answers are on the screen already.
    EXPECT_EQ(out.str(), "Current layer: 0\nInvalid option keyword.\n");
}

TEST(EditorOutput, TerminalPromptStartsOnAFreshLine) {
    std::ostringstream out;
    Output output(out);
    SystemVariables variables([] { return static_cast<OxDbDatabase*>(nullptr); });
    FakeTerminal terminal({"a"});
    Editor editor(terminal, output, variables);
    output.write(L"Listing done");
    OxString result;
    editor.getString(true, L"Name: ", result);
    EXPECT_EQ(out.str(), "Listing done\n");
}

} // namespace
