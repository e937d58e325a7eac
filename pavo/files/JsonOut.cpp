#include "files/JsonOut.h"

#include <charconv>
#include <cmath>
#include <limits>

namespace pavo::files {

void JsonOut::key(std::string_view name) {
    if (!m_first) m_text.push_back(',');
    m_first = false;
    m_text.push_back('"');
    m_text.append(name);
    m_text.append("\":");
}

void JsonOut::open(char bracket) {
    m_text.push_back(bracket);
    m_first = true;
}

void JsonOut::close(char bracket) {
    m_text.push_back(bracket);
    m_first = false;
}

void JsonOut::item() {
    if (!m_first) m_text.push_back(',');
    m_first = false;
}

void JsonOut::breakLine(int indent) {
    if (!m_first) m_text.push_back(',');
    m_first = true;
    newline(indent);
}

void JsonOut::newline(int indent) {
    m_text.push_back('\n');
    m_text.append(static_cast<std::size_t>(indent), ' ');
}

void JsonOut::number(double v) {
    // JSON has no NaN or infinity: a NaN is saved as 0, infinities as the
    // largest finite values, so that the file always reads back.
    if (std::isnan(v)) v = 0.0;
    if (std::isinf(v)) v = v > 0 ? std::numeric_limits<double>::max() : -std::numeric_limits<double>::max();
    char buf[32];
    auto res = std::to_chars(buf, buf + sizeof buf, v);
    m_text.append(buf, res.ptr);
}

void JsonOut::integer(std::int64_t v) {
    char buf[24];
    auto res = std::to_chars(buf, buf + sizeof buf, v);
    m_text.append(buf, res.ptr);
}

void JsonOut::handle(std::uint64_t h) {
    char buf[20];
    auto res = std::to_chars(buf, buf + sizeof buf, h, 16);
    for (char* p = buf; p != res.ptr; ++p)
        if (*p >= 'a') *p = static_cast<char>(*p - 'a' + 'A');
    m_text.push_back('"');
    m_text.append(buf, res.ptr);
    m_text.push_back('"');
}

namespace {

void appendEscaped(std::string& out, char32_t c) {
    static const char* hex = "0123456789abcdef";
    switch (c) {
    case '"':
        out.append("\\\"");
        return;
    case '\\':
        out.append("\\\\");
        return;
    case '\n':
        out.append("\\n");
        return;
    case '\r':
        out.append("\\r");
        return;
    case '\t':
        out.append("\\t");
        return;
    default:
        break;
    }
    if (c < 0x20) {
        out.append("\\u00");
        out.push_back(hex[c >> 4]);
        out.push_back(hex[c & 15]);
        return;
    }
    if (c >= 0xD800 && c <= 0xDFFF) c = 0xFFFD; // a lone surrogate is no character
    if (c > 0x10FFFF) c = 0xFFFD;
    if (c < 0x80) {
        out.push_back(static_cast<char>(c));
    } else if (c < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (c >> 6)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else if (c < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (c >> 12)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (c >> 18)));
        out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
    }
}

} // namespace

void JsonOut::string(std::wstring_view s) {
    m_text.push_back('"');
    for (wchar_t ch : s)
        appendEscaped(m_text, static_cast<char32_t>(static_cast<std::uint32_t>(ch)));
    m_text.push_back('"');
}

void JsonOut::string(std::string_view utf8) {
    m_text.push_back('"');
    for (char ch : utf8) {
        auto c = static_cast<unsigned char>(ch);
        if (c < 0x20 || c == '"' || c == '\\')
            appendEscaped(m_text, c);
        else
            m_text.push_back(ch);
    }
    m_text.push_back('"');
}

} // namespace pavo::files
