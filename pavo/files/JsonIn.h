// Reading JSON with simdjson's On-Demand parser while keeping track of where
// we are, so that every refusal names the JSON Pointer, line and column.
#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <simdjson.h>
#include <string>
#include <string_view>
#include <vector>

#include "OxCmColor.h"
#include "OxDb.h"
#include "OxGe.h"
#include "OxString.h"
#include "base/Quoted.h"
#include "files/DrawingFile.h"

namespace pavo::files {

namespace sj = simdjson::ondemand;

// The known keys of one kind of JSON object, found in about one comparison.
class KeyTable {
public:
    KeyTable(std::initializer_list<std::string_view> keys);
    // Index of `key` in the list, or -1.
    int find(std::string_view key) const;
    std::string_view name(int index) const { return m_keys[static_cast<std::size_t>(index)]; }

private:
    static std::size_t slotOf(std::string_view key);
    std::vector<std::string_view> m_keys;
    std::array<std::int8_t, 256> m_slots;
};

class JsonIn {
public:
    JsonIn(std::string_view text, const std::string& fileName, LoadError& error);

    // Records the first problem; always returns false so that callers can
    // `return fail(...)`.
    bool fail(const char* at, std::string problem);
    bool failAt(const std::string& pointer, const char* at, std::string problem);
    // A parser error (malformed or truncated JSON).
    bool failJson(simdjson::error_code code, const char* at = nullptr);
    bool failed() const { return m_failed; }

    // The JSON Pointer of the current position.
    std::string pointer() const;
    std::string pointerWith(std::string_view key) const;
    // The JSON Pointer of the value that starts at `at`, found by walking
    // the text from its start: for a message about a place passed long ago
    // (a reference checked once the whole file is read), so that nothing
    // has to be kept for each place that is never complained about.
    std::string pointerAt(const char* at) const;
    static const char* where(sj::value& v) { return v.raw_json_token().data(); }
    const char* begin() const { return m_begin; }
    const char* end() const { return m_end; }
    std::size_t textSize() const { return static_cast<std::size_t>(m_end - m_begin); }

    // Walks an object: `fn(keyIndex, value)` for each key, refusing unknown
    // and repeated keys. `seen` gets one bit per key index.
    template <class Fn>
    bool fields(sj::object object, const KeyTable& keys, std::string_view what, std::uint64_t& seen, Fn&& fn);
    template <class Fn>
    bool fields(sj::value& v, const KeyTable& keys, std::string_view what, std::uint64_t& seen, Fn&& fn) {
        sj::object object;
        if (v.get_object().get(object)) return typeError(v, "an object");
        return fields(object, keys, what, seen, fn);
    }
    // Walks an array: `fn(value)` for each item.
    template <class Fn> bool items(sj::value& v, Fn&& fn);
    // The location of the current key (for errors about it).
    const char* keyLocation() const { return m_keyAt; }

    // The path of JSON Pointers is a stack that keeps its slots, so that
    // walking into a value costs no allocation. `key` must outlive its use.
    void enter(std::string_view key, long index = -1) {
        if (m_depth == m_path.size()) m_path.emplace_back();
        m_path[m_depth++] = Segment{key, index};
    }
    void leave() { --m_depth; }
    // One segment for the length of a scope (for code that follows the
    // structure of a file without walking it).
    class PathScope {
    public:
        PathScope(JsonIn& json, std::string_view key, long index = -1) : m_json(json) { m_json.enter(key, index); }
        ~PathScope() { m_json.leave(); }
        PathScope(const PathScope&) = delete;
        PathScope& operator=(const PathScope&) = delete;

    private:
        JsonIn& m_json;
    };
    // Takes the problem found by another reader of the same text, earlier
    // in it, in place of this one's.
    void adoptFailure(const LoadError& error);

