// A dictionary's entries: insertion order with the stored spelling, and an
// index keyed by the case-folded key.
#pragma once

#include <string>
#include <unordered_map>
#include <vector>

#include "DbStore.h"
#include "OxDbDictionary.h"

struct OxDbDictionary::Impl {
    struct Entry {
        OxString key;
        OxDbCell* cell;
    };
    std::vector<Entry> entries;
    std::unordered_map<std::wstring, std::size_t> byKey; // folded key -> position in entries

    // Position of the entry of `key` (any case), or -1.
    long find(std::wstring_view key) const;
    void reindexFrom(std::size_t position);
};

namespace pavo::db {

// Adds `obj` (non-resident) under `key` without opening the dictionary and
// leaves it closed: for entries the host makes while a caller may hold the
// dictionary open (plot style names). The key must not be in use.
OxDbObjectId dictionaryAddDirect(OxDbDictionary* dict, const wchar_t* key, OxDbObject* obj);

} // namespace pavo::db
