// The layer name rules of PavoLayerHelper, tested directly.
#include <gtest/gtest.h>

#include "layerhelper/LayerNameRules.h"
#include "layerhelper/PavoLayerHelper.h"

namespace {

std::wstring trimmed(const wchar_t* text) {
    OxString name(text);
    const OxString copy = PavoLayerHelper::trimName(name);
    EXPECT_EQ(copy, name) << "the argument holds the same text";
    return copy.str();
}

} // namespace

TEST(LayerNameRules, TrimNameDropsBlanksAndSurroundingQuotes) {
    EXPECT_EQ(trimmed(L"  \t "), L"");
    EXPECT_EQ(trimmed(L"\""), L"");
    EXPECT_EQ(trimmed(L"\"A\"\""), L"A");
    EXPECT_EQ(trimmed(L" \" A B \" "), L"A B");
    EXPECT_EQ(trimmed(L"\"\"Walls\""), L"Walls");
    EXPECT_EQ(trimmed(L"\"Walls"), L"\"Walls"); // a quote at one end only stays
    EXPECT_EQ(trimmed(L"Walls\""), L"Walls\"");
    EXPECT_EQ(trimmed(L"A \"x\" B"), L"A \"x\" B");
}

TEST(LayerNameRules, InvalidCharactersAreExactlyTheThirteen) {
    for (wchar_t ch : std::wstring(L"<,>/?'\"\\|;:=*"))
        EXPECT_TRUE(PavoLayerHelper::haveInvalidCharacters(std::wstring(L"ab") + ch + L"c")) << int(ch);
    for (const wchar_t* name : {L"A B", L"A`B", L"A[1]", L"#@.~-_", L"\u03B1\u03B2", L""})
        EXPECT_FALSE(PavoLayerHelper::haveInvalidCharacters(name)) << OxString(name).utf8();
}

TEST(LayerNameRules, LengthLimitFollowsExtnames) {
    EXPECT_FALSE(vxlayer::exceedsNameLength(OxString(L'x', 31), 0));
    EXPECT_TRUE(vxlayer::exceedsNameLength(OxString(L'x', 32), 0));
    EXPECT_FALSE(vxlayer::exceedsNameLength(OxString(L'x', 255), 1));
    EXPECT_TRUE(vxlayer::exceedsNameLength(OxString(L'x', 256), 1));
    EXPECT_FALSE(vxlayer::exceedsNameLength(OxString(L'x', 1000), 2)); // no limit of the module's own
    // Characters, not bytes: 31 Greek letters fit the short limit.
    EXPECT_FALSE(vxlayer::exceedsNameLength(OxString(L'\u03B1', 31), 0));
}

TEST(LayerNameRules, HostCheckRefusesWhatNamesCannotHold) {
    EXPECT_FALSE(vxlayer::symbolNameRefused(L"A-WALL [1] #2"));
    EXPECT_TRUE(vxlayer::symbolNameRefused(L"A*B"));
    EXPECT_TRUE(vxlayer::symbolNameRefused(L"SITE|EDGE"));
    EXPECT_TRUE(vxlayer::symbolNameRefused(L""));
}
