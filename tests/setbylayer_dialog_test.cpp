// The SETBYLAYER settings dialog on Qt's offscreen platform, driven through
// its real widgets by "@" lines of the script.
#include <gtest/gtest.h>

#include <cstdlib>

#include "DocExamples.h"
#include "RunPavo.h"
#include "base/Utf8.h"
#include "editor/SystemVariables.h"
#include "setbylayer_TestSupport.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace setbylayertest;

namespace {

std::string mode(ScriptedSession& s) { return pavo::toUtf8(s.session().variables().valueText(L"SETBYLAYERMODE")); }

const char* const kPrompt = "Dialog \"SetByLayer Settings\": ";

} // namespace

TEST(SetByLayerDialog, ClicksChangeTheShownBitsAndKeepBits32And64) {
    // 97: colour, ByBlock to ByLayer, blocks included.
    ScriptedSession s({"SETBYLAYERMODE", "97", "SETBYLAYER", "S", "@list", "@click IDC_SETBYLAYER_COLOR",
                       "@check IDC_SETBYLAYER_LINETYPE on", "@check IDC_SETBYLAYER_TRANSPARENCY on",
                       "@click IDC_SETBYLAYER_TRANSPARENCY", "@ok", "ALL", "", "", ""},
                      Drawing::New, dialogOptions());
    modelLine(s.database(), 0, 0, [&](OxDbLine& l) { l.setColorIndex(1); });
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string out = s.transcript();
    EXPECT_NE(out.find(std::string(kPrompt) + "@list\nIDC_SETBYLAYER_COLOR \"Color\": checked\n"), std::string::npos)
        << out;
    EXPECT_NE(out.find("IDC_SETBYLAYER_LINETYPE \"Linetype\": unchecked\n"), std::string::npos);
    // OK shows the new settings; the questions still offer bits 32 and 64.
    EXPECT_NE(out.find("@ok\nCurrent active settings: Linetype\nSelect Objects"), std::string::npos) << out;
    EXPECT_NE(out.find("Change ByBlock to ByLayer? [Yes/No] <Yes>:\nInclude blocks? [Yes/No] <Yes>:"),
              std::string::npos);
    // The red line kept its colour: colour was cleared in the dialog.
    EXPECT_NE(out.find("All object properties have been set to ByLayer. No objects modified."), std::string::npos);
    EXPECT_EQ(mode(s), "98"); // 97 - 1 + 2, written although Enter answered both questions
}

TEST(SetByLayerDialog, PlotStyleUnderColourStylesAndMaterialAreDisabledAndClicksChangeNothing) {
    ScriptedSession s({"PSTYLEMODE", "1", "SETBYLAYER", "S", "@list", "@click IDC_SETBYLAYER_PRINTSTYLE",
                       "@check IDC_SETBYLAYER_MATERIAL off", "@ok", "ALL", "", "", ""},
                      Drawing::New, dialogOptions());
    modelLine(s.database(), 0, 0);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string out = s.transcript();
    // 255 checks every box it shows; each gets its bit's own value (128 for
    // transparency), which any non-zero value must check.
    for (const char* box : {"COLOR \"Color\"", "LINETYPE \"Linetype\"", "LINEWIDTH \"Lineweight\"",
                            "TRANSPARENCY \"Transparency\""})
        EXPECT_NE(out.find(std::string("IDC_SETBYLAYER_") + box + ": checked\n"), std::string::npos) << box;
    // Bit 16 is set too, but the box is off and disabled; material shows bit 8.
    EXPECT_NE(out.find("IDC_SETBYLAYER_PRINTSTYLE \"Plot style\": unchecked, disabled"), std::string::npos) << out;
    EXPECT_NE(out.find("IDC_SETBYLAYER_MATERIAL \"Material\": checked, disabled"), std::string::npos);
    EXPECT_NE(out.find("@click IDC_SETBYLAYER_PRINTSTYLE\nIDC_SETBYLAYER_PRINTSTYLE is disabled; nothing changed."),
              std::string::npos);
    EXPECT_NE(out.find("IDC_SETBYLAYER_MATERIAL is disabled; nothing changed."), std::string::npos);
    // OK keeps every bit, plot style included.
    EXPECT_EQ(mode(s), "255");
}

