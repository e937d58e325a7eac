// The layer manager's edits, held in the sheet until they are applied, and
// the filter and order of the shown rows.
#include "layermanager/LayerSheet.h"

#include <algorithm>
#include <array>

#include "OxDbDatabase.h"
#include "OxDbSymbolTable.h"
#include "PavoPlotStyles.h"
#include "files/LinetypeFile.h"
#include "layerhelper/LayerDeletion.h"
#include "layerhelper/LayerNameList.h"
#include "layerhelper/LayerNameRules.h"
#include "layerhelper/Linetypes.h"
#include "layerhelper/PavoLayerHelper.h"
#include "layermanager/LayerValues.h"
#include "oxmd.h"

namespace layermanager {

namespace {

std::wstring say(const wchar_t* format, const OxString& name) { return oxFormat(format, name); }

// The resource text `id` without the line break it starts with: the sheet
// returns lines, and the dialog prints each on a line of its own.
std::wstring resourceLine(unsigned int id, const wchar_t* builtIn) {
    std::wstring text = oxmdOxResourceString(id, builtIn).str();
    while (!text.empty() && text.front() == L'\n') text.erase(0, 1);
    while (!text.empty() && text.back() == L' ') text.pop_back();
    return text;
}

// True when the standard linetype file of the drawing defines `name`.
bool standardFileHasLinetype(const OxString& name) {
    std::array<wchar_t, vxlayer::kLinetypePathLength> path{};
    if (!vxlayer::findStandardLinetypeFile(path)) return false;
    std::string problem;
    const auto file = pavo::files::readLinetypeFile(std::filesystem::path(path.data()), problem);
    if (!file || !file->problems.empty()) return false;
    return std::any_of(file->linetypes.begin(), file->linetypes.end(),
                       [&](const pavo::files::LinetypeDefinition& d) { return name.compareNoCase(d.name.c_str()) == 0; });
}

int compareBool(bool a, bool b) { return static_cast<int>(a) - static_cast<int>(b); }

template <class T> int compareValues(const T& a, const T& b) { return a < b ? -1 : (b < a ? 1 : 0); }

int compareColors(const OxCmColor& a, const OxCmColor& b) {
    if (a.colorMethod() != b.colorMethod()) return compareValues(a.colorMethod(), b.colorMethod());
    if (a.isByACI()) return compareValues(a.colorIndex(), b.colorIndex());
    return compareValues(std::array{a.red(), a.green(), a.blue()}, std::array{b.red(), b.green(), b.blue()});
}

// The order of named entries by name, as a rank a number.
std::vector<std::uint32_t> ranksByName(const NamedEntries& entries) {
    std::vector<std::uint32_t> order(entries.size());
    for (std::uint32_t i = 0; i < order.size(); ++i) order[i] = i;
    std::sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        return entries.at(a).name.compareNoCase(entries.at(b).name) < 0;
    });
    std::vector<std::uint32_t> rank(entries.size() + 1);
    for (std::uint32_t r = 0; r < order.size(); ++r) rank[order[r]] = r + 1;
    return rank; // entry kNoEntry ranks 0 through rankOf
}

std::uint32_t rankOf(const std::vector<std::uint32_t>& ranks, std::uint32_t entry) {
    return entry == kNoEntry ? 0 : ranks[entry];
}

const wchar_t* switchText(LayerColumn column, bool on) {
    switch (column) {
    case LayerColumn::On: return on ? L"On" : L"Off";
    case LayerColumn::Frozen: return on ? L"Frozen" : L"Thawed";
    case LayerColumn::Locked: return on ? L"Locked" : L"Unlocked";
    case LayerColumn::Plot: return on ? L"Plot" : L"No plot";
    default: return on ? L"Frozen" : L"Thawed"; // New VP Freeze, VP Freeze
    }
}



// What a viewport column shows: the override, or the layer's own value.
const OxCmColor& colorIn(const LayerRow& row, bool viewport) {
    return viewport && row.isOverridden(LayerColumn::VpColor) ? row.vpColor : row.color;
}
std::uint32_t linetypeIn(const LayerRow& row, bool viewport) {
    return viewport && row.isOverridden(LayerColumn::VpLinetype) ? row.vpLinetype : row.linetype;
}
int lineweightIn(const LayerRow& row, bool viewport) {
    return viewport && row.isOverridden(LayerColumn::VpLineweight) ? row.vpLineweight : row.lineweight;
}
const OxCmTransparency& transparencyIn(const LayerRow& row, bool viewport) {
    return viewport && row.isOverridden(LayerColumn::VpTransparency) ? row.vpTransparency : row.transparency;
}
std::uint32_t plotStyleIn(const LayerRow& row, bool viewport) {
    return viewport && row.isOverridden(LayerColumn::VpPlotStyle) ? row.vpPlotStyle : row.plotStyle;
}

} // namespace

