// Every command that changes the drawing, module and host alike, walked on
// the sample drawing: after each, U gives back a drawing that saves byte for
// byte as the one before it, and REDO one that saves as the one after it.
#include <gtest/gtest.h>

#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "DocExamples.h"
#include "SessionHarness.h"
#include "layer_TestSupport.h"
#include "editor/Input.h"
#include "files/DrawingFile.h"

namespace {

using pavotest::testSessionOptions;

// A row: what the walk types for one command (ending at the next
// "Command: " prompt), and a name to report it by.
struct Row {
    const char* name;
    std::vector<std::string> lines;
};

// The walk, in order: each row starts from the drawing the rows before it
// left (redone), so later rows find the layouts, layers and states made by
// earlier ones.
const std::vector<Row> kWalk = {
    // -LAYER: each option, and a loop of several (one step).
    {"-LAYER New", {"-LAYER", "New", "U-ONE", ""}},
    {"-LAYER Make", {"-LAYER", "Make", "U-MADE", ""}},
    {"-LAYER Set", {"-LAYER", "Set", "A-WALL", ""}},
    {"-LAYER Color", {"-LAYER", "Color", "red", "A-DOOR", ""}},
    {"-LAYER Ltype", {"-LAYER", "Ltype", "DASHED", "A-DOOR", ""}},
    {"-LAYER LWeight", {"-LAYER", "LWeight", "0.35", "A-DOOR", ""}},
    {"-LAYER Plot", {"-LAYER", "Plot", "No", "A-DOOR", ""}},
    {"-LAYER PStyle", {"-LAYER", "PStyle", "", "A-DOOR", ""}},
    {"-LAYER OFF", {"-LAYER", "OFF", "A-DOOR", ""}},
    {"-LAYER ON", {"-LAYER", "ON", "A-DOOR", ""}},
    {"-LAYER Freeze *", {"-LAYER", "Freeze", "*", ""}},
    {"-LAYER Thaw *", {"-LAYER", "Thaw", "*", ""}},
    {"-LAYER LOck", {"-LAYER", "LOck", "S-*", ""}},
    {"-LAYER Unlock", {"-LAYER", "Unlock", "S-COLS", ""}},
    {"-LAYER Rename", {"-LAYER", "Rename", "A-SKETCH", "A-SKETCH-OLD", ""}},
    {"-LAYER Description", {"-LAYER", "Description", "Bearing walls", "A-WALL", "Yes", ""}},
    {"-LAYER DELete", {"-LAYER", "DELete", "U-ONE", ""}},
    {"-LAYER TRansparency", {"-LAYER", "TRansparency", "40", "A-DOOR", ""}},
    {"-LAYER stAte Save", {"-LAYER", "stAte", "Save", "WALK", "", "", ""}},
    {"-LAYER loop", {"-LAYER", "Color", "blue", "A-GLAZ", "Freeze", "A-FURN*", "New", "U-LOOP", "Set", "U-LOOP", ""}},
    {"-LAYER cancelled halfway", {"-LAYER", "Color", "green", "A-GLAZ", "OFF", "S-GRID", "^C"}},
    // The module's other commands.
    {"LAYMCUR", {"LAYMCUR", "8000,5000"}},
    {"SETBYLAYER", {"SETBYLAYER", "ALL", "", "Yes", "Yes"}},
    // Host commands in model space.
    {"LINE", {"LINE", "0,0", "100,100", ""}},
    {"CIRCLE", {"CIRCLE", "5,5", "2.5"}},
    {"TEXT", {"TEXT", "1,2", "", "90", "Hello"}},
    {"INSERT", {"INSERT", "DOOR", "100,50", "", ""}},
    {"CHPROP", {"CHPROP", "8000,5000", "", "Color", "red", ""}},
    {"CLAYER", {"CLAYER", "A-GLAZ"}},
    {"SETVAR LTSCALE", {"SETVAR", "LTSCALE", "2"}},
    {"LAYERSTATE Rename", {"LAYERSTATE", "Rename", "WALK", "WALKED", ""}},
    {"LAYERSTATE Restore", {"LAYERSTATE", "Restore", "Structure only", ""}},
    {"LAYERSTATE Delete", {"LAYERSTATE", "Delete", "WALKED", ""}},
    {"LAYERP", {"LAYERP"}},
    // Paper space.
    {"LAYOUT New", {"LAYOUT", "New", "Sheet 3"}},
    {"LAYOUT Rename", {"LAYOUT", "Rename", "Sheet 3", "Sheet 4"}},
    {"LAYOUT Set", {"LAYOUT", "Set", "A1 Plan"}},
    {"PSPACE", {"PSPACE"}},
    {"MSPACE", {"MSPACE"}},
    {"CVPORT", {"CVPORT", "3"}},
    {"MVIEW", {"MVIEW", "10,10", "210,160"}},
    {"VPLAYER Color", {"VPLAYER", "Color", "red", "A-WALL", "All", ""}},
    {"VPLAYER Ltype", {"VPLAYER", "Ltype", "DASHED", "A-WALL", "All", ""}},
    {"VPLAYER LWeight", {"VPLAYER", "LWeight", "0.5", "A-WALL", "All", ""}},
    {"VPLAYER TRansparency", {"VPLAYER", "TRansparency", "30", "A-WALL", "All", ""}},
    {"VPLAYER PStyle", {"VPLAYER", "PStyle", "Thin", "A-WALL", "All", ""}},
    {"VPLAYER ReMoveoverrides", {"VPLAYER", "ReMoveoverrides", "Color", "A-WALL", "All", ""}},
    {"VPLAYER Freeze", {"VPLAYER", "Freeze", "A-DOOR,S-*", "All", ""}},
    {"VPLAYER Thaw", {"VPLAYER", "Thaw", "S-GRID", "All", ""}},
    {"VPLAYER Reset", {"VPLAYER", "Reset", "A-DOOR", "All", ""}},
    {"VPLAYER Newfrz", {"VPLAYER", "Newfrz", "N-NEW", ""}},
    {"VPLAYER Vpvisdflt", {"VPLAYER", "Vpvisdflt", "A-GLAZ", "Frozen", ""}},
    {"VPLAYER loop", {"VPLAYER", "Freeze", "E-*", "All", "Color", "blue", "E-LITE", "Current", ""}},
    {"TILEMODE", {"TILEMODE", "1"}},
    {"CTAB", {"CTAB", "A3 Detail"}},
    {"LAYOUT Delete", {"LAYOUT", "Delete", "A1 Plan"}},
};

// Lines one by one; at each "Command: " prompt, the drawing as it would
// be saved then.
class SnapshotInput final : public pavo::editor::InputSource {
public:
    explicit SnapshotInput(std::vector<std::string> lines) : m_lines(std::move(lines)) {}
    pavo::editor::InputLine read(const std::wstring& prompt, const std::vector<std::wstring>&) override {
        if (session && prompt.ends_with(L"Command: ")) snapshots.push_back(pavo::files::writeDrawing(*session->database()));
        if (m_next >= m_lines.size()) return {pavo::editor::InputLine::End, {}};
        const std::string& line = m_lines[m_next++];
        if (line == "^C") return {pavo::editor::InputLine::Cancel, {}};
        return {pavo::editor::InputLine::Text, line};
    }
    bool isTerminal() const override { return false; }
    bool echoes() const override { return true; }
    std::string name() const override { return "walk"; }

