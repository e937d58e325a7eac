// "LAYMCUR": makes the picked object's layer current.
#pragma once

#include "IPavoCommand.h"

class Pavo6725Command : public IPavoBuildInCommand {
public:
    int execute(IPavoBuildInCommandContext* ctx) override;
};
