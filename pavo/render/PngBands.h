// A PNG picture painted and compressed in bands of rows, each band on its
// own thread: the drawing's display list is drawn into each band's own
// image, cut to it, and the band's rows are compressed as soon as it is
// painted.
#pragma once

#include <string>
#include <vector>

#include "render/DisplayList.h"
#include "render/PngFile.h"

namespace pavo::render {

struct PngPage {
    int width = 0, height = 0; // pixels
    double dotsPerMm = 1;
    double pageHeightMm = 0;
};

// As many bands as the machine has cores, but none of only a few rows.
int bandsFor(const PngPage& page);

// The compressed bands of the picture, top to bottom, `bands` of them;
// false with what went wrong.
bool paintPngBands(const DisplayList& list, const PngPage& page, int bands, std::vector<png::Piece>& pieces,
                   std::wstring& error);

} // namespace pavo::render
