// The drawing schema and the reader agree: each value the schema allows at
// the edge of its range (the least and greatest numbers, the shortest and a
// long string with every kind of character, each enumerated value, every
// optional key) is read. Each place of the schema is tried once, at its
// last occurrence in the sample drawing.
#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <limits>
#include <map>
#include <nlohmann/json.hpp>
#include <optional>
#include <regex>
#include <set>

#include "base/Utf8.h"
#include "files/DrawingFile.h"

namespace {

using json = nlohmann::ordered_json; // sections and keys keep their order

json readJson(const std::string& path) {
    std::ifstream in(path);
    return json::parse(in);
}

class ExtremeValues {
public:
    explicit ExtremeValues(json schema) : m_schema(std::move(schema)) {
        // A text that names another object leads nowhere when changed, as a
        // handle does.
        m_names.insert(&m_schema["properties"]["header"]["properties"]["cepstyle"]);
    }

    // Variants of `drawing`: the k-th has the k-th extreme of every place
    // (a place with fewer keeps its value), so that a few loads try them
    // all; the reader names the place of a refusal.
    std::vector<json> variants(const json& drawing) {
        m_places.clear();
        m_tried.clear();
        visit(json::json_pointer(), drawing, m_schema);
        std::size_t most = 0;
        for (const auto& place : m_places)
            most = std::max(most, place.second.size());
        std::vector<json> out(most, drawing);
        for (const auto& [where, values] : m_places)
            for (std::size_t k = 0; k < values.size(); ++k)
                out[k][where] = values[k];
        return out;
    }
    std::size_t places() const { return m_places.size(); }

private:
    const json& resolve(const json& node) const {
        if (node.contains("$ref")) {
            const std::string ref = node["$ref"];
            return resolve(m_schema.at(json::json_pointer(ref.substr(1))));
        }
        return node;
    }

    // The branches of `node` that may describe `value`.
    std::vector<const json*> branches(const json& node, const json& value) const {
        const json& n = resolve(node);
        std::vector<const json*> out;
        for (const char* key : {"anyOf", "oneOf"})
            if (n.contains(key))
                for (const json& b : n[key]) {
                    const json& r = resolve(b);
                    // An entity's branch is the one of its kind.
                    if (value.is_object() && value.contains("t") && r.contains("properties") &&
                        r["properties"].contains("t") && r["properties"]["t"].value("const", "") != value["t"])
                        continue;
                    for (const json* inner : branches(r, value))
                        out.push_back(inner);
                }
        if (out.empty()) out.push_back(&n);
        return out;
    }

    // Handles lead to objects; a changed one leads nowhere.
    bool isHandle(const json& n) const { return &n == &m_schema["$defs"]["handle"]; }

    // Strings a schema node allows: the shortest, and long ones with every
    // kind of character, as far as its pattern and length allow.
    std::vector<json> strings(const json& n) const {
        const std::size_t shortest = n.value("minLength", 0), longest = n.value("maxLength", 300);
        const std::wstring kinds =
            L"\u00c9t\u00e9 \u041f\u043b\u0430\u043d \u4e2d\u6587 \U0001F600 #$%&'()+-.@[]^_{}~!|";
        std::vector<std::wstring> candidates = {std::wstring(std::max<std::size_t>(shortest, 1), L'x'), kinds + L"\t",
                                                kinds};
        for (std::wstring& c : candidates)
            while (c.size() < longest)
                c += L"0123456789"[c.size() % 10];
        candidates.insert(candidates.begin(), std::wstring(shortest, L'x'));
        std::vector<json> out;
        const std::optional<std::wregex> pattern =
            n.contains("pattern")
                ? std::optional<std::wregex>(std::wregex(pavo::fromUtf8(n["pattern"].get<std::string>())))
                : std::nullopt;
        for (std::wstring& c : candidates) {
            c.resize(std::min(c.size(), longest));
            if (c.size() >= shortest && (!pattern || std::regex_search(c, *pattern)))
                out.push_back(pavo::toUtf8(distinct(c)));
        }
        return out;
    }