    bool typeError(sj::value& v, std::string_view expected);
    // A number; one beyond the largest is refused ("1e309 is too large").
    bool number(sj::value& v, double& out);
    // A whole number (1, 1.0 or 1e3) that fits 64 bits.
    bool wholeNumber(sj::value& v, std::int64_t& out, std::string_view expected);
    bool integer(sj::value& v, long long& out, long long lo, long long hi);
    bool boolean(sj::value& v, bool& out);
    // A string; one holding U+0000 is refused.
    bool utf8(sj::value& v, std::string_view& out);
    bool text(sj::value& v, OxString& out);
    bool nonEmptyText(sj::value& v, OxString& out);
    // [x, y] or [x, y, z].
    bool point(sj::value& v, OxGePoint3d& out);
    bool point2(sj::value& v, OxGePoint2d& out);
    bool color(sj::value& v, OxCmColor& out);
    bool transparency(sj::value& v, OxCmTransparency& out);
    bool lineWeight(sj::value& v, OxDb::LineWeight& out);
    // A handle string ("1F"); `isNull` when the value is JSON null and
    // `nullable`.
    bool handle(sj::value& v, std::uint64_t& out, bool nullable, bool& isNull);
    bool handleFromText(std::string_view s, const char* at, std::uint64_t& out);
    // A status of the database about a value read: false with a message
    // unless eOk.
    bool statusOk(Ox::ErrorStatus es, const char* at, std::string_view what);
    // Fails when `required` bits are missing from `seen`, naming the first.
    bool requireKeys(std::uint64_t seen, std::uint64_t required, const KeyTable& keys, std::string_view what,
                     const char* at);

private:
    struct Segment {
        std::string_view key;
        long index = -1;
    };
    // The text of a string without escapes, read in place; false when the
    // value is something else or has escapes (then simdjson unescapes it).
    static bool plainString(sj::value& v, std::string_view& out);
    void locate(const char* at);
    const char* m_begin;
    const char* m_end;
    const std::string& m_fileName;
    LoadError& m_error;
    bool m_failed = false;
    std::vector<Segment> m_path;
    std::size_t m_depth = 0;
    const char* m_keyAt = nullptr;
};

template <class Fn>
bool JsonIn::fields(sj::object object, const KeyTable& keys, std::string_view what, std::uint64_t& seen, Fn&& fn) {
    for (auto result : object) {
        sj::field field;
        if (auto e = std::move(result).get(field)) return failJson(e);
        const char* keyAt = field.key().raw() - 1; // before unescaping, which consumes the key
        // Keys are nearly always plain: compare them in place rather than
        // copy each into simdjson's string buffer.
        const char* keyEnd = keyAt + 1;
        while (*keyEnd != '"' && *keyEnd != '\\')
            ++keyEnd;
        std::string_view key(keyAt + 1, static_cast<std::size_t>(keyEnd - keyAt - 1));
        if (*keyEnd != '"')
            if (auto e = field.unescaped_key().get(key)) return failJson(e);
        const int index = keys.find(key);
        m_keyAt = keyAt;
        if (index < 0) {
            const std::string shown = quoteValue(key);
            // A key that is not itself shown whole does not go into the pointer either.
            const bool whole = shown.size() == key.size() + 2;
            return failAt(whole ? pointerWith(key) : pointer(), keyAt,
                          "unknown key " + shown + " in " + std::string(what));
        }
        const std::uint64_t bit = std::uint64_t(1) << index;
        if (seen & bit)
            return failAt(pointerWith(key), keyAt,
                          "duplicate key \"" + std::string(key) + "\" in " + std::string(what));
        seen |= bit;
        enter(keys.name(index), -1);
        if (!fn(index, field.value())) return false;
        leave();
    }
    return true;
}

template <class Fn> bool JsonIn::items(sj::value& v, Fn&& fn) {
    sj::array array;
    if (v.get_array().get(array)) return typeError(v, "an array");
    long index = 0;
    for (auto result : array) {
        sj::value item;
        if (auto e = std::move(result).get(item)) return failJson(e);
        enter({}, index);
        if (!fn(item)) return false;
        leave();
        ++index;
    }
    return true;
}

} // namespace pavo::files
