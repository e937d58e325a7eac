// What LIST shows of a viewport: its number and layout, where it lies on
// the sheet, what it shows of the model, the layers frozen in it and every
// layer property overridden in it.
#pragma once

#include <string>
#include <utility>
#include <vector>

class OxDbViewport;

namespace pavo::app {

// (label, value) lines in the order LIST prints them.
std::vector<std::pair<std::wstring, std::wstring>> viewportListing(const OxDbViewport& viewport);

} // namespace pavo::app
