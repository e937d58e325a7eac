#include "files/JsonIn.h"

#include <charconv>
#include <cmath>
#include <cstdlib>

#include "base/Quoted.h"
#include "base/Utf8.h"
#include "files/DrawingFormat.h"

namespace pavo::files {

KeyTable::KeyTable(std::initializer_list<std::string_view> keys) : m_keys(keys) {
    m_slots.fill(-1);
    for (std::size_t i = 0; i < m_keys.size(); ++i) {
        std::size_t slot = slotOf(m_keys[i]);
        while (m_slots[slot] >= 0)
            slot = (slot + 1) % m_slots.size();
        m_slots[slot] = static_cast<std::int8_t>(i);
    }
}

std::size_t KeyTable::slotOf(std::string_view key) {
    if (key.empty()) return 0;
    const auto first = static_cast<unsigned char>(key.front());
    const auto last = static_cast<unsigned char>(key.back());
    return (first * 7u + last * 31u + key.size() * 13u) % 256u;
}

int KeyTable::find(std::string_view key) const {
    for (std::size_t slot = slotOf(key);; slot = (slot + 1) % m_slots.size()) {
        const int index = m_slots[slot];
        if (index < 0) return -1;
        if (m_keys[static_cast<std::size_t>(index)] == key) return index;
    }
}

JsonIn::JsonIn(std::string_view text, const std::string& fileName, LoadError& error)
    : m_begin(text.data()), m_end(text.data() + text.size()), m_fileName(fileName), m_error(error) {
    m_path.reserve(16);
}

namespace {

void appendPointerToken(std::string& out, std::string_view key) {
    for (char c : key) {
        if (c == '~')
            out += "~0";
        else if (c == '/')
            out += "~1";
        else
            out += c;
    }
}

} // namespace

std::string JsonIn::pointer() const {
    std::string out;
    for (std::size_t i = 0; i < m_depth; ++i) {
        const Segment& segment = m_path[i];
        out += '/';
        if (segment.index >= 0)
            out += std::to_string(segment.index);
        else
            appendPointerToken(out, segment.key);
    }
    return out;
}

namespace {

// The string whose opening quote is at `p`, unescaped, and the position
// after its closing quote.
const char* readString(const char* p, const char* end, std::string& out) {
    out.clear();
    std::wstring wide;
    for (++p; p < end && *p != '"'; ++p) {
        if (*p != '\\' || p + 1 >= end) {
            out += *p;
            continue;
        }
        const char c = *++p;
        switch (c) {
        case 'b': out += '\b'; break;
        case 'f': out += '\f'; break;
        case 'n': out += '\n'; break;
        case 'r': out += '\r'; break;
        case 't': out += '\t'; break;
        case 'u': {
            std::uint32_t unit = 0;
            if (end - p < 5 || std::from_chars(p + 1, p + 5, unit, 16).ptr != p + 5) break;
            p += 4;
            wide = static_cast<wchar_t>(unit);
            // A surrogate pair is one character.
            std::uint32_t low = 0;
            if (unit >= 0xD800 && unit < 0xDC00 && end - p >= 7 && p[1] == '\\' && p[2] == 'u' &&
                std::from_chars(p + 3, p + 7, low, 16).ptr == p + 7 && low >= 0xDC00 && low < 0xE000) {
                wide = static_cast<wchar_t>(0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00));
                p += 6;
            }
            out += toUtf8(wide);
            break;
        }
        default: out += c; // '"', '\\', '/'
        }
    }
    return p + 1;
}

} // namespace

std::string JsonIn::pointerAt(const char* at) const {
    struct Level {
        bool array;
        long index;
        std::string key;
    };
    std::vector<Level> levels;
    bool expectKey = false;
    std::string text;
    for (const char* p = m_begin; p < m_end && p < at;) {
        switch (*p) {
        case '{':
            levels.push_back({false, -1, {}});
            expectKey = true;
            ++p;
            break;
        case '[':
            levels.push_back({true, 0, {}});
            expectKey = false;
            ++p;
            break;
        case '}':
        case ']':
            if (!levels.empty()) levels.pop_back();
            ++p;
            break;
        case ',':
            if (!levels.empty()) {
                if (levels.back().array)
                    ++levels.back().index;
                else
                    expectKey = true;
            }
            ++p;
            break;
        case ':':
            expectKey = false;
            ++p;
            break;
        case '"':
            p = readString(p, m_end, text);
            if (expectKey && !levels.empty() && !levels.back().array) levels.back().key = text;
            break;
        default:
            ++p;
        }
    }
    std::string out;
    for (const Level& level : levels) {
        out += '/';
        if (level.array)
            out += std::to_string(level.index);
        else
            appendPointerToken(out, level.key);
    }
    return out;
}

