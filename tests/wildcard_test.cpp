// The wildcard matcher of the host (oxutWcMatchEx).
#include <gtest/gtest.h>

#include <chrono>
#include <fnmatch.h>
#include <random>
#include <string>

#include "oxut.h"

namespace {

bool wc(const wchar_t* name, const wchar_t* pattern, bool ignoreCase = true) {
    return oxutWcMatchEx(name, pattern, ignoreCase);
}

} // namespace

TEST(Wildcard, CharacterKinds) {
    EXPECT_TRUE(wc(L"A-12", L"@.##"));
    EXPECT_FALSE(wc(L"A-1B", L"@.##"));
    EXPECT_FALSE(wc(L"AB12", L"@.##")) << "'.' is not a letter";
    EXPECT_TRUE(wc(L"é", L"@")) << "accented Latin is a letter";
    EXPECT_TRUE(wc(L"Ж", L"@"));
    EXPECT_TRUE(wc(L"λ", L"@"));
    EXPECT_FALSE(wc(L"λ", L"."));
    EXPECT_TRUE(wc(L" ", L"."));
    EXPECT_FALSE(wc(L"٣", L"#")) << "'#' is an ASCII digit";
    EXPECT_TRUE(wc(L"x", L"?"));
    EXPECT_FALSE(wc(L"", L"?"));
    EXPECT_FALSE(wc(L"xy", L"?"));
}

TEST(Wildcard, StarsAndEmptyNames) {
    EXPECT_TRUE(wc(L"", L"*"));
    EXPECT_TRUE(wc(L"", L""));
    EXPECT_FALSE(wc(L"A", L""));
    EXPECT_TRUE(wc(L"WALL", L"W*L"));
    EXPECT_TRUE(wc(L"WL", L"W*L"));
    EXPECT_FALSE(wc(L"WALLS", L"W*L"));
    EXPECT_TRUE(wc(L"A-WALL-NEW", L"*-*-*"));
    EXPECT_FALSE(wc(L"A-WALL", L"*-*-*"));
    EXPECT_FALSE(wc(nullptr, L"*"));
    EXPECT_FALSE(wc(L"A", nullptr));
}

TEST(Wildcard, NegationAndAlternatives) {
    EXPECT_FALSE(wc(L"A-WALL", L"~A-*"));
    EXPECT_TRUE(wc(L"E-POWER", L"~A-*"));
    EXPECT_TRUE(wc(L"DOOR", L"WALL,DOOR"));
    EXPECT_FALSE(wc(L"WINDOW", L"WALL,DOOR"));
    EXPECT_TRUE(wc(L"", L"WALL,")) << "an empty alternative matches the empty name";
    EXPECT_FALSE(wc(L"X", L"WALL,"));
    EXPECT_TRUE(wc(L"x", L"~")) << "'~' alone: anything but the empty name";
    EXPECT_FALSE(wc(L"", L"~"));
}

TEST(Wildcard, ClassesAndRanges) {
    EXPECT_TRUE(wc(L"B1", L"[a-c]#"));
    EXPECT_FALSE(wc(L"D1", L"[a-c]#"));
    EXPECT_FALSE(wc(L"B1", L"[a-c]#", false)) << "case-sensitive ranges";
    EXPECT_TRUE(wc(L"D1", L"[~a-c]#"));
    EXPECT_FALSE(wc(L"b1", L"[~a-c]#"));
    EXPECT_TRUE(wc(L"]", L"[]x]")) << "']' first in a class is a member";
    EXPECT_TRUE(wc(L"-", L"[a-]"));
    EXPECT_TRUE(wc(L",", L"[,]")) << "a comma inside a class does not split";
    EXPECT_TRUE(wc(L"[X", L"[X")) << "an unclosed '[' is literal";
    EXPECT_TRUE(wc(L"б", L"[а-я]"));
    EXPECT_TRUE(wc(L"Б", L"[а-я]")) << "Cyrillic ranges compare folded characters";
}

TEST(Wildcard, BackQuoteEscapes) {
    EXPECT_TRUE(wc(L"A*B", L"A`*B"));
    EXPECT_FALSE(wc(L"AXB", L"A`*B"));
    EXPECT_TRUE(wc(L"A,B", L"A`,B"));
    EXPECT_TRUE(wc(L"#", L"`#"));
    EXPECT_FALSE(wc(L"1", L"`#"));
    EXPECT_TRUE(wc(L"~X", L"`~X"));
    EXPECT_TRUE(wc(L"[1]", L"`[1]"));
    EXPECT_TRUE(wc(L"a`", L"a`")) << "a back-quote at the end is itself";
}

