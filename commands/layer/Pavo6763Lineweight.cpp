// "-LAYER" option LWeight: a lineweight in millimetres or inches (by
// LWUNITS), snapped to the nearest standard one, for the layers of a name
// list; "?" lists the standard lineweights.
#include "LayerPrompts.h"
#include "layerhelper/TextScreenListing.h"
#include "OxDbSymbolTable.h"
#include "Pavo6763Command.h"
#include "layerhelper/HostVariables.h"
#include "layerhelper/LineWeightTable.h"
#include "layerhelper/PavoLayerHelper.h"
#include "oxed.h"
#include "oxmd.h"

using vxlayer::kLineWeightCount;
using vxlayer::kLineWeightInches;
using vxlayer::kValidLineWeights;

namespace {

constexpr double kLargestMillimetres = 2.11;
constexpr double kLargestInches = 0.083;

// Hundredths of a millimetre, truncated toward zero.
int truncatedHundredths(double value) { return static_cast<int>(value * 100.0); }

int lineWeightOfMillimetres(double millimetres) {
    if (millimetres > kLargestMillimetres) return kValidLineWeights.back();
    return truncatedHundredths(millimetres);
}

// Inches round down to the table entry at or below them.
int lineWeightOfInches(double inches) {
    if (inches > kLargestInches) inches = kLargestInches;
    for (int i = 0; i < kLineWeightCount; ++i) {
        const bool equal = inches == kLineWeightInches[i];
        const bool between =
            i + 1 < kLineWeightCount && inches > kLineWeightInches[i] && inches < kLineWeightInches[i + 1];
        if (equal || between) return kValidLineWeights[i];
    }
    return truncatedHundredths(inches);
}

// LWDEFAULT as a lineweight. In inches only 0 has an inch entry equal to
// its millimetre figure, and that entry is 0 as well.
int defaultLineWeight(bool inches) {
    int lwdefault = 0;
    vxlayer::readIntVariable(L"LWDEFAULT", lwdefault);
    double value = lwdefault / 100.0;
    if (inches) {
        for (int i = 0; i < kLineWeightCount; ++i) {
            if (value == kValidLineWeights[i]) {
                value = kLineWeightInches[i] / 100.0;
                break;
            }
        }
    }
    return truncatedHundredths(value);
}

// Snaps `lineWeight` to the nearer of the standard values around it (the
// larger on a tie) and says so. Returns the value to show, in millimetres;
// 0.0 when nothing brackets it, which leaves the lineweight as it is.
double snapToValid(int& lineWeight, bool inches) {
    if (PavoLayerHelper::isValidLineWeight(lineWeight, PavoLayerHelper::kAcceptDefault)) return lineWeight / 100.0;
    const int nearest = vxlayer::nearestStandardLineWeight(lineWeight);
    if (nearest == lineWeight) return 0.0;
    lineWeight = nearest;
    const double shown = lineWeight / 100.0;
    if (inches)
        oxutPrintf(oxmdOxResourceString(10091, L"Lineweight rounded to nearest valid value of %.3f inches"), shown);
    else
        oxutPrintf(oxmdOxResourceString(10092, L"Lineweight rounded to nearest valid value of %.2f mm"), shown);
    return shown;
}

// The inch entry of a lineweight shown in millimetres; unchanged when there
// is none.
double inchesOfShown(double shownMillimetres) {
    const int lineWeight = truncatedHundredths(shownMillimetres);
    for (int i = 0; i < kLineWeightCount; ++i)
        if (kValidLineWeights[i] == lineWeight) return kLineWeightInches[i];
    return shownMillimetres;
}

void listLineWeights() {
    int lwunits = 1;
    if (!vxlayer::readIntVariable(L"LWUNITS", lwunits)) lwunits = 1;
    vxlayer::TextScreenListing listing;
    oxutPrintf(oxmdOxResourceString(10089, L"\nAvailable Lineweights: "));
    oxutPrintf(oxmdOxResourceString(10090, L"\nBYLAYER BYBLOCK Default"));
    static const wchar_t* const kInchLines[] = {
        L"\n 0.000 inches 0.002 inches  0.004 inches 0.005 inches 0.006 inches  0.007 inches",
        L"\n 0.009 inches 0.010 inches  0.012 inches 0.014 inches 0.016 inches  0.020 inches",
        L"\n 0.021 inches 0.024 inches  0.028 inches 0.031 inches 0.035 inches  0.039 inches",
        L"\n 0.042 inches 0.047 inches  0.055 inches 0.062 inches 0.079 inches  0.083 inches",
    };
    for (const wchar_t* line : lwunits != 1 ? kInchLines : vxlayer::kMillimetreListLines)
        oxutPrintText(line);
}

} // namespace