    // The extremes of a scalar schema node; empty for handles and
    // references, whose values must lead somewhere.
    std::vector<json> extremes(const json& node) const {
        const json& n = resolve(node);
        std::vector<json> out;
        for (const char* key : {"anyOf", "oneOf"})
            if (n.contains(key))
                for (const json& b : n[key])
                    for (json& v : extremes(b))
                        out.push_back(std::move(v));
        if (n.contains("enum"))
            for (const json& v : n["enum"])
                out.push_back(v);
        const std::string type = n.value("type", "");
        if (type == "boolean") out.insert(out.end(), {true, false});
        if (type == "integer") {
            const long long lo = n.value("minimum", std::numeric_limits<long long>::min());
            const long long hi = n.value("maximum", std::numeric_limits<long long>::max());
            for (long long v : {lo, hi, lo + 1, hi - 1})
                if (!n.contains("not") || json(v) != n["not"].value("const", json())) out.push_back(v);
        }
        if (type == "number") {
            constexpr double kMax = std::numeric_limits<double>::max();
            constexpr double kTiny = std::numeric_limits<double>::denorm_min();
            double lo = n.value("minimum", -kMax), hi = n.value("maximum", kMax);
            if (n.contains("exclusiveMinimum")) lo = std::nextafter(n["exclusiveMinimum"].get<double>(), kMax);
            for (double v : {lo, hi, kTiny, -kTiny, 0.0, -0.0})
                if (v >= lo && v <= hi) out.push_back(v);
        }
        if (type == "string" && !isHandle(n) && !m_names.count(&n))
            for (json& v : strings(n))
                out.push_back(std::move(v));
        return out;
    }

    // `text` made to differ from every other one made (names are unique) by
    // its last characters, which every pattern allows.
    std::wstring distinct(std::wstring text) const {
        static constexpr std::wstring_view kDigits = L"0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz";
        std::size_t n = m_made++;
        for (std::size_t i = text.size(); i-- > 0 && i + 3 >= text.size(); n /= kDigits.size())
            text[i] = kDigits[n % kDigits.size()];
        return text;
    }

    // Tries `value` at `where`.
    void tryValue(const json::json_pointer& where, const json& value) { m_places[where].push_back(value); }

    void visit(const json::json_pointer& where, const json& value, const json& node) {
        for (const json* branch : branches(node, value)) {
            const json& n = *branch;
            if (!m_tried.insert(branch).second && !value.is_object() && !value.is_array()) continue;
            if (value.is_object() && n.contains("properties")) {
                for (const auto& [key, propertySchema] : n["properties"].items()) {
                    if (value.contains(key)) {
                        visit(where / key, value[key], propertySchema);
                    } else if (m_tried.insert(&propertySchema).second) {
                        for (const json& v : extremes(propertySchema))
                            tryValue(where / key, v);
                    }
                }
            } else if (value.is_array() && n.contains("items")) {
                // From the end: the first items of a list are the ones a
                // drawing must have ("0", "ByBlock", "Model").
                for (std::size_t i = value.size(); i-- > 0;)
                    visit(where / i, value[i], n["items"]);
            } else if (!value.is_object() && !value.is_array()) {
                for (const json& v : extremes(n))
                    if (v != value) tryValue(where, v);
            }
        }
    }

    json m_schema;
    std::set<const json*> m_tried;
    std::set<const json*> m_names;
    mutable std::size_t m_made = 0;
    std::map<json::json_pointer, std::vector<json>> m_places;
};

} // namespace

TEST(SchemaAgreement, TheReaderReadsEverySchemaValidExtreme) {
    const json schema = readJson(std::string(PAVO_TEST_RESOURCE_DIR) + "/schema/drawing.schema.json");
    const json sample = json::parse(pavo::files::embeddedSampleDrawing());
    ExtremeValues extremes(schema);
    const auto variants = extremes.variants(sample);
    EXPECT_GT(extremes.places(), 140u);
    for (const json& drawing : variants) {
        pavo::files::LoadError error;
        EXPECT_TRUE(pavo::files::readDrawing(drawing.dump(), "extreme.pvd", error)) << error.message();
    }
}
