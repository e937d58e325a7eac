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

int Pavo6763Command::_branch_color() { return notAvailable(L"Color"); }
int Pavo6763Command::_branch_ltype() { return notAvailable(L"Ltype"); }
int Pavo6763Command::_branch_lweight() { return notAvailable(L"LWeight"); }
int Pavo6763Command::_branch_plot() { return notAvailable(L"Plot"); }
int Pavo6763Command::_branch_pstyle() { return notAvailable(L"PStyle"); }
int Pavo6763Command::_branch_state() { return notAvailable(L"stAte"); }
int Pavo6763Command::_branch_transparency() { return notAvailable(L"TRansparency"); }