// ---------------------------------------------------------------- showing

void LayerSheet::setFilter(const std::wstring& filter) {
    m_filter = filter;
    refreshShown();
}

void LayerSheet::refreshShown() {
    m_shown.clear();
    m_shown.reserve(m_rows.size());
    const bool all = OxString(m_filter).trim().isEmpty();
    const vxlayer::LayerNameList list(m_filter, false);
    for (std::uint32_t i = 0; i < m_rows.size(); ++i)
        if (!m_rows[i].deleted && (all || list.selects(m_rows[i].name))) m_shown.push_back(i);
    sortBy(m_sortColumn, m_sortAscending);
}

void LayerSheet::sortBy(LayerColumn column, bool ascending) {
    m_sortColumn = column;
    m_sortAscending = ascending;
    const std::vector<std::uint32_t> linetypeRanks = ranksByName(m_linetypes);
    const std::vector<std::uint32_t> plotStyleRanks = ranksByName(m_plotStyles);
    const bool vp = isViewportColumn(column);
    const auto key = [&](std::uint32_t ia, std::uint32_t ib) -> int {
        const LayerRow& a = m_rows[ia];
        const LayerRow& b = m_rows[ib];
        switch (overriddenColumn(column)) {
        case LayerColumn::Status: return compareBool(ib == m_current, ia == m_current);
        case LayerColumn::Name: return 0;
        case LayerColumn::Color: return compareColors(colorIn(a, vp), colorIn(b, vp));
        case LayerColumn::Linetype:
            return compareValues(rankOf(linetypeRanks, linetypeIn(a, vp)), rankOf(linetypeRanks, linetypeIn(b, vp)));
        case LayerColumn::Lineweight: return compareValues(lineweightIn(a, vp), lineweightIn(b, vp));
        case LayerColumn::Transparency:
            return compareValues(transparencyPercent(transparencyIn(a, vp)), transparencyPercent(transparencyIn(b, vp)));
        case LayerColumn::PlotStyle:
            return compareValues(rankOf(plotStyleRanks, plotStyleIn(a, vp)), rankOf(plotStyleRanks, plotStyleIn(b, vp)));
        case LayerColumn::Description: return a.description.compareNoCase(b.description);
        default: return compareBool(switchOf(a, column), switchOf(b, column));
        }
    };
    // Layers of equal values stay in name order whichever way the column
    // is sorted.
    const bool byName = column == LayerColumn::Name;
    std::sort(m_shown.begin(), m_shown.end(), [&](std::uint32_t a, std::uint32_t b) {
        if (const int c = key(a, b); c != 0) return ascending ? c < 0 : c > 0;
        int c = m_rows[a].name.compareNoCase(m_rows[b].name);
        if (c == 0) c = compareValues(a, b);
        return ascending || !byName ? c < 0 : c > 0;
    });
}

std::wstring LayerSheet::displayText(const LayerRow& row, LayerColumn column) const {
    const bool vp = isViewportColumn(column);
    switch (overriddenColumn(column)) {
    case LayerColumn::Status: return isCurrent(row) ? L"Current" : L"";
    case LayerColumn::Name: return row.name.str();
    case LayerColumn::Color: return colorText(colorIn(row, vp));
    case LayerColumn::Linetype: {
        const std::uint32_t entry = linetypeIn(row, vp);
        return entry == kNoEntry ? L"" : m_linetypes.at(entry).name.str();
    }
    case LayerColumn::Lineweight: return lineweightText(lineweightIn(row, vp));
    case LayerColumn::Transparency: return std::to_wstring(transparencyPercent(transparencyIn(row, vp)));
    case LayerColumn::PlotStyle: {
        const std::uint32_t entry = plotStyleIn(row, vp);
        return entry == kNoEntry ? L"" : m_plotStyles.at(entry).name.str();
    }
    case LayerColumn::Description: return row.description.str();
    default: return switchText(column, switchOf(row, column));
    }
}

// ---------------------------------------------------------------- editing

void LayerSheet::touch(LayerRow& row, LayerColumn column) {
    row.markChanged(column);
    m_edited = true;
}

std::uint32_t LayerSheet::findName(const OxString& name) const {
    for (std::uint32_t i = 0; i < m_rows.size(); ++i)
        if (!m_rows[i].deleted && m_rows[i].name.compareNoCase(name) == 0) return i;
    return kNoEntry;
}

std::wstring LayerSheet::switchRefusal(const LayerRow& row, LayerColumn column, bool on) const {
    if (column == LayerColumn::Frozen && on && isCurrent(row))
        return resourceLine(10100, L"Cannot freeze layer %ls, it is the current layer. Specify a different layer.");
    return L"";
}

