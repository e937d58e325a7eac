#include "DrawingMutator.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>
#include <vector>

#include "FuzzSession.h"

namespace pavofuzz {

namespace {

using json = nlohmann::ordered_json; // keys keep the writer's order

// Keys whose value is a handle of another object.
bool isReferenceKey(std::string_view key) {
    static constexpr std::string_view kKeys[] = {
        "b",      "l",        "lt",     "ps",       "material", "plotStyle", "linetype", "block",    "viewport",
        "clayer", "celtype",  "ctab",   "layers",   "linetypes", "blocks",   "layouts",  "plotStyles", "materials",
        "layerStates", "namedObjects", "plotSettings", "currentLayer", "activeViewport", "cmaterial", "h"};
    for (std::string_view k : kKeys)
        if (k == key) return true;
    return false;
}

// Everything in a drawing a change can be made to, found in one walk.
struct Sites {
    std::vector<json*> handleSlots; // "h" values and references
    std::vector<std::string> handles; // the objects' own handles
    std::vector<json*> numbers;
    std::vector<json*> texts;
    std::vector<json*> lists;    // arrays of objects
    std::vector<json*> entities; // objects with "t"
    std::vector<json*> blocks;
    std::vector<json*> layers;
    std::uint64_t highestHandle = 0;

    void walk(json& node, std::string_view key, bool inFrozenList) {
        if (node.is_object()) {
            if (node.contains("t")) entities.push_back(&node);
            for (auto& [k, value] : node.items())
                walk(value, k, k == "fl");
        } else if (node.is_array()) {
            if (!node.empty() && node.front().is_object()) lists.push_back(&node);
            for (json& item : node)
                walk(item, key, inFrozenList);
        } else if (node.is_string()) {
            const std::string& text = node.get_ref<const std::string&>();
            if (inFrozenList || isReferenceKey(key)) {
                handleSlots.push_back(&node);
                std::uint64_t value = 0;
                const auto res = std::from_chars(text.data(), text.data() + text.size(), value, 16);
                if (key == "h" && res.ec == std::errc()) {
                    handles.push_back(text);
                    highestHandle = std::max(highestHandle, value);
                }
            } else {
                texts.push_back(&node);
            }
        } else if (node.is_number()) {
            numbers.push_back(&node);
        }
    }

    explicit Sites(json& drawing) {
        walk(drawing, "", false);
        if (drawing.contains("blocks") && drawing["blocks"].is_array())
            for (json& b : drawing["blocks"])
                if (b.is_object()) blocks.push_back(&b);
        if (drawing.contains("layers") && drawing["layers"].is_array())
            for (json& l : drawing["layers"])
                if (l.is_object()) layers.push_back(&l);
    }
};

std::string hex(std::uint64_t value) {
    char text[17];
    const auto res = std::to_chars(text, text + 16, value, 16);
    std::string out(text, res.ptr);
    for (char& c : out)
        c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
    return out;
}

class Mutator {
public:
    Mutator(json& drawing, std::mt19937_64& random, ByteMutator bytes)
        : m_drawing(drawing), m_random(random), m_bytes(bytes) {}

    // One change; false when the drawing offered nothing for the chosen one.
    bool mutate() {
        Sites sites(m_drawing);
        switch (below(12)) {
        case 0: return sameHandle(sites);
        case 1: return extremeHandle(sites);
        case 2: return referenceLoop(sites);
        case 3: return copyItem(sites);
        case 4: return removeItem(sites);
        case 5: return extremeNumber(sites);
        case 6: return editText(sites);
        case 7: return oddViewport(sites);
        case 8: return oddLayer(sites);
        case 9: return oddAttributes(sites);
        case 10: return swapItems(sites);
        default: return extremeSeed(sites);
        }
    }

private:
    std::size_t below(std::size_t n) { return n ? std::uniform_int_distribution<std::size_t>(0, n - 1)(m_random) : 0; }
    template <class T> T& pick(std::vector<T>& items) { return items[below(items.size())]; }

    std::string freshHandle(const Sites& sites) {
        return sites.highestHandle < std::numeric_limits<std::uint64_t>::max() ? hex(sites.highestHandle + 1)
                                                                                 : hex(m_random() | 1);
    }

    // Gives every object inside `node` a new handle.
    void rehandle(json& node, Sites& sites) {
        if (node.is_object()) {
            if (node.contains("h")) node["h"] = hex(++sites.highestHandle);
            for (auto& [k, value] : node.items())
                if (k != "h") rehandle(value, sites);
        } else if (node.is_array()) {
            for (json& item : node)
                rehandle(item, sites);
        }
    }

    // A handle or a reference made another object's handle: duplicates,
    // references to the wrong kind of object, blocks inserting layouts.
    bool sameHandle(Sites& sites) {
        if (sites.handleSlots.empty() || sites.handles.empty()) return false;
        *pick(sites.handleSlots) = pick(sites.handles);
        return true;
    }

