// "-LAYER": the command-line layer manager.
#pragma once

#include "IPavoCommand.h"
#include "OxString.h"

class OxDbLayerStateManager;

class Pavo6763Command : public IPavoBuildInCommand {
public:
    int execute(IPavoBuildInCommandContext* ctx) override;

protected:
    int _branch_list_layer();
    int _branch_new();
    int _branch_make();
    int _branch_set();
    int _branch_color();
    int _branch_ltype();
    int _branch_lweight();
    int _branch_plot();
    int _branch_pstyle();
    int _branch_layer_on();
    int _branch_layer_off();
    int _branch_layer_freeze();
    int _branch_layer_thaw();
    int _branch_layer_lock(bool lock);
    int _branch_rename();
    int _branch_description();
    int _branch_delete();
    int _branch_state();
    int _branch_transparency();
    // Prints which properties a layer state save records (mask bits 0 to 8).
    void display_layerstate(int mask);

    IPavoBuildInCommandContext* m_context = nullptr;

private:
    // Runs the branch of the first table keyword equal to `keyword`
    // (case ignored); a branch marked for it runs again while it rejects.
    void dispatch(const OxString& keyword);
    // stAte's Save: asks the name and the properties, then saves.
    int saveLayerStateAsked(OxDbLayerStateManager* states);
};
