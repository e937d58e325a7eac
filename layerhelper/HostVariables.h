// Reading the host's system variables with the host's result buffers freed.
#pragma once

#include "OxString.h"

namespace vxlayer {

// An integer variable; false when it cannot be read or is not a number.
bool readIntVariable(const wchar_t* name, int& value);
// A text variable (such as CLAYER); false when it cannot be read.
bool readStringVariable(const wchar_t* name, OxString& value);

} // namespace vxlayer
