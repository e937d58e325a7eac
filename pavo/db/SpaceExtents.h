// How far the objects of a space reach, and the sheet of a layout: what
// MVIEW fits a new viewport to and what pictures show by default.
#pragma once

#include <optional>

#include "db/Geometry.h"

class OxDbLayout;
class OxDbObjectId;

namespace pavo::db {

// The extents of every object of a block (model space, a sheet or a block
// definition); nothing when it has none.
std::optional<geom::Box> blockExtents(const OxDbObjectId& block);

// The sheet (viewport 1) of `layout`: an A3 sheet at the origin when it has
// none.
geom::Box sheetBox(const OxDbLayout& layout);

} // namespace pavo::db
