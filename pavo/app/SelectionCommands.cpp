// SELECT and LIST.
#include <fmt/format.h>
#include <fmt/xchar.h>

#include <cmath>
#include <numbers>
#include <string>
#include <vector>

#include "HostCommandSets.h"
#include "ResolvedProperties.h"
#include "SelectedObjects.h"
#include "ListingText.h"
#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbEntity.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "PavoServices.h"
#include "ViewportListing.h"
#include "editor/SelectionSets.h"
#include "editor/SelectionSpace.h"
#include "oxed.h"
#include "oxedSelection.h"

namespace pavo::app {
namespace {

// SELECT: the set made becomes the previous set ("P") for later commands.
int select() {
    ox_name set = {0, 0};
    const int status = oxedSSGet(nullptr, nullptr, nullptr, nullptr, set);
    if (status == STATUS_NORMAL) oxedSSFree(set);
    return status;
}

} // namespace

std::vector<OxDbObjectId> objectsToWorkOn() {
    std::vector<OxDbObjectId> ids = editor::selection::usablePreselection();
    if (!ids.empty()) return ids;
    ox_name set = {0, 0};
    if (oxedSSGet(nullptr, nullptr, nullptr, nullptr, set) != STATUS_NORMAL) return ids;
    int length = 0;
    oxedSSLength(set, &length);
    for (int i = 0; i < length; ++i) {
        ox_name entity = {0, 0};
        OxDbObjectId id;
        if (oxedSSName(set, i, entity) == STATUS_NORMAL && oxdbGetObjectId(id, entity) == Ox::eOk) ids.push_back(id);
    }
    oxedSSFree(set);
    return ids;
}

namespace {

std::wstring number(double value) { return listingNumber(value); }
std::wstring point(const OxGePoint3d& p) { return listingPoint(p); }

// Scaled in one step, so that the largest angles a drawing holds do not
// overflow on the way.
std::wstring degrees(double radians) { return fmt::format(L"{:g}", radians * (180.0 / std::numbers::pi)); }

class Lister {
public:
    explicit Lister(const OxDbEntity& entity) : m_entity(entity) {}
    void list();

private:
    void line(const std::wstring& label, const std::wstring& value) {
        oxutPrintf(L"\n    %-14ls %ls", label + L":", value);
    }
    void common();
    void geometry();
    void textProperties(const OxDbText& text);
    void insert(const OxDbBlockReference& reference);
    void viewport(const OxDbViewport& viewport);
    std::wstring spaceName() const;
    std::wstring plotStyle() const;

