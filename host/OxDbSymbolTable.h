// Symbol tables (layers, linetypes, blocks), their records and iterators.
#pragma once

#include <memory>
#include <vector>

#include "OxCmColor.h"
#include "OxDbObject.h"
#include "OxGe.h"
#include "OxString.h"

class OxDbSymbolTableRecord;
class OxDbEntity;
class OxDbBlockTableRecordIterator;

// Walks a table in table (insertion) order, or in the order of the records'
// names. Delete it when done.
class PAVO_HOST_API OxDbSymbolTableIterator {
public:
    virtual ~OxDbSymbolTableIterator();
    void start(bool atBeginning = true, bool skipDeleted = true);
    bool done() const;
    Ox::ErrorStatus getRecordId(OxDbObjectId& id) const;
    template <class T>
    Ox::ErrorStatus getRecord(T*& rec, OxDb::OpenMode mode, bool openErased = false) const {
        OxDbObjectId id;
        Ox::ErrorStatus es = getRecordId(id);
        if (es != Ox::eOk) {
            rec = nullptr;
            return es;
        }
        return oxdbOpenObject(rec, id, mode, openErased);
    }
    void step(bool forward = true, bool skipDeleted = true);
    Ox::ErrorStatus seek(const OxDbObjectId& id);

    // Host internals.
    OxDbSymbolTableIterator(const void* table, bool atBeginning, bool skipDeleted);
    OxDbSymbolTableIterator(const void* table, std::shared_ptr<const std::vector<OxDbCell*>> order);

private:
    void skip(bool forward);
    const std::vector<OxDbCell*>& cells() const;
    const void* m_table;
    std::shared_ptr<const std::vector<OxDbCell*>> m_order; // null: table order
    long m_pos = 0;
    bool m_skipDeleted = true;
};

class PAVO_HOST_API OxDbSymbolTable : public OxDbObject {
    OX_RX_DECLARE_MEMBERS(OxDbSymbolTable)
public:
    OxDbSymbolTable();
    ~OxDbSymbolTable() override;

    // Looks a name up, ignoring case; erased records only when asked for.
    Ox::ErrorStatus getIdAt(const wchar_t* name, OxDbObjectId& id, bool getErased = false) const;
    bool has(const wchar_t* name) const;
    bool has(const OxDbObjectId& id) const;
    Ox::ErrorStatus newIterator(OxDbSymbolTableIterator*& it, bool atBeginning = true, bool skipDeleted = true) const;
    // Walks the records that are not erased in the order of their names
    // (OxString::compare, letter case counting). The order is kept with the
    // table: it is sorted again only after names changed, not for every walk.
    Ox::ErrorStatus newIteratorInNameOrder(OxDbSymbolTableIterator*& it) const;
    // Number of records that are not erased.
    int numEntries() const;

    // Adds a non-resident record; on success it is resident and open for
    // write, and `id` is its id. eDuplicateRecordName, eInvalidSymbolTableName
    // (refused by the symbol name check), eAlreadyInDb.
    Ox::ErrorStatus add(OxDbObjectId& id, OxDbSymbolTableRecord* record);
    Ox::ErrorStatus add(OxDbSymbolTableRecord* record) {
        OxDbObjectId id;
        return add(id, record);
    }

    // Host internals: the record class a table holds, and the record list.
    virtual const OxRxClass* recordClass() const = 0;
    struct Impl;
    Impl* impl() const { return m_impl; }

private:
    Impl* m_impl;
};

class PAVO_HOST_API OxDbSymbolTableRecord : public OxDbObject {
    OX_RX_DECLARE_MEMBERS(OxDbSymbolTableRecord)
public:
    Ox::ErrorStatus getName(OxString& name) const;
    // Valid while the record is open and its name unchanged.
    Ox::ErrorStatus getName(const wchar_t*& name) const;
    const wchar_t* getName() const { return m_name.kwszPtr(); }
    const OxString& name() const { return m_name; }
    // Renames; the table's name index follows. eDuplicateRecordName when
    // another record of the table has that name.
    Ox::ErrorStatus setName(const wchar_t* name);
    // A name with a vertical bar belongs to an external reference.
    bool isDependent() const;

private:
    OxString m_name;
};

// ---------------------------------------------------------------- layers

class PAVO_HOST_API OxDbLayerTable : public OxDbSymbolTable {
    OX_RX_DECLARE_MEMBERS(OxDbLayerTable)
public:
    const OxRxClass* recordClass() const override;
    OxDbObject* cloneState() const override;
    // Marks layers in use: referred to by an entity of any block or by a
    // block definition's content; layer 0, DEFPOINTS and the current layer.
    void generateUsageData();
};

