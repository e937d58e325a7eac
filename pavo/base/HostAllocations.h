// Counts of what the host hands out and a caller must give back: strings
// (oxutNewString), result buffers and selection sets. The session checks
// after each command that nothing is left unreleased.
#pragma once

#include <cstddef>

namespace pavo {

struct HostAllocations {
    long strings = 0;
    long resbufs = 0;
    long selectionSets = 0;
    bool operator==(const HostAllocations&) const = default;
};

HostAllocations& hostAllocations();

} // namespace pavo
