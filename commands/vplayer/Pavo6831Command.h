// "VPLAYER": per-viewport layer settings in paper-space layouts. Layers are
// frozen and thawed in chosen viewports, given per-viewport overrides of
// colour, linetype, lineweight, transparency and plot style, and marked to
// be frozen in the viewports made from then on.
#pragma once

#include "IPavoCommand.h"
#include "OxArray.h"
#include "OxDbObjectId.h"
#include "OxString.h"

class OxDbDatabase;
class OxDbLayerTableRecord;

class Pavo6831Command : public IPavoBuildInCommand {
public:
    Pavo6831Command();
    ~Pavo6831Command() override;
    int execute(IPavoBuildInCommandContext* ctx) override;

private:
    // Asks for layers (by name list, or by picking objects after Enter, but
    // for Thaw) and then for viewports. Option codes: 1 Color, 2 LType,
    // 3 LWeight, 4 TRansparency, 5 PStyle, 6 Freeze, 7 Thaw, 8 Reset,
    // 9 reMoveoverrides.
    int AcquireLayerNames(int optionCode);
    // The viewports of the answer to "All/Select/<Current>" (and eXcept).
    int AcquireViewports();
    int AcquireLayerNamesBySelObj();
    int VerifyLayerList(const OxString& list, bool forNewLayers);

    int VPLayerList();
    int VPLayerFreeze();
    int VPLayerThaw();
    int VPLayerReset();
    int VPLayerNewfrz();
    int VPLayerVpvisdflt();
    int VPLayerColor();
    int VPLayerLineType();
    int VPLayerLIneWeight();
    int VPLayerTRansparency();
    int VPLayerPlotStyle();
    int VPLayerReMoveoverrides();

    // The step every override option ends with: asks for the layers and
    // viewports (option `code`) and calls `set(layer, viewportId)` for each
    // pair, the layer open for write.
    template <class Set> int applyOverride(int code, Set set);
    // Opens each chosen layer for write (skipping those that do not open),
    // notes the current layer, calls `change(layer)` and closes it.
    template <class Change> void changeTargetLayers(Change change);
    // Runs the handler of the option keyword; its status (5100 when the
    // keyword has no handler here).
    int dispatch(const OxString& keyword, bool inLayout, bool namedPlotStyles);

    IPavoBuildInCommandContext* context = nullptr;
    bool needRegen = false;
    bool resetCurrentLayer = false;
    OxDbDatabase* database = nullptr;
    OxArray<OxDbObjectId> layerIds{0, 8};
    OxArray<OxDbObjectId> targetLayerIds{0, 8};
    OxArray<OxDbObjectId> viewportIds{0, 8};
    OxArray<OxString> newLayerNames{0, 8};
    int lineWeight = -3;
};

// Asks for one object with `prompt`; `picked` is left as it is unless an
// object was found. 5100, 5000 (Enter), -5002 (Escape), -5003 (a point where
// no object is).
int SelForList(OxDbObjectId& picked, const wchar_t* prompt);
