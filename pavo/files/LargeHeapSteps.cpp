#include "files/LargeHeapSteps.h"

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <vector>

#if defined(__GLIBC__)
#include <malloc.h>
#endif

// The sanitizer's allocator neither takes the setting nor reuses freed
// memory at once.
#if defined(__SANITIZE_ADDRESS__)
#define PAVO_SANITIZED_HEAP 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PAVO_SANITIZED_HEAP 1
#endif
#endif
#if defined(__GLIBC__) && !defined(PAVO_SANITIZED_HEAP)
#define PAVO_OWN_ALLOCATOR 1
#else
#define PAVO_OWN_ALLOCATOR 0
#endif

namespace pavo::files {

namespace {

#if PAVO_OWN_ALLOCATOR
// The allocator's own default, restored afterwards.
constexpr int kUsualStep = 128 * 1024;
constexpr std::size_t kLargeText = std::size_t(4) << 20;
#endif
// The largest a heap of another thread can be: one step makes it whole.
constexpr int kLargeStep = 64 * 1024 * 1024;
// Blocks below the size the allocator maps on their own, so that they come
// from the heap.
constexpr std::size_t kTouchBlock = 64 * 1024;
constexpr std::size_t kPage = 4096;

std::atomic<int> g_active{0};

} // namespace

LargeHeapSteps::LargeHeapSteps([[maybe_unused]] std::size_t textSize) {
#if PAVO_OWN_ALLOCATOR
    if (textSize >= kLargeText && mallopt(M_TOP_PAD, kLargeStep) == 1) {
        m_active = true;
        ++g_active;
    }
#endif
}

LargeHeapSteps::~LargeHeapSteps() {
#if PAVO_OWN_ALLOCATOR
    if (m_active && --g_active == 0) mallopt(M_TOP_PAD, kUsualStep);
#endif
}

bool LargeHeapSteps::active() { return g_active.load() > 0; }

void touchHeapAhead(std::size_t bytes) {
    if (!LargeHeapSteps::active()) return;
    // A little less than a heap, so that all of it stays in the first one: a
    // later heap left empty would be handed back.
    bytes = std::min<std::size_t>(bytes, kLargeStep - 8 * kTouchBlock);
    std::vector<void*> blocks;
    blocks.reserve(bytes / kTouchBlock);
    for (std::size_t done = 0; done + kTouchBlock <= bytes; done += kTouchBlock) {
        auto* block = static_cast<volatile char*>(std::malloc(kTouchBlock));
        if (!block) break;
        for (std::size_t offset = 0; offset < kTouchBlock; offset += kPage)
            block[offset] = 0;
        blocks.push_back(const_cast<char*>(block));
    }
    // Last first, so that each joins the free top of the heap.
    for (auto it = blocks.rbegin(); it != blocks.rend(); ++it)
        std::free(*it);
}

} // namespace pavo::files
