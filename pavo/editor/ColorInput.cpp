// PavoAcquireInput::getColor: a colour typed as an index, a colour name,
// ByLayer / ByBlock, a true colour ("T") or a colour of a colour book ("CO").
// Typing 0 means ByBlock and 256 ByLayer, accepted under the same option
// bits as the words (docs/colour-input.md).
#include <optional>
#include <string>
#include <vector>

#include "OxDbServices.h"
#include "PavoAcquireInput.h"
#include "base/ColorNames.h"
#include "editor/AcquireQuestion.h"
#include "editor/ColorText.h"
#include "editor/Keywords.h"
#include "editor/NumberText.h"
#include "files/ColorBook.h"
#include "files/TextFileLines.h"
#include "oxstatus.h"

namespace pavo::editor {
namespace {

constexpr const wchar_t* kDefaultPrompt = L"\nEnter a colour name or number (1-255) [Truecolor/COlorbook]: ";
constexpr const wchar_t* kRgbPrompt = L"\nRed, Green, Blue: ";
constexpr const wchar_t* kBookPrompt = L"\nEnter Color Book name: ";
constexpr const wchar_t* kBookColorPrompt = L"\nEnter color name: ";

// How a sub-question ended: with a colour, back at the colour question
// (Enter), or cancelled.
enum class Outcome { Chosen, Back, Cancelled };

class ColorQuestion {
public:
    ColorQuestion(unsigned short options, const OxString& prompt)
        : m_options(options), m_prompt(prompt.isEmpty() ? kDefaultPrompt : prompt.str()),
          m_keywords(L"Truecolor COlorbook") {}

    int run(OxCmColor& color);

private:
    bool allows(unsigned short bit) const { return (m_options & bit) != 0; }
    // An index, a colour name or a by-word; nullopt when it is none of them
    // or not allowed here.
    std::optional<OxCmColor> plainColor(const std::wstring& answer) const;
    std::wstring refusal() const;
    Outcome askTrueColor(OxCmColor& color);
    Outcome askBookColor(OxCmColor& color);

    AcquireQuestion m_question;
    unsigned short m_options;
    std::wstring m_prompt;
    KeywordList m_keywords;
};

int ColorQuestion::run(OxCmColor& color) {
    if (!m_question.ready()) return STATUS_ERROR;
    std::vector<std::wstring> completions = m_keywords.local();
    completions.insert(completions.end(), pavo::kStandardColorNames.begin(), pavo::kStandardColorNames.end());
    for (;;) {
        const AcquireQuestion::Answer answer = m_question.ask(m_prompt, completions);
        if (answer.kind == AcquireQuestion::Answer::Enter) return STATUS_NONE;
        if (answer.kind == AcquireQuestion::Answer::Cancel) return STATUS_CANCEL;
        if (const std::optional<OxCmColor> plain = plainColor(answer.text)) {
            color = *plain;
            m_question.accepted(answer.text);
            return STATUS_NORMAL;
        }
        const std::optional<size_t> keyword = m_keywords.match(answer.text);
        if (!keyword) {
            m_question.refuse(refusal());
            continue;
        }
        const bool trueColor = m_keywords.globalAt(*keyword) == L"Truecolor";
        const Outcome outcome = trueColor ? askTrueColor(color) : askBookColor(color);
        if (outcome == Outcome::Cancelled) return STATUS_CANCEL;
        if (outcome == Outcome::Chosen) return STATUS_NORMAL;
    }
}

std::optional<OxCmColor> ColorQuestion::plainColor(const std::wstring& answer) const {
    return parseColorText(answer, m_options, false);
}

std::wstring ColorQuestion::refusal() const {
    std::wstring text = L"Requires an integer between 1 and 255";
    if (allows(PavoAcquireInput::kAllowNegativeIndex)) text += L" (or -255 and -1)";
    text += L", a colour name";
    if (allows(PavoAcquireInput::kAllowByLayer)) text += L", ByLayer";
    if (allows(PavoAcquireInput::kAllowByBlock)) text += L", ByBlock";
    return text + L", T or CO.";
}

Outcome ColorQuestion::askTrueColor(OxCmColor& color) {
    for (;;) {
        const AcquireQuestion::Answer answer = m_question.ask(kRgbPrompt);
        if (answer.kind != AcquireQuestion::Answer::Text)
            return answer.kind == AcquireQuestion::Answer::Enter ? Outcome::Back : Outcome::Cancelled;
        int rgb[3] = {0, 0, 0};
        if (!files::parseRgb(answer.text, rgb)) {
            m_question.refuse(
                L"Requires three integers between 0 and 255, separated by commas (for example 255,128,0).");
            continue;
        }
        color = OxCmColor::fromRgb(static_cast<std::uint8_t>(rgb[0]), static_cast<std::uint8_t>(rgb[1]),
                                   static_cast<std::uint8_t>(rgb[2]));
        m_question.accepted(answer.text);
        return Outcome::Chosen;
    }
}

Outcome ColorQuestion::askBookColor(OxCmColor& color) {
    std::optional<files::ColorBook> book;
    while (!book) {
        const AcquireQuestion::Answer answer = m_question.ask(kBookPrompt);
        if (answer.kind != AcquireQuestion::Answer::Text)
            return answer.kind == AcquireQuestion::Answer::Enter ? Outcome::Back : Outcome::Cancelled;
        std::wstring problem;
        book = files::findColorBook(answer.text, problem, oxdbHostApplicationServices()->workingDatabase());
        if (!book) m_question.refuse(problem);
    }
    for (;;) {
        const AcquireQuestion::Answer answer = m_question.ask(kBookColorPrompt);
        if (answer.kind != AcquireQuestion::Answer::Text)
            return answer.kind == AcquireQuestion::Answer::Enter ? Outcome::Back : Outcome::Cancelled;
        const files::BookColor* found = book->find(answer.text);
        if (!found) {
            m_question.refuse(L"Colour \"" + answer.text + L"\" is not in colour book \"" + book->name() + L"\".");
            continue;
        }
        color = OxCmColor::fromRgb(found->red, found->green, found->blue);
        color.setNames(found->name.c_str(), book->name().c_str());
        m_question.accepted(found->name);
        return Outcome::Chosen;
    }
}

} // namespace
} // namespace pavo::editor

int PavoAcquireInput::getColor(OxCmColor& color, unsigned short options) {
    pavo::editor::ColorQuestion question(options, m_prompt);
    return question.run(color);
}
