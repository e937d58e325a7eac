// "-LAYER" through the real host and module: the current-layer line, the
// option prompt, keyword matching and the ways out of the loop.
#include <gtest/gtest.h>

#include "SessionHarness.h"

using pavotest::countOf;
using pavotest::ScriptedSession;

namespace {

const std::string kPromptNamed =
    "Enter an option "
    "[?/New/Make/Set/Color/Ltype/LWeight/Plot/PStyle/ON/OFF/Freeze/Thaw/LOck/Unlock/Rename/Description/DELete/stAte/"
    "TRansparency]: ";
const std::string kPromptColour =
    "Enter an option "
    "[?/New/Make/Set/Color/Ltype/LWeight/Plot/ON/OFF/Freeze/Thaw/LOck/Unlock/Rename/Description/DELete/stAte/"
    "TRansparency]: ";

} // namespace

TEST(LayerLoop, ShowsCurrentLayerAndPromptThenEnterEnds) {
    ScriptedSession s({"PSTYLEMODE", "0", "-LAYER", ""});
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Command: -LAYER\nCurrent layer: 0\n" + kPromptNamed + "\nCommand: "), std::string::npos) << t;
}

TEST(LayerLoop, ColourDependentPlotStylesUseTheShortPrompt) {
    ScriptedSession s({"PSTYLEMODE", "1", "-LAYER", "PStyle", ""});
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_NE(t.find(kPromptColour + "PStyle\nInvalid option keyword.\n" + kPromptColour), std::string::npos) << t;
    EXPECT_EQ(countOf(t, "Print Style Name"), 0) << t;
}

TEST(LayerLoop, GlobalNameRunsItAndUnknownWordsAreRefused) {
    ScriptedSession s({"_-LAYER", "", "-LAYERS", "_FOO"});
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Command: _-LAYER\nCurrent layer: "), std::string::npos) << t;
    EXPECT_NE(t.find("Unknown command \"-LAYERS\""), std::string::npos) << t;
    EXPECT_NE(t.find("Unknown command \"_FOO\""), std::string::npos) << t;
}

TEST(LayerLoop, AbbreviationsReachTheirBranches) {
    // Each branch is recognised by its first prompt, then left with Escape
    // or Enter.
    ScriptedSession s({"PSTYLEMODE", "0", "-LAYER", "A", "", "_TRansparency", "", "pstyle", "^C", "O", "Print", "^C",
                       "Plot", "^C", "C", "^C", "Lt", "^C", ""});
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_NE(t.find(kPromptNamed + "A\nEnter an option [?/Save/Name/Delete]: \n" + kPromptNamed), std::string::npos)
        << t;
    EXPECT_NE(t.find(kPromptNamed + "_TRansparency\nEnter transparency value (0-90): \n" + kPromptNamed),
              std::string::npos)
        << t;
    EXPECT_NE(t.find(kPromptNamed + "pstyle\nEnter Print Style Name or [?] <"), std::string::npos) << t;
    EXPECT_NE(t.find(kPromptNamed + "C\nNew color [Truecolor/COlorbook] : *Cancel*\n"), std::string::npos) << t;
    EXPECT_NE(t.find(kPromptNamed + "Lt\nEnter linetype or [?] <Default>: *Cancel*\n"), std::string::npos) << t;
    // "Print" and "Plot" run the same branch.
    EXPECT_EQ(countOf(t, "Enter a plotting preference [Plot/No plot] <Plot>: *Cancel*"), 2) << t;
    // "O" is refused and the same prompt comes back; the loop goes on.
    EXPECT_NE(t.find(kPromptNamed + "O\nInvalid option keyword.\n" + kPromptNamed + "Print"), std::string::npos) << t;
}

TEST(LayerLoop, RejectingBranchesAreAskedAgainWithoutTheOptionPrompt) {
    ScriptedSession s(
        {"PSTYLEMODE", "0", "-LAYER", "LW", "?", "x", "^C", "TR", "95", "^C", "PS", "?", "^C", "Ltype", "?", "ZZ", ""});
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    const std::string lweight = "LineWeight: ? to list/0.0mm-2.11mm/<Default>: ";
    EXPECT_NE(t.find("  2.11 mm\n" + lweight + "x\nEnter a valid lineweight value.\n" + lweight + "*Cancel*\n" +
                     kPromptNamed + "TR\n"),
              std::string::npos)
        << t;
    const std::string transparency = "Enter transparency value (0-90): ";
    EXPECT_NE(t.find(transparency + "95\nRequires an integer between 0 and 90. \n" + transparency + "*Cancel*\n"),
              std::string::npos)
        << t;
    EXPECT_NE(t.find(" -------------------------------\n Normal\nEnter Print Style Name or [?] <Normal>: *Cancel*\n"),
              std::string::npos)
        << t;
    // Ltype is run once: after its listing the option prompt comes back.
    EXPECT_NE(t.find("Matching linetype names not found.\n" + kPromptNamed), std::string::npos) << t;
}

TEST(LayerLoop, BuiltOptionsReturnToThePrompt) {
    ScriptedSession s({"-LAYER", "OF", "x", "DEL", "x", "_Freeze", "x", "?", "x", ""}, pavotest::Drawing::New);
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_EQ(countOf(t, "No layers found matching pattern x. "), 4) << t;
    EXPECT_NE(t.find("turn Off or <select objects>: x\n"), std::string::npos) << t;
    EXPECT_NE(t.find("to delete: x\n"), std::string::npos) << t;
    EXPECT_NE(t.find("to Freeze or <select objects>: x\n"), std::string::npos) << t;
}

TEST(LayerLoop, PromptFollowsPlotStyleMode) {
    ScriptedSession t({"PSTYLEMODE", "1", "-LAYER", "", "PSTYLEMODE", "0", "-LAYER", ""});
    EXPECT_EQ(t.run(), 0);
    const std::string text = t.transcript();
    EXPECT_LT(text.find(kPromptColour), text.find(kPromptNamed)) << text;
}

TEST(LayerLoop, EscapeEndsTheCommandAndScriptEndInsideIsAnError) {
    ScriptedSession cancelled({"-LAYER", "^C"});
    EXPECT_EQ(cancelled.run(), 0);
    ScriptedSession ended({"-LAYER"});
    EXPECT_EQ(ended.run(), pavo::app::kExitScriptEnded);
}

TEST(LayerLoop, BuiltInTextsEqualTheStringTable) {
    const std::vector<std::string> script = {"PSTYLEMODE", "0",          "-LAYER", "O",      "?", "*",  "Freeze", "0",
                                             "",           "PSTYLEMODE", "1",      "-LAYER", "?", "Z*", ""};
    ScriptedSession withTable(script);
    withTable.run();
    pavo::app::SessionOptions options = pavotest::testSessionOptions();
    options.resourcePath = {PAVO_TEST_DATA_DIR "/no-resources"};
    ScriptedSession builtIn(script, pavotest::Drawing::Sample, options);
    builtIn.run();
    EXPECT_EQ(withTable.transcript(), builtIn.transcript());
    EXPECT_NE(withTable.transcript().find("Current layer: "), std::string::npos);
}
