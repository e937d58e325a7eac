// "VPLAYER" options Color and TRansparency (per-viewport overrides of a
// layer's colour and transparency) and reMoveoverrides.
#include <cstdint>
#include <cstdlib>

#include "OxCmColor.h"
#include "Pavo6831Command.h"
#include "PavoAcquireInput.h"
#include "VPLayerApply.h"
#include "layerhelper/Transparency.h"
#include "oxed.h"
#include "oxmd.h"

namespace {

// Flags the transparency input is given, and the cursor it shows.
constexpr unsigned int kTransparencyInputFlags = 0x300020;
constexpr int kTransparencyCursor = 5;
constexpr int kMostTransparent = 90;

// Override kinds of reMoveoverrides.
enum RemovedOverride : int { kColor = 1, kLinetype = 2, kLineWeight = 3, kTransparency = 4, kPlotStyle = 5, kAll = 15 };

void removeOverride(OxDbLayerTableRecord& layer, int kind, const OxDbObjectId& viewportId) {
    switch (kind) {
    case kColor:
        layer.removeColorOverride(viewportId);
        break;
    case kLinetype:
        layer.removeLinetypeOverride(viewportId);
        break;
    case kLineWeight:
        layer.removeLineWeightOverride(viewportId);
        break;
    case kTransparency:
        layer.removeTransparencyOverride(viewportId);
        break;
    case kPlotStyle:
        layer.removePlotStyleOverride(viewportId);
        break;
    case kAll:
        layer.removeViewportOverrides(viewportId);
        break;
    default:
        break;
    }
}

} // namespace

int Pavo6831Command::VPLayerColor() {
    if (!database) return STATUS_ERROR;
    PavoAcquireInput input;
    input.prompt(oxmdOxResourceString(10586, L"\nNew color [Truecolor/COlorbook] : "));
    OxCmColor color;
    const int status = input.getColor(color, PavoAcquireInput::kAllowNegativeIndex);
    if (status == STATUS_NONE || status == STATUS_CANCEL) return STATUS_NORMAL;
    if (status != STATUS_NORMAL) return status;
    // A negative index means nothing more here than its colour.
    const auto index = static_cast<short>(color.colorIndex());
    if (index < 0) color.setColorIndex(static_cast<std::uint16_t>(std::abs(static_cast<int>(index))));
    return applyOverride(1, [&](OxDbLayerTableRecord& layer, const OxDbObjectId& viewportId) {
        layer.setColor(color, viewportId);
    });
}

int Pavo6831Command::VPLayerTRansparency() {
    if (!database) return STATUS_ERROR;
    const OxString prompt = oxmdOxResourceString(10594, L"\nEnter transparency value (0-90): ");
    const OxString invalid = oxmdOxResourceString(10595, L"\nRequires an integer between 0 and 90.");
    PavoAcquireInput input;
    input.prompt(prompt);
    unsigned int oldFlags = input.ctxFlags();
    input.setCtxFlags(kTransparencyInputFlags);
    input.onCtxFlagChange(oldFlags);
    input.setCursor(kTransparencyCursor);
    input.setRange(0, kMostTransparent);
    if (!(input.ctxFlags() & PavoAcquireInput::kRangeCheck)) {
        oldFlags = input.ctxFlags();
        input.setCtxFlags(oldFlags | PavoAcquireInput::kRangeCheck);
        input.onCtxFlagChange(oldFlags);
    }
    input.setInvalidInputMsg(invalid);

    short percent = 0;
    for (;;) {
        const int status = input.getInt16(percent);
        if (status == STATUS_NORMAL) break;
        if (status == STATUS_CANCEL || status == STATUS_NONE) return STATUS_NORMAL;
        oxutPrintf(invalid);
        input.prompt(prompt);
        input.setCursor(kTransparencyCursor);
    }
    OxCmTransparency transparency;
    transparency.setAlpha(vxlayer::alphaOfPercent(percent));
    return applyOverride(4, [&](OxDbLayerTableRecord& layer, const OxDbObjectId& viewportId) {
        layer.setTransparency(transparency, viewportId);
    });
}

int Pavo6831Command::VPLayerReMoveoverrides() {
    if (!database) return STATUS_ERROR;
    oxedInitGet(OX_INP_NONULL, oxmdOxResourceString(10590, L"Color LType LWeight PStyle TRansparency All _Color "
                                                           L"LType LWeight PStyle TRansparency All"));
    OxString answer;
    const int status =
        oxedGetKword(oxmdOxResourceString(10588, L"\nEnter an option [Color/LType/LWeight/PStyle/TRansparency/All]: "),
                     answer);
    if (status == STATUS_CANCEL) return STATUS_NORMAL;
    if (status == STATUS_NONE) return VPLayerReMoveoverrides();
    if (status != STATUS_NORMAL && status != STATUS_KEYWORD) return status;

    int kind = 0;
    if (answer.compareNoCase(L"COLOR") == 0)
        kind = kColor;
    else if (answer.compareNoCase(L"LTYPE") == 0)
        kind = kLinetype;
    else if (answer.compareNoCase(L"LWEIGHT") == 0)
        kind = kLineWeight;
    else if (answer.compareNoCase(L"PSTYLE") == 0)
        kind = kPlotStyle;
    else if (answer.compareNoCase(L"TRANSPARENCY") == 0)
        kind = kTransparency;
    else if (answer.compareNoCase(L"ALL") == 0)
        kind = kAll;
    else
        return VPLayerReMoveoverrides(); // asked until answered

    return applyOverride(9, [&](OxDbLayerTableRecord& layer, const OxDbObjectId& viewportId) {
        removeOverride(layer, kind, viewportId);
    });
}
