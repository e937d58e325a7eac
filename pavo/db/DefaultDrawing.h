// What a new drawing contains, and the names of the standard dictionaries
// under the named-objects dictionary.
#pragma once

#include "OxDbDatabase.h"

namespace pavo::db {

inline constexpr const wchar_t* kLayoutsKey = L"LAYOUTS";
inline constexpr const wchar_t* kPlotSettingsKey = L"PLOTSETTINGS";
inline constexpr const wchar_t* kPlotStyleNamesKey = L"PLOTSTYLENAMES";
inline constexpr const wchar_t* kLayerStatesKey = L"LAYERSTATES";
inline constexpr const wchar_t* kMaterialsKey = L"MATERIALS";

// Fills an empty database with the defaults of a new drawing.
void buildDefaults(OxDbDatabase* db);

} // namespace pavo::db
