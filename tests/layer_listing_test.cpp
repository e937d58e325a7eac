// The "-LAYER ?" listing: row layout, long names and state texts.
#include <gtest/gtest.h>

#include "layer_TestSupport.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace layertest;

namespace {

std::string padded(const std::string& text, size_t width) { return text + std::string(width - text.size(), ' '); }

std::string row(const std::string& name, const std::string& state) {
    return "\n" + padded(name, 31) + " " + padded(state, 12) + " " + padded("Continuous", 12) + " Default " +
           padded("white", 12);
}

} // namespace

TEST(LayerListing, RowsShowEveryStateAndSplitLongNames) {
    const std::string name30(30, 'a'), name31(31, 'b'), name40 = std::string(31, 'c') + "123456789";
    ScriptedSession s({"-LAYER", "?", "", ""}, Drawing::New);
    OxDbDatabase* db = s.database();
    addLayer(db, OxString::fromUtf8(name30));
    addLayer(db, OxString::fromUtf8(name31));
    addLayer(db, OxString::fromUtf8(name40));
    addLayer(db, L"Frozen", [](OxDbLayerTableRecord& l) {
        l.setIsFrozen(true);
        l.setIsOff(true);
        l.setIsLocked(true);
    });
    addLayer(db, L"Off", [](OxDbLayerTableRecord& l) {
        l.setIsOff(true);
        l.setIsLocked(true);
        l.setIsPlottable(false);
    });
    addLayer(db, L"Quiet", [](OxDbLayerTableRecord& l) { l.setIsPlottable(false); });
    ASSERT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("list <*>: \n  Layer name                       State       Linetype    Lineweight   Color\n"
                     "------------------------------- ------------ ------------ ------- ------------" +
                     row("0", "On -P") + row("Frozen", "Freeze -L -P") + row("Off", "Off -L") + row("Quiet", "On") +
                     row(name30, "On -P") + "\n" + padded(name31, 31) + std::string(47, ' ') + row("", "On -P") + "\n" +
                     std::string(31, 'c') + std::string(47, ' ') + row("", "On -P") +
                     "\nCurrent layer: 0\nEnter an option"),
              std::string::npos)
        << t;
}

TEST(LayerListing, NoMatchPrintsOnlyTheMessage) {
    ScriptedSession s({"-LAYER", "?", "Z*", ""}, Drawing::New);
    ASSERT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("list <*>: Z*\nNo layers found matching pattern Z*. \nEnter an option"), std::string::npos) << t;
    EXPECT_EQ(countOf(t, "Layer name"), 0);
    EXPECT_EQ(countOf(t, "Current layer:"), 1); // the command's own first line only
}
