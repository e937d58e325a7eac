// Keyword lists and the matching rule of the command line.
#include <gtest/gtest.h>

#include "editor/Keywords.h"

using pavo::editor::KeywordList;
using pavo::editor::keywordMatches;

namespace {

const wchar_t* const kLayerOptions =
    L"? New Make Set Color Ltype LWeight Print PStyle ON OFf Freeze Thaw LOck Unlock Rename Description Delete "
    L"stAte Plot TRansparency _? New Make Set Color Ltype LWeight Print PStyle ON OFf Freeze Thaw LOck Unlock "
    L"Rename Description Delete stAte Plot TRansparency";

// The global keyword an answer selects, or "" when it matches none.
std::wstring answerTo(const KeywordList& list, std::wstring_view answer) {
    const std::optional<size_t> i = list.match(answer);
    return i ? list.globalAt(*i) : L"";
}

TEST(Keywords, LayerOptionAnswers) {
    const KeywordList list(kLayerOptions);
    const std::pair<const wchar_t*, const wchar_t*> cases[] = {
        {L"OF", L"OFf"},
        {L"off", L"OFf"},
        {L"A", L"stAte"},
        {L"state", L"stAte"},
        {L"LW", L"LWeight"},
        {L"lwe", L"LWeight"},
        {L"L", L"Ltype"},
        {L"LO", L"LOck"},
        {L"T", L"Thaw"},
        {L"TR", L"TRansparency"},
        {L"tra", L"TRansparency"},
        {L"D", L"Description"},
        {L"DE", L"Description"},
        {L"DEL", L"Delete"},
        {L"dele", L"Delete"},
        {L"P", L"Print"},
        {L"PS", L"PStyle"},
        {L"pstyle", L"PStyle"},
        {L"pl", L"Plot"},
        {L"_Freeze", L"Freeze"},
        {L"_f", L"Freeze"},
        {L"?", L"?"},
        {L"on", L"ON"},
        {L"U", L"Unlock"},
    };
    for (const auto& [answer, expected] : cases)
        EXPECT_EQ(answerTo(list, answer), expected) << "answer " << answer;
}

TEST(Keywords, AnswersThatMatchNothing) {
    const KeywordList list(kLayerOptions);
    // "O" is short of both ON and OFf; "ST" stops before stAte's capital.
    for (const wchar_t* answer : {L"O", L"ST", L"Deletes", L"Colour", L"", L"_", L"X", L"??", L"Thaw it"}) {
        EXPECT_FALSE(list.match(answer).has_value()) << "answer " << answer;
    }
}

TEST(Keywords, LocalAnswersGiveTheGlobalKeyword) {
    const KeywordList list(L"Ja Nein Alle _Yes No All");
    EXPECT_EQ(list.local().size(), 3u);
    EXPECT_EQ(answerTo(list, L"j"), L"Yes");
    EXPECT_EQ(answerTo(list, L"NEIN"), L"No");
    // "_" answers look at the global half only.
    EXPECT_EQ(answerTo(list, L"_Yes"), L"Yes");
    EXPECT_EQ(answerTo(list, L"_J"), L"");
    EXPECT_EQ(answerTo(list, L"Yes"), L"");
}

TEST(Keywords, YesNoList) {
    const KeywordList list(L"Yes No _Yes No");
    EXPECT_EQ(list.global(), (std::vector<std::wstring>{L"Yes", L"No"}));
    EXPECT_EQ(answerTo(list, L"y"), L"Yes");
    EXPECT_EQ(answerTo(list, L"ye"), L"Yes");
    EXPECT_EQ(answerTo(list, L"N"), L"No");
    EXPECT_EQ(answerTo(list, L"_no"), L"No");
    EXPECT_EQ(answerTo(list, L"yess"), L"");
}

TEST(Keywords, ListParsing) {
    const KeywordList single(L"  Red   Green ");
    EXPECT_EQ(single.local(), single.global());
    EXPECT_EQ(single.local().size(), 2u);
    EXPECT_TRUE(KeywordList(L"").empty());
    const KeywordList loneUnderscore(L"Rot Gruen _ Red Green");
    EXPECT_EQ(loneUnderscore.global(), (std::vector<std::wstring>{L"Red", L"Green"}));
    // A short global half: the local keyword stands in for the missing one.
    const KeywordList shortGlobal(L"Rot Gruen _Red");
    EXPECT_EQ(answerTo(shortGlobal, L"G"), L"Gruen");
}

TEST(Keywords, SingleKeywordRule) {
    EXPECT_TRUE(keywordMatches(L"eXcept", L"x"));
    EXPECT_TRUE(keywordMatches(L"eXcept", L"exc"));
    EXPECT_FALSE(keywordMatches(L"eXcept", L"e"));
    EXPECT_TRUE(keywordMatches(L"?", L"?"));
    EXPECT_FALSE(keywordMatches(L"*", L""));
    // Written all in lower case: only the whole word.
    EXPECT_TRUE(keywordMatches(L"all", L"ALL"));
    EXPECT_FALSE(keywordMatches(L"all", L"a"));
    // Case is ignored beyond ASCII too.
    EXPECT_TRUE(keywordMatches(L"ΣΧέδιο", L"σχ"));
    EXPECT_TRUE(keywordMatches(L"Ёлка", L"ё"));
}

} // namespace