std::wstring LayerSheet::setSwitch(const RowList& rows, LayerColumn column, bool on) {
    std::wstring message;
    for (std::uint32_t index : rows) {
        LayerRow& row = m_rows[index];
        const std::wstring refusal = switchRefusal(row, column, on);
        if (!refusal.empty()) {
            message += say(refusal.c_str(), row.name) + L"\n";
            continue;
        }
        if (switchOf(row, column) == on) continue;
        setSwitchOf(row, column, on);
        touch(row, column);
    }
    if (!message.empty()) message.pop_back();
    return message;
}

std::wstring LayerSheet::setValue(const RowList& rows, LayerColumn column, const std::wstring& text) {
    if (rows.empty()) return L"No layer is selected; nothing changed.";
    if (isViewportColumn(column) && !hasViewport())
        return L"There is no current viewport: make a layout current and work inside one of its viewports; nothing "
               L"changed.";
    if (isSwitchColumn(column)) {
        const std::optional<bool> on = parseSwitch(text);
        if (!on) return say(L"%ls takes on or off (yes or no); nothing changed.", columnHeading(column));
        return setSwitch(rows, column, *on);
    }
    if (column == LayerColumn::Name) {
        if (rows.size() != 1) return L"A name belongs to one layer: select only the layer to rename.";
        return rename(rows.front(), text);
    }
    if (isViewportColumn(column) && OxString(text).trim().compareNoCase(L"Remove") == 0) {
        for (std::uint32_t index : rows) {
            LayerRow& row = m_rows[index];
            if (!row.isOverridden(column)) continue;
            row.vpOverrides &= ~LayerRow::bit(column);
            touch(row, column);
        }
        return L"";
    }
    return setProperty(rows, column, text);
}

std::wstring LayerSheet::setProperty(const RowList& rows, LayerColumn column, const std::wstring& text) {
    // Each value is read before any row changes, so that a refused value
    // changes nothing. A viewport column sets its override.
    const bool vp = isViewportColumn(column);
    const auto each = [&](auto&& change) {
        for (std::uint32_t index : rows) {
            change(m_rows[index]);
            if (vp) m_rows[index].vpOverrides |= LayerRow::bit(column);
            touch(m_rows[index], column);
        }
        return std::wstring();
    };
    switch (overriddenColumn(column)) {
    case LayerColumn::Color: {
        const std::optional<OxCmColor> color = parseLayerColor(text);
        if (!color)
            return say(L"\"%ls\" is not a layer colour: type 1 to 255, a colour name or red,green,blue; nothing "
                       L"changed.",
                       text);
        return each([&](LayerRow& row) { (vp ? row.vpColor : row.color) = *color; });
    }
    case LayerColumn::Linetype: {
        OxString name(text);
        name.trim();
        std::uint32_t entry = m_linetypes.indexOfName(name);
        const bool byRecord = name.compareNoCase(L"ByLayer") == 0 || name.compareNoCase(L"ByBlock") == 0;
        if (byRecord || (entry == kNoEntry && (name.isEmpty() || !standardFileHasLinetype(name))))
            return say(L"Linetype %ls is neither in the drawing nor in its linetype file; nothing changed.", name);
        if (entry == kNoEntry) entry = m_linetypes.add(name); // loaded from the file on Apply
        return each([&](LayerRow& row) { (vp ? row.vpLinetype : row.linetype) = entry; });
    }
    case LayerColumn::Lineweight: {
        const std::optional<int> weight = parseLineweight(text);
        if (!weight)
            return say(L"\"%ls\" is not a lineweight: type Default or a standard lineweight in millimetres "
                       L"(0.00 to 2.11); nothing changed.",
                       text);
        return each([&](LayerRow& row) { (vp ? row.vpLineweight : row.lineweight) = static_cast<std::int16_t>(*weight); });
    }
    case LayerColumn::Transparency: {
        const std::optional<OxCmTransparency> transparency = parseLayerTransparency(text);
        if (!transparency)
            return say(L"\"%ls\" is not a transparency: type a whole number from 0 to 90; nothing changed.", text);
        return each([&](LayerRow& row) { (vp ? row.vpTransparency : row.transparency) = *transparency; });
    }
    case LayerColumn::PlotStyle: {
        if (!m_namedPlotStyles)
            return L"The drawing uses colour-dependent plot styles: a layer's plot style follows its colour; "
                   L"nothing changed.";
        OxString name(text);
        name.trim();
        if (name.isEmpty() || !PavoLayerHelper::isValidPlotStyleName(name))
            return say(L"Plot style %ls is not in the drawing's plot style table; nothing changed.", name);
        const std::uint32_t entry = m_plotStyles.add(name); // made in the drawing on Apply when new
        return each([&](LayerRow& row) { (vp ? row.vpPlotStyle : row.plotStyle) = entry; });
    }
    case LayerColumn::Description:
        return each([&](LayerRow& row) { row.description = OxString(text); });
    default:
        return L"";
    }
}

