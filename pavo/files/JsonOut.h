// A fast, append-only JSON text builder: one growing buffer, numbers with
// std::to_chars (shortest form that reads back to the same double).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace pavo::files {

class JsonOut {
public:
    std::string& text() { return m_text; }
    void reserve(std::size_t bytes) { m_text.reserve(bytes); }

    void raw(std::string_view s) { m_text.append(s); }
    void raw(char c) { m_text.push_back(c); }
    // `"key":` preceded by a comma unless it opens the object.
    void key(std::string_view name);
    // Starts a fresh object or array; the next key or item gets no comma.
    void open(char bracket);
    void close(char bracket);
    // Comma before an array item unless it is the first.
    void item();
    // Comma if something came before, then a line break and `indent`
    // blanks; the next key or item gets no further comma.
    void breakLine(int indent);
    // A line break and `indent` blanks, no comma (before a closing bracket).
    void newline(int indent);

    void number(double v);
    void integer(std::int64_t v);
    void boolean(bool v) { m_text.append(v ? "true" : "false"); }
    void null() { m_text.append("null"); }
    // A handle as an upper-case hexadecimal string ("1F").
    void handle(std::uint64_t h);
    // UTF-8 text from wide characters, escaped.
    void string(std::wstring_view s);
    void string(std::string_view utf8);

private:
    std::string m_text;
    bool m_first = true;
};

} // namespace pavo::files
