#include "base/MappedBuffer.h"

#include <sys/mman.h>

#include <algorithm>
#include <cstdint>
#include <new>
#include <utility>

namespace pavo {

namespace {

constexpr std::size_t kPage = 4096;

std::size_t roundUp(std::size_t n, std::size_t to) { return (n + to - 1) / to * to; }

// A mapping of `bytes`, aligned to a huge page when it spans one or more,
// so that all of it can be given in huge pages.
char* mapAligned(std::size_t bytes) {
    const bool huge = bytes >= MappedBuffer::kHugePage;
    const std::size_t slack = huge ? MappedBuffer::kHugePage : 0;
    void* raw = ::mmap(nullptr, bytes + slack, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE,
                       -1, 0);
    if (raw == MAP_FAILED) throw std::bad_alloc();
    auto* start = static_cast<char*>(raw);
    if (huge) {
        auto* aligned = reinterpret_cast<char*>(roundUp(reinterpret_cast<std::uintptr_t>(start), slack));
        if (aligned > start) ::munmap(start, static_cast<std::size_t>(aligned - start));
        const std::size_t tail = slack - static_cast<std::size_t>(aligned - start);
        if (tail) ::munmap(aligned + bytes, tail);
        start = aligned;
        // Only a request: the system may give ordinary pages all the same.
        ::madvise(start, bytes, MADV_HUGEPAGE);
    }
    return start;
}

std::size_t mappedSize(std::size_t capacity) {
    const std::size_t bytes = roundUp(std::max<std::size_t>(capacity, 1), kPage);
    return bytes >= MappedBuffer::kHugePage ? roundUp(bytes, MappedBuffer::kHugePage) : bytes;
}

} // namespace

MappedBuffer::MappedBuffer(std::size_t capacity) {
    m_mapped = mappedSize(capacity);
    m_data = mapAligned(m_mapped);
    m_capacity = m_mapped;
}

MappedBuffer::~MappedBuffer() { release(); }

MappedBuffer::MappedBuffer(MappedBuffer&& other) noexcept
    : m_data(std::exchange(other.m_data, nullptr)), m_capacity(std::exchange(other.m_capacity, 0)),
      m_mapped(std::exchange(other.m_mapped, 0)) {}

MappedBuffer& MappedBuffer::operator=(MappedBuffer&& other) noexcept {
    if (this != &other) {
        release();
        m_data = std::exchange(other.m_data, nullptr);
        m_capacity = std::exchange(other.m_capacity, 0);
        m_mapped = std::exchange(other.m_mapped, 0);
    }
    return *this;
}

void MappedBuffer::grow(std::size_t capacity, std::size_t used) {
    if (capacity <= m_capacity) return;
    // At least doubling, so that a text grown a slice at a time is copied
    // a bounded number of times.
    MappedBuffer bigger(std::max(capacity, m_capacity * 2));
    if (m_data) std::copy(m_data, m_data + std::min(used, m_capacity), bigger.m_data);
    *this = std::move(bigger);
}

void MappedBuffer::release() {
    if (m_data) ::munmap(m_data, m_mapped);
    m_data = nullptr;
    m_capacity = m_mapped = 0;
}

} // namespace pavo