std::string JsonIn::pointerWith(std::string_view key) const {
    std::string out = pointer();
    out += '/';
    appendPointerToken(out, key);
    return out;
}

void JsonIn::locate(const char* at) {
    if (!at || at < m_begin || at > m_end) at = m_end;
    std::size_t line = 1, column = 1;
    for (const char* p = m_begin; p < at; ++p) {
        if (*p == '\n') {
            ++line;
            column = 1;
        } else if ((static_cast<unsigned char>(*p) & 0xC0) != 0x80) {
            ++column; // count characters, not the continuation bytes of UTF-8
        }
    }
    m_error.line = line;
    m_error.column = column;
}

bool JsonIn::failAt(const std::string& pointer, const char* at, std::string problem) {
    if (m_failed) return false;
    m_failed = true;
    m_error.file = m_fileName;
    m_error.pointer = pointer;
    m_error.problem = std::move(problem);
    locate(at);
    return false;
}

void JsonIn::adoptFailure(const LoadError& error) {
    m_failed = true;
    m_error = error;
}

bool JsonIn::fail(const char* at, std::string problem) { return failAt(pointer(), at, std::move(problem)); }

bool JsonIn::failJson(simdjson::error_code code, const char* at) {
    std::string problem;
    switch (code) {
    case simdjson::INCOMPLETE_ARRAY_OR_OBJECT:
    case simdjson::UNCLOSED_STRING:
    case simdjson::EMPTY:
        // Found at the start, but what is wrong is where the text stops.
        return fail(m_end, code == simdjson::EMPTY ? "the drawing is empty"
                           : code == simdjson::UNCLOSED_STRING
                               ? "the drawing ends early (truncated?), inside a text"
                               : "the drawing ends early (truncated?), inside an object or a list");
    case simdjson::TAPE_ERROR:
        problem = "the JSON is malformed or truncated (";
        break;
    case simdjson::UTF8_ERROR:
        problem = "the text is not valid UTF-8 (";
        break;
    default:
        problem = "malformed JSON (";
        break;
    }
    problem += simdjson::error_message(code);
    problem += ')';
    return fail(at ? at : m_end, std::move(problem));
}

bool JsonIn::typeError(sj::value& v, std::string_view expected) {
    const char* at = where(v);
    std::string found = "something else";
    sj::json_type type;
    if (!v.type().get(type)) {
        switch (type) {
        case sj::json_type::array:
            found = "an array";
            break;
        case sj::json_type::object:
            found = "an object";
            break;
        case sj::json_type::number:
            found = "a number";
            break;
        case sj::json_type::string:
            found = "a string";
            break;
        case sj::json_type::boolean:
            found = "a boolean";
            break;
        case sj::json_type::null:
            found = "null";
            break;
        }
    }
    return fail(at, "expected " + std::string(expected) + ", found " + found);
}

namespace {

// The text of a number as written, cut to a readable length.
std::string numberText(sj::value& v) {
    std::string_view token = v.raw_json_token();
    token = token.substr(0, token.find_first_not_of("0123456789+-.eE"));
    return token.size() > 40 ? std::string(token.substr(0, 40)) + "..." : std::string(token);
}

bool isNumber(sj::value& v) {
    sj::json_type type;
    return !v.type().get(type) && type == sj::json_type::number;
}

} // namespace

bool JsonIn::number(sj::value& v, double& out) {
    if (!v.get_double().get(out)) return true;
    if (!isNumber(v)) return typeError(v, "a number");
    const std::string text = numberText(v);
    const double value = std::strtod(std::string(v.raw_json_token()).c_str(), nullptr);
    if (std::isinf(value)) return fail(where(v), text + " is too large");
    out = value; // nearer to 0 than a number can be: 0, as the schema's range allows
    return true;
}

bool JsonIn::wholeNumber(sj::value& v, std::int64_t& out, std::string_view expected) {
    if (!v.get_int64().get(out)) return true;
    if (!isNumber(v)) return typeError(v, expected);
    // 1.0 and 1e3 are whole numbers too.
    const double value = std::strtod(std::string(v.raw_json_token()).c_str(), nullptr);
    if (value != std::trunc(value)) return fail(where(v), numberText(v) + " is not a whole number");
    if (!(std::fabs(value) < 9.2e18)) return fail(where(v), numberText(v) + " is too large");
    out = static_cast<std::int64_t>(value);
    return true;
}