    const OxDbEntity& m_entity;
};

std::wstring Lister::spaceName() const {
    OxDbBlockTableRecord* block = nullptr;
    if (oxdbOpenObject(block, m_entity.blockId(), OxDb::kForRead) != Ox::eOk) return L"?";
    const bool paper = block->isLayout() && block->objectId() != m_entity.database()->modelSpaceId();
    std::wstring name = block->getName();
    block->close();
    if (!paper && m_entity.blockId() == m_entity.database()->modelSpaceId()) return L"Model space";
    return paper ? L"Paper space" : L"Block " + name;
}

std::wstring Lister::plotStyle() const {
    OxDbObjectId id;
    switch (m_entity.getPlotStyleNameId(id)) {
    case OxDb::kPlotStyleNameByLayer:
        return L"ByLayer";
    case OxDb::kPlotStyleNameByBlock:
        return L"ByBlock";
    case OxDb::kPlotStyleNameIsDictDefault:
        return L"Default";
    case OxDb::kPlotStyleNameById:
        break;
    }
    OxDbDictionary* styles = nullptr;
    OxString name;
    if (m_entity.database()->getPlotStyleNameDictionary(styles, OxDb::kForRead) == Ox::eOk) {
        styles->nameAt(id, name);
        styles->close();
    }
    return name.isEmpty() ? L"?" : name.str();
}

void Lister::common() {
    const ResolvedProperties resolved = resolveProperties(m_entity);
    // A ByLayer or ByBlock value is followed by what it comes to.
    const auto shown = [](const std::wstring& value, bool byLayer, bool byBlock, const std::wstring& result) {
        if (byLayer) return value + L" (" + result + L")";
        if (byBlock) return value + L" (" + result + L" outside a block)";
        return value;
    };
    const OxCmColor color = m_entity.color();
    line(L"Color", shown(color.isByLayer() ? L"BYLAYER" : color.isByBlock() ? L"BYBLOCK" : color.colorNameForDisplay().str(),
                         color.isByLayer(), color.isByBlock(), resolved.color));
    const OxDbDatabase* db = m_entity.database();
    const OxDbObjectId linetype = m_entity.linetypeId();
    line(L"Linetype", shown(linetype == db->byLayerLinetype()   ? L"BYLAYER"
                            : linetype == db->byBlockLinetype() ? L"BYBLOCK"
                                                                : recordName(linetype),
                            linetype == db->byLayerLinetype(), linetype == db->byBlockLinetype(), resolved.linetype));
    OxString weight;
    PavoServicesManager::lineWeightToString(m_entity.lineWeight(), weight);
    line(L"Lineweight", shown(weight.str(), m_entity.lineWeight() == OxDb::kLnWtByLayer,
                              m_entity.lineWeight() == OxDb::kLnWtByBlock, resolved.lineweight));
    const OxCmTransparency t = m_entity.transparency();
    line(L"Transparency", shown(t.isByLayer()   ? L"ByLayer"
                                : t.isByBlock() ? L"ByBlock"
                                                : std::to_wstring(static_cast<int>(std::lround(t.alphaPercent()))) + L"%",
                                t.isByLayer(), t.isByBlock(), resolved.transparency + L"%"));
    OxDbObjectId styleId;
    const OxDb::PlotStyleNameType styleType = m_entity.getPlotStyleNameId(styleId);
    line(L"Plot style", shown(plotStyle(), styleType == OxDb::kPlotStyleNameByLayer,
                              styleType == OxDb::kPlotStyleNameByBlock, resolved.plotStyle));
    const OxDbObjectId material = m_entity.materialId();
    line(L"Material", shown(material == db->byLayerMaterial()   ? L"ByLayer"
                            : material == db->byBlockMaterial() ? L"ByBlock"
                                                                : resolved.material,
                            material == db->byLayerMaterial(), material == db->byBlockMaterial(), resolved.material));
}

void Lister::textProperties(const OxDbText& text) {
    line(L"Text", text.textString());
    line(L"Start point", point(text.position()));
    line(L"Height", number(text.height()));
    line(L"Rotation", degrees(text.rotation()));
}

void Lister::insert(const OxDbBlockReference& reference) {
    line(L"Block", recordName(reference.blockTableRecord()));
    line(L"At point", point(reference.position()));
    const OxGeScale3d s = reference.scaleFactors();
    line(L"Scale", L"X=" + number(s.sx) + L"  Y=" + number(s.sy) + L"  Z=" + number(s.sz));
    line(L"Rotation", degrees(reference.rotation()));
    // The reference's own values are what its ByBlock contents take.
    const ResolvedProperties r = resolveProperties(reference);
    line(L"ByBlock takes", r.color + L", " + r.linetype + L", " + r.lineweight + L", " + r.transparency + L"%, " +
                               r.plotStyle + L", " + r.material);
    for (const OxDbObjectId& id : reference.attributeIds()) {
        OxDbAttribute* attribute = nullptr;
        if (oxdbOpenObject(attribute, id, OxDb::kForRead) != Ox::eOk) continue;
        line(L"Attribute", std::wstring(attribute->tag()) + L" = \"" + attribute->textString() + L"\"");
        attribute->close();
    }
}

void Lister::viewport(const OxDbViewport& viewport) {
    for (const auto& [label, value] : viewportListing(viewport))
        line(label, value);
}

void Lister::geometry() {
    if (const auto* l = OxDbLine::cast(&m_entity)) {
        line(L"From point", point(l->startPoint()));
        line(L"To point", point(l->endPoint()));
        const double dx = l->endPoint().x - l->startPoint().x, dy = l->endPoint().y - l->startPoint().y;
        // The three-argument hypot gives NaN when a difference overflows.
        line(L"Length", number(std::hypot(std::hypot(dx, dy), l->endPoint().z - l->startPoint().z)));
    } else if (const auto* a = OxDbArc::cast(&m_entity)) {
        line(L"Center", point(a->center()));
        line(L"Radius", number(a->radius()));
        line(L"Start angle", degrees(a->startAngle()));
        line(L"End angle", degrees(a->endAngle()));
    } else if (const auto* c = OxDbCircle::cast(&m_entity)) {
        line(L"Center", point(c->center()));
        line(L"Radius", number(c->radius()));
    } else if (const auto* p = OxDbPolyline::cast(&m_entity)) {
        line(L"Vertices", std::to_wstring(p->numVerts()) + (p->isClosed() ? L", closed" : L", open"));
        for (const auto& v : p->vertices())
            line(L"Vertex", L"X=" + number(v.point.x) + L"  Y=" + number(v.point.y));
    } else if (const auto* pt = OxDbPoint::cast(&m_entity)) {
        line(L"At point", point(pt->position()));
    } else if (const auto* d = OxDbAttributeDefinition::cast(&m_entity)) {
        line(L"Tag", d->tag());
        line(L"Prompt", d->prompt());
        textProperties(*d);
    } else if (const auto* t = OxDbText::cast(&m_entity)) {
        textProperties(*t);
    } else if (const auto* r = OxDbBlockReference::cast(&m_entity)) {
        insert(*r);
    } else if (const auto* v = OxDbViewport::cast(&m_entity)) {
        viewport(*v);
    }
}

void Lister::list() {
    OxString layer;
    m_entity.layer(layer);
    oxutPrintf(L"\n%ls  Layer: \"%ls\"  Space: %ls  Handle = %ls", editor::selection::entityTypeName(m_entity), layer,
               spaceName(), m_entity.getDbHandle().toString());
    common();
    geometry();
}

int list() {
    const std::vector<OxDbObjectId> ids = objectsToWorkOn();
    if (ids.empty()) return STATUS_NONE;
    // Keep the listing in one piece on the text screen.
    PavoServicesManager::showTextScreen();
    PavoConsoalCtrlTypeAutoHandle together;
    for (const OxDbObjectId& id : ids) {
        OxDbEntity* entity = nullptr;
        if (oxdbOpenObject(entity, id, OxDb::kForRead) != Ox::eOk) continue;
        Lister(*entity).list();
        entity->close();
    }
    return STATUS_NORMAL;
}

} // namespace

void registerSelectionCommands(const AddHostCommand& add) {
    add(L"SELECT", L"selects objects for the next command's \"Previous\"", [] { return select(); });
    add(L"LIST", L"lists the properties of selected objects", [] { return list(); });
}

} // namespace pavo::app