TEST(SetByLayerDialog, NamedPlotStylesEnableThePlotStyleBox) {
    ScriptedSession s({"PSTYLEMODE", "0", "SETBYLAYERMODE", "7", "SETBYLAYER", "S", "@list",
                       "@click IDC_SETBYLAYER_PRINTSTYLE", "@ok", "ALL", "", "", ""},
                      Drawing::New, dialogOptions());
    modelLine(s.database(), 0, 0);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string out = s.transcript();
    EXPECT_NE(out.find("IDC_SETBYLAYER_PRINTSTYLE \"Plot style\": unchecked\n"), std::string::npos) << out;
    EXPECT_NE(out.find("IDC_SETBYLAYER_MATERIAL \"Material\": unchecked, disabled"), std::string::npos);
    EXPECT_NE(out.find("Current active settings: Color Linetype Lineweight Plot style"), std::string::npos);
    EXPECT_EQ(mode(s), "23");
}

TEST(SetByLayerDialog, CancelDiscardsTheClicks) {
    ScriptedSession s({"SETBYLAYER", "S", "@click IDC_SETBYLAYER_COLOR", "@click IDC_SETBYLAYER_LINETYPE", "@cancel",
                       "ALL", "", "", ""},
                      Drawing::New, dialogOptions());
    const OxDbObjectId line = modelLine(s.database(), 0, 0, [&](OxDbLine& l) { l.setColorIndex(1); });
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_EQ(countOf(s.transcript(), "Current active settings:"), 1) << s.transcript();
    EXPECT_TRUE(colorOf(line).isByLayer());
    EXPECT_EQ(mode(s), "255");
}

TEST(SetByLayerDialog, HelpShowsTheDialogsTopicAndWrongLinesAreExplained) {
    ScriptedSession s({"SETBYLAYER", "S", "@click IDHELP", "@frobnicate", "@click NOSUCH", "@check IDOK on",
                       "@cancel", "^C"},
                      Drawing::New, dialogOptions());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    const std::string out = s.transcript();
    EXPECT_NE(out.find("@click IDHELP\nSetByLayer Settings\n\nChoose which properties SETBYLAYER sets"),
              std::string::npos)
        << out;
    EXPECT_EQ(countOf(out, "Choose which properties"), 1); // help runs once, not from two connections
    EXPECT_NE(out.find("Unknown dialog action \"@frobnicate\". This dialog answers to @click NAME, @check NAME "
                       "on|off, @ok, @cancel, @list, @shot FILE.png."),
              std::string::npos);
    EXPECT_NE(out.find("The dialog has no control NOSUCH."), std::string::npos);
    EXPECT_NE(out.find("IDOK cannot be checked."), std::string::npos);
}

TEST(SetByLayerDialog, AScriptThatEndsWithTheDialogOpenCancelsIt) {
    ScriptedSession s({"SETBYLAYER", "S", "@click IDC_SETBYLAYER_COLOR"}, Drawing::New, dialogOptions());
    EXPECT_EQ(s.run(), 3);
    EXPECT_NE(s.transcript().find("The script ended with the dialog open; the dialog was cancelled."),
              std::string::npos)
        << s.transcript();
    EXPECT_EQ(mode(s), "255");
}

TEST(SetByLayerDialog, ALineThatIsNoDialogActionCancelsTheDialogAndGoesToThePrompt) {
    ScriptedSession s({"SETBYLAYER", "S", "@click IDC_SETBYLAYER_COLOR", "ALL", "", "", ""}, Drawing::New,
                      dialogOptions());
    const OxDbObjectId line = modelLine(s.database(), 0, 0, [&](OxDbLine& l) { l.setColorIndex(1); });
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_NE(s.transcript().find("\"ALL\" is not a dialog action; the dialog was cancelled and the line goes to the "
                                  "next prompt.\nSelect Objects or [Setting(S)]:ALL\n1 found"),
              std::string::npos)
        << s.transcript();
    EXPECT_TRUE(colorOf(line).isByLayer()); // the colour click was cancelled
}

TEST(SetByLayerDialog, ShotSavesAPictureOfTheDialog) {
    pavotest::TempFolder folder;
    const std::string file = folder.path("dialog.png");
    ScriptedSession s({"SETBYLAYER", "S", "@shot " + file, "@cancel", "^C"}, Drawing::New, dialogOptions());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_NE(s.transcript().find("Saved a picture of the dialog in " + file + "."), std::string::npos);
    const std::string png = folder.read("dialog.png");
    ASSERT_GT(png.size(), 1000u);
    EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1a\n");
}

