#include "VxLayerCommandApp.h"

#include "PavoExport.h"
#include "module/LayerStateKeywords.h"

// Both in this file so that the application object is built first.
VxLayerCommandApp theStateCmdApp;

namespace vxlayer {
const OxString g_layerStateNames[kLayerStatePropertyCount] = {
    L"ON", L"FROZEN", L"LOCK", L"PLOT", L"NEWVPFREEZE", L"COLOR", L"LINETYPE", L"LINEWEIGHT", L"PLOTSTYLE",
};
} // namespace vxlayer

int VxLayerCommandApp::registCommand(IPavoCommandStore* store) {
    store->addCommand(&m_layerCmdLine, 0);
    store->addCommand(&m_layer, 0);
    store->addCommand(&m_layMCur, 0);
    store->addCommand(&m_vpLayer, 0);
    return store->addCommand(&m_setByLayer, 0);
}

int VxLayerCommandApp::unregistCommand(IPavoCommandStore* store) {
    store->removeCommand(L"-LAYER");
    store->removeCommand(L"LAYER");
    store->removeCommand(L"LAYMCUR");
    store->removeCommand(L"VPLAYER");
    return store->removeCommand(L"SETBYLAYER");
}

PAVO_MODULE_EXPORT IPavoCmdApplication* GetPavoCmdApplication() { return &theStateCmdApp; }
