// LAYMCUR and LAYER through the real host and module.
#include <gtest/gtest.h>

#include <filesystem>
#include <unistd.h>

#include "layer_TestSupport.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace layertest;

namespace {

// Layers Walls and Doors with a line each, at (10,10) and (20,20).
void addWallsAndDoors(ScriptedSession& s) {
    addLayer(s.database(), L"Walls");
    addLayer(s.database(), L"Doors", [](OxDbLayerTableRecord& l) { l.setIsLocked(true); });
    addLine(s.database(), L"Walls", 10, 10);
    addLine(s.database(), L"Doors", 20, 20);
}

} // namespace

TEST(Laymcur, PicksAnObjectAndReportsItsLayer) {
    ScriptedSession s({"LAYMCUR", "20.5,20.5"}, Drawing::New);
    addWallsAndDoors(s);
    ASSERT_EQ(s.run(), 0);
    EXPECT_EQ(currentLayer(s.database()), "Doors"); // a locked layer is accepted
    EXPECT_NE(s.transcript().find("Select entity to set the current layer.20.5,20.5\nThe Current layer is Doors: "),
              std::string::npos)
        << s.transcript();
}

TEST(Laymcur, OnePreselectedObjectIsUsedWithoutAPrompt) {
    ScriptedSession s({"10.5,10.5", "LAYMCUR"}, Drawing::New);
    addWallsAndDoors(s);
    ASSERT_EQ(s.run(), 0);
    EXPECT_EQ(currentLayer(s.database()), "Walls");
    EXPECT_EQ(countOf(s.transcript(), "Select entity"), 0) << s.transcript();
    EXPECT_EQ(countOf(s.transcript(), "The Current layer is Walls: "), 1) << s.transcript();
}

TEST(Laymcur, SeveralPreselectedObjectsAreDroppedAndThePromptAppears) {
    ScriptedSession s({"10.5,10.5", "20.5,20.5", "30.5,30.5", "LAYMCUR", "^C"}, Drawing::New);
    addWallsAndDoors(s);
    addLine(s.database(), L"Walls", 30, 30);
    ASSERT_EQ(s.run(), 0);
    EXPECT_EQ(currentLayer(s.database()), "0");
    EXPECT_EQ(countOf(s.transcript(), "Select entity to set the current layer."), 1) << s.transcript();
    EXPECT_EQ(countOf(s.transcript(), "The Current layer is"), 0) << s.transcript();
}

TEST(Laymcur, PreselectionIsIgnoredWithoutPickfirst) {
    ScriptedSession s({"PICKFIRST", "0", "10.5,10.5", "LAYMCUR", "20.5,20.5"}, Drawing::New);
    addWallsAndDoors(s);
    ASSERT_EQ(s.run(), 0);
    EXPECT_EQ(currentLayer(s.database()), "Doors");
}

TEST(LayerCommand, ScriptRunsTheOptionLoopAndInitdiaTheSilentDialogPath) {
    ScriptedSession s({"LAYER", "New", "Fresh", "", "INITDIA", "LAYER", "-LAYER", ""}, Drawing::New);
    ASSERT_EQ(s.run(), 0);
    EXPECT_TRUE(hasLayer(s.database(), L"Fresh"));
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Command: LAYER\nCurrent layer: 0\nEnter an option"), std::string::npos) << t;
    // After INITDIA the layer manager is asked for; with dialogs turned off
    // it says so, and nothing else happens.
    EXPECT_NE(t.find("Command: LAYER\nDialogs are turned off (--no-dialogs). The dialog was not shown.\nCommand: -LAYER"),
              std::string::npos)
        << t;
}

TEST(LayerCommand, WithoutTheLayerManagerModuleTheDialogPathEndsSilently) {
    // A module folder holding the command module alone.
    const auto folder = std::filesystem::temp_directory_path() / ("pavo-no-manager-" + std::to_string(getpid()));
    std::filesystem::create_directories(folder);
    std::filesystem::create_symlink(std::filesystem::path(PAVO_TEST_MODULE_DIR) / "VxLayerCmds.pvx",
                                    folder / "VxLayerCmds.pvx");
    pavo::app::SessionOptions options = pavotest::testSessionOptions();
    options.modulePath = {folder};
    options.noDialogs = false;
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    ScriptedSession s({"INITDIA", "LAYER", "-LAYER", ""}, Drawing::New, options);
    ASSERT_EQ(s.run(), 0);
    EXPECT_NE(s.transcript().find("Command: LAYER\nCommand: -LAYER"), std::string::npos) << s.transcript();
    std::filesystem::remove_all(folder);
}
