#include "Pavo6725Command.h"

#include "module/ResourceScope.h"
#include "oxed.h"

// Not in this build yet: says so and changes nothing.
int Pavo6725Command::execute(IPavoBuildInCommandContext* ctx) {
    vxlayer::ContextResourceScope resources(ctx);
    oxutPrintf(L"\nLAYMCUR is not available in this build.");
    return STATUS_NONE;
}
