#include "DrawingGenerator.h"

#include <algorithm>
#include <string>
#include <vector>

#include "pavo_host.h"

namespace pavobench {

std::wstring officeLayerName(std::size_t i) {
    static const wchar_t* const disciplines[] = {L"A", L"S", L"M", L"E", L"P", L"C", L"L"};
    static const wchar_t* const groups[] = {L"WALL", L"DOOR", L"GLAZ", L"FURN", L"GRID", L"ANNO", L"EQPM", L"FLOR", L"ROOF",
                                            L"CLNG", L"COLS", L"HVAC", L"LITE", L"PIPE", L"SITE", L"TOPO", L"PLNT"};
    return std::wstring(disciplines[i % std::size(disciplines)]) + L"-" + groups[(i / 7) % std::size(groups)] + L"-" +
           std::to_wstring(i);
}

namespace {

// A small fast generator so that runs are reproducible.
struct Random {
    std::uint64_t state = 0x9E3779B97F4A7C15ull;
    std::uint64_t next() {
        state ^= state << 13;
        state ^= state >> 7;
        state ^= state << 17;
        return state;
    }
    double real(double lo, double hi) { return lo + (hi - lo) * static_cast<double>(next() % 1000000) / 1e6; }
    std::size_t below(std::size_t n) { return static_cast<std::size_t>(next() % n); }
};

const OxDb::LineWeight kWeights[] = {OxDb::kLnWt013, OxDb::kLnWt018, OxDb::kLnWt025, OxDb::kLnWt035,
                                     OxDb::kLnWt050, OxDb::kLnWtByLwDefault};

std::vector<OxDbObjectId> makeLayers(OxDbDatabase& db, std::size_t count, bool officeNames, Random& rnd) {
    std::vector<OxDbObjectId> ids;
    OxDbLayerTable* table = nullptr;
    db.getSymbolTable(table, OxDb::kForWrite);
    OxDbObjectId zero;
    table->getIdAt(L"0", zero);
    ids.push_back(zero);
    for (std::size_t i = 1; i < count; ++i) {
        auto* layer = new OxDbLayerTableRecord;
        const std::wstring name = officeNames ? officeLayerName(i)
                                              : L"DISC-" + std::to_wstring(i % 17) + L"-LAYER-" + std::to_wstring(i);
        layer->setName(name.c_str());
        layer->setColor(OxCmColor::fromIndex(static_cast<std::uint16_t>(1 + rnd.below(255))));
        layer->setLineWeight(kWeights[rnd.below(std::size(kWeights))]);
        layer->setLinetypeObjectId(db.continuousLinetype());
        if (i % 7 == 0) layer->setIsOff(true);
        if (i % 11 == 0) layer->setIsLocked(true);
        if (i % 13 == 0) layer->setDescription(L"Generated layer with a description");
        OxDbObjectId id;
        if (table->add(id, layer) == Ox::eOk) {
            layer->close();
            ids.push_back(id);
        } else {
            delete layer;
        }
    }
    table->close();
    return ids;
}

void appendEntity(OxDbBlockTableRecord* block, OxDbEntity* entity, const OxDbObjectId& layer) {
    entity->setLayer(layer);
    OxDbObjectId id;
    if (block->appendOxDbEntity(id, entity) == Ox::eOk)
        entity->close();
    else
        delete entity;
}

OxDbEntity* randomEntity(Random& rnd, double extent, bool linesOnly = false) {
    const OxGePoint3d p(rnd.real(0, extent), rnd.real(0, extent));
    switch (linesOnly ? 0 : rnd.below(5)) {
    case 0: return new OxDbLine(p, OxGePoint3d(p.x + rnd.real(1, 50), p.y + rnd.real(-20, 20)));
    case 1: return new OxDbCircle(p, rnd.real(0.5, 10));
    case 2: return new OxDbArc(p, rnd.real(0.5, 10), rnd.real(0, 3), rnd.real(3, 6));
    case 3: {
        auto* pl = new OxDbPolyline;
        for (int k = 0; k < 4; ++k) pl->addVertexAt(k, OxGePoint2d(p.x + k * 3.0, p.y + (k % 2) * 2.0));
        pl->setClosed(rnd.below(2) == 0);
        return pl;
    }
    default: return new OxDbText(p, L"ROOM 101", 2.5);
    }
}

// Gives every `every`-th entity its own properties (ByBlock ones in a
// definition); the others stay ByLayer.
void giveProperties(OxDbDatabase& db, OxDbEntity* entity, std::size_t i, std::size_t every, bool inDefinition) {
    if (every == 0 || i % every != 0) return;
    if (inDefinition) {
        entity->setColor(OxCmColor::byBlock());
        entity->setLinetype(db.byBlockLinetype());
        entity->setLineWeight(OxDb::kLnWtByBlock);
        OxCmTransparency byBlock;
        byBlock.setMethod(OxCmTransparency::kByBlock);
        entity->setTransparency(byBlock);
        return;
    }
    entity->setColorIndex(static_cast<std::uint16_t>(1 + i % 7));
    entity->setLinetype(db.continuousLinetype());
    entity->setLineWeight(OxDb::kLnWt035);
    entity->setTransparency(OxCmTransparency(200));
}

// Colour and lineweight overrides of `count` random layers in a viewport.
void addOverrides(const std::vector<OxDbObjectId>& layers, const OxDbObjectId& viewport, std::size_t count,
                  Random& rnd) {
    for (std::size_t i = 0; i < count; ++i) {
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, layers[rnd.below(layers.size())], OxDb::kForWrite) != Ox::eOk) continue;
        layer->setColor(OxCmColor::fromIndex(static_cast<std::uint16_t>(1 + rnd.below(255))), viewport);
        layer->setLineWeight(kWeights[rnd.below(std::size(kWeights) - 1)], viewport);
        layer->close();
    }
}

} // namespace

