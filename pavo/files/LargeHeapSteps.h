// While a large drawing loads, the allocator asks the system for memory in
// large steps instead of 128 KB ones: every step costs a system call that
// remaps the heap, and a drawing of a million entities takes thousands.
// The same setting keeps freed memory at the top of a heap, which lets a
// thread touch the memory it is about to need ahead of time. (Once set, the
// allocator keeps its other thresholds at their defaults for the rest of the
// process instead of adapting them: blocks of 128 KB and more are then
// always mapped on their own, as they are when a process starts.)
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

    // Whether large steps are in force (in this process, by any instance).
    static bool active();

private:
    bool m_active = false;
};

// Touches about `bytes` (at most one heap's worth) of the calling thread's
// heap, then frees it, so that the thread's next allocations find memory the
// system has already provided: each first touch of a page costs a fault,
// cheaper on a processor that would otherwise wait. Does nothing unless
// large steps are in force, since the memory would be handed back at once.
void touchHeapAhead(std::size_t bytes);

} // namespace pavo::files
