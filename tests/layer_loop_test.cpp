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
    EXPECT_EQ(countOf(t, "PStyle option"), 0);
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
    ScriptedSession s({"PSTYLEMODE", "0", "-LAYER", "OF", "A", "LW", "DEL", "_Freeze", "pstyle", "O", "Print", "?",
                       ""});
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    for (const char* branch : {"OFf", "stAte", "LWeight", "Delete", "Freeze", "PStyle", "Plot", "?"})
        EXPECT_EQ(countOf(t, std::string("The ") + branch + " option is not available"), 1) << branch << "\n" << t;
    // "O" is refused and the same prompt comes back; the loop goes on.
    EXPECT_NE(t.find(kPromptNamed + "O\nInvalid option keyword.\n" + kPromptNamed + "Print"), std::string::npos) << t;
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
    const std::vector<std::string> script = {"PSTYLEMODE", "0", "-LAYER", "O", "", "PSTYLEMODE", "1", "-LAYER", ""};
    ScriptedSession withTable(script);
    withTable.run();
    pavo::app::SessionOptions options = pavotest::testSessionOptions();
    options.resourcePath = {PAVO_TEST_DATA_DIR "/no-resources"};
    ScriptedSession builtIn(script, pavotest::Drawing::Sample, options);
    builtIn.run();
    EXPECT_EQ(withTable.transcript(), builtIn.transcript());
    EXPECT_NE(withTable.transcript().find("Current layer: "), std::string::npos);
}