DrawingSize setByLayerDrawingSize(std::size_t entities, std::size_t explicitEvery) {
    DrawingSize size;
    size.entities = entities;
    size.layers = 100;
    size.blocks = 100;
    size.blockEntities = 100;
    size.nestedEvery = 10;
    size.referenceEvery = 100;
    size.explicitEvery = explicitEvery;
    size.layouts = 0;
    return size;
}

std::unique_ptr<OxDbDatabase> generateDrawing(const DrawingSize& size) {
    auto db = std::make_unique<OxDbDatabase>(true);
    Random rnd;
    const std::vector<OxDbObjectId> layers = makeLayers(*db, size.layers, size.officeLayerNames, rnd);
    const double extent = 10000.0;

    OxDbBlockTable* blocks = nullptr;
    db->getSymbolTable(blocks, OxDb::kForWrite);
    std::vector<OxDbObjectId> definitions;
    for (std::size_t b = 0; b < size.blocks; ++b) {
        auto* def = new OxDbBlockTableRecord;
        def->setName((L"BLOCK-" + std::to_wstring(b)).c_str());
        OxDbObjectId id;
        if (blocks->add(id, def) != Ox::eOk) {
            delete def;
            continue;
        }
        for (std::size_t k = 0; k < size.blockEntities; ++k) {
            OxDbEntity* entity = randomEntity(rnd, 20.0);
            giveProperties(*db, entity, k, size.explicitEvery, true);
            appendEntity(def, entity, layers[rnd.below(layers.size())]);
        }
        if (size.nestedEvery != 0 && b % size.nestedEvery == size.nestedEvery - 1 && !definitions.empty())
            appendEntity(def, new OxDbBlockReference(OxGePoint3d(10, 10), definitions.back()), layers[0]);
        def->close();
        definitions.push_back(id);
    }
    blocks->close();

    OxDbBlockTableRecord* model = nullptr;
    oxdbOpenObject(model, db->modelSpaceId(), OxDb::kForWrite);
    for (std::size_t i = 0; i < size.entities; ++i) {
        const OxDbObjectId& layer = layers[rnd.below(layers.size())];
        if (!definitions.empty() && size.referenceEvery != 0 && i % size.referenceEvery == 0) {
            auto* reference = new OxDbBlockReference(OxGePoint3d(rnd.real(0, extent), rnd.real(0, extent)),
                                                     definitions[rnd.below(definitions.size())]);
            if (size.explicitEvery != 0 && (i / size.referenceEvery) % 2 == 0) reference->setColorIndex(1);
            appendEntity(model, reference, layer);
        } else {
            OxDbEntity* entity = randomEntity(rnd, extent, size.linesOnly);
            giveProperties(*db, entity, i, size.explicitEvery, false);
            appendEntity(model, entity, layer);
        }
    }
    model->close();

    OxDbLayoutManager* layouts = oxdbHostApplicationServices()->layoutManager();
    for (std::size_t l = 0; l < size.layouts; ++l) {
        OxDbObjectId layoutId, blockId;
        const std::wstring name = L"Sheet " + std::to_wstring(l + 1);
        if (layouts->createLayout(name.c_str(), layoutId, blockId, db.get()) != Ox::eOk) continue;
        OxDbBlockTableRecord* sheet = nullptr;
        if (oxdbOpenObject(sheet, blockId, OxDb::kForWrite) != Ox::eOk) continue;
        for (std::size_t v = 0; v < size.viewportsPerLayout; ++v) {
            auto* vp = new OxDbViewport;
            vp->setNumber(static_cast<short>(std::min<std::size_t>(v + 2, 32767)));
            // Rows of 40 across the sheet.
            vp->setCenterPoint(OxGePoint3d(100.0 + 150.0 * static_cast<double>(v % 40),
                                           150.0 + 120.0 * static_cast<double>(v / 40)));
            vp->setWidth(140);
            vp->setHeight(100);
            vp->setViewCenter(OxGePoint2d(rnd.real(0, extent), rnd.real(0, extent)));
            vp->setViewHeight(500);
            OxDbObjectIdArray frozen;
            for (std::size_t f = 0; f < size.frozenLayersPerViewport; ++f)
                frozen.append(layers[rnd.below(layers.size())]);
            vp->freezeLayersInViewport(frozen);
            vp->setLayer(layers[0]);
            OxDbObjectId id;
            if (sheet->appendOxDbEntity(id, vp) != Ox::eOk) {
                delete vp;
                continue;
            }
            vp->close();
            addOverrides(layers, id, size.overridesPerViewport, rnd);
        }
        sheet->close();
    }
    return db;
}

} // namespace pavobench
