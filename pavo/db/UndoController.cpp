// The database's undo controller. For now it records the regenerate-all
// mark; the recording of changes for UNDO, U and REDO will live here too,
// fed by the database's first-write hook.
#include "PavoUndoController.h"

PavoUndoController::PavoUndoController() = default;
PavoUndoController::~PavoUndoController() = default;

void PavoUndoController::setNeedRegenAllMark() {
    m_regenAll = true;
    ++m_marks;
}

bool PavoUndoController::needRegenAllMark() const { return m_regenAll; }
void PavoUndoController::clearNeedRegenAllMark() { m_regenAll = false; }
int PavoUndoController::regenAllMarkCount() const { return m_marks; }
