// The module's application object: holds the five command factories and
// registers them with the host's command store.
#pragma once

#include "IPavoCommand.h"
#include "commands/current/Pavo6725Command.h"
#include "commands/current/Pavo6762Command.h"
#include "commands/layer/Pavo6763Command.h"
#include "commands/setbylayer/Pavo6865Command.h"
#include "commands/vplayer/Pavo6831Command.h"
#include "module/PavoCmdFactory.h"

namespace vxlayer {

inline constexpr wchar_t kGlobalName6763[] = L"-LAYER";
inline constexpr wchar_t kGlobalName6762[] = L"LAYER";
inline constexpr wchar_t kGlobalName6725[] = L"LAYMCUR";
inline constexpr wchar_t kGlobalName6831[] = L"VPLAYER";
inline constexpr wchar_t kGlobalName6865[] = L"SETBYLAYER";

} // namespace vxlayer

using Pavo6763CmdFactory = vxlayer::PavoCmdFactory<Pavo6763Command, 6763, vxlayer::kGlobalName6763, 7>;
using Pavo6762CmdFactory = vxlayer::PavoCmdFactory<Pavo6762Command, 6762, vxlayer::kGlobalName6762, 3>;
using Pavo6725CmdFactory = vxlayer::PavoCmdFactory<Pavo6725Command, 6725, vxlayer::kGlobalName6725, 2>;
using Pavo6831CmdFactory = vxlayer::PavoCmdFactory<Pavo6831Command, 6831, vxlayer::kGlobalName6831, 3>;
using Pavo6865CmdFactory = vxlayer::PavoCmdFactory<Pavo6865Command, 6865, vxlayer::kGlobalName6865, 2>;

class VxLayerCommandApp : public IPavoCmdApplication {
public:
    bool initialize() override { return true; }
    int registCommand(IPavoCommandStore* store) override;
    int unregistCommand(IPavoCommandStore* store) override;
    void uninitialize() override {}
    std::intptr_t sendMessage(PavoCmdAppMsg, void*, void*) override { return 0; }

    // Members in registration order; destroyed in reverse at unload.
    Pavo6763CmdFactory m_layerCmdLine;
    Pavo6762CmdFactory m_layer;
    Pavo6725CmdFactory m_layMCur;
    Pavo6831CmdFactory m_vpLayer;
    Pavo6865CmdFactory m_setByLayer;
};

extern VxLayerCommandApp theStateCmdApp;
