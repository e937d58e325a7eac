// Moving a named layer state between a drawing and a layer state file:
// linetypes travel by name and are found (or loaded) again on the way in.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "files/LayerStateFile.h"

class OxDbDatabase;

namespace pavo::app {

// The state `name` of `db`; nullopt when the drawing has none of that name.
std::optional<files::LayerStateDocument> layerStateOf(OxDbDatabase* db, const std::wstring& name);

struct LayerStateImport {
    std::vector<std::wstring> loadedLinetypes;  // loaded from the linetype file
    std::vector<std::wstring> missingLinetypes; // neither in the drawing nor in the file
    std::wstring linetypeFile;                  // the file MEASUREMENT chose
};

// Stores `state` in `db` under its name, replacing a state of that name.
// Linetypes the drawing lacks are loaded from vanta.lin (MEASUREMENT 0) or
// vantaiso.lin (1); the layers of those still missing keep their linetype
// on restore.
Ox::ErrorStatus storeLayerState(OxDbDatabase* db, const files::LayerStateDocument& state, LayerStateImport& report);

} // namespace pavo::app
