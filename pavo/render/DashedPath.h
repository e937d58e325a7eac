// Draws a path in a look: in one stroke when the line is continuous, else
// cut into the linetype's dashes, gaps and dots, the pattern running on
// from one segment into the next.
#pragma once

#include <vector>

#include "render/Canvas.h"
#include "render/Looks.h"

namespace pavo::render {

// `patternUnit`: page millimetres for one unit of the pattern's lengths.
// A pattern shorter on the page than a few of `finest` (page millimetres
// of one device dot) could not be seen; it is drawn continuous.
void drawPath(Canvas& canvas, const Look& look, double patternUnit, const std::vector<PagePoint>& points,
              bool closed, double finest);

} // namespace pavo::render
