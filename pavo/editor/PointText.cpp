#include "editor/PointText.h"

#include <vector>

#include "editor/NumberText.h"

namespace pavo::editor {

std::optional<OxGePoint3d> parsePoint(std::wstring_view text) {
    std::vector<double> values;
    size_t start = 0;
    for (;;) {
        const size_t comma = text.find(L',', start);
        const std::wstring_view part = text.substr(start, comma == std::wstring_view::npos ? comma : comma - start);
        const std::optional<double> value = parseReal(part);
        if (!value) return std::nullopt;
        values.push_back(*value);
        if (comma == std::wstring_view::npos) break;
        start = comma + 1;
    }
    if (values.size() < 2 || values.size() > 3) return std::nullopt;
    return OxGePoint3d(values[0], values[1], values.size() == 3 ? values[2] : 0.0);
}

} // namespace pavo::editor
