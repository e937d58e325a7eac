// "LAYER": the layer manager dialog, or the "-LAYER" loop where no dialog
// may be shown.
#pragma once

#include "commands/layer/Pavo6763Command.h"

class Pavo6762Command : public Pavo6763Command {
public:
    int execute(IPavoBuildInCommandContext* ctx) override;
};
