// A symbol table's records: a list in insertion order and a name index
// that ignores letter case, so that lookup by name is O(1).
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "DbStore.h"
#include "NameIndex.h"
#include "OxDbSymbolTable.h"

struct OxDbSymbolTable::Impl {
    std::vector<OxDbCell*> records; // erased ones too
    pavo::db::NameIndex byName;     // live records only
    int live = 0;

    // The live records in the order of their names (OxString::compare),
    // sorted when first asked for after the names changed, and shared with
    // the iterators walking it, which a later change leaves alone.
    using Order = std::shared_ptr<const std::vector<OxDbCell*>>;
    Order inNameOrder() const;
    mutable Order nameOrder;
    mutable std::uint64_t nameOrderGeneration = 0;

    // The live record of that name (any case), or null.
    OxDbCell* find(std::wstring_view name) const;
    // An erased record of that name, or null (a scan: erased lookups are rare).
    OxDbCell* findErased(std::wstring_view name) const;
    // Lists a record that was just made resident; false (nothing listed)
    // when a live record has its name.
    bool insert(OxDbCell* cell);
    // Keeps the index when a record is erased or unerased;
    // eDuplicateRecordName when unerasing a name taken meanwhile.
    Ox::ErrorStatus onErase(OxDbCell* cell, bool erasing);
    // Moves a live record to a new name in the index.
    void rename(OxDbCell* cell, std::wstring_view oldName, std::wstring_view newName);
};

struct OxDbBlockTableRecord::Impl {
    std::vector<OxDbCell*> entities; // in order of appending, erased ones too
};

namespace pavo::db {

// The name of a record's cell ("" when it holds no record).
std::wstring_view recordName(const OxDbCell* cell);

// Gives a layer record added to `db` what a new layer has by default
// (continuous linetype, the "Normal" plot style, the global material) for
// whatever its maker left unset.
void applyNewLayerDefaults(OxDbDatabase* db, OxDbLayerTableRecord* layer);

} // namespace pavo::db
