// The drawing's undo history: each command is one step that holds, for
// every object the command changed, the object's state before it (taken at
// the first change), and the drawing's variables before and after. Undoing
// a step swaps each recorded state with the live object; redoing swaps them
// back, so a step holds one state an object whichever way it was last
// used. See docs/undo.md.
#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <vector>

#include "OxCmColor.h"
#include "OxDbObjectId.h"
#include "OxString.h"

class OxDbCell;
class OxDbDatabase;
class OxDbObject;
class OxRxClass;

namespace pavo::db {

// The drawing's own variables that commands change (CLAYER, CTAB,
// TILEMODE, CVPORT...) and the handle seed, as the drawing file saves them.
struct DrawingVariables {
    OxDbObjectId clayer, celtype, currentLayout;
    OxCmColor cecolor;
    int celweight = 0;
    OxCmTransparency cetransparency;
    OxString cepstyle;
    bool tilemode = true;
    int pstylemode = 0, measurement = 0, extnames = 0, insunits = 0, cvport = 0;
    double ltscale = 1.0;
    std::uint64_t handseed = 0;

    static DrawingVariables of(const OxDbDatabase* db);
    void applyTo(OxDbDatabase* db) const;
    bool operator==(const DrawingVariables& o) const;
};

// One object's recorded state: before the command while the step is done,
// after it while the step is undone. A null state is an object that did
// not exist (made by the command, or undone).
struct ObjectChange {
    // A block's entity list only grows inside a command, so its state holds
    // just the entities past the first `sharedEntities`, which the live
    // block and the state have in common (kWholeState: not a block, or a
    // block recorded whole).
    static constexpr std::uint32_t kWholeState = ~std::uint32_t{0};

    OxDbCell* cell;
    std::unique_ptr<OxDbObject> state;
    OxDbObjectId owner;
    std::uint32_t sharedEntities = kWholeState;
    bool erased;
};

struct UndoStep {
    enum Kind { Command, Group, Mark };
    Kind kind = Command;
    std::wstring name; // the command's name, as U reports it
    std::uint32_t stamp = 0;
    std::deque<ObjectChange> changes; // grows without moving: no spare capacity kept
    DrawingVariables before, after;
    std::size_t bytes = 0; // what the recorded states take, about
    bool madeByLayerPrevious = false; // never itself a step for LAYERP
    // LAYERP may still put back the layer settings from before this step,
    // which its recorded states hold while it is done.
    bool layerPrevious = false;

    bool changesLayers() const;
};

class UndoHistory {
public:
    // At most this much memory in recorded states; the newest step is kept
    // even when it alone is larger.
    static constexpr std::size_t kMemoryCap = std::size_t{512} << 20;

    explicit UndoHistory(OxDbDatabase* db);
    ~UndoHistory();
    UndoHistory(const UndoHistory&) = delete;
    UndoHistory& operator=(const UndoHistory&) = delete;

    // Around every command (nested calls join the outer one): the first
    // opens a step named `name`, the last closes it. A step that changed
    // nothing is dropped; one that did clears what could be redone.
    void beginCommand(const std::wstring& name);
    void endCommand();

    // Called before an object changes (write open, host change, erasure).
    void record(OxDbCell* cell);
    // Called when an object is made resident.
    void recordCreation(OxDbCell* cell);

    // What undo and redo can do. Each closes an open group first. The
    // names of the steps undone or redone, newest first for undo.
    std::size_t undoableCount() const;
    std::vector<std::wstring> undo(std::size_t count);
    // Undoes back to the last mark (removing it), or everything when there
    // is none; `foundMark` says which.
    std::vector<std::wstring> undoToMark(bool& foundMark);
    bool hasMark() const;
    std::size_t redoableCount() const { return m_undone.size(); }
    std::vector<std::wstring> redo(std::size_t count);

    void addMark();
    // BEgin: the commands until End are one step ("GROUP").
    void beginGroup();
    void endGroup();
    bool groupOpen() const;

    // Control: recording on or off (off drops the history), and One (the
    // history keeps the last step only).
    enum class Control { All, None, One };
    void setControl(Control control);
    Control control() const { return m_control; }

    // UNDOLIMIT.
    void setStepLimit(std::size_t limit);
    // True once, after the oldest steps were first dropped for a limit.
    bool takeDropNotice();
    std::size_t bytes() const { return m_bytes; }
    std::size_t stepCount() const { return m_done.size(); }
    // Objects recorded in the steps that can be undone, and what their
    // recorded states take without the history's own bookkeeping.
    std::size_t changedObjects() const;
    std::size_t stateBytes() const { return m_bytes - changedObjects() * sizeof(ObjectChange); }

    // LAYERP and LAYERPMODE.
    void setLayerPreviousTracking(bool on);
    bool layerPreviousTracking() const { return m_layerPrevious; }
    // Puts back the layer settings from before the last command that
    // changed them (names, new and erased layers excepted); false when
    // there is nothing to put back. Runs inside a command, so it is undone
    // by U as any change.
    bool restoreLayerPrevious();

private:
    void openStep(std::wstring name, UndoStep::Kind kind);
    void closeStep();
    void trim();
    void swapStates(UndoStep& step, bool forward);

    OxDbDatabase* m_db;
    std::deque<UndoStep> m_done;
    std::deque<UndoStep> m_undone;
    std::unique_ptr<UndoStep> m_open;
    int m_depth = 0;
    std::uint32_t m_nextStamp = 1;
    std::size_t m_limit = 100;
    std::size_t m_bytes = 0;
    Control m_control = Control::All;
    bool m_layerPrevious = true;
    bool m_dropped = false, m_dropNoticeGiven = false;
};

// The history of `db`, made when first asked for.
UndoHistory& undoHistory(OxDbDatabase* db);

} // namespace pavo::db
