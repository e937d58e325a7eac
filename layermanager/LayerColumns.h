// The columns of the layer manager's table, and their headings (which the
// script line "@set COLUMN VALUE" names, letter case ignored).
#pragma once

#include <optional>
#include <string_view>

namespace layermanager {

enum class LayerColumn {
    Status, // the current layer's mark
    Name,
    On,
    Frozen,
    Locked,
    Plot,
    Color,
    Linetype,
    Lineweight,
    Transparency,
    PlotStyle,
    NewVpFreeze,
    Description,
    // The current viewport's: frozen there, and its overrides.
    VpFreeze,
    VpColor,
    VpLinetype,
    VpLineweight,
    VpTransparency,
    VpPlotStyle,
};
inline constexpr int kColumnCount = 19;
inline constexpr int kLayerColumnCount = 13; // the columns before the viewport's

const wchar_t* columnHeading(LayerColumn column);
// The column whose heading `text` is, letter case ignored; none for the
// Status column, which holds nothing to set.
std::optional<LayerColumn> settableColumn(std::wstring_view text);
// The headings of the columns that can be set, as a list for messages.
const wchar_t* settableHeadings();

// On, Frozen, Locked, Plot, New VP Freeze and VP Freeze: check boxes.
bool isSwitchColumn(LayerColumn column);
// The columns of the current viewport.
bool isViewportColumn(LayerColumn column);
// The layer's own column a viewport column overrides (VP Color: Color).
LayerColumn overriddenColumn(LayerColumn column);

} // namespace layermanager