    bool extremeHandle(Sites& sites) {
        if (sites.handleSlots.empty()) return false;
        static const char* kValues[] = {"FFFFFFFFFFFFFFFF", "FFFFFFFFFFFFFFFE", "7FFFFFFFFFFFFFFF", "0", "1",
                                        "10000000000000000", "-1", "", "g"};
        *pick(sites.handleSlots) = below(3) ? std::string(kValues[below(std::size(kValues))]) : freshHandle(sites);
        return true;
    }

    bool extremeSeed(Sites& sites) {
        if (!m_drawing.contains("header") || !m_drawing["header"].is_object()) return false;
        static const char* kValues[] = {"FFFFFFFFFFFFFFFF", "FFFFFFFFFFFFFFFE", "FFFFFFFFFFFFFFFD", "1"};
        m_drawing["header"]["handseed"] = below(2) ? std::string(kValues[below(std::size(kValues))])
                                                   : hex(sites.highestHandle + below(3));
        return true;
    }

    // A block reference to a block added to a block, which may close a loop
    // (a block inserting itself, a layout's block, a chain).
    bool referenceLoop(Sites& sites) {
        if (sites.blocks.empty()) return false;
        json& into = *pick(sites.blocks);
        const json& target = *pick(sites.blocks);
        if (!target.contains("h")) return false;
        json insert = {{"t", "insert"}, {"h", freshHandle(sites)}, {"b", target["h"]}, {"p", {1.0, 1.0}}};
        if (!into.contains("entities") || !into["entities"].is_array()) into["entities"] = json::array();
        json& list = into["entities"];
        list.insert(list.begin() + static_cast<std::ptrdiff_t>(below(list.size() + 1)), std::move(insert));
        return true;
    }

    // An object copied next to itself, keeping its handles or with new ones.
    bool copyItem(Sites& sites) {
        if (sites.lists.empty()) return false;
        json& list = *pick(sites.lists);
        json copy = list[below(list.size())];
        if (below(2)) rehandle(copy, sites);
        list.insert(list.begin() + static_cast<std::ptrdiff_t>(below(list.size() + 1)), std::move(copy));
        return true;
    }

    // An object removed: what referred to it dangles, or nothing did.
    bool removeItem(Sites& sites) {
        if (sites.lists.empty()) return false;
        json& list = *pick(sites.lists);
        list.erase(list.begin() + static_cast<std::ptrdiff_t>(below(list.size())));
        return true;
    }

    bool swapItems(Sites& sites) {
        if (sites.lists.empty()) return false;
        json& list = *pick(sites.lists);
        std::swap(list[below(list.size())], list[below(list.size())]);
        return true;
    }

    bool extremeNumber(Sites& sites) {
        if (sites.numbers.empty()) return false;
        json& number = *pick(sites.numbers);
        static const double kValues[] = {0.0,
                                         -0.0,
                                         1.0,
                                         -1.0,
                                         1e308,
                                         -1e308,
                                         std::numeric_limits<double>::max(),
                                         std::numeric_limits<double>::denorm_min(),
                                         1e-300,
                                         9007199254740993.0,
                                         32767,
                                         32768,
                                         2147483648.0,
                                         0.5};
        switch (below(3)) {
        case 0: number = kValues[below(std::size(kValues))]; break;
        case 1: {
            const auto value = static_cast<std::int64_t>(m_random() >> (1 + below(63)));
            number = below(2) ? value : -value;
            break;
        }
        default: number = number.get<double>() * (below(2) ? 2.0 : -1.0) + static_cast<double>(below(3));
        }
        return true;
    }

    bool editText(Sites& sites) {
        if (sites.texts.empty()) return false;
        json& text = *pick(sites.texts);
        std::string value = text.get<std::string>();
        switch (below(5)) {
        case 0: // another name of the drawing, in another case
            value = pick(sites.texts)->get<std::string>();
            for (char& c : value)
                c = static_cast<char>(below(2) ? std::tolower(static_cast<unsigned char>(c))
                                               : std::toupper(static_cast<unsigned char>(c)));
            break;
        case 1: value = std::string(1 + below(300), "*?~|#@`[] A"[below(11)]); break;
        case 2: value += value; break;
        default: {
            value.resize(value.size() + 16);
            value.resize(m_bytes(reinterpret_cast<std::uint8_t*>(value.data()), value.size() - 16, value.size()));
        }
        }
        text = value;
        return true;
    }

