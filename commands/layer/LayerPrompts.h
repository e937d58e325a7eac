// Input shared by the "-LAYER" options: names and name lists typed at a
// prompt, and the names of the layers of selected objects.
#pragma once

#include "IPavoCommand.h"
#include "OxArray.h"
#include "OxDbObjectId.h"
#include "OxDbSymbolTable.h"
#include "OxString.h"
#include "layerhelper/TextScreenListing.h"

namespace vxlayer {

// Shows `prompt` (Enter refused by the flags of the next input, which the
// host's name input ignores) and reads a name or name list cleaned with
// trimName. STATUS_NORMAL with the cleaned text, or the prompt's code.
int askLayerNames(IPavoBuildInCommandContext* ctx, const wchar_t* prompt, OxString& names);

// Lets the user select objects and lists their layers as exact names, each
// followed by a comma. STATUS_NORMAL or the selection's code. The set is
// freed before returning.
int layerNamesOfSelection(OxString& names);

// Asks a Yes/No question with the keyword list `keywords`; STATUS_NORMAL
// with the global keyword, or the question's code.
int askYesNo(const wchar_t* keywords, const wchar_t* prompt, OxString& answer);

// The CLAYER variable; empty when it cannot be read.
OxString currentLayerName();

// Asks `prompt` for a name list of layers (Enter: `currentLayer`) and
// matches it. STATUS_NORMAL with the ids (possibly none), or the code of the
// prompt or of the match.
int askTargetLayers(IPavoBuildInCommandContext* ctx, const wchar_t* prompt, const OxString& currentLayer,
                    OxArray<OxDbObjectId>& ids);

// Opens each layer for write, applies `change` and closes it; layers that
// cannot be opened are skipped.
template <class Change> void changeLayers(const OxArray<OxDbObjectId>& ids, Change change) {
    for (const OxDbObjectId& id : ids) {
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, id, OxDb::kForWrite) != Ox::eOk) continue;
        change(*layer);
        layer->close();
    }
}

} // namespace vxlayer
