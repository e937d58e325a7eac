// Asking for a point: "x,y" or "x,y,z", or one of the prompt's keywords.
// Anything else is refused with "Invalid point." and asked again.
#pragma once

#include <string>

#include "Keywords.h"
#include "OxGe.h"

namespace pavo::editor {

class Editor;

struct PointAnswer {
    enum Kind { Point, None, Cancel, Keyword };
    Kind kind = Cancel;
    OxGePoint3d point;
    std::wstring keyword; // the global keyword
};

PointAnswer askPoint(Editor& editor, const std::wstring& prompt, const KeywordList& keywords = {});

} // namespace pavo::editor
