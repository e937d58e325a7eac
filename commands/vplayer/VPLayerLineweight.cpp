// "VPLAYER" option LWeight: a per-viewport lineweight override, typed in
// millimetres or inches (by LWUNITS) and moved to the nearest standard
// lineweight.
#include <cmath>

#include "OxDb.h"
#include "Pavo6831Command.h"
#include "PavoServices.h"
#include "VPLayerApply.h"
#include "layerhelper/HostVariables.h"
#include "layerhelper/LineWeightTable.h"
#include "layerhelper/PavoLayerHelper.h"
#include "oxed.h"
#include "oxmd.h"

using vxlayer::kLineWeightCount;
using vxlayer::kLineWeightInches;
using vxlayer::kValidLineWeights;

namespace {

constexpr double kTolerance = 1e-10;
constexpr double kLargestMillimetres = 2.11, kBelowLargestMillimetres = 2.109;
constexpr double kLargestInches = 0.083, kBelowLargestInches = 0.0829;
// What the prompt says when the value was not given: the default lineweight.
constexpr double kDefaultValue = -3.0;

// This listing prints 0.008 inches where the table holds 0.009; both are
// kept as they are.
constexpr const wchar_t* kInchListLines[4] = {
    L"\n 0.000 inches 0.002 inches  0.004 inches 0.005 inches 0.006 inches  0.007 inches",
    L"\n 0.008 inches 0.010 inches  0.012 inches 0.014 inches 0.016 inches  0.020 inches",
    L"\n 0.021 inches 0.024 inches  0.028 inches 0.031 inches 0.035 inches  0.039 inches",
    L"\n 0.042 inches 0.047 inches  0.055 inches 0.062 inches 0.079 inches  0.083 inches",
};

void listLineWeights(int lwunits) {
    PavoServicesManager::showTextScreen();
    oxutPrintf(oxmdOxResourceString(10592, L"\nAvailable Lineweights: "));
    oxutPrintf(oxmdOxResourceString(10593, L"\nBYLAYER BYBLOCK Default"));
    for (const wchar_t* line : lwunits == 1 ? vxlayer::kMillimetreListLines : kInchListLines)
        oxutPrintText(line);
}

// An inch value as millimetres: the table's entry when it is one, else the
// nearer of the two entries around it (said so), else unchanged.
double inchesToMillimetres(double inches) {
    for (int i = 0; i < kLineWeightCount; ++i)
        if (std::abs(inches - kLineWeightInches[i]) <= kTolerance) return kValidLineWeights[i] / 100.0;
    for (int i = 0; i + 1 < kLineWeightCount; ++i) {
        const double lower = kLineWeightInches[i], upper = kLineWeightInches[i + 1];
        if (!(lower < inches && inches < upper)) continue;
        const int chosen = inches - lower < upper - inches ? i : i + 1;
        oxutPrintf(oxmdOxResourceString(10574, L"Lineweight rounded to nearest valid value of %.3f inches"),
                   kLineWeightInches[chosen]);
        return kValidLineWeights[chosen] / 100.0;
    }
    return inches;
}

} // namespace

int Pavo6831Command::VPLayerLIneWeight() {
    if (!database) return STATUS_ERROR;
    int lwunits = 0;
    if (!vxlayer::readIntVariable(L"LWUNITS", lwunits)) return STATUS_ERROR;
    const bool millimetres = lwunits != 0;

    OxString prompt;
    if (millimetres)
        prompt.format(oxmdOxResourceString(10554, L"\nEnter lineweight (%.2fmm-%.2fmm): "), 0.0, kLargestMillimetres);
    else
        prompt.format(oxmdOxResourceString(10573, L"\nEnter lineweight (%.3f inches-%.3f inches): "), 0.0,
                      kLargestInches);
    double value = -1.0;
    oxedInitGet(0, oxmdOxResourceString(10591, L"? Default _? Default"));
    int status = oxedGetReal(prompt, &value);
    const OxString invalid = oxmdOxResourceString(10575, L"Enter a valid lineweight value.");
    bool keywordDefault = false;
    if (status == STATUS_NONE) return STATUS_NORMAL;
    if (status == STATUS_KEYWORD) {
        OxString keyword;
        status = oxedGetInput(keyword);
        if (status != STATUS_NORMAL) return status;
        if (keyword.compareNoCase(L"?") == 0) {
            listLineWeights(lwunits);
            return VPLayerLIneWeight();
        }
        // The value, not lineWeight, decides what follows: it is still -1,
        // which no standard lineweight is near.
        keywordDefault = keyword.compareNoCase(L"Default") == 0;
        if (keywordDefault) lineWeight = OxDb::kLnWtByLwDefault;
    } else if (status == STATUS_REJECT || (status == STATUS_NORMAL && value < 0)) {
        oxedPrompt(invalid);
        return VPLayerLIneWeight();
    } else if (status != STATUS_NORMAL) {
        return STATUS_NORMAL;
    }

    if (keywordDefault) {
        // Straight to the check below.
    } else if (value == kDefaultValue) {
        int lwdefault = 0;
        vxlayer::readIntVariable(L"LWDEFAULT", lwdefault);
        value = lwdefault / 100.0;
        if (!millimetres) value = inchesToMillimetres(value);
    } else if (millimetres) {
        if (value - kLargestMillimetres > kTolerance) value = kBelowLargestMillimetres;
    } else {
        if (value - kLargestInches > kTolerance) value = kBelowLargestInches;
        value = inchesToMillimetres(value);
    }

    int weight = static_cast<int>(value * 100.0);
    if (!PavoLayerHelper::isValidLineWeight(weight, PavoLayerHelper::kAcceptDefault)) {
        const int nearest = vxlayer::nearestStandardLineWeight(weight);
        if (nearest != weight)
            oxutPrintf(oxmdOxResourceString(10555, L"Lineweight rounded to nearest valid value of %.2f mm"),
                       nearest / 100.0);
        weight = nearest;
    }
    lineWeight = weight;
    return applyOverride(3, [&](OxDbLayerTableRecord& layer, const OxDbObjectId& viewportId) {
        layer.setLineWeight(static_cast<OxDb::LineWeight>(weight), viewportId);
    });
}
