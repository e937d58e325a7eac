#include "layermanager/LayerColumns.h"

#include "OxString.h"

namespace layermanager {

namespace {

constexpr const wchar_t* kHeadings[kColumnCount] = {
    L"Status",     L"Name",         L"On",         L"Frozen",        L"Locked",     L"Plot",       L"Color",
    L"Linetype",   L"Lineweight",   L"Transparency", L"Plot Style", L"New VP Freeze", L"Description",
    L"VP Freeze",  L"VP Color",     L"VP Linetype",  L"VP Lineweight", L"VP Transparency", L"VP Plot Style",
};

} // namespace

const wchar_t* columnHeading(LayerColumn column) { return kHeadings[static_cast<int>(column)]; }

std::optional<LayerColumn> settableColumn(std::wstring_view text) {
    const OxString wanted(text);
    for (int i = 1; i < kColumnCount; ++i)
        if (wanted.compareNoCase(kHeadings[i]) == 0) return static_cast<LayerColumn>(i);
    return std::nullopt;
}

const wchar_t* settableHeadings() {
    return L"Name, On, Frozen, Locked, Plot, Color, Linetype, Lineweight, Transparency, Plot Style, New VP Freeze, "
           L"Description, and in a viewport VP Freeze, VP Color, VP Linetype, VP Lineweight, VP Transparency, VP Plot "
           L"Style";
}

bool isSwitchColumn(LayerColumn column) {
    switch (column) {
    case LayerColumn::On:
    case LayerColumn::Frozen:
    case LayerColumn::Locked:
    case LayerColumn::Plot:
    case LayerColumn::NewVpFreeze:
    case LayerColumn::VpFreeze:
        return true;
    default:
        return false;
    }
}

bool isViewportColumn(LayerColumn column) { return static_cast<int>(column) >= kLayerColumnCount; }

LayerColumn overriddenColumn(LayerColumn column) {
    switch (column) {
    case LayerColumn::VpFreeze: return LayerColumn::Frozen;
    case LayerColumn::VpColor: return LayerColumn::Color;
    case LayerColumn::VpLinetype: return LayerColumn::Linetype;
    case LayerColumn::VpLineweight: return LayerColumn::Lineweight;
    case LayerColumn::VpTransparency: return LayerColumn::Transparency;
    case LayerColumn::VpPlotStyle: return LayerColumn::PlotStyle;
    default: return column;
    }
}

} // namespace layermanager
