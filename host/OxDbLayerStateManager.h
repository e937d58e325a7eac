// Named layer states: saved layer properties that can be restored.
#pragma once

#include <vector>

#include "OxCmColor.h"
#include "OxDb.h"
#include "OxDbObject.h"
#include "OxString.h"

class OxDbDatabase;

class PAVO_HOST_API OxDbLayerStateManager {
public:
    enum LayerStateMask : unsigned int {
        kNone = 0x0000,
        kOn = 0x0001,
        kFrozen = 0x0002,
        kLocked = 0x0004,
        kPlot = 0x0008,
        kNewViewport = 0x0010,
        kColor = 0x0020,
        kLineType = 0x0040,
        kLineWeight = 0x0080,
        kPlotStyle = 0x0100,
        kCurrentViewport = 0x0200, // the current viewport's freeze state
        kTransparency = 0x0400,
        kAll = 0x07FF,
    };
    enum RestoreFlags : unsigned int {
        kUndefDoNothing = 0,
        kUndefTurnOff = 1,    // layers not in the state are turned off
        kUndefFreeze = 2,     // layers not in the state are frozen
        kRestoreAsOverrides = 4,
    };

    explicit OxDbLayerStateManager(OxDbDatabase* db);
    virtual ~OxDbLayerStateManager();
    OxDbDatabase* database() const { return m_db; }

    OxDbObjectId layerStatesDictionaryId(bool createIfNotPresent = false);
    bool hasLayerState(const wchar_t* name);
    // eDuplicateKey when the name is taken; eInvalidInput for an empty name.
    Ox::ErrorStatus saveLayerState(const wchar_t* name, LayerStateMask mask,
                                   const OxDbObjectId& viewportId = OxDbObjectId());
    // eKeyNotFound when there is no such state.
    Ox::ErrorStatus restoreLayerState(const wchar_t* name, const OxDbObjectId& viewportId = OxDbObjectId(),
                                      int restoreFlags = 0, const LayerStateMask* mask = nullptr);
    Ox::ErrorStatus renameLayerState(const wchar_t* oldName, const wchar_t* newName);
    Ox::ErrorStatus deleteLayerState(const wchar_t* name);
    Ox::ErrorStatus setLayerStateMask(const wchar_t* name, LayerStateMask mask);
    Ox::ErrorStatus getLayerStateMask(const wchar_t* name, LayerStateMask& mask);
    Ox::ErrorStatus setLayerStateDescription(const wchar_t* name, const wchar_t* description);
    Ox::ErrorStatus getLayerStateDescription(const wchar_t* name, OxString& description);

private:
    OxDbDatabase* m_db;
};

// One saved layer state: an entry of the layer states dictionary.
class PAVO_HOST_API OxDbLayerState : public OxDbObject {
    OX_RX_DECLARE_MEMBERS(OxDbLayerState)
public:
    // The saved properties of one layer, which is found again by name.
    struct LayerEntry {
        OxString name;
        bool off = false, frozen = false, locked = false, plottable = true, newViewportFrozen = false;
        bool frozenInViewport = false; // in the viewport the state was saved for
        OxCmColor color;
        OxDbObjectId linetypeId;
        OxDb::LineWeight lineWeight = OxDb::kLnWtByLwDefault;
        OxString plotStyleName;
        OxCmTransparency transparency;
    };

    OxDbObject* cloneState() const override;
    unsigned int mask() const { return m_mask; }
    Ox::ErrorStatus setMask(unsigned int mask);
    OxString description() const { return m_description; }
    Ox::ErrorStatus setDescription(const wchar_t* text);
    OxString currentLayerName() const { return m_currentLayer; }
    Ox::ErrorStatus setCurrentLayerName(const wchar_t* name);
    OxDbObjectId viewportId() const { return m_viewport; }
    Ox::ErrorStatus setViewportId(const OxDbObjectId& id);
    const std::vector<LayerEntry>& layers() const { return m_layers; }
    Ox::ErrorStatus setLayers(std::vector<LayerEntry> layers);

private:
    unsigned int m_mask = OxDbLayerStateManager::kAll;
    OxString m_description;
    OxString m_currentLayer;
    OxDbObjectId m_viewport;
    std::vector<LayerEntry> m_layers;
};
