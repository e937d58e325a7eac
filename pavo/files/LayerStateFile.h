// Layer state files (".pls", docs/layer-states.md): one named layer state
// as JSON, with linetypes and plot styles by name so that it can move from
// one drawing to another.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "OxDbLayerStateManager.h"

namespace pavo::files {

struct LayerStateDocument {
    struct Layer {
        OxDbLayerState::LayerEntry properties; // linetypeId unused: see linetype
        std::wstring linetype;                 // empty when the layer had none
    };
    std::wstring name;
    std::wstring description;
    unsigned int mask = OxDbLayerStateManager::kAll;
    std::wstring currentLayer;
    std::vector<Layer> layers;
};

std::string writeLayerStateDocument(const LayerStateDocument& state);
// nullopt with `problem` saying what is wrong (and where) when `utf8` is not
// a layer state file.
std::optional<LayerStateDocument> parseLayerStateDocument(std::string_view utf8, std::wstring& problem);

// The names of the properties a mask records ("on/off", "frozen", ...).
std::vector<std::wstring> maskPropertyNames(unsigned int mask);

} // namespace pavo::files
