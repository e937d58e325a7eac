// A large byte buffer of its own anonymous mapping, in huge pages where the
// system gives them on request (madvise): each first touch of an ordinary
// page costs a fault, and a drawing's text is a hundred megabytes of them.
// Memory is touched only as it is written; what is past the size reads as
// zeros, which is the padding a JSON parser needs. Freeing it hands it back
// to the system at once, so that it never swells the heap.
#pragma once

#include <cstddef>

namespace pavo {

class MappedBuffer {
public:
    MappedBuffer() = default;
    // Room for `capacity` bytes (at least one); throws std::bad_alloc when
    // the system has no address space to give.
    explicit MappedBuffer(std::size_t capacity);
    ~MappedBuffer();
    MappedBuffer(MappedBuffer&& other) noexcept;
    MappedBuffer& operator=(MappedBuffer&& other) noexcept;
    MappedBuffer(const MappedBuffer&) = delete;
    MappedBuffer& operator=(const MappedBuffer&) = delete;

    char* data() const { return m_data; }
    std::size_t capacity() const { return m_capacity; }
    // Makes room for at least `capacity` bytes, keeping the first `used`
    // (the buffer may move); throws std::bad_alloc as the constructor does.
    void grow(std::size_t capacity, std::size_t used);

    // The size from which buffers are worth mapping in huge pages.
    static constexpr std::size_t kHugePage = std::size_t(2) << 20;

private:
    void release();

    char* m_data = nullptr;
    std::size_t m_capacity = 0; // usable bytes
    std::size_t m_mapped = 0;   // bytes mapped, from m_data
};

} // namespace pavo
