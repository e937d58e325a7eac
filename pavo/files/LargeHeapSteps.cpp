#include "files/LargeHeapSteps.h"

#if defined(__GLIBC__)
#include <malloc.h>
#endif

namespace pavo::files {

namespace {

#if defined(__GLIBC__)
// The allocator's own default, restored afterwards.
constexpr int kUsualStep = 128 * 1024;
// The largest a heap of another thread can be: one step makes it whole.
constexpr int kLargeStep = 64 * 1024 * 1024;
constexpr std::size_t kLargeText = std::size_t(4) << 20;
#endif

} // namespace

LargeHeapSteps::LargeHeapSteps([[maybe_unused]] std::size_t textSize) {
#if defined(__GLIBC__)
    if (textSize >= kLargeText) m_active = mallopt(M_TOP_PAD, kLargeStep) == 1;
#endif
}

LargeHeapSteps::~LargeHeapSteps() {
#if defined(__GLIBC__)
    if (m_active) mallopt(M_TOP_PAD, kUsualStep);
#endif
}

} // namespace pavo::files