std::wstring LayerSheet::rename(std::uint32_t index, const std::wstring& text) {
    LayerRow& row = m_rows[index];
    OxString name(text);
    PavoLayerHelper::trimName(name);
    if (row.id == m_db->layerZero()) return resourceLine(10136, L"Layer 0 cannot be renamed.");
    if (row.dependent) return say(L"Layer %ls belongs to an external reference and cannot be renamed.", row.name);
    if (name == row.name) return L"";
    const int extnames = vxlayer::readExtnames();
    if (name.isEmpty() || vxlayer::exceedsNameLength(name, extnames) || vxlayer::symbolNameRefused(name))
        return say(resourceLine(10071, L"\"%ls\" is an invalid layer name.").c_str(), name);
    const std::uint32_t other = findName(name);
    if (other != kNoEntry && other != index)
        return say(resourceLine(10072, L"Layer %ls already exists.").c_str(), name);
    row.name = name;
    touch(row, LayerColumn::Name);
    return L"";
}

std::wstring LayerSheet::makeCurrent(std::uint32_t index) {
    LayerRow& row = m_rows[index];
    if (row.dependent) return resourceLine(10106, L"A layer of an external reference cannot be made current.");
    if (row.frozen) return resourceLine(10107, L"A frozen layer cannot be made current.");
    if (index == m_current) return L"";
    // Making a layer current turns it on, as "-LAYER" Set does.
    if (!row.on) {
        row.on = true;
        touch(row, LayerColumn::On);
    }
    m_current = index;
    m_edited = true;
    return L"";
}

std::uint32_t LayerSheet::newLayer() {
    OxString name;
    for (int n = 1;; ++n) {
        name = OxString(L"Layer") + OxString(std::to_wstring(n));
        if (findName(name) == kNoEntry) break;
    }
    LayerRow row = m_newLayerDefaults;
    row.id = OxDbObjectId();
    row.name = name;
    // Every property of the layer's own is written when it is made; a new
    // layer has nothing of its own in the viewport.
    row.changed = (1u << kLayerColumnCount) - 1;
    m_rows.push_back(row);
    m_edited = true;
    const auto index = static_cast<std::uint32_t>(m_rows.size() - 1);
    m_shown.push_back(index);
    return index;
}

std::wstring LayerSheet::deleteRows(const RowList& rows) {
    if (rows.empty()) return L"No layer is selected; nothing was deleted.";
    vxlayer::markLayersInUse(m_db);
    const OxDbObjectId drawingCurrent = m_db->clayer();
    std::wstring message;
    const auto refuse = [&](const wchar_t* why, const OxString& name) { message += say(why, name) + L"\n"; };
    for (std::uint32_t index : rows) {
        LayerRow& row = m_rows[index];
        if (row.deleted) continue;
        if (index == m_current) {
            refuse(L"Layer %ls is the current layer and cannot be deleted.", row.name);
            continue;
        }
        if (!row.id.isNull()) {
            OxDbLayerTableRecord* layer = nullptr;
            if (oxdbOpenObject(layer, row.id, OxDb::kForRead) != Ox::eOk) continue;
            const vxlayer::DeletionRefusal why = vxlayer::deletionRefusal(*m_db, *layer, drawingCurrent);
            layer->close();
            using vxlayer::DeletionRefusal;
            switch (why) {
            case DeletionRefusal::LayerZero: refuse(L"Layer %ls cannot be deleted.", row.name); continue;
            case DeletionRefusal::Current:
                refuse(L"Layer %ls is the drawing's current layer until the changes are applied; apply them, then "
                       L"delete it.",
                       row.name);
                continue;
            case DeletionRefusal::Defpoints:
                refuse(L"Layer %ls holds the definition points of dimensions and cannot be deleted.", row.name);
                continue;
            case DeletionRefusal::ExternalReference:
                refuse(L"Layer %ls belongs to an external reference and cannot be deleted.", row.name);
                continue;
            case DeletionRefusal::InUse:
                refuse(L"Layer %ls is in use (objects or block definitions are on it) and cannot be deleted.",
                       row.name);
                continue;
            case DeletionRefusal::None: break;
            }
            m_deleted.push_back(row.id);
        }
        row.deleted = true;
        ++m_deletedCount;
        m_edited = true;
    }
    std::erase_if(m_shown, [&](std::uint32_t i) { return m_rows[i].deleted; });
    if (!message.empty()) message.pop_back();
    return message;
}

} // namespace layermanager
