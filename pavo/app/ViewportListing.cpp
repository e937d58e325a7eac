#include "ViewportListing.h"

#include <cmath>

#include "ListingText.h"
#include "ResolvedProperties.h"
#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbEntity.h"
#include "OxDbLayout.h"
#include "OxDbSymbolTable.h"
#include "PavoServices.h"

namespace pavo::app {
namespace {

std::wstring layoutNameOf(const OxDbViewport& viewport) {
    OxDbBlockTableRecord* block = nullptr;
    if (oxdbOpenObject(block, viewport.blockId(), OxDb::kForRead) != Ox::eOk) return L"";
    const OxDbObjectId layoutId = block->getLayoutId();
    block->close();
    OxDbLayout* layout = nullptr;
    if (oxdbOpenObject(layout, layoutId, OxDb::kForRead) != Ox::eOk) return L"";
    OxString name;
    layout->getLayoutName(name);
    layout->close();
    return name.str();
}

std::wstring plotStyleNameOf(OxDbDatabase* db, const OxDbObjectId& id) {
    OxDbDictionary* styles = nullptr;
    OxString name;
    if (db && db->getPlotStyleNameDictionary(styles, OxDb::kForRead) == Ox::eOk) {
        styles->nameAt(id, name);
        styles->close();
    }
    return name.str();
}

// "color red, lineweight 0.70 mm": the overrides of one layer.
std::wstring describeOverrides(OxDbDatabase* db, const OxDbLayerViewportOverrides& o) {
    std::wstring text;
    const auto add = [&](const std::wstring& part) { text += (text.empty() ? L"" : L", ") + part; };
    if (o.hasColor) add(L"color " + o.color.colorNameForDisplay().str());
    if (o.hasLinetype) add(L"linetype " + recordName(o.linetypeId));
    if (o.hasLineWeight) {
        OxString weight;
        PavoServicesManager::lineWeightToString(o.lineWeight, weight);
        add(L"lineweight " + weight.str());
    }
    if (o.hasTransparency)
        add(L"transparency " + std::to_wstring(static_cast<int>(std::lround(o.transparency.alphaPercent()))) + L"%");
    if (o.hasPlotStyle) add(L"plot style " + plotStyleNameOf(db, o.plotStyleNameId));
    return text;
}

// One line per layer with overrides in `viewportId`, in layer table order.
void listOverrides(OxDbDatabase* db, const OxDbObjectId& viewportId,
                   std::vector<std::pair<std::wstring, std::wstring>>& lines) {
    OxDbLayerTable* table = nullptr;
    if (!db || db->getLayerTable(table, OxDb::kForRead) != Ox::eOk) return;
    OxDbSymbolTableIterator* it = nullptr;
    bool any = false;
    if (table->newIterator(it) == Ox::eOk) {
        for (; !it->done(); it->step()) {
            OxDbLayerTableRecord* layer = nullptr;
            if (it->getRecord(layer, OxDb::kForRead) != Ox::eOk) continue;
            if (const OxDbLayerViewportOverrides o = layer->viewportOverrides(viewportId); !o.isEmpty()) {
                lines.emplace_back(L"Override", layer->name().str() + L": " + describeOverrides(db, o));
                any = true;
            }
            layer->close();
        }
        delete it;
    }
    table->close();
    if (!any) lines.emplace_back(L"Overrides", L"none");
}

} // namespace

std::vector<std::pair<std::wstring, std::wstring>> viewportListing(const OxDbViewport& viewport) {
    std::vector<std::pair<std::wstring, std::wstring>> lines;
    lines.emplace_back(L"Number", std::to_wstring(viewport.number()));
    lines.emplace_back(L"Layout", layoutNameOf(viewport));
    lines.emplace_back(L"Center", listingPoint(viewport.centerPoint()));
    lines.emplace_back(L"Size",
                       L"width " + listingNumber(viewport.width()) + L"  height " + listingNumber(viewport.height()));
    lines.emplace_back(L"Status", viewport.isOn() ? L"On" : L"Off");
    if (viewport.number() != 1) {
        const OxGePoint2d c = viewport.viewCenter();
        lines.emplace_back(L"View", L"center X=" + listingNumber(c.x) + L"  Y=" + listingNumber(c.y) + L"  height " +
                                        listingNumber(viewport.viewHeight()));
    }
    OxDbObjectIdArray frozen;
    viewport.getFrozenLayerList(frozen);
    std::wstring names;
    for (const OxDbObjectId& id : frozen)
        names += (names.empty() ? L"" : L", ") + recordName(id);
    lines.emplace_back(L"Frozen layers", names.empty() ? L"none" : names);
    listOverrides(viewport.database(), viewport.objectId(), lines);
    return lines;
}

} // namespace pavo::app
