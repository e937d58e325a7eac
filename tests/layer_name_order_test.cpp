// Wildcard options give layers in the order of their names, the order the
// layer table keeps: it must follow every change of names (new layers,
// renames, undo) without sorting again for walks in between.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "layer_TestSupport.h"

using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace layertest;

namespace {

// The names of each "-LAYER ?" listing of the transcript, in their order.
std::vector<std::vector<std::string>> listings(const std::string& transcript) {
    std::vector<std::vector<std::string>> out;
    std::istringstream lines(transcript);
    std::string line;
    bool inListing = false;
    while (std::getline(lines, line)) {
        if (line.rfind("-------", 0) == 0) {
            inListing = true;
            out.emplace_back();
        } else if (inListing && line.rfind("Current layer:", 0) == 0) {
            inListing = false;
        } else if (inListing) {
            out.back().push_back(line.substr(0, line.find(' ')));
        }
    }
    return out;
}

using Names = std::vector<std::string>;

} // namespace

TEST(LayerNameOrder, ListingsFollowNewNamesRenamesAndUndo) {
    const std::vector<std::string> list{"-LAYER", "?", "*", ""};
    std::vector<std::string> script = list;
    for (const auto& step : std::vector<std::vector<std::string>>{
             {"-LAYER", "Rename", "Z-9", "A-0", ""}, list, {"U"}, list, {"-LAYER", "New", "b-0", ""}, list})
        script.insert(script.end(), step.begin(), step.end());
    ScriptedSession s(script, Drawing::New);
    // Made in an order that is not the order of their names.
    for (const wchar_t* name : {L"m-3", L"B-1", L"a-2", L"Z-9"})
        addLayer(s.database(), name);
    ASSERT_EQ(s.run(), 0);
    const auto found = listings(s.transcript());
    ASSERT_EQ(found.size(), 4u) << s.transcript();
    // Letter case counts: capitals come first.
    EXPECT_EQ(found[0], (Names{"0", "B-1", "Z-9", "a-2", "m-3"}));
    EXPECT_EQ(found[1], (Names{"0", "A-0", "B-1", "a-2", "m-3"}));
    EXPECT_EQ(found[2], found[0]);
    EXPECT_EQ(found[3], (Names{"0", "B-1", "Z-9", "a-2", "b-0", "m-3"}));
}

TEST(LayerNameOrder, EachItemOfAListGivesItsOwnLayersInNameOrder) {
    ScriptedSession s({"-LAYER", "Freeze", "w*,A*", "", "-LAYER", "?", "w*,A*", ""}, Drawing::New);
    for (const wchar_t* name : {L"wall-2", L"A-9", L"wall-1", L"A-1"})
        addLayer(s.database(), name);
    ASSERT_EQ(s.run(), 0);
    const auto found = listings(s.transcript());
    ASSERT_EQ(found.size(), 1u) << s.transcript();
    EXPECT_EQ(found[0], (Names{"wall-1", "wall-2", "A-1", "A-9"}));
    EXPECT_TRUE(isFrozen(s.database(), L"wall-2"));
    EXPECT_TRUE(isFrozen(s.database(), L"A-1"));
}