// Per-viewport overrides of a layer's properties.
struct OxDbLayerViewportOverrides {
    OxDbObjectId viewportId;
    bool hasColor = false, hasLinetype = false, hasLineWeight = false, hasTransparency = false,
         hasPlotStyle = false;
    OxCmColor color;
    OxDbObjectId linetypeId;
    OxDb::LineWeight lineWeight = OxDb::kLnWtByLwDefault;
    OxCmTransparency transparency;
    OxDbObjectId plotStyleNameId;
    bool isEmpty() const { return !(hasColor || hasLinetype || hasLineWeight || hasTransparency || hasPlotStyle); }
};

class PAVO_HOST_API OxDbLayerTableRecord : public OxDbSymbolTableRecord {
    OX_RX_DECLARE_MEMBERS(OxDbLayerTableRecord)
public:
    OxDbLayerTableRecord();
    ~OxDbLayerTableRecord() override;
    OxDbObject* cloneState() const override;

    bool isFrozen() const { return m_frozen; }
    // Freezing the current layer does nothing.
    void setIsFrozen(bool frozen);
    bool isOff() const { return m_off; }
    void setIsOff(bool off);
    bool isLocked() const { return m_locked; }
    void setIsLocked(bool locked);
    bool isPlottable() const { return m_plottable; }
    Ox::ErrorStatus setIsPlottable(bool plottable);
    bool VPDFLT() const { return m_vpdflt; }
    void setVPDFLT(bool frozenInNewViewports);
    bool isHidden() const { return m_hidden; }
    Ox::ErrorStatus setIsHidden(bool hidden);
    bool isInUse() const { return m_inUse; }
    void setIsInUseBit(bool inUse) { m_inUse = inUse; } // host internals

    OxCmColor color() const { return m_color; }
    void setColor(const OxCmColor& color);
    OxDbObjectId linetypeObjectId() const { return m_linetype; }
    void setLinetypeObjectId(const OxDbObjectId& id);
    OxDb::LineWeight lineWeight() const { return m_lineWeight; }
    Ox::ErrorStatus setLineWeight(OxDb::LineWeight weight);
    OxCmTransparency transparency() const { return m_transparency; }
    Ox::ErrorStatus setTransparency(const OxCmTransparency& t);
    OxDbObjectId materialId() const { return m_material; }
    Ox::ErrorStatus setMaterialId(const OxDbObjectId& id);

    // Plot style: an entry of the plot style name dictionary.
    OxDbObjectId plotStyleNameId() const { return m_plotStyle; }
    // The entry's name; eKeyNotFound when the layer has none.
    Ox::ErrorStatus plotStyleName(OxString& name) const;
    OxString plotStyleName() const;
    Ox::ErrorStatus setPlotStyleName(const OxDbObjectId& id);
    // Sets by name; the name is resolved in the plot style name dictionary
    // (an entry is made when missing). eInvalidInput for an empty name.
    Ox::ErrorStatus setPlotStyleName(const wchar_t* name);

    OxString description() const { return m_description; }
    Ox::ErrorStatus setDescription(const wchar_t* text);

    // Per-viewport overrides, keyed by viewport id.
    void setColor(const OxCmColor& color, const OxDbObjectId& viewportId);
    OxCmColor color(const OxDbObjectId& viewportId, bool& isOverride) const;
    void setLinetypeObjectId(const OxDbObjectId& id, const OxDbObjectId& viewportId);
    OxDbObjectId linetypeObjectId(const OxDbObjectId& viewportId, bool& isOverride) const;
    Ox::ErrorStatus setLineWeight(OxDb::LineWeight weight, const OxDbObjectId& viewportId);
    OxDb::LineWeight lineWeight(const OxDbObjectId& viewportId, bool& isOverride) const;
    Ox::ErrorStatus setTransparency(const OxCmTransparency& t, const OxDbObjectId& viewportId);
    OxCmTransparency transparency(const OxDbObjectId& viewportId, bool& isOverride) const;
    Ox::ErrorStatus setPlotStyleName(const OxDbObjectId& id, const OxDbObjectId& viewportId);
    Ox::ErrorStatus setPlotStyleName(const wchar_t* name, const OxDbObjectId& viewportId);
    OxDbObjectId plotStyleNameId(const OxDbObjectId& viewportId, bool& isOverride) const;

    void removeColorOverride(const OxDbObjectId& viewportId);
    void removeLinetypeOverride(const OxDbObjectId& viewportId);
    void removeLineWeightOverride(const OxDbObjectId& viewportId);
    void removeTransparencyOverride(const OxDbObjectId& viewportId);
    void removePlotStyleOverride(const OxDbObjectId& viewportId);
    void removeViewportOverrides(const OxDbObjectId& viewportId);
    void removeAllOverrides();
    bool hasOverrides(const OxDbObjectId& viewportId) const;
    bool hasAnyOverrides() const;
    // The overrides of one viewport (an empty set when it has none).
    OxDbLayerViewportOverrides viewportOverrides(const OxDbObjectId& viewportId) const;
    // Every viewport's overrides, in the order of the viewports' ids.
    std::vector<OxDbLayerViewportOverrides> viewportOverrides() const;

private:
    // Host internals: the overrides, one ordered list a property, made with
    // the first override (most layers have none).
    struct Overrides;
    Overrides& overridesForWrite();