int Pavo6763Command::_branch_lweight() {
    oxedInitGet(OX_INP_ARBITRARY, oxmdOxResourceString(10054, L"? Default _? Default"));
    int lwunits = 1;
    const bool inches = vxlayer::readIntVariable(L"LWUNITS", lwunits) && lwunits == 0;
    const OxString prompt =
        inches ? oxmdOxResourceString(10063, L"\nEnter line weight (0.000 inches-0.083 inches) or [?] <Default>: ")
               : oxmdOxResourceString(10064, L"\nLineWeight: ? to list/0.0mm-2.11mm/<Default>: ");
    const OxString invalid = oxmdOxResourceString(10108, L"Enter a valid lineweight value.");

    double value = 0.0;
    int status = oxedGetReal(prompt, &value);
    int lineWeight = 0;
    bool useDefault = false;
    if (status == STATUS_NORMAL) {
        if (value < -1e-10) {
            oxutPrintf(L"\n%ls", invalid);
            return STATUS_REJECT;
        }
        lineWeight = inches ? lineWeightOfInches(value) : lineWeightOfMillimetres(value);
    } else if (status == STATUS_NONE) {
        useDefault = true;
    } else if (status == STATUS_KEYWORD) {
        OxString keyword;
        status = oxedGetInput(keyword);
        if (status != STATUS_NORMAL) return status;
        if (keyword.compareNoCase(L"?") == 0) {
            listLineWeights();
            return STATUS_REJECT;
        }
        if (keyword.compareNoCase(L"Default") != 0) {
            oxutPrintf(invalid);
            return STATUS_REJECT;
        }
        useDefault = true;
    } else {
        return status;
    }
    if (useDefault) lineWeight = defaultLineWeight(inches);

    double shown = snapToValid(lineWeight, inches);
    const OxString currentLayer = vxlayer::currentLayerName();
    OxString layerPrompt;
    if (useDefault) {
        layerPrompt.format(
            oxmdOxResourceString(10122, L"\nEnter name list of layers(s) for lineweight Default <%ls>: "),
            currentLayer);
    } else if (!inches) {
        layerPrompt.format(oxmdOxResourceString(10094, L"\nEnter name list of layers(s) for lineweight %.2fmm <%ls>: "),
                           shown, currentLayer);
    } else {
        shown = inchesOfShown(shown);
        layerPrompt.format(
            oxmdOxResourceString(10093, L"\nEnter name list of layers(s) for lineweight %.3f inches <%ls>: "), shown,
            currentLayer);
    }
    OxArray<OxDbObjectId> ids;
    status = vxlayer::askTargetLayers(m_context, layerPrompt, currentLayer, ids);
    if (status != STATUS_NORMAL) return status;
    const auto weight = static_cast<OxDb::LineWeight>(useDefault ? OxDb::kLnWtByLwDefault : lineWeight);
    vxlayer::changeLayers(ids, [weight](OxDbLayerTableRecord& layer) { layer.setLineWeight(weight); });
    return STATUS_NORMAL;
}
