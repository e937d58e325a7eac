// Loading linetypes from a linetype file is the file reader's job
// (pavo/files); it installs itself here so that the database does not
// depend on it. Without a loader, loadLineTypeFile reports eFileNotFound.
#pragma once

#include "OxDbDatabase.h"

namespace pavo::db {

// Loads the linetypes matching `pattern` from `fileName` into `db`, leaving
// the ones already there alone.
using LinetypeFileLoader = Ox::ErrorStatus (*)(OxDbDatabase* db, const wchar_t* pattern, const wchar_t* fileName);

void setLinetypeFileLoader(LinetypeFileLoader loader);

} // namespace pavo::db
