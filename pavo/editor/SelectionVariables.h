// The system variables that picking reads.
#pragma once

namespace pavo::editor::selection {

// PICKBOX in drawing units (3 when it cannot be read).
double pickBox();
// PICKFIRST: true when commands see the pre-selection.
bool pickFirst();
// Sets ERRNO (7: the pick hit nothing; 52: Enter at a pick).
void setErrno(int value);

} // namespace pavo::editor::selection
