// Colour and integer input of PavoAcquireInput, and the colour books behind
// "COlorbook".
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <set>

#include "PavoAcquireInput.h"
#include "SessionHarness.h"
#include "base/Utf8.h"
#include "files/ColorBook.h"
#include "oxed.h"

using pavotest::countOf;

namespace {

constexpr const char* kPlainRefusal = "Requires an integer between 1 and 255, a colour name, T or CO.";

struct Answered {
    int status = 0;
    OxCmColor color;
    std::string transcript;
};

// getColor on a fresh session whose only answers are `answers`.
Answered askColor(std::vector<std::string> answers, unsigned short options = 0) {
    pavotest::ScriptedSession session(std::move(answers), pavotest::Drawing::New);
    PavoAcquireInput input;
    input.prompt(L"\nNew color [Truecolor/COlorbook] : ");
    Answered result;
    result.color = OxCmColor::fromIndex(99);
    result.status = input.getColor(result.color, options);
    result.transcript = session.transcript();
    return result;
}

TEST(ColorInput, IndicesAndNames) {
    const std::pair<std::string, int> cases[] = {{"1", 1},       {"255", 255}, {" 42 ", 42}, {"RED", 1},
                                                 {"Yellow", 2},  {"green", 3}, {"cyan", 4},  {"BLUE", 5},
                                                 {"magenta", 6}, {"White", 7}};
    for (const auto& [typed, index] : cases) {
        const Answered a = askColor({typed});
        EXPECT_EQ(a.status, STATUS_NORMAL) << typed;
        EXPECT_TRUE(a.color.isByACI()) << typed;
        EXPECT_EQ(a.color.colorIndex(), index) << typed;
    }
}

TEST(ColorInput, RefusedAnswersSayWhyAndAskAgain) {
    // 0, 256 and negatives need option bits; "C" is not an abbreviation of COlorbook.
    const Answered a = askColor({"0", "256", "-3", "300", "purple", "C", "2.5", "12"});
    EXPECT_EQ(a.status, STATUS_NORMAL);
    EXPECT_EQ(a.color.colorIndex(), 12);
    EXPECT_EQ(countOf(a.transcript, kPlainRefusal), 7);
    EXPECT_EQ(countOf(a.transcript, "New color [Truecolor/COlorbook] : "), 8);
}

TEST(ColorInput, OptionBitsAllowByBlockByLayerAndNegativeIndices) {
    using In = PavoAcquireInput;
    EXPECT_TRUE(askColor({"byblock"}, In::kAllowByBlock).color.isByBlock());
    EXPECT_TRUE(askColor({"0"}, In::kAllowByBlock).color.isByBlock());
    EXPECT_TRUE(askColor({"BYLAYER"}, In::kAllowByLayer).color.isByLayer());
    EXPECT_TRUE(askColor({"256"}, In::kAllowByLayer).color.isByLayer());

    const Answered negative = askColor({"-5"}, In::kAllowNegativeIndex);
    EXPECT_EQ(negative.status, STATUS_NORMAL);
    EXPECT_EQ(static_cast<std::int16_t>(negative.color.colorIndex()), -5);
    EXPECT_EQ(askColor({"-red", "-256", "-255"}, In::kAllowNegativeIndex).color.colorIndex(),
              static_cast<std::uint16_t>(-255));

    // Each bit allows only its own answer, and the message lists what is allowed.
    const Answered layerOnly = askColor({"ByBlock", "0", "7"}, In::kAllowByLayer);
    EXPECT_EQ(layerOnly.color.colorIndex(), 7);
    EXPECT_EQ(countOf(layerOnly.transcript, "Requires an integer between 1 and 255, a colour name, ByLayer, T or CO."),
              2);
}

TEST(ColorInput, EnterEscapeAndTheEndOfInput) {
    EXPECT_EQ(askColor({""}).status, STATUS_NONE);
    EXPECT_EQ(askColor({"^C"}).status, STATUS_CANCEL);
    EXPECT_EQ(askColor({}).status, STATUS_CANCEL);

    // Refusing Enter (oxedInitGet flag 1) applies to this question only.
    pavotest::ScriptedSession session({"", "3", ""}, pavotest::Drawing::New);
    PavoAcquireInput input;
    OxCmColor color;
    oxedInitGet(OX_INP_NONULL, nullptr);
    EXPECT_EQ(input.getColor(color, 0), STATUS_NORMAL);
    EXPECT_EQ(color.colorIndex(), 3);
    EXPECT_EQ(input.getColor(color, 0), STATUS_NONE);
}

TEST(ColorInput, TrueColor) {
    const Answered a = askColor({"T", "255,128,0"});
    EXPECT_EQ(a.status, STATUS_NORMAL);
    EXPECT_TRUE(a.color.isByColor());
    EXPECT_FALSE(a.color.hasBookName());
    EXPECT_EQ(a.color.colorNameForDisplay(), L"255,128,0");
    EXPECT_EQ(askColor({"truecolor", " 1 , 2 , 3 "}).color.colorNameForDisplay(), L"1,2,3");

    // Bad triples are refused; Enter goes back to the colour question.
    const Answered back = askColor({"tr", "256,0,0", "1,2", "a,b,c", "", "5"});
    EXPECT_EQ(back.status, STATUS_NORMAL);
    EXPECT_EQ(back.color.colorIndex(), 5);
    EXPECT_EQ(countOf(back.transcript, "Requires three integers between 0 and 255"), 3);
    EXPECT_EQ(countOf(back.transcript, "Red, Green, Blue: "), 4);
    EXPECT_EQ(askColor({"T", "^C"}).status, STATUS_CANCEL);
}

TEST(ColorInput, ColourBookColours) {
    const Answered a = askColor({"CO", "ral classic", "ral 3020"});
    ASSERT_EQ(a.status, STATUS_NORMAL);
    EXPECT_TRUE(a.color.isByColor());
    EXPECT_EQ(a.color.red(), 187);
    EXPECT_EQ(a.color.green(), 30);
    EXPECT_EQ(a.color.blue(), 16);
    EXPECT_STREQ(a.color.bookName(), L"RAL CLASSIC");
    EXPECT_STREQ(a.color.colorName(), L"RAL 3020");
    EXPECT_NE(a.transcript.find("Enter Color Book name: ral classic"), std::string::npos);
    EXPECT_NE(a.transcript.find("Enter color name: ral 3020"), std::string::npos);

    const Answered wrong = askColor({"COLORBOOK", "NOPE", "../etc", "RAL CLASSIC", "RAL 9999", "RAL 9005"});
    EXPECT_EQ(wrong.status, STATUS_NORMAL);
    EXPECT_STREQ(wrong.color.colorName(), L"RAL 9005");
    EXPECT_NE(wrong.transcript.find("Unknown colour book \"NOPE\"."), std::string::npos);
    EXPECT_NE(wrong.transcript.find("Unknown colour book \"../etc\"."), std::string::npos);
    EXPECT_NE(wrong.transcript.find("Colour \"RAL 9999\" is not in colour book \"RAL CLASSIC\"."), std::string::npos);

    EXPECT_EQ(askColor({"CO", "", "2"}).color.colorIndex(), 2); // Enter: back to the colour question
    EXPECT_EQ(askColor({"CO", "RAL CLASSIC", "^C"}).status, STATUS_CANCEL);
}

TEST(Int16Input, RangeAndMessages) {
    pavotest::ScriptedSession session({"abc", "91", "-1", "2.5", "50", "", "40000", "^C"}, pavotest::Drawing::New);
    PavoAcquireInput input;
    input.prompt(L"\nEnter transparency value (0-90): ");
    input.setCtxFlags(PavoAcquireInput::kRangeCheck);
    input.setRange(0, 90);
    input.setInvalidInputMsg(L"\nRequires an integer between 0 and 90.");
    short value = -7;
    EXPECT_EQ(input.getInt16(value), STATUS_NORMAL);
    EXPECT_EQ(value, 50);
    EXPECT_EQ(countOf(session.transcript(), "\nRequires an integer between 0 and 90.\nEnter transparency"), 4);

    PavoAcquireInput unranged;
    EXPECT_EQ(unranged.getInt16(value), STATUS_NONE);
    EXPECT_EQ(unranged.getInt16(value), STATUS_CANCEL); // 40000 refused, then Escape
    EXPECT_NE(session.transcript().find("Requires an integer between -32768 and 32767."), std::string::npos);
    EXPECT_EQ(value, 50);
}

TEST(ColorBook, TheShippedRalClassicBook) {
    std::wstring problem;
    const std::optional<pavo::files::ColorBook> book =
        pavo::files::ColorBook::read(std::string(PAVO_TEST_RESOURCE_DIR) + "/support/ral-classic.pcb", problem);
    ASSERT_TRUE(book) << pavo::toUtf8(problem);
    EXPECT_EQ(book->name(), L"RAL CLASSIC");
    EXPECT_EQ(book->colors().size(), 213u);
    std::set<std::wstring> codes;
    for (const auto& c : book->colors()) {
        EXPECT_TRUE(c.name.starts_with(L"RAL ") && c.name.size() == 8) << pavo::toUtf8(c.name);
        EXPECT_FALSE(c.description.empty());
        codes.insert(c.name);
    }
    EXPECT_EQ(codes.size(), 213u);
    const pavo::files::BookColor* traffic = book->find(L"ral 3020");
    ASSERT_NE(traffic, nullptr);
    EXPECT_EQ(traffic->red, 187);
    EXPECT_EQ(traffic->green, 30);
    EXPECT_EQ(traffic->blue, 16);
    EXPECT_EQ(traffic->description, L"Traffic red");
    EXPECT_EQ(book->find(L"RAL 0000"), nullptr);
}

TEST(ColorBook, TheShippedCssBookIsFoundByName) {
    pavotest::ScriptedSession session({}, pavotest::Drawing::New);
    std::wstring problem;
    const std::optional<pavo::files::ColorBook> css = pavo::files::findColorBook(L"css", problem);
    ASSERT_TRUE(css) << pavo::toUtf8(problem);
    EXPECT_EQ(css->colors().size(), 148u);
    const pavo::files::BookColor* purple = css->find(L"RebeccaPurple");
    ASSERT_NE(purple, nullptr);
    EXPECT_EQ((std::array<int, 3>{purple->red, purple->green, purple->blue}), (std::array<int, 3>{102, 51, 153}));
    EXPECT_EQ(css->find(L"grey")->red, css->find(L"gray")->red);
    EXPECT_FALSE(pavo::files::findColorBook(L"RAL", problem));
    EXPECT_EQ(problem, L"Unknown colour book \"RAL\".");
}

TEST(ColorBook, MalformedBooksAreRefusedWithTheLine) {
    const std::pair<std::string, std::string> cases[] = {
        {"", "b.pcb:1: not a colour book"},
        {"pavo colour book 1\n", "b.pcb:1: not a colour book"},
        {";; c\npavo colour book 1\nBOOK\nA\t1,2,3\nB 4,5,6\n", "b.pcb:5: expected \"name<TAB>r,g,b\""},
        {"pavo colour book 1\nBOOK\nA\t1,2,256\n", "b.pcb:3: expected"},
        {"pavo colour book 1\nBOOK\nA\t1,2,3\n\na\t4,5,6\n", "b.pcb:5: colour \"a\" is listed twice"},
    };
    for (const auto& [text, expected] : cases) {
        std::wstring problem;
        EXPECT_FALSE(pavo::files::ColorBook::parse(text, "b.pcb", problem)) << text;
        EXPECT_TRUE(pavo::toUtf8(problem).starts_with(expected)) << pavo::toUtf8(problem);
    }
    std::wstring problem;
    const auto book = pavo::files::ColorBook::parse("\xEF\xBB\xBFpavo colour book 1\r\nMy Book\r\nSky\t1,2,3\tBlue\r\n",
                                                    "b.pcb", problem);
    ASSERT_TRUE(book);
    EXPECT_EQ(book->name(), L"My Book");
    EXPECT_EQ(book->find(L"SKY")->description, L"Blue");
    EXPECT_EQ(pavo::files::colorBookFileName(L"My Book"), L"my-book.pcb");
}

} // namespace
