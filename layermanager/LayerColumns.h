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
};
inline constexpr int kColumnCount = 13;

const wchar_t* columnHeading(LayerColumn column);
// The column whose heading `text` is, letter case ignored; none for the
// Status column, which holds nothing to set.
std::optional<LayerColumn> settableColumn(std::wstring_view text);
// The headings of the columns that can be set, as a list for messages.
const wchar_t* settableHeadings();

// On, Frozen, Locked, Plot and New VP Freeze: shown as check boxes.
bool isSwitchColumn(LayerColumn column);

} // namespace layermanager
