// Layer name lists: splitting, exact names, the bracket rule, sorting and
// repeats, seen through the "?" listing of the real module.
#include <gtest/gtest.h>

#include "layer_TestSupport.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace layertest;

namespace {

// The names in the first column of the listing's rows, in order.
std::vector<std::string> listedNames(const std::string& transcript) {
    std::vector<std::string> names;
    const std::string rule = "------------------------------- ------------ ------------ ------- ------------\n";
    size_t pos = transcript.find(rule);
    if (pos == std::string::npos) return names;
    pos += rule.size();
    while (pos < transcript.size() && transcript.compare(pos, 14, "Current layer:") != 0) {
        const size_t end = transcript.find('\n', pos);
        std::string row = transcript.substr(pos, end - pos);
        row = row.substr(0, row.find("  ")); // names here hold no double blanks
        names.push_back(row);
        pos = end + 1;
    }
    return names;
}

std::vector<std::string> listFor(const std::string& list, const std::vector<const wchar_t*>& layers) {
    ScriptedSession s({"-LAYER", "?", list, ""}, Drawing::New);
    for (const wchar_t* name : layers)
        addLayer(s.database(), name);
    EXPECT_EQ(s.run(), 0);
    return listedNames(s.transcript());
}

using Names = std::vector<std::string>;

} // namespace

TEST(LayerLists, StarListsEverythingSortedButTheConstraintsLayer) {
    EXPECT_EQ(listFor("*", {L"b2", L"*PAVO_CONSTRAINTS", L"B1", L"a", L"Z"}), (Names{"0", "B1", "Z", "a", "b2"}));
}

TEST(LayerLists, ItemsKeepTheirTypedOrderAndRepeats) {
    EXPECT_EQ(listFor("B*,A*,a1", {L"B2", L"B1", L"A1"}), (Names{"B1", "B2", "A1", "A1"}));
}

TEST(LayerLists, EqualsSignTakesNamesLiterally) {
    // "#" is a digit in a pattern; after "=" it is just a character.
    EXPECT_EQ(listFor("=a#", {L"A#", L"a1"}), (Names{"A#"}));
    EXPECT_EQ(listFor("a#", {L"A#", L"a1"}), (Names{"a1"}));
    EXPECT_EQ(listFor("==ABC,b", {L"abc", L"B", L"bb"}), (Names{"abc", "B"}));
}

TEST(LayerLists, LonelyEqualsSignFindsNothing) {
    ScriptedSession s({"-LAYER", "?", "=", ""}, Drawing::New);
    ASSERT_EQ(s.run(), 0);
    EXPECT_NE(s.transcript().find("list <*>: =\nNo layers found matching pattern =. \nEnter an option"),
              std::string::npos)
        << s.transcript();
}

TEST(LayerLists, BracketsNameALayerLiterallyAsWellAsAPattern) {
    EXPECT_EQ(listFor("A[1]", {L"A[1]", L"A1", L"A2"}), (Names{"A1", "A[1]"}));
    EXPECT_EQ(listFor("A[12]", {L"A[1]", L"A1", L"A2"}), (Names{"A1", "A2"}));
}

TEST(LayerLists, DoubleCommaKeepsTheCommaInTheNextItem) {
    ScriptedSession s({"-LAYER", "?", "A,,B", "?", "A, ,B", ""}, Drawing::New);
    addLayer(s.database(), L"A");
    addLayer(s.database(), L"B");
    ASSERT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    // ",B" goes to the matcher whole, where the comma separates "" and "B".
    EXPECT_EQ(countOf(t, "\nB        "), 2) << t;
    EXPECT_EQ(countOf(t, "No layers found matching pattern . "), 1) << t;
}

TEST(LayerLists, PlainNamesIgnoreCaseAndReportMisses) {
    ScriptedSession s({"-LAYER", "?", "walls, missing ,WALLS", ""}, Drawing::New);
    addLayer(s.database(), L"Walls");
    ASSERT_EQ(s.run(), 0);
    EXPECT_EQ(listedNames(s.transcript()), (Names{"Walls", "Walls"}));
    EXPECT_NE(s.transcript().find("list <*>: walls, missing ,WALLS\nNo layers found matching pattern missing. \n"),
              std::string::npos)
        << s.transcript();
}