TEST(Wildcard, CaseIgnoredInEveryScript) {
    EXPECT_TRUE(wc(L"СТЕНЫ-1", L"стены*"));
    EXPECT_FALSE(wc(L"СТЕНЫ-1", L"стены*", false));
    EXPECT_TRUE(wc(L"σοφια", L"ΣΟΦ?Α"));
    EXPECT_TRUE(wc(L"ΛΟΓΟΣ", L"λογος")) << "final sigma folds like sigma";
    EXPECT_TRUE(wc(L"ÉCOLE", L"éc*"));
}

TEST(Wildcard, PathologicalPatternsStayFast) {
    const std::wstring name(20000, L'a');
    const auto start = std::chrono::steady_clock::now();
    EXPECT_FALSE(wc(name.c_str(), L"*a*a*a*a*a*a*a*a*a*a*b"));
    EXPECT_TRUE(wc(name.c_str(), L"*a*a*a*a*a*a*a*a*a*a"));
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

// A pattern of many unclosed '[' (each a literal) used to be parsed in time
// growing with the square of its length: 16,000 of them took half a minute.
TEST(Wildcard, LongPatternsOfUnclosedBracketsAreLiterals) {
    const std::wstring brackets(50000, L'[');
    EXPECT_TRUE(wc(brackets.c_str(), brackets.c_str()));
    EXPECT_FALSE(wc(L"0", brackets.c_str()));
    const std::wstring escaped = brackets + L"`]";
    EXPECT_TRUE(wc((brackets + L"]").c_str(), escaped.c_str()));
    EXPECT_FALSE(wc(L"[", (L"[~" + brackets).c_str()));
    // What an earlier '[' found unclosed is unclosed for a later one too;
    // a class that does close is still a class.
    EXPECT_TRUE(wc(L"[]a[b]", L"[`]a[b`]"));
    EXPECT_TRUE(wc(L"b", L"[a`][b]"));
    EXPECT_TRUE(wc(L"[", L"[a`][b]"));
    EXPECT_TRUE(wc(L"[b", L"[[a]b"));
    EXPECT_FALSE(wc(L"[ab", L"[[a]b"));
    EXPECT_TRUE(wc(L"[[[]b", L"[[[`]b"));
    EXPECT_FALSE(wc(L"[b", L"[[[`]b"));
}

// Against the C library on the syntax the two share.
TEST(Wildcard, AgreesWithFnmatchOnSharedSyntax) {
    std::mt19937 rng(20240611);
    const std::string nameChars = "abcABC019xZ-_ ";
    auto pick = [&](const std::string& from) { return from[rng() % from.size()]; };
    auto randomPattern = [&] {
        std::string p;
        const int n = 1 + static_cast<int>(rng() % 6);
        for (int i = 0; i < n; ++i) {
            switch (rng() % 6) {
            case 0:
                p += '*';
                break;
            case 1:
                p += '?';
                break;
            case 2: {
                const std::string ranges[] = {"a-c", "A-C", "0-5", "x", "bZ", "1a-b"};
                p += "[" + ranges[rng() % 6] + "]";
                break;
            }
            default:
                p += pick("abcABC019xZ");
                break;
            }
        }
        return p;
    };
    int matches = 0;
    for (int round = 0; round < 5000; ++round) {
        const std::string pattern = randomPattern();
        std::string name;
        const int length = static_cast<int>(rng() % 7);
        for (int i = 0; i < length; ++i)
            name += pick(nameChars);
        const std::wstring wname(name.begin(), name.end()), wpattern(pattern.begin(), pattern.end());
        for (const bool ignoreCase : {true, false}) {
            const bool expected = fnmatch(pattern.c_str(), name.c_str(), ignoreCase ? FNM_CASEFOLD : 0) == 0;
            ASSERT_EQ(oxutWcMatchEx(wname.c_str(), wpattern.c_str(), ignoreCase), expected)
                << "name \"" << name << "\" pattern \"" << pattern << "\" ignoreCase " << ignoreCase;
            matches += expected;
        }
    }
    EXPECT_GT(matches, 500) << "the generator must produce matching pairs too";
}
