// PavoAcquireInput: the request object, and its integer question. Colours
// are asked in ColorInput.cpp.
#include <climits>
#include <string>

#include "PavoAcquireInput.h"
#include "base/Utf8.h"
#include "editor/AcquireQuestion.h"
#include "editor/NumberText.h"
#include "oxstatus.h"

using pavo::editor::AcquireQuestion;

PavoAcquireInput::PavoAcquireInput() = default;
PavoAcquireInput::~PavoAcquireInput() = default;

void PavoAcquireInput::prompt(const wchar_t* text) { m_prompt = text ? text : L""; }

// The terminal has no input modes that follow the flags: they are read
// each time a question is asked.
void PavoAcquireInput::onCtxFlagChange(unsigned int /*oldFlags*/) {}

int PavoAcquireInput::getInt16(short& value) {
    AcquireQuestion question;
    if (!question.ready()) return STATUS_ERROR;
    const bool ranged = (m_flags & kRangeCheck) != 0;
    const long long lower = ranged ? m_lower : SHRT_MIN, upper = ranged ? m_upper : SHRT_MAX;
    const std::wstring refusal =
        !m_invalidMessage.isEmpty()
            ? m_invalidMessage.str()
            : L"Requires an integer between " + std::to_wstring(lower) + L" and " + std::to_wstring(upper) + L".";
    for (;;) {
        const AcquireQuestion::Answer answer = question.ask(m_prompt.str());
        if (answer.kind != AcquireQuestion::Answer::Text)
            return answer.kind == AcquireQuestion::Answer::Enter ? STATUS_NONE : STATUS_CANCEL;
        const std::optional<long long> n = pavo::editor::parseInteger(answer.text);
        if (n && *n >= lower && *n <= upper && *n >= SHRT_MIN && *n <= SHRT_MAX) {
            value = static_cast<short>(*n);
            question.accepted(answer.text);
            return STATUS_NORMAL;
        }
        question.refuse(refusal);
    }
}
