#include "render/LargeBuffer.h"

#include <sys/mman.h>

#include <utility>

namespace pavo::render {
namespace {

constexpr std::size_t kHugePage = std::size_t(2) << 20;

} // namespace

LargeBuffer::LargeBuffer(std::size_t bytes) {
    if (bytes == 0) return;
    // Room to start on a huge page's boundary; the kernel takes the advice
    // only for whole huge pages, and ignores it where it has none.
    const std::size_t rounded = (bytes + kHugePage - 1) & ~(kHugePage - 1);
    const std::size_t mappingSize = rounded + kHugePage;
    void* mapping = mmap(nullptr, mappingSize, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapping == MAP_FAILED) return;
    const auto start = (reinterpret_cast<std::uintptr_t>(mapping) + kHugePage - 1) & ~(kHugePage - 1);
    m_mapping = mapping;
    m_mappingSize = mappingSize;
    m_data = reinterpret_cast<std::uint8_t*>(start);
    m_size = bytes;
#ifdef MADV_HUGEPAGE
    madvise(m_data, rounded, MADV_HUGEPAGE);
#endif
}

LargeBuffer::~LargeBuffer() { release(); }

LargeBuffer::LargeBuffer(LargeBuffer&& other) noexcept
    : m_mapping(std::exchange(other.m_mapping, nullptr)), m_mappingSize(std::exchange(other.m_mappingSize, 0)),
      m_data(std::exchange(other.m_data, nullptr)), m_size(std::exchange(other.m_size, 0)) {}

LargeBuffer& LargeBuffer::operator=(LargeBuffer&& other) noexcept {
    if (this != &other) {
        release();
        m_mapping = std::exchange(other.m_mapping, nullptr);
        m_mappingSize = std::exchange(other.m_mappingSize, 0);
        m_data = std::exchange(other.m_data, nullptr);
        m_size = std::exchange(other.m_size, 0);
    }
    return *this;
}

void LargeBuffer::release() {
    if (m_mapping) munmap(m_mapping, m_mappingSize);
    m_mapping = nullptr;
    m_data = nullptr;
    m_size = 0;
}

} // namespace pavo::render
