// An input request object: prompt, options and validation, then one value.
#pragma once

#include <cstdint>

#include "OxCmColor.h"
#include "OxString.h"
#include "PavoExport.h"

class PAVO_HOST_API PavoAcquireInput {
public:
    // Option bits of getColor.
    enum ColorOptions : unsigned short {
        kAllowByBlock = 1,
        kAllowByLayer = 2,
        kAllowNegativeIndex = 4,
    };

    PavoAcquireInput();
    ~PavoAcquireInput();

    void prompt(const wchar_t* text);
    const OxString& promptText() const { return m_prompt; }

    // Asks for a colour: an index (1 to 255; a negative one with
    // kAllowNegativeIndex), a colour name ("red" ... "white"), "ByLayer" /
    // "ByBlock" when allowed, "T" (asks "Red, Green, Blue: "), "CO" (asks for a
    // colour book and a colour of it). A refused answer says why and asks
    // again. 5100 with the colour, 5000 for Enter, -5002 for Escape.
    int getColor(OxCmColor& color, unsigned short options);
    // Asks for a 16-bit integer, within the range when it is switched on.
    int getInt16(short& value);

    void setCursor(int cursor) { m_cursor = cursor; }
    int cursor() const { return m_cursor; }
    void setInvalidInputMsg(const wchar_t* text) { m_invalidMessage = text ? text : L""; }
    const OxString& invalidInputMsg() const { return m_invalidMessage; }

    // Context flags; bit 0x10000000 switches the range check on.
    enum : unsigned int { kRangeCheck = 0x10000000u };
    unsigned int ctxFlags() const { return m_flags; }
    void setCtxFlags(unsigned int flags) { m_flags = flags; }
    // Told after the flags changed, with the old value.
    void onCtxFlagChange(unsigned int oldFlags);
    void setRange(int lower, int upper) {
        m_lower = lower;
        m_upper = upper;
    }
    int lowerBound() const { return m_lower; }
    int upperBound() const { return m_upper; }

private:
    OxString m_prompt;
    OxString m_invalidMessage;
    unsigned int m_flags = 0;
    int m_cursor = 0;
    int m_lower = 0, m_upper = 0;
};
