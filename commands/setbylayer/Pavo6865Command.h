// "SETBYLAYER": resets object properties to ByLayer.
#pragma once

#include "IPavoCommand.h"

class Pavo6865Command : public IPavoBuildInCommand {
public:
    int execute(IPavoBuildInCommandContext* ctx) override;
};
