#include "base/HostAllocations.h"

namespace pavo {

HostAllocations& hostAllocations() {
    static HostAllocations counts;
    return counts;
}

} // namespace pavo
