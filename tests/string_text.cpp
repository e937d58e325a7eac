// Case folding, UTF-8 and OxString.
#include <gtest/gtest.h>

#include "OxString.h"
#include "base/CaseFold.h"
#include "base/Utf8.h"

namespace {

TEST(CaseFold, AgreesAcrossScripts) {
    EXPECT_TRUE(pavo::equalNoCase(L"ΣΟΦΙΑ", L"σοφια"));
    EXPECT_TRUE(pavo::equalNoCase(L"ΟΔΟΣ", L"οδος")); // final sigma
    EXPECT_TRUE(pavo::equalNoCase(L"Стены", L"СТЕНЫ"));
    EXPECT_TRUE(pavo::equalNoCase(L"ÉCOLE", L"école"));
    EXPECT_FALSE(pavo::equalNoCase(L"Wall", L"Walls"));
    EXPECT_EQ(pavo::hashNoCase(L"ΟΔΟΣ"), pavo::hashNoCase(L"οδος"));
    EXPECT_EQ(pavo::foldCase(L'\U0001D400'), L'\U0001D400'); // beyond the BMP, left alone
    EXPECT_LT(pavo::compareNoCase(L"apple", L"BANANA"), 0);
    EXPECT_GT(pavo::compareNoCase(L"b", L"A"), 0);
    EXPECT_LT(pavo::compareNoCase(L"ab", L"ABC"), 0);
}

TEST(Utf8, RoundTripAndMalformedInput) {
    const std::wstring text = L"Стены ΣΟΦΙΑ 😀 a";
    EXPECT_EQ(pavo::fromUtf8(pavo::toUtf8(text)), text);
    EXPECT_EQ(pavo::fromUtf8("a\xFF"
                             "b"),
              L"a\uFFFDb");
    EXPECT_EQ(pavo::fromUtf8("\xE2\x82"), L"\uFFFD");                          // cut short
    EXPECT_EQ(pavo::fromUtf8("\xC0\xAF"), L"\uFFFD");                          // overlong
    EXPECT_EQ(pavo::toUtf8(std::wstring(1, wchar_t(0xD800))), "\xEF\xBF\xBD"); // a lone surrogate
}

TEST(OxStringTest, SearchAndSlices) {
    OxString s(L"Layer|Walls");
    EXPECT_EQ(s.find(L'|'), 5);
    EXPECT_EQ(s.find(L"Wall"), 6);
    EXPECT_EQ(s.find(L'x'), -1);
    EXPECT_EQ(s.find(L'L', 99), -1);
    EXPECT_EQ(s.findOneOf(L"|a"), 1);
    EXPECT_EQ(s.findRev(L'a'), 7);
    EXPECT_EQ(s.mid(6), L"Walls");
    EXPECT_EQ(s.mid(6, 2), L"Wa");
    EXPECT_EQ(s.mid(50), L"");
    EXPECT_EQ(s.left(5), L"Layer");
    EXPECT_EQ(s.left(-1), L"");
    EXPECT_EQ(s.right(5), L"Walls");
    EXPECT_EQ(s.right(99), s);
}

TEST(OxStringTest, TrimAndCase) {
    OxString s(L" \t name  ");
    EXPECT_EQ(s.trim(), L"name");
    OxString t(L"--x--");
    EXPECT_EQ(t.trimLeft(L'-'), L"x--");
    EXPECT_EQ(t.trimRight(L"-"), L"x");
    OxString greek(L"σοφία");
    EXPECT_EQ(greek.makeUpper(), L"ΣΟΦΊΑ");
    EXPECT_EQ(greek.makeLower(), L"σοφία");
    EXPECT_EQ(OxString(L"ΣΟΦΙΑ").compareNoCase(L"σοφια"), 0);
    EXPECT_NE(OxString(L"a").compare(L"A"), 0);
    EXPECT_EQ(OxString::fromUtf8("Стены").utf8(), "Стены");
}

} // namespace