    bool m_off = false, m_frozen = false, m_locked = false, m_plottable = true, m_vpdflt = false,
         m_hidden = false, m_inUse = false;
    OxCmColor m_color = OxCmColor::fromIndex(7);
    OxDbObjectId m_linetype;
    OxDb::LineWeight m_lineWeight = OxDb::kLnWtByLwDefault;
    OxCmTransparency m_transparency = OxCmTransparency(255);
    OxDbObjectId m_material;
    OxDbObjectId m_plotStyle;
    OxString m_description;
    std::unique_ptr<Overrides> m_overrides;
};

// ---------------------------------------------------------------- linetypes

class PAVO_HOST_API OxDbLinetypeTable : public OxDbSymbolTable {
    OX_RX_DECLARE_MEMBERS(OxDbLinetypeTable)
public:
    const OxRxClass* recordClass() const override;
    OxDbObject* cloneState() const override;
};

class PAVO_HOST_API OxDbLinetypeTableRecord : public OxDbSymbolTableRecord {
    OX_RX_DECLARE_MEMBERS(OxDbLinetypeTableRecord)
public:
    OxDbObject* cloneState() const override;

    Ox::ErrorStatus comments(OxString& text) const;
    const wchar_t* comments() const { return m_comments.kwszPtr(); }
    Ox::ErrorStatus setComments(const wchar_t* text);
    double patternLength() const;
    // Dashes: positive a dash, negative a gap, zero a dot.
    int numDashes() const { return static_cast<int>(m_dashes.size()); }
    double dashLengthAt(int index) const;
    void setNumDashes(int count);
    void setDashLengthAt(int index, double length);
    bool isScaledToFit() const { return m_scaledToFit; }
    void setIsScaledToFit(bool v);

private:
    OxString m_comments;
    std::vector<double> m_dashes;
    bool m_scaledToFit = false;
};

// ---------------------------------------------------------------- blocks

class PAVO_HOST_API OxDbBlockTable : public OxDbSymbolTable {
    OX_RX_DECLARE_MEMBERS(OxDbBlockTable)
public:
    const OxRxClass* recordClass() const override;
    OxDbObject* cloneState() const override;
};

// A block: model space, a layout's paper space, or a block definition.
// Entities are owned in order of appending.
class PAVO_HOST_API OxDbBlockTableRecord : public OxDbSymbolTableRecord {
    OX_RX_DECLARE_MEMBERS(OxDbBlockTableRecord)
public:
    OxDbBlockTableRecord();
    ~OxDbBlockTableRecord() override;
    OxDbObject* cloneState() const override;

    // Adds a non-resident entity; on success it is resident and open for write.
    Ox::ErrorStatus appendOxDbEntity(OxDbObjectId& id, OxDbEntity* entity);
    Ox::ErrorStatus appendOxDbEntity(OxDbEntity* entity) {
        OxDbObjectId id;
        return appendOxDbEntity(id, entity);
    }
    Ox::ErrorStatus newIterator(OxDbBlockTableRecordIterator*& it, bool atBeginning = true,
                                bool skipDeleted = true) const;
    // Ids of the block references to this block (directOnly: not through
    // nested references).
    Ox::ErrorStatus getBlockReferenceIds(OxDbObjectIdArray& ids, bool directOnly = true,
                                         bool forceValidity = false) const;
    int numEntities() const;

    OxDbObjectId getLayoutId() const { return m_layout; }
    Ox::ErrorStatus setLayoutId(const OxDbObjectId& id);
    bool isLayout() const { return !m_layout.isNull(); }
    OxGePoint3d origin() const { return m_origin; }
    void setOrigin(const OxGePoint3d& p);
    bool hasAttributeDefinitions() const;
    OxString comments() const { return m_comments; }
    Ox::ErrorStatus setComments(const wchar_t* text);

    // Host internals: the entity list.
    struct Impl;
    Impl* impl() const { return m_impl; }

private:
    Impl* m_impl;
    OxDbObjectId m_layout;
    OxGePoint3d m_origin;
    OxString m_comments;
};

class PAVO_HOST_API OxDbBlockTableRecordIterator {
public:
    virtual ~OxDbBlockTableRecordIterator();
    void start(bool atBeginning = true, bool skipDeleted = true);
    bool done() const;
    void step(bool forward = true, bool skipDeleted = true);
    Ox::ErrorStatus getEntityId(OxDbObjectId& id) const;
    Ox::ErrorStatus getEntity(OxDbEntity*& entity, OxDb::OpenMode mode, bool openErased = false) const;
    Ox::ErrorStatus seek(const OxDbObjectId& id);

    // Host internals.
    OxDbBlockTableRecordIterator(const OxDbBlockTableRecord* block, bool atBeginning, bool skipDeleted);

private:
    void skip(bool forward);
    const OxDbBlockTableRecord* m_block;
    long m_pos = 0;
    bool m_skipDeleted = true;
};
