// Memory for a picture's large buffers (pixels, display lists, compressed
// rows): a mapping of its own in 2 MiB pages where the system offers them
// (base/MappedBuffer). Fresh memory costs a page fault for each 4 KiB page
// it is first touched in, which on a virtual machine is about 5 ms a
// megabyte: more than drawing a million objects into it.
#pragma once

#include <cstddef>
#include <cstdint>

#include "base/MappedBuffer.h"

namespace pavo::render {

class LargeBuffer {
public:
    LargeBuffer() = default;
    // `bytes` of zeroes; null data() when the system has no memory for them.
    explicit LargeBuffer(std::size_t bytes);
    LargeBuffer(LargeBuffer&& other) noexcept;
    LargeBuffer& operator=(LargeBuffer&& other) noexcept;
    LargeBuffer(const LargeBuffer&) = delete;
    LargeBuffer& operator=(const LargeBuffer&) = delete;

    std::uint8_t* data() const { return reinterpret_cast<std::uint8_t*>(m_memory.data()); }
    std::size_t size() const { return m_size; }

private:
    MappedBuffer m_memory;
    std::size_t m_size = 0;
};

} // namespace pavo::render
