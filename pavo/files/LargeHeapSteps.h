// While a large drawing loads, the allocator asks the system for memory in
// large steps instead of 128 KB ones: every step costs a system call that
// remaps the heap, and a drawing of a million entities takes thousands.
#pragma once

#include <cstddef>

namespace pavo::files {

class LargeHeapSteps {
public:
    // No effect for texts below a few megabytes.
    explicit LargeHeapSteps(std::size_t textSize);
    ~LargeHeapSteps(); // back to the allocator's usual steps
    LargeHeapSteps(const LargeHeapSteps&) = delete;
    LargeHeapSteps& operator=(const LargeHeapSteps&) = delete;

private:
    bool m_active = false;
};

} // namespace pavo::files
