// How the VPLAYER options turn the status of their layer and viewport
// questions into their own: a cancel, or a pick that found nothing (ERRNO 7)
// or was answered with Enter (ERRNO 52), only ends the option.
#pragma once

#include "layerhelper/HostVariables.h"
#include "oxstatus.h"

namespace vxlayer {

inline constexpr int kErrnoNothingPicked = 7;
inline constexpr int kErrnoEnter = 52;

inline bool errnoIs(int a, int b) {
    int value = 0;
    return readIntVariable(L"ERRNO", value) && (value == a || value == b);
}

// Freeze, Thaw, Reset and the override options.
inline int optionStatus(int status) {
    if (status == STATUS_CANCEL) return STATUS_NORMAL;
    if (status == STATUS_ERROR && errnoIs(kErrnoNothingPicked, kErrnoEnter)) return STATUS_NORMAL;
    return status;
}

// Vpvisdflt: Enter ends it too, and of the picks only one answered with
// Enter (a pick that found nothing stays an error).
inline int vpvisdfltStatus(int status) {
    if (status == STATUS_CANCEL || status == STATUS_NONE) return STATUS_NORMAL;
    if (status == STATUS_ERROR && errnoIs(kErrnoEnter, kErrnoEnter)) return STATUS_NORMAL;
    return status;
}

} // namespace vxlayer
