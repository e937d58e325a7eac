#include "render/LargeBuffer.h"

#include <new>
#include <utility>

namespace pavo::render {

LargeBuffer::LargeBuffer(std::size_t bytes) {
    if (bytes == 0) return;
    try {
        m_memory = MappedBuffer(bytes);
        m_size = bytes;
    } catch (const std::bad_alloc&) {
        // data() stays null: the caller reports that the picture has no memory.
    }
}

LargeBuffer::LargeBuffer(LargeBuffer&& other) noexcept
    : m_memory(std::move(other.m_memory)), m_size(std::exchange(other.m_size, 0)) {}

LargeBuffer& LargeBuffer::operator=(LargeBuffer&& other) noexcept {
    if (this != &other) {
        m_memory = std::move(other.m_memory);
        m_size = std::exchange(other.m_size, 0);
    }
    return *this;
}

} // namespace pavo::render
