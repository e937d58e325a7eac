// Object identifiers and handles.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "OxArray.h"
#include "PavoExport.h"

class OxDbDatabase;
class OxDbCell;

// A persistent handle: unique in a drawing, kept across save and load.
class PAVO_HOST_API OxDbHandle {
public:
    OxDbHandle() = default;
    explicit OxDbHandle(std::uint64_t v) : m_value(v) {}
    std::uint64_t value() const { return m_value; }
    bool isNull() const { return m_value == 0; }
    // Upper-case hexadecimal without leading zeros ("1F").
    std::wstring toString() const;
    // Parses hexadecimal text; false (and a null handle) when malformed.
    static bool parse(const wchar_t* text, OxDbHandle& out);
    bool operator==(const OxDbHandle& o) const { return m_value == o.m_value; }
    bool operator!=(const OxDbHandle& o) const { return m_value != o.m_value; }
    bool operator<(const OxDbHandle& o) const { return m_value < o.m_value; }

private:
    std::uint64_t m_value = 0;
};

// The part of the database's per-object record that ids read inline.
struct OxDbCellHeader {
    std::uint64_t handle = 0;
    OxDbDatabase* database = nullptr;
};

// Identifies a database-resident object. Ids compare by handle value, so
// ascending id order is creation order.
class PAVO_HOST_API OxDbObjectId {
public:
    OxDbObjectId() = default;
    explicit OxDbObjectId(OxDbCell* cell) : m_cell(cell) {}
    static const OxDbObjectId kNull;

    bool isNull() const { return m_cell == nullptr; }
    // Not null and an object is attached (erased or not).
    bool isValid() const;
    bool isErased() const;
    void setNull() { m_cell = nullptr; }

    OxDbHandle handle() const { return OxDbHandle(m_cell ? header()->handle : 0); }
    OxDbDatabase* database() const { return m_cell ? header()->database : nullptr; }
    OxDbCell* cell() const { return m_cell; }

    bool operator==(const OxDbObjectId& o) const { return m_cell == o.m_cell; }
    bool operator!=(const OxDbObjectId& o) const { return m_cell != o.m_cell; }
    bool operator<(const OxDbObjectId& o) const { return key() < o.key(); }
    bool operator>(const OxDbObjectId& o) const { return o < *this; }
    bool operator<=(const OxDbObjectId& o) const { return !(o < *this); }
    bool operator>=(const OxDbObjectId& o) const { return !(*this < o); }

private:
    const OxDbCellHeader* header() const { return reinterpret_cast<const OxDbCellHeader*>(m_cell); }
    std::uint64_t key() const { return m_cell ? header()->handle : 0; }
    OxDbCell* m_cell = nullptr;
};

using OxDbObjectIdArray = OxArray<OxDbObjectId>;

template <>
struct std::hash<OxDbObjectId> {
    size_t operator()(const OxDbObjectId& id) const noexcept { return std::hash<const void*>()(id.cell()); }
};
