// Settings kept for the user between sessions (SETBYLAYERMODE).
#include <gtest/gtest.h>

#include <cstdlib>

#include "RunPavo.h"
#include "SessionHarness.h"
#include "base/Utf8.h"
#include "editor/SystemVariables.h"
#include "editor/UserSettings.h"

using pavotest::Drawing;
using pavotest::ScriptedSession;
using pavotest::TempFolder;

namespace {

pavo::app::SessionOptions optionsWithSettings(const std::string& file) {
    pavo::app::SessionOptions options = pavotest::testSessionOptions();
    options.userSettingsFile = file;
    return options;
}

} // namespace

TEST(UserSettings, LinesAreReadAndTheUnreadableOnesReported) {
    const pavo::editor::UserSettingsText text = pavo::editor::parseUserSettings(
        "# comment\r\n  SETBYLAYERMODE = 33 \r\n\nno equals sign\n=5\nOTHER=x=y");
    ASSERT_EQ(text.settings.size(), 2u);
    EXPECT_EQ(text.settings[0].name, L"SETBYLAYERMODE");
    EXPECT_EQ(text.settings[0].value, L"33");
    EXPECT_EQ(text.settings[0].line, 2);
    EXPECT_EQ(text.settings[1].value, L"x=y");
    ASSERT_EQ(text.problems.size(), 2u);
    EXPECT_EQ(text.problems[0], L"line 4: expected NAME=value");
    EXPECT_EQ(text.problems[1], L"line 5: expected NAME=value");
}

TEST(UserSettings, TheConfigurationFolderComesFromXdgConfigHome) {
    const char* config = std::getenv("XDG_CONFIG_HOME");
    ASSERT_TRUE(config); // set for every test
    EXPECT_EQ(pavo::editor::defaultUserSettingsFile(), std::filesystem::path(config) / "pavo" / "settings");
}

TEST(UserSettings, SetbylayermodeIsKeptForTheNextSession) {
    TempFolder folder;
    const std::string file = folder.path("pavo/settings");
    {
        ScriptedSession first({"SETBYLAYERMODE", "33"}, Drawing::New, optionsWithSettings(file));
        ASSERT_EQ(first.run(), 0);
    }
    EXPECT_NE(folder.read("pavo/settings").find("SETBYLAYERMODE=33\n"), std::string::npos);
    ScriptedSession second({"SETBYLAYER", "^C"}, Drawing::New, optionsWithSettings(file));
    ASSERT_EQ(second.run(), 0);
    EXPECT_EQ(second.session().variables().valueText(L"SETBYLAYERMODE"), L"33");
    EXPECT_NE(second.transcript().find("Current active settings: Color\n"), std::string::npos) << second.transcript();
}

TEST(UserSettings, ABadFileIsReportedAndTheDefaultsStay) {
    TempFolder folder;
    std::filesystem::create_directories(folder.path("pavo"));
    folder.write("pavo/settings", "SETBYLAYERMODE=999\nPICKBOX=5\n\xff\xfe garbage\n");
    ScriptedSession s({}, Drawing::New, optionsWithSettings(folder.path("pavo/settings")));
    ASSERT_EQ(s.run(), 0);
    const std::string out = s.transcript();
    EXPECT_NE(out.find(": line 1: SETBYLAYERMODE: Value must be between 0 and 255.\n"), std::string::npos)
        << out;
    EXPECT_NE(out.find(": line 2: PICKBOX is not a setting kept between sessions\n"), std::string::npos);
    EXPECT_NE(out.find(": line 3: expected NAME=value\n"), std::string::npos);
    EXPECT_EQ(s.session().variables().valueText(L"SETBYLAYERMODE"), L"255");
    EXPECT_EQ(s.session().variables().valueText(L"PICKBOX"), L"3");
}

TEST(UserSettings, AFolderThatCannotBeWrittenKeepsTheValueForTheSession) {
    TempFolder folder;
    folder.write("blocker", "a file where the folder should be");
    ScriptedSession s({"SETBYLAYERMODE", "7"}, Drawing::New, optionsWithSettings(folder.path("blocker/settings")));
    ASSERT_EQ(s.run(), 0);
    EXPECT_EQ(s.session().variables().valueText(L"SETBYLAYERMODE"), L"7");
    EXPECT_NE(s.transcript().find("The setting is kept for this session only: cannot write"), std::string::npos)
        << s.transcript();
}
