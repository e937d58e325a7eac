#include "files/JsonOut.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace pavo::files {

namespace {

// The least room a builder makes: address space only, touched as written.
constexpr std::size_t kSlice = std::size_t(1) << 20;

} // namespace

void JsonOut::grow(std::size_t bytes) {
    const std::size_t used = m_pos ? static_cast<std::size_t>(m_pos - m_buffer.data()) : 0;
    m_buffer.grow(used + std::max(bytes, kSlice), used);
    m_pos = m_buffer.data() + used;
    m_end = m_buffer.data() + m_buffer.capacity();
}

void JsonOut::reserve(std::size_t bytes) {
    if (bytes > m_buffer.capacity()) grow(bytes - static_cast<std::size_t>(m_pos - m_buffer.data()));
}

void JsonOut::newline(int indent) {
    const auto blanks = static_cast<std::size_t>(std::max(indent, 0));
    ensure(blanks + 1);
    *m_pos++ = '\n';
    std::memset(m_pos, ' ', blanks);
    m_pos += blanks;
}

void JsonOut::number(double v) {
    // JSON has no NaN or infinity: a NaN is saved as 0, infinities as the
    // largest finite values, so that the file always reads back.
    if (std::isnan(v)) v = 0.0;
    if (std::isinf(v)) v = v > 0 ? std::numeric_limits<double>::max() : -std::numeric_limits<double>::max();
    ensure(32);
    m_pos = std::to_chars(m_pos, m_end, v).ptr;
}

void JsonOut::integer(std::int64_t v) {
    ensure(24);
    m_pos = std::to_chars(m_pos, m_end, v).ptr;
}

void JsonOut::handle(std::uint64_t h) {
    static constexpr char kDigits[] = "0123456789ABCDEF";
    char digits[16];
    char* first = digits + sizeof digits;
    do {
        *--first = kDigits[h & 0xF];
        h >>= 4;
    } while (h != 0);
    const auto count = static_cast<std::size_t>(digits + sizeof digits - first);
    ensure(count + 2);
    *m_pos++ = '"';
    put(std::string_view(first, count));
    *m_pos++ = '"';
}

namespace {

// Writes `c` escaped at `out` (room for 6 bytes); returns the new end.
char* putEscaped(char* out, char32_t c) {
    static const char* hex = "0123456789abcdef";
    switch (c) {
    case '"':
        *out++ = '\\';
        *out++ = '"';
        return out;
    case '\\':
        *out++ = '\\';
        *out++ = '\\';
        return out;
    case '\n':
        *out++ = '\\';
        *out++ = 'n';
        return out;
    case '\r':
        *out++ = '\\';
        *out++ = 'r';
        return out;
    case '\t':
        *out++ = '\\';
        *out++ = 't';
        return out;
    default:
        break;
    }
    if (c < 0x20) {
        std::memcpy(out, "\\u00", 4);
        out[4] = hex[c >> 4];
        out[5] = hex[c & 15];
        return out + 6;
    }
    if (c >= 0xD800 && c <= 0xDFFF) c = 0xFFFD; // a lone surrogate is no character
    if (c > 0x10FFFF) c = 0xFFFD;
    if (c < 0x80) {
        *out++ = static_cast<char>(c);
    } else if (c < 0x800) {
        *out++ = static_cast<char>(0xC0 | (c >> 6));
        *out++ = static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        *out++ = static_cast<char>(0xE0 | (c >> 12));
        *out++ = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        *out++ = static_cast<char>(0x80 | (c & 0x3F));
    } else {
        *out++ = static_cast<char>(0xF0 | (c >> 18));
        *out++ = static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        *out++ = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        *out++ = static_cast<char>(0x80 | (c & 0x3F));
    }
    return out;
}

bool isPlain(std::uint32_t c) { return c >= 0x20 && c < 0x80 && c != '"' && c != '\\'; }

} // namespace

void JsonOut::string(std::wstring_view s) {
    ensure(6 * s.size() + 2);
    char* out = m_pos;
    *out++ = '"';
    for (wchar_t ch : s) {
        const auto c = static_cast<std::uint32_t>(ch);
        if (isPlain(c))
            *out++ = static_cast<char>(c);
        else
            out = putEscaped(out, static_cast<char32_t>(c));
    }
    *out++ = '"';
    m_pos = out;
}

void JsonOut::string(std::string_view utf8) {
    ensure(6 * utf8.size() + 2);
    char* out = m_pos;
    *out++ = '"';
    for (char ch : utf8) {
        const auto c = static_cast<unsigned char>(ch);
        if (c < 0x20 || c == '"' || c == '\\')
            out = putEscaped(out, c);
        else
            *out++ = ch;
    }
    *out++ = '"';
    m_pos = out;
}

} // namespace pavo::files
