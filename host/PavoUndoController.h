// The drawing's undo controller (OxDbDatabase::undoController()). Today it
// holds only the mark that a command changed so much that the whole drawing
// must be regenerated when it ends; undo and redo will be built on it.
#pragma once

#include "PavoExport.h"

class PAVO_HOST_API PavoUndoController {
public:
    PavoUndoController();
    virtual ~PavoUndoController();
    PavoUndoController(const PavoUndoController&) = delete;
    PavoUndoController& operator=(const PavoUndoController&) = delete;

    // Asks for a regeneration of the whole drawing once the command ends.
    void setNeedRegenAllMark();
    bool needRegenAllMark() const;
    // Called by the host when it has regenerated.
    void clearNeedRegenAllMark();
    // How often the mark was set since the drawing was opened.
    int regenAllMarkCount() const;

private:
    bool m_regenAll = false;
    int m_marks = 0;
};