TEST(SetByLayerDialog, WithoutADisplayNoDialogIsShown) {
    unsetenv("QT_QPA_PLATFORM");
    const char* display = std::getenv("DISPLAY");
    const std::string saved = display ? display : "";
    unsetenv("DISPLAY");
    pavo::app::SessionOptions options = pavotest::testSessionOptions();
    options.noDialogs = false;
    ScriptedSession s({"SETBYLAYER", "S", "^C"}, Drawing::New, options);
    ASSERT_EQ(s.run(), 0);
    if (!saved.empty()) setenv("DISPLAY", saved.c_str(), 1);
    EXPECT_NE(s.transcript().find("There is no display to show a dialog on (DISPLAY is not set). The dialog was not "
                                  "shown."),
              std::string::npos)
        << s.transcript();
}

TEST(HelpTopics, HelpTopicAtTheCommandLineShowsTheTopic) {
    ScriptedSession s({"HELP SETBYLAYER_DIA", "help nosuch"}, Drawing::New);
    ASSERT_EQ(s.run(), 0);
    EXPECT_NE(s.transcript().find("Command: HELP SETBYLAYER_DIA\nSetByLayer Settings\n"), std::string::npos)
        << s.transcript();
    EXPECT_NE(s.transcript().find("There is no help topic \"nosuch\"."), std::string::npos);
}

namespace {

// Runs pavo on `script` with the dynamic loader reporting each library it
// loads; the libraries' names are in the output.
pavotest::PavoRun runReportingLibraries(const std::string& script, bool offscreen) {
    pavotest::TempFolder folder;
    folder.write("script.scr", script);
    setenv("LD_DEBUG", "files", 1);
    if (offscreen)
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    else
        unsetenv("QT_QPA_PLATFORM");
    const char* display = std::getenv("DISPLAY");
    const std::string savedDisplay = display ? display : "";
    unsetenv("DISPLAY");
    pavotest::PavoRun run = pavotest::runPavo({"--new", "--script", folder.path("script.scr")});
    unsetenv("LD_DEBUG");
    unsetenv("QT_QPA_PLATFORM");
    if (!savedDisplay.empty()) setenv("DISPLAY", savedDisplay.c_str(), 1);
    return run;
}

} // namespace

TEST(SetByLayerDialog, QtIsLoadedOnlyWhenADialogIsShown) {
    // A session that runs SETBYLAYER and asks for its settings where no
    // dialog can be shown maps no Qt library.
    const pavotest::PavoRun plain = runReportingLibraries("LINE\n0,0\n1,1\n\nSETBYLAYER\nS\nALL\n\n\n\n", false);
    EXPECT_EQ(plain.status, 0) << plain.output;
    EXPECT_NE(plain.output.find("\n1 found\n"), std::string::npos) << plain.output;
    EXPECT_NE(plain.output.find("VxLayerCmds.pvx"), std::string::npos); // the report is there
    EXPECT_EQ(plain.output.find("libQt5"), std::string::npos);
    EXPECT_EQ(plain.output.find("libpavoui"), std::string::npos);

    // The first dialog loads them.
    const pavotest::PavoRun dialog = runReportingLibraries("SETBYLAYER\nS\n@cancel\n^C\n", true);
    EXPECT_EQ(dialog.status, 0) << dialog.output;
    EXPECT_NE(dialog.output.find("libpavoui.so"), std::string::npos) << dialog.output;
    EXPECT_NE(dialog.output.find("libQt5Widgets.so"), std::string::npos);
}

TEST(SetByLayerDialog, TheCommandLineDocumentsExampleIsWhatPavoPrints) {
    const std::string example =
        pavotest::textBlockStartingWith(pavotest::repositoryFile("docs/command-line.md"), "Command: SETBYLAYER");
    ASSERT_FALSE(example.empty());
    ScriptedSession s({"SETBYLAYER", "S", "@check IDC_SETBYLAYER_COLOR off", "@ok", "^C"}, Drawing::New,
                      dialogOptions());
    ASSERT_EQ(s.run(), 0);
    EXPECT_NE(s.transcript().find(example.substr(0, example.size() - 1)), std::string::npos)
        << s.transcript() << "\n---\n" << example;
}
