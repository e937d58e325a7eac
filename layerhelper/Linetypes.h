// Finding a linetype in the drawing, and the standard linetype file it is
// loaded from when the drawing lacks it.
#pragma once

#include <array>

#include "OxDbObjectId.h"
#include "OxString.h"

class OxDbDatabase;

namespace vxlayer {

// Looks `name` up among the drawing's linetypes (erased ones left out);
// `id` is null when it is not there. False when the table cannot be opened.
bool findLinetype(OxDbDatabase* db, const OxString& name, OxDbObjectId& id);

// "vantaiso.lin" for a metric drawing (MEASUREMENT not 0), "vanta.lin"
// otherwise.
const wchar_t* standardLinetypeFile(bool metric);

// The path of `file` found by the host's file search (drawing folder, then
// support path); the host's status, 5100 when found.
inline constexpr int kLinetypePathLength = 512;
int findSupportFile(const wchar_t* file, std::array<wchar_t, kLinetypePathLength>& path);

// The standard linetype file of the drawing's measurement system
// (MEASUREMENT), found as findSupportFile finds it; false when missing.
bool findStandardLinetypeFile(std::array<wchar_t, kLinetypePathLength>& path);

// The linetype `name` of the drawing, loaded from the standard linetype
// file when missing. Null (with the message) when it is in neither.
OxDbObjectId linetypeOrLoad(OxDbDatabase* db, const OxString& name);

} // namespace vxlayer
