// Plot style tables: named plot styles kept in table files on the support
// path (the format is described in docs/plot-styles.md).
#pragma once

#include <memory>
#include <vector>

#include "OxCmColor.h"
#include "OxDb.h"
#include "OxString.h"
#include "PavoExport.h"

class OxDbDatabase;

class PAVO_HOST_API PavoPlotStyle {
public:
    const wchar_t* getName() const { return m_name.kwszPtr(); }
    const wchar_t* getDescription() const { return m_description.kwszPtr(); }

    // Host internals: what a table file gives a style.
    OxString m_name, m_description;
    OxCmColor m_color;              // by object when by layer (kByLayer)
    OxDb::LineWeight m_lineWeight = OxDb::kLnWtByLayer; // by object when -1
    OxString m_linetype;            // empty: by object
    int m_screening = 100;
};

class PAVO_HOST_API PavoPlotStyleTable {
public:
    PavoPlotStyleTable();
    ~PavoPlotStyleTable();
    int count() const;
    // The style at `index`, or null.
    PavoPlotStyle* getPlotStyleAt(int index) const;
    const OxString& description() const { return m_description; }

    // Host internals.
    OxString m_description;
    std::vector<std::unique_ptr<PavoPlotStyle>> m_styles;
};

class PAVO_HOST_API PavoPlotManager {
public:
    // Reads the table file at `path`; true with a new table (the caller
    // deletes it), false (and null) when it cannot be read.
    static bool LoadPlotStyleTable(const wchar_t* path, PavoPlotStyleTable*& table);
};

// The full path of a plot style table file (the drawing's folder, then the
// support path); empty when it is not found.
PAVO_HOST_API OxString searchPrintstylePath(const wchar_t* styleSheet, OxDbDatabase* db);
