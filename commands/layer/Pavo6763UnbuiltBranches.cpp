// Options of "-LAYER" that this build does not have yet. Each says so in one
// line and returns to the option prompt.
#include "Pavo6763Command.h"
#include "oxed.h"

namespace {
int notAvailable(const wchar_t* option) {
    oxutPrintf(L"\nThe %ls option is not available in this build.", option);
    return STATUS_NORMAL;
}
} // namespace

int Pavo6763Command::_branch_list_layer() { return notAvailable(L"?"); }
int Pavo6763Command::_branch_new() { return notAvailable(L"New"); }
int Pavo6763Command::_branch_make() { return notAvailable(L"Make"); }
int Pavo6763Command::_branch_set() { return notAvailable(L"Set"); }
int Pavo6763Command::_branch_color() { return notAvailable(L"Color"); }
int Pavo6763Command::_branch_ltype() { return notAvailable(L"Ltype"); }
int Pavo6763Command::_branch_lweight() { return notAvailable(L"LWeight"); }
int Pavo6763Command::_branch_plot() { return notAvailable(L"Plot"); }
int Pavo6763Command::_branch_pstyle() { return notAvailable(L"PStyle"); }
int Pavo6763Command::_branch_layer_on() { return notAvailable(L"ON"); }
int Pavo6763Command::_branch_layer_off() { return notAvailable(L"OFf"); }
int Pavo6763Command::_branch_layer_freeze() { return notAvailable(L"Freeze"); }
int Pavo6763Command::_branch_layer_thaw() { return notAvailable(L"Thaw"); }
int Pavo6763Command::_branch_layer_lock(bool lock) { return notAvailable(lock ? L"LOck" : L"Unlock"); }
int Pavo6763Command::_branch_rename() { return notAvailable(L"Rename"); }
int Pavo6763Command::_branch_description() { return notAvailable(L"Description"); }
int Pavo6763Command::_branch_delete() { return notAvailable(L"Delete"); }
int Pavo6763Command::_branch_state() { return notAvailable(L"stAte"); }
int Pavo6763Command::_branch_transparency() { return notAvailable(L"TRansparency"); }
