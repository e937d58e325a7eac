// Memory for a picture's large buffers (pixels, display lists, compressed
// rows), mapped from the system in 2 MiB pages where it offers them. Fresh
// memory costs a page fault for each 4 KiB page it is first touched in,
// which on a virtual machine is about 5 ms a megabyte: more than drawing
// a million objects into it.
#pragma once

#include <cstddef>
#include <cstdint>

namespace pavo::render {

class LargeBuffer {
public:
    LargeBuffer() = default;
    // `bytes` of zeroes; null data() when the system has no memory for them.
    explicit LargeBuffer(std::size_t bytes);
    ~LargeBuffer();
    LargeBuffer(LargeBuffer&& other) noexcept;
    LargeBuffer& operator=(LargeBuffer&& other) noexcept;
    LargeBuffer(const LargeBuffer&) = delete;
    LargeBuffer& operator=(const LargeBuffer&) = delete;

    std::uint8_t* data() const { return m_data; }
    std::size_t size() const { return m_size; }

private:
    void release();

    void* m_mapping = nullptr;
    std::size_t m_mappingSize = 0;
    std::uint8_t* m_data = nullptr;
    std::size_t m_size = 0;
};

} // namespace pavo::render
