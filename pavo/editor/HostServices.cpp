// PavoServicesManager and the console guard. The terminal is the text
// screen, so there is nothing to bring forward; the requests are counted.
#include "editor/HostServices.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "OxDbServices.h"
#include "PavoServices.h"
#include "oxed.h"

namespace pavo::editor {
namespace {

int s_textScreenRequests = 0;
int s_consoleGuards = 0;

// Inch texts of the valid lineweights (hundredths of a millimetre).
struct InchWeight {
    int weight;
    const wchar_t* inches;
};
constexpr InchWeight kInchWeights[] = {
    {0, L"0.000"},   {5, L"0.002"},   {9, L"0.004"},   {13, L"0.005"},  {15, L"0.006"},  {18, L"0.007"},
    {20, L"0.009"},  {25, L"0.010"},  {30, L"0.012"},  {35, L"0.014"},  {40, L"0.016"},  {50, L"0.020"},
    {53, L"0.021"},  {60, L"0.024"},  {70, L"0.028"},  {80, L"0.031"},  {90, L"0.035"},  {100, L"0.039"},
    {106, L"0.042"}, {120, L"0.047"}, {140, L"0.055"}, {158, L"0.062"}, {200, L"0.079"}, {211, L"0.083"},
};

// LWUNITS: 0 inches, 1 millimetres (also when it cannot be read).
bool inches() {
    resbuf value{};
    return oxedGetVar(L"LWUNITS", &value) == STATUS_NORMAL && value.restype == RTSHORT && value.resval.rint == 0;
}

} // namespace

int textScreenRequests() { return s_textScreenRequests; }
int consoleGuardsHeld() { return s_consoleGuards; }

} // namespace pavo::editor

void PavoServicesManager::showTextScreen() { ++pavo::editor::s_textScreenRequests; }

Ox::ErrorStatus PavoServicesManager::lineWeightToString(OxDb::LineWeight weight, OxString& text) {
    switch (weight) {
    case OxDb::kLnWtByLayer:
        text = L"ByLayer";
        return Ox::eOk;
    case OxDb::kLnWtByBlock:
        text = L"ByBlock";
        return Ox::eOk;
    case OxDb::kLnWtByLwDefault:
        text = L"Default";
        return Ox::eOk;
    default:
        break;
    }
    const auto* end = std::end(pavo::editor::kInchWeights);
    const auto* row = std::find_if(std::begin(pavo::editor::kInchWeights), end,
                                   [&](const auto& r) { return r.weight == static_cast<int>(weight); });
    if (row == end) {
        text = L"";
        return Ox::eInvalidInput;
    }
    if (pavo::editor::inches()) {
        text = std::wstring(row->inches) + L"\"";
    } else {
        const int w = row->weight;
        text = std::to_wstring(w / 100) + L"." + (w % 100 < 10 ? L"0" : L"") + std::to_wstring(w % 100) + L" mm";
    }
    return Ox::eOk;
}

PavoConsoalCtrlTypeAutoHandle::PavoConsoalCtrlTypeAutoHandle() { ++pavo::editor::s_consoleGuards; }

PavoConsoalCtrlTypeAutoHandle::~PavoConsoalCtrlTypeAutoHandle() { --pavo::editor::s_consoleGuards; }