    pavo::app::Session* session = nullptr;
    std::vector<std::string> snapshots;

private:
    std::vector<std::string> m_lines;
    std::size_t m_next = 0;
};

// The first line where two saved drawings differ, to say what U or REDO missed.
std::string firstDifference(const std::string& a, const std::string& b) {
    std::size_t line = 1, start = 0;
    for (std::size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        if (a[i] != b[i]) {
            const auto lineOf = [&](const std::string& s) { return s.substr(start, s.find('\n', start) - start); };
            return "line " + std::to_string(line) + ":\n  " + lineOf(a) + "\n  " + lineOf(b);
        }
        if (a[i] == '\n') {
            ++line;
            start = i + 1;
        }
    }
    return a.size() == b.size() ? "none" : "one drawing is longer";
}

// Runs `script` on the sample drawing: the drawing as it would be saved at
// each "Command: " prompt, and in `transcript` what pavo printed.
std::vector<std::string> snapshotsOf(const std::vector<std::string>& script, std::string& transcript) {
    auto input = std::make_unique<SnapshotInput>(script);
    SnapshotInput* snapshots = input.get();
    std::ostringstream out;
    pavo::app::Session session(testSessionOptions(), std::move(input), out);
    EXPECT_TRUE(session.loadModules() && session.openSample());
    snapshots->session = &session;
    EXPECT_EQ(session.run(), 0) << out.str();
    EXPECT_EQ(out.str().find("Internal error"), std::string::npos) << out.str();
    transcript = out.str();
    return std::move(snapshots->snapshots);
}

TEST(UndoWalk, EveryCommandUndoesToTheDrawingBeforeItAndRedoesToTheOneAfter) {
    std::vector<std::string> script;
    for (const Row& row : kWalk) {
        script.insert(script.end(), row.lines.begin(), row.lines.end());
        script.insert(script.end(), {"U", "REDO"});
    }
    std::string transcript;
    const std::vector<std::string> s = snapshotsOf(script, transcript);
    // Before the walk, then three a row: after the command, after U, after REDO.
    ASSERT_EQ(s.size(), 1 + 3 * kWalk.size()) << transcript;
    for (std::size_t i = 0; i < kWalk.size(); ++i) {
        const std::string& before = s[3 * i];
        const std::string& after = s[3 * i + 1];
        SCOPED_TRACE(kWalk[i].name);
        EXPECT_TRUE(before != after) << "the command changed nothing";
        EXPECT_TRUE(s[3 * i + 2] == before) << "U: " << firstDifference(before, s[3 * i + 2]);
        EXPECT_TRUE(s[3 * i + 3] == after) << "REDO: " << firstDifference(after, s[3 * i + 3]);
    }
    EXPECT_EQ(pavotest::countOf(transcript, "Undone: "), static_cast<int>(kWalk.size())) << transcript;
}

// Several commands that add objects, undone and redone together and in
// part: the model space's list comes back in its order each time.
TEST(UndoWalk, CommandsAddingObjectsGoBackAndForthTogether) {
    std::string transcript;
    const std::vector<std::string> s =
        snapshotsOf({"LINE", "0,0", "100,100", "", "CIRCLE", "5,5", "2.5", "TEXT", "1,2", "", "0", "Hi", "UNDO", "3",
                     "REDO", "REDO", "REDO", "UNDO", "2", "INSERT", "DOOR", "100,50", "", "", "U"},
                    transcript);
    // Before, after LINE, CIRCLE, TEXT, UNDO 3, REDO x3, UNDO 2, INSERT, U.
    ASSERT_EQ(s.size(), 11u) << transcript;
    EXPECT_TRUE(s[4] == s[0]) << "UNDO 3: " << firstDifference(s[0], s[4]);
    for (std::size_t i = 1; i <= 3; ++i)
        EXPECT_TRUE(s[4 + i] == s[i]) << "REDO " << i << ": " << firstDifference(s[i], s[4 + i]);
    EXPECT_TRUE(s[8] == s[1]) << "UNDO 2: " << firstDifference(s[1], s[8]);
    EXPECT_TRUE(s[10] == s[8]) << "U of INSERT: " << firstDifference(s[8], s[10]);
}

// The README's undo session (docs/examples/undo.scr) run as written: the
// transcript the README shows, and the drawing it describes at the end.
TEST(UndoWalk, TheReadmeSessionPrintsWhatItShows) {
    const std::string shown = pavotest::textBlockStartingWith(pavotest::repositoryFile("README.md"), "Command: -LAYER");
    ASSERT_FALSE(shown.empty());
    pavotest::ScriptedSession s(pavotest::scriptLines(pavotest::repositoryFile("docs/examples/undo.scr")));
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_EQ(s.transcript(), shown + "Command: \n");
    OxDbDatabase* db = s.database();
    for (const wchar_t* layer : {L"A-WALL", L"A-FURN", L"S-GRID"})
        EXPECT_FALSE(layertest::isFrozen(db, layer)) << "LAYERP thawed them";
    EXPECT_EQ(layertest::currentLayer(db), "A-WALL") << "redone";
}

} // namespace
