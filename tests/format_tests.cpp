// printf-style formatting of the host (OxFormat.h).
#include <gtest/gtest.h>

#include "OxFormat.h"
#include "OxString.h"

namespace {

TEST(Format, StringsWideAndNarrowWithWidthAndPrecision) {
    EXPECT_EQ(oxFormat(L"[%s|%ls|%S]", L"wide", std::string("narrow"), L"S"), L"[wide|narrow|S]");
    EXPECT_EQ(oxFormat(L"[%-12.12ls]", L"Walls"), L"[Walls       ]");
    EXPECT_EQ(oxFormat(L"[%-12.12ls]", L"A-very-long-layer-name"), L"[A-very-long-]");
    EXPECT_EQ(oxFormat(L"[%8s]", L"ab"), L"[      ab]");
    // Width and precision count characters, not UTF-8 bytes.
    EXPECT_EQ(oxFormat(L"[%-5ls]", "Stra\xC3\x9F"
                                   "e"),
              L"[Straße]");
    EXPECT_EQ(oxFormat(L"[%6.3s]", L"Ωμέγα"), L"[   Ωμέ]");
}

TEST(Format, StarWidthAndPrecisionTakeIntArguments) {
    const std::wstring name = L"Electrical-Lighting-Fixtures-Ceiling-Level-02";
    const std::wstring cell = oxFormat(L"%-*.*ls|", 31, 31, name.c_str());
    EXPECT_EQ(cell, name.substr(0, 31) + L"|");
    EXPECT_EQ(oxFormat(L"%-*.*ls|", 31, 31, L"0"), L"0" + std::wstring(30, L' ') + L"|");
    // A negative '*' width means left alignment; a negative precision none.
    EXPECT_EQ(oxFormat(L"[%*d]", -4, 7), L"[7   ]");
    EXPECT_EQ(oxFormat(L"[%.*s]", -1, L"all"), L"[all]");
}

TEST(Format, Integers) {
    EXPECT_EQ(oxFormat(L"%d%%", 50), L"50%");
    EXPECT_EQ(oxFormat(L"%i|%u|%x|%X|%o", -12, 12u, 255, 255, 8), L"-12|12|ff|FF|10");
    EXPECT_EQ(oxFormat(L"[%05d|%-5d|%+d|% d]", -42, 42, 42, 42), L"[-0042|42   |+42| 42]");
    EXPECT_EQ(oxFormat(L"[%#x|%#o|%#x]", 255, 8, 0), L"[0xff|010|0]");
    EXPECT_EQ(oxFormat(L"[%.3d|%6.3d|%.0d]", 7, -7, 0), L"[007|  -007|]");
    EXPECT_EQ(oxFormat(L"%lld %ld %hd %zu", 1LL << 40, 5L, short(-3), std::size_t(9)), L"1099511627776 5 -3 9");
    EXPECT_EQ(oxFormat(L"%d", std::numeric_limits<std::int64_t>::min()), L"-9223372036854775808");
}

TEST(Format, Reals) {
    EXPECT_EQ(oxFormat(L"%.2f", 0.25), L"0.25");
    EXPECT_EQ(oxFormat(L"%.3f", 2.0 / 3.0), L"0.667");
    EXPECT_EQ(oxFormat(L"[%5.1f]", 3.14159), L"[  3.1]");
    EXPECT_EQ(oxFormat(L"%f", 1.5), L"1.500000");
    EXPECT_EQ(oxFormat(L"[%08.2f|%-8.1f|%+.1f]", -1.5, 2.0, 2.0), L"[-0001.50|2.0     |+2.0]");
    EXPECT_EQ(oxFormat(L"%e|%.2E", 12345.678, 0.5), L"1.234568e+04|5.00E-01");
    EXPECT_EQ(oxFormat(L"%g|%g|%G", 0.0001, 100000.0, 1e-10), L"0.0001|100000|1E-10");
    EXPECT_EQ(oxFormat(L"%a|[%010a]", 1.0, 1.0), L"0x1p+0|[0x00001p+0]");
    EXPECT_EQ(oxFormat(L"%F", 2.5f), L"2.500000");
}

TEST(Format, CharactersAndPointers) {
    EXPECT_EQ(oxFormat(L"[%c%c%3c]", L'A', 'b', L'Ω'), L"[Ab  Ω]");
    EXPECT_EQ(oxFormat(L"%p", nullptr), L"0x0");
    int x = 0;
    EXPECT_TRUE(oxFormat(L"%p", static_cast<const void*>(&x)).starts_with(L"0x"));
}

TEST(Format, DirectivesWithoutArgumentsPrintAsText) {
    EXPECT_EQ(oxFormat(L"%ls"), L"%ls");
    // A layer name typed with directives in it, used as the format.
    EXPECT_EQ(oxFormat(L"Wall%d%s%n"), L"Wall%d%s%n");
    EXPECT_EQ(oxFormat(L"%d and %ls", 5), L"5 and %ls");
    EXPECT_EQ(oxFormat(L"%-*.*ls", 31), L"%-*.*ls");
    EXPECT_EQ(oxFormat(L"100%"), L"100%");
    EXPECT_EQ(oxFormat(L"%5"), L"%5");
    EXPECT_EQ(oxFormat(L"%k|%n", 1), L"%k|%n");
    EXPECT_EQ(oxFormat(L"%%|%%%"), L"%|%%");
    EXPECT_EQ(oxFormatV(L"%s %d", nullptr, 2), L"%s %d");
}

TEST(Format, MismatchedArgumentsAreConverted) {
    EXPECT_EQ(oxFormat(L"%s|%ls|%s", 42, 2.5, -7LL), L"42|2.5|-7");
    EXPECT_EQ(oxFormat(L"[%5d]", L"text"), L"[ text]");
    EXPECT_EQ(oxFormat(L"%d|%x", 2.5, 3.0), L"2.5|3");
    EXPECT_EQ(oxFormat(L"%.1f|%f", 3, L"n/a"), L"3.0|n/a");
    EXPECT_EQ(oxFormat(L"%c", L"word"), L"word");
    EXPECT_EQ(oxFormat(L"[%c]", -5), L"[]");
    const wchar_t* none = nullptr;
    EXPECT_EQ(oxFormat(L"[%ls]", none), L"[]");
}

TEST(Format, ArgumentAccessorsConvert) {
    EXPECT_EQ(OxFormatArg(L"12abc").asSigned(), 12);
    EXPECT_EQ(OxFormatArg("x").asSigned(), 0);
    EXPECT_DOUBLE_EQ(OxFormatArg(L"2.5").asReal(), 2.5);
    EXPECT_EQ(OxFormatArg(-3.9).asSigned(), -3);
    EXPECT_EQ(OxFormatArg(1e300).asSigned(), std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(OxFormatArg(7u).asWide(), L"7");
}

TEST(Format, OxStringFormatUsesTheSameRules) {
    OxString s;
    s.format(L"%ls: %d%%", OxString(L"Done"), 100);
    EXPECT_EQ(s, L"Done: 100%");
    s.format(L"%ls");
    EXPECT_EQ(s, L"%ls");
}

} // namespace
