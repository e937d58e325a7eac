// Colours and transparencies typed as text, for prompts and system
// variables.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "OxCmColor.h"

namespace pavo::editor {

// An index (1 to 255; -255 to -1 with kAllowNegativeIndex; 0 and 256 for
// ByBlock and ByLayer when allowed), a colour name ("red" ... "white"),
// "ByLayer" or "ByBlock" when allowed (PavoAcquireInput's option bits), and
// with `rgb` also "r,g,b". nullopt when it is none of them.
std::optional<OxCmColor> parseColorText(std::wstring_view text, unsigned short options, bool rgb);

// "ByLayer", "ByBlock", or a percentage 0 to 90 (0 opaque).
std::optional<OxCmTransparency> parseTransparencyText(std::wstring_view text);
// "ByLayer", "ByBlock" or the percentage ("30").
std::wstring transparencyText(const OxCmTransparency& transparency);

} // namespace pavo::editor
