// Shared layer operations of the layer commands: name cleaning and checks,
// name lists with wildcards, layer creation and the current layer, valid
// lineweights and usable plot style names.
#pragma once

#include "OxArray.h"
#include "OxDbObjectId.h"
#include "OxString.h"

class OxDbDatabase;
class OxDbLayerTable;

class PavoLayerHelper {
public:
    PavoLayerHelper() = delete;

    // Drops surrounding white space and, when the text is wrapped in double
    // quotes, the quotes and the blanks inside them. Cleans `name` in place
    // and returns the cleaned copy.
    static OxString trimName(OxString& name);
    // True when `name` holds one of < , > / ? ' " \ | ; : = *
    static bool haveInvalidCharacters(OxString name);

    // Identifiers of the layers named by a comma-separated list of wildcard
    // patterns (exact names after a leading "=", or with `exactMatch`).
    // Items that match nothing are reported. STATUS_NORMAL or STATUS_ERROR.
    static int getMatchedLayerList(const OxString& list, OxArray<OxDbObjectId>& ids, bool exactMatch);
    // Identifiers of the linetypes matching `pattern` as one wildcard pattern,
    // never ByLayer or ByBlock. Prints nothing.
    static int getMatchedLTypeList(const OxString& pattern, OxArray<OxDbObjectId>& ids);
    // The items of `list` that are valid new layer names; names of existing
    // layers only when `allowExisting`. Refused items are reported.
    static int getValidNewLayerList(const OxString& list, OxArray<OxString>& names, bool allowExisting);

    // Adds a layer with the module's defaults to `table` (open for write);
    // the null id when it cannot be added.
    static OxDbObjectId createNewLayer(OxDbDatabase* db, OxDbLayerTable* table, OxString& name);
    // Makes `id` the current layer (turning it on); false with a message when
    // the layer is frozen or belongs to an external reference.
    static bool setCurrentLayer(OxDbDatabase* db, const OxDbObjectId& id);

    // Bits of isValidLineWeight's `flags`: which special values count.
    enum SpecialLineWeights : int { kAcceptByLayer = 1, kAcceptByBlock = 2, kAcceptDefault = 4 };
    // True for one of the 24 standard lineweights (hundredths of a mm), or
    // for -1 / -2 / -3 when their bit is set in `flags`. No rounding.
    static bool isValidLineWeight(int lineWeight, int flags);

    // Appends the plot style names the drawing can use: the first entry of
    // its plot style name dictionary, then the styles of the active layout's
    // plot style table. STATUS_NORMAL, or STATUS_ERROR (nothing appended)
    // with colour-dependent plot styles or when the dictionary is missing.
    static int getAllPlotStyleName(OxArray<OxString>& names);
    // True when getAllPlotStyleName lists `name`, letter case ignored.
    static bool isValidPlotStyleName(const wchar_t* name);
    // The plot style name entry `name` of `db`, added when missing; null
    // when the dictionary cannot be opened for write.
    static OxDbObjectId createPlotStye(const wchar_t* name, OxDbDatabase* db);
};
