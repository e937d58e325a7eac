// The input functions of the command line, driven by scripted answers, with
// the transcript they leave.
#include <gtest/gtest.h>

#include <sstream>

#include "editor/Editor.h"
#include "editor/SystemVariables.h"
#include "oxed.h"

using namespace pavo::editor;

namespace {

class EditorInput : public ::testing::Test {
protected:
    // Starts a session answering with `lines`.
    void answer(std::vector<std::string> lines) {
        m_editor.reset();
        m_input = makeLinesInput(std::move(lines));
        m_editor = std::make_unique<Editor>(*m_input, m_output, m_variables);
        Editor::setCurrent(m_editor.get());
    }
    std::string transcript() const { return m_out.str(); }
    Editor& editor() { return *m_editor; }

    std::ostringstream m_out;
    Output m_output{m_out};
    SystemVariables m_variables{[] { return static_cast<OxDbDatabase*>(nullptr); }};
    std::unique_ptr<InputSource> m_input;
    std::unique_ptr<Editor> m_editor;
};

const wchar_t* const kYesNo = L"Yes No _Yes No";

TEST_F(EditorInput, KeywordAnswers) {
    answer({"y", " No ", "", "_yes", "maybe", "N"});
    OxString result;
    oxedInitGet(0, kYesNo);
    EXPECT_EQ(oxedGetKword(L"\nTurn it off? <N>: ", result), STATUS_NORMAL);
    EXPECT_EQ(result, L"Yes");
    oxedInitGet(0, kYesNo);
    EXPECT_EQ(oxedGetKword(L"\nAgain? ", result), STATUS_NORMAL);
    EXPECT_EQ(result, L"No");
    oxedInitGet(0, kYesNo);
    EXPECT_EQ(oxedGetKword(L"\nAgain? ", result), STATUS_NONE);
    EXPECT_EQ(result, L"");
    oxedInitGet(0, kYesNo);
    EXPECT_EQ(oxedGetKword(L"\nAgain? ", result), STATUS_NORMAL);
    EXPECT_EQ(result, L"Yes");
    // Not a keyword: refused, and the same prompt comes again.
    oxedInitGet(0, kYesNo);
    EXPECT_EQ(oxedGetKword(L"\nLast? ", result), STATUS_NORMAL);
    EXPECT_EQ(result, L"No");
    EXPECT_TRUE(transcript().ends_with("\nLast? maybe\nInvalid option keyword.\nLast? N"));
}

TEST_F(EditorInput, TranscriptReadsLikeACommandLine) {
    answer({"-LAYER", "ON"});
    OxString result;
    EXPECT_EQ(oxedGetString(1, L"Command: ", result), STATUS_NORMAL);
    oxutPrintf(L"\nCurrent layer: %ls", L"0");
    oxedInitGet(0, L"ON OFf _ON OFf");
    EXPECT_EQ(oxedGetKword(L"\nEnter an option [ON/OFf]: ", result), STATUS_NORMAL);
    oxutPrintf(L"Done.");
    EXPECT_EQ(transcript(), "Command: -LAYER\nCurrent layer: 0\nEnter an option [ON/OFf]: ON\nDone.");
}

TEST_F(EditorInput, RefusedAnswerAtAPromptWithoutLeadingNewline) {
    answer({"x", "No"});
    OxString result;
    oxedInitGet(0, kYesNo);
    EXPECT_EQ(oxedGetKword(L"Sure? ", result), STATUS_NORMAL);
    EXPECT_EQ(transcript(), "Sure? x\nInvalid option keyword.\nSure? No");
}

TEST_F(EditorInput, FlagsApplyToTheNextCallOnly) {
    answer({"", "Yes", "", "anything", "anything"});
    OxString result;
    oxedInitGet(OX_INP_NONULL, kYesNo);
    EXPECT_EQ(oxedGetKword(L"\nSure? ", result), STATUS_NORMAL); // Enter asked again
    EXPECT_EQ(result, L"Yes");
    EXPECT_EQ(oxedGetKword(L"\nSure? ", result), STATUS_NONE); // no flags, no keywords now
    oxedInitGet(OX_INP_ARBITRARY, kYesNo);
    EXPECT_EQ(oxedGetKword(L"\nName or Yes: ", result), STATUS_NORMAL);
    EXPECT_EQ(result, L"anything");
    OxString input;
    oxedGetInput(input);
    EXPECT_EQ(input, L"anything");
    oxedInitGet(0, kYesNo);
    EXPECT_EQ(oxedGetKword(L"\nSure? ", result), STATUS_CANCEL); // refused, then the input ended
    EXPECT_TRUE(transcript().ends_with("\nSure? anything\nInvalid option keyword.\nSure? "));
}

TEST_F(EditorInput, StringsAreTakenAsTyped) {
    answer({"  two words  ", "", "y"});
    OxString result;
    oxedInitGet(OX_INP_NONULL, kYesNo); // flags do not apply to strings
    EXPECT_EQ(oxedGetString(0, L"\nName: ", result), STATUS_NORMAL);
    EXPECT_EQ(result, L"  two words  ");
    EXPECT_EQ(oxedGetStringForName(nullptr, L"\nName: ", result), STATUS_NORMAL);
    EXPECT_EQ(result, L"");
    // The keyword list is remembered for oxedGetInput.
    oxedInitGet(0, kYesNo);
    EXPECT_EQ(oxedGetString(1, L"\nName: ", result), STATUS_NORMAL);
    EXPECT_EQ(result, L"y");
    OxString input;
    oxedGetInput(input);
    EXPECT_EQ(input, L"Yes");
}

TEST_F(EditorInput, Reals) {
    answer({"2.5", "abc", "-1e2", "", "5", "", "lw", "thick", "0", "-3", "4"});
    double value = 0;
    EXPECT_EQ(oxedGetReal(L"\nWidth: ", &value), STATUS_NORMAL);
    EXPECT_EQ(value, 2.5);
    EXPECT_EQ(oxedGetReal(L"\nWidth: ", &value), STATUS_NORMAL); // "abc" refused first
    EXPECT_EQ(value, -100);
    EXPECT_TRUE(transcript().ends_with("\nWidth: abc\nRequires numeric value.\nWidth: -1e2"));
    oxedInitGet(OX_INP_NONULL, nullptr);
    EXPECT_EQ(oxedGetReal(L"\nWidth: ", &value), STATUS_NORMAL); // Enter asked again
    EXPECT_EQ(value, 5);
    EXPECT_EQ(oxedGetReal(L"\nWidth: ", &value), STATUS_NONE);
    oxedInitGet(0, L"LWeight _LWeight");
    EXPECT_EQ(oxedGetReal(L"\nWidth: ", &value), STATUS_KEYWORD);
    OxString input;
    oxedGetInput(input);
    EXPECT_EQ(input, L"LWeight");
    oxedInitGet(OX_INP_ARBITRARY, nullptr);
    EXPECT_EQ(oxedGetReal(L"\nWidth: ", &value), STATUS_KEYWORD);
    oxedGetInput(input);
    EXPECT_EQ(input, L"thick");
    oxedInitGet(OX_INP_NOZERO | OX_INP_NONEG, nullptr);
    EXPECT_EQ(oxedGetReal(L"\nWidth: ", &value), STATUS_NORMAL);
    EXPECT_EQ(value, 4);
    EXPECT_TRUE(
        transcript().ends_with("Width: 0\nRequires a nonzero value.\nWidth: -3\nValue must be positive.\nWidth: 4"));
}

TEST_F(EditorInput, Integers) {
    answer({"42", "1.5", "x", "", "7", "99999999999", "-8"});
    int value = 0;
    EXPECT_EQ(oxedGetInt(L"\nCount: ", &value), STATUS_NORMAL);
    EXPECT_EQ(value, 42);
    oxedInitGet(OX_INP_NONULL, nullptr);
    EXPECT_EQ(oxedGetInt(L"\nCount: ", &value), STATUS_NORMAL);
    EXPECT_EQ(value, 7);
    EXPECT_TRUE(transcript().ends_with("Count: 1.5\nRequires an integer value.\nCount: x\nRequires an integer "
                                       "value.\nCount: \nCount: 7"));
    EXPECT_EQ(oxedGetInt(L"\nCount: ", &value), STATUS_NORMAL);
    EXPECT_EQ(value, -8);
}

TEST_F(EditorInput, CancelAndEndOfInput) {
    answer({"^C", "^C\r", "ok\r"});
    OxString result;
    double real = 0;
    oxedInitGet(0, kYesNo);
    EXPECT_EQ(oxedGetKword(L"\nSure? ", result), STATUS_CANCEL);
    EXPECT_EQ(oxedGetReal(L"\nWidth: ", &real), STATUS_CANCEL);
    EXPECT_EQ(oxedGetString(1, L"\nName: ", result), STATUS_NORMAL);
    EXPECT_EQ(result, L"ok");
    EXPECT_FALSE(editor().inputEnded());
    int integer = 0;
    EXPECT_EQ(oxedGetInt(L"\nCount: ", &integer), STATUS_CANCEL);
    EXPECT_TRUE(editor().inputEnded());
    EXPECT_EQ(oxedGetKword(L"\nSure? ", result), STATUS_CANCEL);
    EXPECT_EQ(oxedGetString(0, L"\nName: ", result), STATUS_CANCEL);
    EXPECT_EQ(transcript(), "Sure? *Cancel*\nWidth: *Cancel*\nName: ok\nCount: ");
}

TEST(EditorWithoutSession, FunctionsFail) {
    Editor::setCurrent(nullptr);
    OxString result;
    double real = 0;
    resbuf rb{};
    EXPECT_EQ(oxedInitGet(0, L"A"), STATUS_ERROR);
    EXPECT_EQ(oxedGetKword(L"x", result), STATUS_ERROR);
    EXPECT_EQ(oxedGetReal(L"x", &real), STATUS_ERROR);
    EXPECT_EQ(oxedGetVar(L"EXPERT", &rb), STATUS_ERROR);
    EXPECT_EQ(oxutPrintf(L"%d", 1), STATUS_ERROR);
}

TEST(ScriptInput, LinesFromAStream) {
    auto input = makeScriptInput(std::make_unique<std::istringstream>("\xEF\xBB\xBF-LAYER\r\n\n^C\n@click OK\nlast"),
                                 "test.scr");
    EXPECT_FALSE(input->isTerminal());
    EXPECT_TRUE(input->echoes());
    EXPECT_EQ(input->name(), "test.scr");
    const std::vector<std::pair<InputLine::Kind, std::string>> expected = {
        {InputLine::Text, "-LAYER"},    {InputLine::Text, ""},     {InputLine::Cancel, ""},
        {InputLine::Text, "@click OK"}, {InputLine::Text, "last"}, {InputLine::End, ""}};
    for (const auto& [kind, text] : expected) {
        const InputLine line = input->read(L"", {});
        EXPECT_EQ(line.kind, kind);
        EXPECT_EQ(line.text, text);
    }
}

} // namespace
