// The pieces of the new-name validity test. Callers write the test out
// themselves because they differ in whether the host's check is still asked
// once the length has failed.
#pragma once

#include "OxString.h"

namespace vxlayer {

// The EXTNAMES system variable; 1 (long names) when it cannot be read.
int readExtnames();
// True when `name` is longer than EXTNAMES allows: 31 characters for 0,
// 255 for 1, no limit of the module's own otherwise.
bool exceedsNameLength(const OxString& name, int extnames);
// True when the host's symbol-name check refuses `name`.
bool symbolNameRefused(const OxString& name);

} // namespace vxlayer
