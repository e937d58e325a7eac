// The host's own commands, in a scripted session.
#include <gtest/gtest.h>

#include "OxDbDatabase.h"
#include "RunPavo.h"
#include "SessionHarness.h"

using pavotest::ScriptedSession;
using pavotest::TempFolder;

TEST(HostCommands, QuitAsksOnlyWhenThereAreChanges) {
    ScriptedSession unchanged({"QUIT", "HELP"});
    EXPECT_EQ(unchanged.run(), 0);
    EXPECT_TRUE(unchanged.session().quitRequested());
    EXPECT_EQ(unchanged.transcript().find("Save the changes"), std::string::npos);

    ScriptedSession changed({"PSTYLEMODE", "1", "QUIT", "", "QUIT", "No"});
    EXPECT_EQ(changed.run(), 0);
    EXPECT_EQ(pavotest::countOf(changed.transcript(), "Save the changes to the drawing? [Yes/No/Cancel] <Cancel>: "),
              2);
    EXPECT_TRUE(changed.session().quitRequested());
}

TEST(HostCommands, SaveAsksForANameAndRefusesToReplaceSilently) {
    TempFolder dir;
    dir.write("taken.pvd", "keep me");
    ScriptedSession s({"SAVE", dir.path("taken.pvd"), "", "SAVEAS", dir.path("fresh"), "SAVE"});
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Save drawing as: "), std::string::npos) << t;
    EXPECT_NE(t.find("already exists. Replace it? [Yes/No] <No>: "), std::string::npos) << t;
    EXPECT_EQ(dir.read("taken.pvd"), "keep me");
    EXPECT_FALSE(dir.read("fresh.pvd").empty());
    EXPECT_EQ(pavotest::countOf(t, "Saved "), 2) << t;
    EXPECT_FALSE(s.database()->isModified());
}

TEST(HostCommands, OpenKeepsTheDrawingWhenTheFileIsBad) {
    TempFolder dir;
    dir.write("bad.pvd", "{\"format\": \"pavo-drawing\"");
    ScriptedSession s({"OPEN", dir.path("bad.pvd")});
    OxDbDatabase* before = s.database();
    EXPECT_EQ(s.run(), 0);
    EXPECT_EQ(s.database(), before);
    EXPECT_NE(s.transcript().find("Cannot open drawing: "), std::string::npos) << s.transcript();
}

TEST(HostCommands, VariablesAtTheCommandPrompt) {
    ScriptedSession s({"EXPERT", "9", "2", "setvar", "expert", "", "SETVAR", "NOSUCH"});
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Enter new value for EXPERT <0>: 9\n"), std::string::npos) << t;
    EXPECT_NE(t.find("Enter new value for EXPERT <0>: 2"), std::string::npos) << t;
    EXPECT_NE(t.find("Enter new value for EXPERT <2>: "), std::string::npos) << t;
    EXPECT_NE(t.find("Unknown variable name \"NOSUCH\"."), std::string::npos) << t;
}
