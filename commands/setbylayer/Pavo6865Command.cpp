#include "Pavo6865Command.h"

#include "commands/setbylayer/PavoSetByLayerCmdProcess.h"
#include "module/ResourceScope.h"

int Pavo6865Command::execute(IPavoBuildInCommandContext* ctx) {
    if (!ctx) return STATUS_ERROR;
    vxlayer::ContextResourceScope resources(ctx);
    PavoSetByLayerCmdProcess process;
    return process.ExecuteCommand();
}
