// Values of the layer manager's cells as text: how each is shown, and how a
// typed value is read (as at the command line: "1", "red", "187,30,16",
// "0.30", "Default", "on", "off").
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "OxCmColor.h"

namespace layermanager {

// "on", "yes", "true", "1" / "off", "no", "false", "0", letter case ignored.
std::optional<bool> parseSwitch(std::wstring_view text);

// An index 1 to 255, a colour name, or "r,g,b" (a true colour).
std::optional<OxCmColor> parseLayerColor(std::wstring_view text);
std::wstring colorText(const OxCmColor& color);

// "Default", or one of the standard lineweights in millimetres ("0.30",
// "0.3 mm"); hundredths of a millimetre, -3 for Default.
std::optional<int> parseLineweight(std::wstring_view text);
std::wstring lineweightText(int lineweight);

// A whole percentage 0 to 90.
std::optional<OxCmTransparency> parseLayerTransparency(std::wstring_view text);
int transparencyPercent(const OxCmTransparency& transparency);

} // namespace layermanager
