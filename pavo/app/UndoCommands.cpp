// U, UNDO, REDO, LAYERP and LAYERPMODE: the drawing's undo history
// (pavo/db/UndoHistory.h) as the user drives it. See docs/undo.md.
#include <string>
#include <vector>

#include "HostCommandSets.h"
#include "HostCommands.h"
#include "OxDbDatabase.h"
#include "OxDbServices.h"
#include "db/UndoHistory.h"
#include "editor/SelectionSets.h"
#include "oxed.h"

namespace pavo::app {
namespace {

using db::UndoHistory;

UndoHistory* history() {
    OxDbDatabase* db = oxdbHostApplicationServices()->workingDatabase();
    return db ? &db::undoHistory(db) : nullptr;
}

// After the drawing went back or forth: what was picked may be gone.
void reportSteps(const std::vector<std::wstring>& names, const wchar_t* done) {
    for (const std::wstring& name : names)
        oxutPrintf(L"\n%ls: %ls", done, name);
    if (!names.empty()) editor::selection::forgetDrawing();
}

bool disabled(const UndoHistory& h) {
    if (h.control() != UndoHistory::Control::None) return false;
    oxutPrintf(L"\nUndo is off. Turn it on with UNDO Control All.");
    return true;
}

int undoSteps(UndoHistory& h, std::size_t count) {
    const std::vector<std::wstring> names = h.undo(count);
    reportSteps(names, L"Undone");
    if (names.size() < count) oxutPrintf(names.empty() ? L"\nNothing to undo." : L"\nEverything has been undone.");
    return STATUS_NORMAL;
}

int u() {
    UndoHistory* h = history();
    if (!h) return STATUS_ERROR;
    if (disabled(*h)) return STATUS_NORMAL;
    return undoSteps(*h, 1);
}

int redo() {
    UndoHistory* h = history();
    if (!h) return STATUS_ERROR;
    const std::vector<std::wstring> names = h->redo(1);
    if (names.empty()) oxutPrintf(L"\nNothing to redo: REDO follows U or UNDO, before any other change.");
    reportSteps(names, L"Redone");
    return STATUS_NORMAL;
}

int control(UndoHistory& h) {
    oxedInitGet(0, L"All None One _All None One");
    OxString answer;
    const int status = oxedGetKword(L"\nEnter an UNDO control option [All/None/One] <All>: ", answer);
    if (status != STATUS_NORMAL && status != STATUS_NONE) return status;
    if (status == STATUS_NONE || answer == L"All") {
        h.setControl(UndoHistory::Control::All);
    } else if (answer == L"None") {
        h.setControl(UndoHistory::Control::None);
        oxutPrintf(L"\nUndo is off; the history was emptied.");
    } else {
        h.setControl(UndoHistory::Control::One);
        oxutPrintf(L"\nUndo keeps the last command only.");
    }
    return STATUS_NORMAL;
}

int back(UndoHistory& h) {
    if (!h.hasMark() && !askYesNo(L"\nThis will undo everything. OK? [Yes/No] <Yes>: ", true).value_or(false))
        return STATUS_CANCEL;
    bool foundMark = false;
    reportSteps(h.undoToMark(foundMark), L"Undone");
    oxutPrintf(foundMark ? L"\nMark encountered." : L"\nEverything has been undone.");
    return STATUS_NORMAL;
}

int undo() {
    UndoHistory* h = history();
    if (!h) return STATUS_ERROR;
    if (h->control() == UndoHistory::Control::None) return control(*h);
    const bool one = h->control() == UndoHistory::Control::One;
    // Auto is understood though not offered: people used to grouping menu
    // picks type it, and here every command is one step already.
    oxedInitGet(OX_INP_NOZERO | OX_INP_NONEG, one ? L"Control Auto _Control Auto"
                                                  : L"Control BEgin End Mark Back Auto _Control BEgin End Mark Back Auto");
    int count = 1;
    const int status = oxedGetInt(one ? L"\nEnter the number of operations to undo or [Control] <1>: "
                                      : L"\nEnter the number of operations to undo or [Control/BEgin/End/Mark/Back] <1>: ",
                                  &count);
    if (status == STATUS_NONE) return undoSteps(*h, 1);
    if (status == STATUS_NORMAL) return undoSteps(*h, static_cast<std::size_t>(count));
    if (status != STATUS_KEYWORD) return status;
    OxString option;
    oxedGetInput(option);
    if (option == L"Control") return control(*h);
    if (option == L"Auto") {
        oxutPrintf(L"\nEvery command is one step already; UNDO BEgin and End make several commands one.");
        return STATUS_NORMAL;
    }
    if (option == L"BEgin") {
        h->beginGroup();
        return STATUS_NORMAL;
    }
    if (option == L"End") {
        if (!h->groupOpen()) oxutPrintf(L"\nNo group is open: UNDO BEgin starts one.");
        h->endGroup();
        return STATUS_NORMAL;
    }
    if (option == L"Mark") {
        h->addMark();
        return STATUS_NORMAL;
    }
    return back(*h);
}

int layerPrevious() {
    UndoHistory* h = history();
    if (!h) return STATUS_ERROR;
    if (!h->layerPreviousTracking()) {
        oxutPrintf(L"\nLayer previous is off; turn it on with LAYERPMODE.");
        return STATUS_NORMAL;
    }
    if (!h->restoreLayerPrevious()) {
        oxutPrintf(L"\n*No previous layer states*");
        return STATUS_NORMAL;
    }
    oxutPrintf(L"\nRestored previous layer states.");
    return STATUS_NORMAL;
}

int layerPreviousMode() {
    UndoHistory* h = history();
    if (!h) return STATUS_ERROR;
    const bool on = h->layerPreviousTracking();
    oxutPrintf(on ? L"\nLAYERP tracking is on." : L"\nLAYERP tracking is off.");
    oxedInitGet(0, L"ON OFf _ON OFf");
    OxString answer;
    const int status =
        oxedGetKword(on ? L"\nEnter LAYERP mode [ON/OFf] <ON>: " : L"\nEnter LAYERP mode [ON/OFf] <OFf>: ", answer);
    if (status == STATUS_NONE) return STATUS_NORMAL;
    if (status != STATUS_NORMAL) return status;
    h->setLayerPreviousTracking(answer == L"ON");
    return STATUS_NORMAL;
}

} // namespace

void registerUndoCommands(const AddHostCommand& add) {
    add(L"U", L"undoes the last command", [] { return u(); });
    add(L"UNDO", L"undoes commands: a number, marks, groups, or turns undo off", [] { return undo(); });
    add(L"REDO", L"redoes what U or UNDO undid", [] { return redo(); });
    add(L"LAYERP", L"puts back the layer settings from before the last change to them", [] { return layerPrevious(); });
    add(L"LAYERPMODE", L"turns the tracking of layer changes for LAYERP on or off", [] { return layerPreviousMode(); });
}

} // namespace pavo::app
