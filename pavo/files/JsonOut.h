// A fast, append-only JSON text builder: one growing buffer written through
// a cursor, numbers with std::to_chars (shortest form that reads back to the
// same double). The buffer is a mapping of its own (base/MappedBuffer.h):
// the text of a large drawing is written into huge pages where the system
// gives them, and goes back to the system when the builder goes.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "base/MappedBuffer.h"

namespace pavo::files {

class JsonOut {
public:
    JsonOut() { grow(0); }

    // Room for about `bytes` of text without moving it (address space only:
    // memory is touched as the text grows).
    void reserve(std::size_t bytes);
    // The text so far, valid until the builder changes or goes.
    std::string_view view() const { return {m_buffer.data(), static_cast<std::size_t>(m_pos - m_buffer.data())}; }

    void raw(std::string_view s) {
        ensure(s.size());
        put(s);
    }
    void raw(char c) {
        ensure(1);
        *m_pos++ = c;
    }
    // `"key":` preceded by a comma unless it opens the object.
    void key(std::string_view name) {
        ensure(name.size() + 4);
        if (!m_first) *m_pos++ = ',';
        m_first = false;
        *m_pos++ = '"';
        put(name);
        *m_pos++ = '"';
        *m_pos++ = ':';
    }
    // Starts a fresh object or array; the next key or item gets no comma.
    void open(char bracket) {
        raw(bracket);
        m_first = true;
    }
    void close(char bracket) {
        raw(bracket);
        m_first = false;
    }
    // Comma before an array item unless it is the first.
    void item() {
        if (!m_first) raw(',');
        m_first = false;
    }
    // Comma if something came before, then a line break and `indent`
    // blanks; the next key or item gets no further comma.
    void breakLine(int indent) {
        if (!m_first) raw(',');
        m_first = true;
        newline(indent);
    }
    // A line break and `indent` blanks, no comma (before a closing bracket).
    void newline(int indent);

    void number(double v);
    void integer(std::int64_t v);
    void boolean(bool v) { raw(v ? std::string_view("true") : std::string_view("false")); }
    void null() { raw(std::string_view("null")); }
    // A handle as an upper-case hexadecimal string ("1F").
    void handle(std::uint64_t h);
    // UTF-8 text from wide characters, escaped.
    void string(std::wstring_view s);
    void string(std::string_view utf8);

private:
    // Makes room for `bytes` more at the cursor.
    void ensure(std::size_t bytes) {
        if (static_cast<std::size_t>(m_end - m_pos) < bytes) grow(bytes);
    }
    void grow(std::size_t bytes);
    void put(std::string_view s) {
        std::memcpy(m_pos, s.data(), s.size());
        m_pos += s.size();
    }

    // The text is m_buffer[0, m_pos); m_end is the end of its room.
    MappedBuffer m_buffer;
    char* m_pos = nullptr;
    char* m_end = nullptr;
    bool m_first = true;
};

} // namespace pavo::files
