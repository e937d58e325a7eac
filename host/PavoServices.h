// Host services for commands: the text screen, display texts, the console.
#pragma once

#include "OxDb.h"
#include "OxString.h"
#include "PavoExport.h"
#include "oxstatus.h"

class PAVO_HOST_API PavoServicesManager {
public:
    // Brings the text screen forward (the terminal is the text screen).
    static void showTextScreen();
    // "ByLayer", "ByBlock", "Default", or the value in millimetres ("0.25 mm")
    // or inches ("0.010\"") by LWUNITS.
    static Ox::ErrorStatus lineWeightToString(OxDb::LineWeight weight, OxString& text);
};

// Held while a command writes a listing; the host keeps the listing's lines
// together while it is held.
class PAVO_HOST_API PavoConsoalCtrlTypeAutoHandle {
public:
    PavoConsoalCtrlTypeAutoHandle();
    ~PavoConsoalCtrlTypeAutoHandle();
    PavoConsoalCtrlTypeAutoHandle(const PavoConsoalCtrlTypeAutoHandle&) = delete;
    PavoConsoalCtrlTypeAutoHandle& operator=(const PavoConsoalCtrlTypeAutoHandle&) = delete;
};
