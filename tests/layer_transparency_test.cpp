// "-LAYER" TRansparency through the real host and module: the percentage
// becomes a truncated alpha; values outside 0..90 are asked again.
#include <gtest/gtest.h>

#include "layer_TestSupport.h"

using pavotest::countOf;
using pavotest::Drawing;
using pavotest::ScriptedSession;
using namespace layertest;

namespace {

OxCmTransparency transparencyOf(OxDbDatabase* db, const wchar_t* name) {
    return readLayer<OxCmTransparency>(db, name, [](const OxDbLayerTableRecord& l) { return l.transparency(); });
}

} // namespace

TEST(LayerTransparency, PercentagesBecomeTruncatedAlphas) {
    const std::vector<std::pair<std::string, int>> cases = {
        {"0", 255}, {"1", 252}, {"10", 229}, {"50", 127}, {"90", 25}};
    std::vector<std::string> lines = {"-LAYER"};
    for (const auto& [percent, alpha] : cases)
        lines.insert(lines.end(), {"TRansparency", percent, "T" + percent});
    lines.push_back("");
    ScriptedSession s(lines, Drawing::New);
    for (const auto& c : cases)
        addLayer(s.database(), OxString::fromUtf8("T" + c.first).kwszPtr());
    ASSERT_EQ(s.run(), 0) << s.transcript();
    for (const auto& [percent, alpha] : cases) {
        const OxCmTransparency t = transparencyOf(s.database(), OxString::fromUtf8("T" + percent).kwszPtr());
        EXPECT_TRUE(t.isByAlpha()) << percent;
        EXPECT_EQ(t.alpha(), alpha) << percent;
    }
    EXPECT_NE(s.transcript().find("Enter name list of layers(s) for transparency 50% <0>: T50\n"), std::string::npos)
        << s.transcript();
}

TEST(LayerTransparency, OutOfRangeAsksAgainAndEnterEnds) {
    ScriptedSession s({"-LAYER", "TRansparency", "91", "-1", "", ""}, Drawing::New);
    ASSERT_EQ(s.run(), 0) << s.transcript();
    EXPECT_TRUE(transparencyOf(s.database(), L"0").isSolid());
    const std::string t = s.transcript();
    const std::string prompt = "Enter transparency value (0-90): ";
    EXPECT_NE(t.find(prompt + "91\nRequires an integer between 0 and 90. \n" + prompt +
                     "-1\n"
                     "Requires an integer between 0 and 90. \n" +
                     prompt + "\nEnter an option"),
              std::string::npos)
        << t;
    EXPECT_EQ(countOf(t, "for transparency"), 0) << t;
}
