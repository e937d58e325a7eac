// Points typed on the command line: "x,y" or "x,y,z", blanks allowed around
// the numbers.
#pragma once

#include <optional>
#include <string_view>

#include "OxGe.h"

namespace pavo::editor {

std::optional<OxGePoint3d> parsePoint(std::wstring_view text);

} // namespace pavo::editor