    // A viewport moved to another block, renumbered, given odd frozen layers
    // or sizes.
    bool oddViewport(Sites& sites) {
        std::vector<json*> viewports;
        for (json* e : sites.entities)
            if ((*e)["t"] == "viewport") viewports.push_back(e);
        if (viewports.empty()) return false;
        json& viewport = *pick(viewports);
        switch (below(4)) {
        case 0: {
            if (sites.blocks.empty()) return false;
            json& into = *pick(sites.blocks);
            if (!into.contains("entities") || !into["entities"].is_array()) into["entities"] = json::array();
            json copy = viewport;
            if (below(2)) copy["h"] = freshHandle(sites);
            into["entities"].push_back(std::move(copy));
            return true;
        }
        case 1: viewport["n"] = below(2) ? 1 : static_cast<int>(below(5)); return true;
        case 2: {
            json& frozen = viewport["fl"];
            if (!frozen.is_array()) frozen = json::array();
            for (std::size_t i = 1 + below(3); i-- > 0 && !sites.handles.empty();)
                frozen.push_back(pick(sites.handles));
            return true;
        }
        default:
            viewport[below(2) ? "w" : "vh"] = below(2) ? 1e-300 : 1e300;
            return true;
        }
    }

    // A layer renamed like another, given overrides keyed by any object,
    // frozen while current.
    bool oddLayer(Sites& sites) {
        if (sites.layers.empty()) return false;
        json& layer = *pick(sites.layers);
        switch (below(3)) {
        case 0: {
            const json& other = *pick(sites.layers);
            if (!other.contains("name") || !other["name"].is_string()) return false;
            std::string name = other["name"].get<std::string>();
            if (below(2))
                for (char& c : name)
                    c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
            layer["name"] = name;
            return true;
        }
        case 1: {
            if (sites.handles.empty()) return false;
            json& overrides = layer["overrides"];
            if (!overrides.is_array()) overrides = json::array();
            overrides.push_back({{"viewport", pick(sites.handles)}, {"color", 1 + static_cast<int>(below(255))}});
            return true;
        }
        default:
            layer[below(2) ? "frozen" : "locked"] = true;
            if (layer.contains("h") && m_drawing.contains("header")) m_drawing["header"]["clayer"] = layer["h"];
            return true;
        }
    }

    // Attributes that share handles with each other, their reference or
    // another object.
    bool oddAttributes(Sites& sites) {
        std::vector<json*> inserts;
        for (json* e : sites.entities)
            if ((*e)["t"] == "insert") inserts.push_back(e);
        if (inserts.empty()) return false;
        json& insert = *pick(inserts);
        json& attribs = insert["attribs"];
        if (!attribs.is_array()) attribs = json::array();
        json attribute = attribs.empty() ? json{{"h", freshHandle(sites)}, {"p", {0.0, 0.0}}, {"tag", "T"}}
                                         : attribs[below(attribs.size())];
        if (below(2))
            attribute["h"] = insert["h"];
        else if (!sites.handles.empty())
            attribute["h"] = pick(sites.handles);
        attribs.push_back(std::move(attribute));
        return true;
    }

    json& m_drawing;
    std::mt19937_64& m_random;
    ByteMutator m_bytes;
};

// A line of answers: a command or an option, or bytes changed.
std::string mutateAnswers(std::string answers, std::mt19937_64& random, ByteMutator bytes) {
    static const char* kWords[] = {"LIST",  "ALL",    "CHPROP", "SETBYLAYER", "-LAYER", "VPLAYER", "LAYOUT", "Set",
                                   "MSPACE", "PSPACE", "INSERT", "MVIEW",      "LINE",   "CIRCLE",  "TEXT",   "SELECT",
                                   "*",     "Freeze", "Thaw",   "Reset",      "All",    "0,0",     "^C",     "",
                                   "CVPORT", "2",     "TILEMODE", "0",        "Select", "List",    "Yes",    "P"};
    if (random() % 2) {
        const std::size_t size = answers.size();
        answers.resize(size + 64);
        answers.resize(bytes(reinterpret_cast<std::uint8_t*>(answers.data()), size, answers.size()));
        return answers;
    }
    const std::size_t at = answers.empty() ? 0 : random() % (answers.size() + 1);
    return answers.insert(answers.find('\n', at) == std::string::npos ? answers.size() : answers.find('\n', at),
                          std::string(answers.empty() ? "" : "\n") + kWords[random() % std::size(kWords)]);
}

} // namespace

std::string mutateDrawingInput(std::string_view input, std::mt19937_64& random, ByteMutator bytes) {
    const DrawingInput parts = splitDrawingInput(input);
    json drawing = json::parse(parts.drawing, nullptr, false);
    if (!drawing.is_object()) return {};
    std::string answers(parts.answers);
    if (random() % 5 == 0) {
        answers = mutateAnswers(std::move(answers), random, bytes);
    } else {
        for (int changes = 1 + static_cast<int>(random() % 3), tries = 0; changes > 0 && tries < 10; ++tries)
            if (Mutator(drawing, random, bytes).mutate()) --changes;
    }
    std::string out = drawing.dump(-1, ' ', false, json::error_handler_t::replace);
    if (!answers.empty()) out.append(kAnswersMark).append(answers);
    return out;
}

} // namespace pavofuzz