bool JsonIn::integer(sj::value& v, long long& out, long long lo, long long hi) {
    std::int64_t value = 0;
    if (!wholeNumber(v, value, "an integer")) return false;
    if (value < lo || value > hi)
        return fail(where(v), "the value " + std::to_string(value) + " is out of range (" + std::to_string(lo) +
                                  " to " + std::to_string(hi) + ")");
    out = value;
    return true;
}

bool JsonIn::boolean(sj::value& v, bool& out) {
    if (v.get_bool().get(out)) return typeError(v, "true or false");
    return true;
}

bool JsonIn::plainString(sj::value& v, std::string_view& out) {
    const std::string_view token = v.raw_json_token();
    if (token.empty() || token.front() != '"') return false;
    // The parser has checked that the string is closed and valid UTF-8.
    const char* begin = token.data() + 1;
    const char* end = begin;
    while (*end != '"' && *end != '\\')
        ++end;
    if (*end != '"') return false;
    out = std::string_view(begin, static_cast<std::size_t>(end - begin));
    return true;
}

bool JsonIn::utf8(sj::value& v, std::string_view& out) {
    if (!plainString(v, out) && v.get_string().get(out)) return typeError(v, "a string");
    // A name or text would be cut at it further on.
    if (out.find('\0') != std::string_view::npos) return fail(where(v), "a text cannot hold the character U+0000");
    return true;
}

bool JsonIn::text(sj::value& v, OxString& out) {
    std::string_view s;
    if (!utf8(v, s)) return false;
    out = OxString(pavo::fromUtf8(s));
    return true;
}

bool JsonIn::nonEmptyText(sj::value& v, OxString& out) {
    if (!text(v, out)) return false;
    if (out.isEmpty()) return fail(where(v), "the name must not be empty");
    return true;
}

bool JsonIn::point(sj::value& v, OxGePoint3d& out) {
    const char* at = where(v);
    double xyz[3] = {0, 0, 0};
    int count = 0;
    bool ok = items(v, [&](sj::value& item) {
        if (count >= 3) return fail(where(item), "a point has 2 or 3 coordinates");
        return number(item, xyz[count++]);
    });
    if (!ok) return false;
    if (count < 2) return fail(at, "a point has 2 or 3 coordinates");
    out = OxGePoint3d(xyz[0], xyz[1], xyz[2]);
    return true;
}

bool JsonIn::point2(sj::value& v, OxGePoint2d& out) {
    OxGePoint3d p;
    if (!point(v, p)) return false;
    if (p.z != 0) return fail(where(v), "expected a 2D point [x, y]");
    out = OxGePoint2d(p.x, p.y);
    return true;
}

bool JsonIn::color(sj::value& v, OxCmColor& out) {
    const char* at = where(v);
    sj::json_type type;
    if (auto e = v.type().get(type)) return failJson(e, at);
    if (type == sj::json_type::string) {
        std::string_view s;
        if (!utf8(v, s)) return false;
        if (s == "bylayer")
            out = OxCmColor::byLayer();
        else if (s == "byblock")
            out = OxCmColor::byBlock();
        else if (s == "none")
            out.setColorMethod(OxCmEntityColor::kNone);
        else
            return fail(at, "unknown colour " + quoteValue(s) +
                                " (bylayer, byblock, none, an index or {\"rgb\": [r, g, b]})");
        return true;
    }
    if (type == sj::json_type::number) {
        long long index = 0;
        if (!integer(v, index, -255, 255)) return false;
        if (index == 0) return fail(at, "colour index 0 is not a colour (use \"byblock\")");
        out = OxCmColor::fromIndex(static_cast<std::uint16_t>(static_cast<std::int16_t>(index)));
        return true;
    }
    if (type != sj::json_type::object) return typeError(v, "a colour");
    static const KeyTable keys{"rgb", "book", "name"};
    std::uint64_t seen = 0;
    int rgb[3] = {0, 0, 0};
    OxString book, name;
    bool ok = fields(v, keys, "a colour", seen, [&](int key, sj::value& value) {
        if (key == 1) return text(value, book);
        if (key == 2) return text(value, name);
        const char* arrayAt = where(value);
        int count = 0;
        bool good = items(value, [&](sj::value& c) {
            long long component = 0;
            if (count >= 3) return fail(where(c), "\"rgb\" has three components");
            if (!integer(c, component, 0, 255)) return false;
            rgb[count++] = static_cast<int>(component);
            return true;
        });
        if (good && count != 3) return fail(arrayAt, "\"rgb\" has three components");
        return good;
    });
    if (!ok) return false;
    if (!requireKeys(seen, 1, keys, "a colour", at)) return false;
    if (((seen >> 1) & 1) != ((seen >> 2) & 1))
        return fail(at, "a colour book colour needs both \"book\" and \"name\"");
    out = OxCmColor::fromRgb(static_cast<std::uint8_t>(rgb[0]), static_cast<std::uint8_t>(rgb[1]),
                             static_cast<std::uint8_t>(rgb[2]));
    if (seen & 6) {
        if (book.isEmpty() || name.isEmpty()) return fail(at, "a colour book colour needs a book and a colour name");
        out.setNames(name.kwszPtr(), book.kwszPtr());
    }
    return true;
}

