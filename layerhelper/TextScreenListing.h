// Held while a listing is written: the text screen is brought forward and
// the listing's lines kept together.
#pragma once

#include "PavoServices.h"

namespace vxlayer {

class TextScreenListing {
public:
    TextScreenListing() { PavoServicesManager::showTextScreen(); }

private:
    PavoConsoalCtrlTypeAutoHandle m_together;
};

} // namespace vxlayer
