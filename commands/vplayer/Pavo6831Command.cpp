#include "Pavo6831Command.h"

#include "module/ResourceScope.h"
#include "oxed.h"

// Not in this build yet: says so and changes nothing.
int Pavo6831Command::execute(IPavoBuildInCommandContext* ctx) {
    vxlayer::ContextResourceScope resources(ctx);
    oxutPrintf(L"\nVPLAYER is not available in this build.");
    return STATUS_NONE;
}
