#include "files/LayerStateFile.h"

#include <nlohmann/json.hpp>

#include "base/Utf8.h"

// Keys keep the order they are written in, so that files read naturally.
using json = nlohmann::ordered_json;
using Mask = OxDbLayerStateManager;

namespace pavo::files {
namespace {

constexpr const char* kFormat = "pavo-layer-state";
constexpr int kVersion = 1;

// The mask bits by the names the file uses, and how the listing says them.
struct MaskBit {
    unsigned int bit;
    const char* key;
    const wchar_t* label;
};
constexpr MaskBit kMaskBits[] = {
    {Mask::kOn, "on", L"on/off"},
    {Mask::kFrozen, "frozen", L"frozen"},
    {Mask::kLocked, "locked", L"locked"},
    {Mask::kPlot, "plot", L"plot"},
    {Mask::kNewViewport, "newViewportFrozen", L"frozen in new viewports"},
    {Mask::kColor, "color", L"colour"},
    {Mask::kLineType, "linetype", L"linetype"},
    {Mask::kLineWeight, "lineweight", L"lineweight"},
    {Mask::kPlotStyle, "plotStyle", L"plot style"},
    {Mask::kCurrentViewport, "viewportFrozen", L"frozen in the viewport"},
    {Mask::kTransparency, "transparency", L"transparency"},
};

std::string utf8(const OxString& text) { return pavo::toUtf8(text.view()); }
std::string utf8(const std::wstring& text) { return pavo::toUtf8(text); }

json colorToJson(const OxCmColor& c) {
    if (c.isByLayer()) return "bylayer";
    if (c.isByBlock()) return "byblock";
    if (c.isByACI()) return static_cast<std::int16_t>(c.colorIndex());
    json out = {{"rgb", {c.red(), c.green(), c.blue()}}};
    if (c.hasBookName()) {
        out["book"] = pavo::toUtf8(c.bookName());
        out["name"] = pavo::toUtf8(c.colorName());
    }
    return out;
}

// Thrown with a message naming the field; caught at the top.
struct Bad {
    std::string what;
};

OxCmColor colorFromJson(const json& j) {
    if (j == "bylayer") return OxCmColor::byLayer();
    if (j == "byblock") return OxCmColor::byBlock();
    if (j.is_number_integer()) {
        const int index = j.get<int>();
        if (index == 0 || index < -255 || index > 255) throw Bad{"a colour index is 1 to 255"};
        return OxCmColor::fromIndex(static_cast<std::uint16_t>(static_cast<std::int16_t>(index)));
    }
    if (!j.is_object() || !j.contains("rgb") || !j["rgb"].is_array() || j["rgb"].size() != 3)
        throw Bad{"a colour is an index, \"bylayer\", \"byblock\" or {\"rgb\": [r, g, b]}"};
    int rgb[3];
    for (size_t i = 0; i < 3; ++i) {
        if (!j["rgb"][i].is_number_integer() || j["rgb"][i].get<int>() < 0 || j["rgb"][i].get<int>() > 255)
            throw Bad{"rgb parts are 0 to 255"};
        rgb[i] = j["rgb"][i].get<int>();
    }
    OxCmColor c = OxCmColor::fromRgb(static_cast<std::uint8_t>(rgb[0]), static_cast<std::uint8_t>(rgb[1]),
                                     static_cast<std::uint8_t>(rgb[2]));
    if (j.contains("book")) {
        const std::wstring book = pavo::fromUtf8(j.at("book").get<std::string>());
        const std::wstring name = pavo::fromUtf8(j.at("name").get<std::string>());
        if (!c.setNames(name.c_str(), book.c_str())) throw Bad{"a colour book colour needs \"book\" and \"name\""};
    }
    return c;
}

json transparencyToJson(const OxCmTransparency& t) {
    if (t.isByLayer()) return "bylayer";
    if (t.isByBlock()) return "byblock";
    return {{"alpha", t.alpha()}};
}

OxCmTransparency transparencyFromJson(const json& j) {
    OxCmTransparency t;
    if (j == "bylayer") return t;
    if (j == "byblock") {
        t.setMethod(OxCmTransparency::kByBlock);
        return t;
    }
    const int alpha = j.at("alpha").get<int>();
    if (alpha < 0 || alpha > 255) throw Bad{"alpha is 0 to 255"};
    return OxCmTransparency(static_cast<std::uint8_t>(alpha));
}

json layerToJson(const LayerStateDocument::Layer& layer) {
    const OxDbLayerState::LayerEntry& e = layer.properties;
    json out = {{"name", utf8(e.name)},
                {"off", e.off},
                {"frozen", e.frozen},
                {"locked", e.locked},
                {"plot", e.plottable},
                {"newViewportFrozen", e.newViewportFrozen},
                {"viewportFrozen", e.frozenInViewport},
                {"color", colorToJson(e.color)},
                {"lineweight", static_cast<int>(e.lineWeight)},
                {"transparency", transparencyToJson(e.transparency)}};
    if (!layer.linetype.empty()) out["linetype"] = utf8(layer.linetype);
    if (!e.plotStyleName.isEmpty()) out["plotStyle"] = utf8(e.plotStyleName);
    return out;
}

LayerStateDocument::Layer layerFromJson(const json& j) {
    LayerStateDocument::Layer layer;
    OxDbLayerState::LayerEntry& e = layer.properties;
    e.name = pavo::fromUtf8(j.at("name").get<std::string>());
    if (e.name.isEmpty()) throw Bad{"a layer has an empty name"};
    e.off = j.value("off", false);
    e.frozen = j.value("frozen", false);
    e.locked = j.value("locked", false);
    e.plottable = j.value("plot", true);
    e.newViewportFrozen = j.value("newViewportFrozen", false);
    e.frozenInViewport = j.value("viewportFrozen", false);
    if (j.contains("color")) e.color = colorFromJson(j["color"]);
    const int weight = j.value("lineweight", static_cast<int>(OxDb::kLnWtByLwDefault));
    if (weight < -3 || weight > 211) throw Bad{"a lineweight is -3 to 211 (hundredths of a millimetre)"};
    e.lineWeight = static_cast<OxDb::LineWeight>(weight);
    if (j.contains("transparency")) e.transparency = transparencyFromJson(j["transparency"]);
    layer.linetype = pavo::fromUtf8(j.value("linetype", std::string()));
    e.plotStyleName = pavo::fromUtf8(j.value("plotStyle", std::string()));
    return layer;
}

} // namespace

std::vector<std::wstring> maskPropertyNames(unsigned int mask) {
    std::vector<std::wstring> names;
    for (const MaskBit& b : kMaskBits)
        if (mask & b.bit) names.emplace_back(b.label);
    return names;
}

std::string writeLayerStateDocument(const LayerStateDocument& state) {
    json properties = json::array();
    for (const MaskBit& b : kMaskBits)
        if (state.mask & b.bit) properties.push_back(b.key);
    const json head = {{"format", kFormat},        {"version", kVersion},
                       {"name", utf8(state.name)}, {"description", utf8(state.description)},
                       {"properties", properties}, {"currentLayer", utf8(state.currentLayer)}};
    // One layer a line: easy to read and to compare.
    std::string text = "{\n";
    for (const auto& [key, value] : head.items())
        text += " " + json(key).dump() + ": " + value.dump() + ",\n";
    text += " \"layers\": [";
    for (size_t i = 0; i < state.layers.size(); ++i)
        text += (i ? ",\n  " : "\n  ") + layerToJson(state.layers[i]).dump();
    return text + (state.layers.empty() ? "]\n}\n" : "\n ]\n}\n");
}

std::optional<LayerStateDocument> parseLayerStateDocument(std::string_view utf8Text, std::wstring& problem) {
    const json j = json::parse(utf8Text, nullptr, false);
    if (j.is_discarded()) {
        problem = L"not a layer state file (it is not JSON).";
        return std::nullopt;
    }
    if (!j.is_object() || j.value("format", std::string()) != kFormat) {
        problem = L"not a layer state file (\"format\" is not \"" + pavo::fromUtf8(kFormat) + L"\").";
        return std::nullopt;
    }
    if (j.value("version", 0) != kVersion) {
        problem = L"layer state file version " + pavo::fromUtf8(j.value("version", json()).dump()) +
                  L" is not supported (this pavo reads version 1).";
        return std::nullopt;
    }
    LayerStateDocument state;
    std::string where = "the state";
    try {
        state.name = pavo::fromUtf8(j.at("name").get<std::string>());
        if (state.name.empty()) throw Bad{"the state has no name"};
        state.description = pavo::fromUtf8(j.value("description", std::string()));
        state.currentLayer = pavo::fromUtf8(j.value("currentLayer", std::string()));
        state.mask = 0;
        for (const json& key : j.at("properties")) {
            bool known = false;
            for (const MaskBit& b : kMaskBits)
                if (key == b.key) state.mask |= b.bit, known = true;
            if (!known) throw Bad{"unknown property " + key.dump()};
        }
        const json& layers = j.at("layers");
        if (!layers.is_array()) throw Bad{"\"layers\" is not a list"};
        for (size_t i = 0; i < layers.size(); ++i) {
            where = "layer " + std::to_string(i + 1);
            state.layers.push_back(layerFromJson(layers[i]));
        }
    } catch (const Bad& bad) {
        problem = pavo::fromUtf8(where + ": " + bad.what + ".");
        return std::nullopt;
    } catch (const json::exception& e) {
        problem = pavo::fromUtf8(where + ": a value is missing or of the wrong kind (" + e.what() + ").");
        return std::nullopt;
    }
    return state;
}

} // namespace pavo::files
