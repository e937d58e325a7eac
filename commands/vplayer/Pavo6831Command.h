// "VPLAYER": per-viewport layer settings.
#pragma once

#include "IPavoCommand.h"

class Pavo6831Command : public IPavoBuildInCommand {
public:
    int execute(IPavoBuildInCommandContext* ctx) override;
};
