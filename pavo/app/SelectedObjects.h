// The objects a host command works on.
#pragma once

#include <vector>

#include "OxDbObjectId.h"

namespace pavo::app {

// The pre-selection when commands may see it, else what the user selects at
// "Select objects: ". Empty when nothing was selected.
std::vector<OxDbObjectId> objectsToWorkOn();

} // namespace pavo::app