bool JsonIn::transparency(sj::value& v, OxCmTransparency& out) {
    const char* at = where(v);
    sj::json_type type;
    if (auto e = v.type().get(type)) return failJson(e, at);
    if (type == sj::json_type::string) {
        std::string_view s;
        if (!utf8(v, s)) return false;
        if (s == "bylayer")
            out = OxCmTransparency();
        else if (s == "byblock")
            out.setMethod(OxCmTransparency::kByBlock);
        else
            return fail(at, "unknown transparency " + quoteValue(s) + " (bylayer, byblock or {\"alpha\": n})");
        return true;
    }
    if (type != sj::json_type::object) return typeError(v, "a transparency");
    static const KeyTable keys{"alpha"};
    std::uint64_t seen = 0;
    long long alpha = 255;
    bool ok =
        fields(v, keys, "a transparency", seen, [&](int, sj::value& value) { return integer(value, alpha, 0, 255); });
    if (!ok || !requireKeys(seen, 1, keys, "a transparency", at)) return false;
    out = OxCmTransparency(static_cast<std::uint8_t>(alpha));
    return true;
}

bool JsonIn::lineWeight(sj::value& v, OxDb::LineWeight& out) {
    std::int64_t value = 0;
    if (!wholeNumber(v, value, "a lineweight (an integer)")) return false;
    if (!isValidLineWeight(value))
        return fail(where(v), "invalid lineweight " + std::to_string(value) +
                                  " (hundredths of a millimetre from the standard set, or -1, -2, -3)");
    out = static_cast<OxDb::LineWeight>(value);
    return true;
}

bool JsonIn::handle(sj::value& v, std::uint64_t& out, bool nullable, bool& isNull) {
    isNull = false;
    if (nullable) {
        bool null = false;
        if (!v.is_null().get(null) && null) {
            isNull = true;
            out = 0;
            return true;
        }
    }
    std::string_view s;
    if (!plainString(v, s) && v.get_string().get(s))
        return typeError(v, nullable ? "a handle (a hexadecimal string) or null" : "a handle (a hexadecimal string)");
    return handleFromText(s, where(v), out);
}

bool JsonIn::handleFromText(std::string_view s, const char* at, std::uint64_t& out) {
    std::uint64_t value = 0;
    auto res = std::from_chars(s.data(), s.data() + s.size(), value, 16);
    if (s.empty() || s.size() > 16 || res.ec != std::errc() || res.ptr != s.data() + s.size() || s.front() == '-' ||
        s.front() == '+')
        return fail(at, quoteValue(s) + " is not a handle (a hexadecimal number like \"1F\")");
    if (value == 0) return fail(at, "handle 0 is not a handle");
    out = value;
    return true;
}

bool JsonIn::statusOk(Ox::ErrorStatus es, const char* at, std::string_view what) {
    return es == Ox::eOk ||
           fail(at, "the database refused " + std::string(what) + " (status " + std::to_string(es) + ")");
}

bool JsonIn::requireKeys(std::uint64_t seen, std::uint64_t required, const KeyTable& keys, std::string_view what,
                         const char* at) {
    const std::uint64_t missing = required & ~seen;
    if (!missing) return true;
    int index = 0;
    while (!((missing >> index) & 1))
        ++index;
    return fail(at, std::string(what) + " needs the key \"" + std::string(keys.name(index)) + "\"");
}

} // namespace pavo::files
