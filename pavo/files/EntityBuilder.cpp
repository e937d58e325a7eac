// The building side of the entity reader: resolves the handles of the
// layers and entities of a batch, in file order, and makes them resident.
#include <optional>

#include "OxDbEntity.h"
#include "files/EntityKeys.h"
#include "files/EntityReader.h"
#include "files/EntityShapes.h"

namespace pavo::files {

using namespace entitykeys;

namespace {

// What the handles of one entity or attribute led to.
struct Resolved {
    OxDbCell* cell = nullptr;
    OxDbObjectId layer, linetype, plotStyle, material, block;
    OxDbObjectIdArray frozen;
    void reset() {
        cell = nullptr;
        layer = linetype = plotStyle = material = block = OxDbObjectId();
        frozen.removeAll();
    }
};

// Enters the JSON pointer of a handle: [attribs/N/]KEY[/ITEM].
class UseScope {
public:
    UseScope(JsonIn& json, const HandleUse& u) : m_json(json) {
        if (u.part >= 0) {
            m_json.enter(entityKeys().name(kAttribs));
            m_json.enter({}, u.part);
            m_depth += 2;
        }
        m_json.enter(entityKeys().name(u.key));
        ++m_depth;
        if (u.item >= 0) {
            m_json.enter({}, u.item);
            ++m_depth;
        }
    }
    ~UseScope() {
        for (int i = 0; i < m_depth; ++i)
            m_json.leave();
    }
    UseScope(const UseScope&) = delete;
    UseScope& operator=(const UseScope&) = delete;

private:
    JsonIn& m_json;
    int m_depth = 0;
};

// What the handles of one layer led to.
struct LayerIds {
    OxDbCell* cell = nullptr;
    OxDbObjectId linetype, plotStyle, material;
    struct Override {
        OxDbObjectId viewport, linetype, plotStyle;
    };
    std::vector<Override> overrides;
};

std::string_view layerKeyName(int key) {
    switch (key) {
    case kLayerH:
        return "h";
    case kLayerLinetype:
        return "linetype";
    case kLayerPlotStyle:
        return "plotStyle";
    default:
        return "material";
    }
}

std::string_view overrideKeyName(int key) {
    return key == kOverrideViewport ? "viewport" : key == kOverrideLinetype ? "linetype" : "plotStyle";
}

} // namespace

struct EntityBuilder::Impl {
    explicit Impl(ReadContext& ctx) : m_ctx(ctx) {}

    bool build(EntityBatch& batch) {
        if (!buildLayers(batch)) return false;
        if (batch.blocksStart) {
            m_ctx.enter("blocks");
            m_blockTable.emplace(m_ctx.impl.blockTable);
            if (!*m_blockTable) return m_ctx.fail(batch.blocksStart, "the block table cannot be opened");
        }
        if (batch.block && !startBlock(*batch.block, batch.blockComplete)) return false;
        m_prefetchedSlots = m_prefetchedCells = 0;
        for (EntityRecord& r : batch.entities) {
            JsonIn::PathScope entities(m_ctx, "entities");
            JsonIn::PathScope item(m_ctx, {}, r.index);
            if (!resolve(batch, r) || !r.complete || !append(batch, r)) return false;
        }
        return true;
    }

    bool startBlock(BlockRecord& b, bool complete) {
        m_block.reset();
        if (m_inBlock) m_ctx.leave();
        m_ctx.enter({}, b.index);
        m_inBlock = true;
        OxDbCell* cell = nullptr;
        if (b.handleAt) {
            JsonIn::PathScope h(m_ctx, "h");
            if (!m_ctx.defineHandle(b.handle, b.handleAt, cell)) return false;
        }
        if (!complete) return false;
        OxDbObjectId id;
        if (!m_ctx.addRecord(*m_blockTable->get(), b.record.release(), cell, b.name, b.nameAt, "block", &id))
            return false;
        if (!b.hasEntities) return true;
        JsonIn::PathScope entities(m_ctx, "entities");
        m_block.emplace(id);
        return *m_block || m_ctx.fail(b.at, "the block cannot be opened");
    }

    // With many layers, the cell that an entity's layer leads to (and its
    // slot in the handle index) is rarely in the cache, and waiting for
    // memory twice per entity is most of the cost of building one. The
    // handles of the next entities are known: their index slots are fetched
    // a few dozen uses ahead, their cells (once the slots have arrived) half
    // as far ahead.
    void prefetch(const EntityBatch& batch, std::size_t position) {
        constexpr std::size_t kSlotsAhead = 32, kCellsAhead = 16;
        const pavo::db::HandleIndex& index = m_ctx.store.byHandle;
        const std::size_t uses = batch.uses.size();
        for (; m_prefetchedSlots < std::min(uses, position + kSlotsAhead); ++m_prefetchedSlots)
            if (const void* slot = index.denseSlot(batch.uses[m_prefetchedSlots].handle)) __builtin_prefetch(slot);
        for (; m_prefetchedCells < std::min(uses, position + kCellsAhead); ++m_prefetchedCells)
            if (const OxDbCell* cell = index.findDense(batch.uses[m_prefetchedCells].handle)) __builtin_prefetch(cell);
    }

    bool resolve(const EntityBatch& batch, const EntityRecord& r) {
        m_entity.reset();
        if (m_attributes.size() < r.attributeCount) m_attributes.resize(r.attributeCount);
        for (std::uint32_t i = 0; i < r.attributeCount; ++i)
            m_attributes[i].reset();
        for (std::uint32_t i = 0; i < r.useCount; ++i) {
            const std::size_t position = r.firstUse + i;
            prefetch(batch, position);
            const HandleUse& u = batch.uses[position];
            // A use in an attribute cut short may have no record: it is still checked.
            Resolved& target = u.part < 0 ? m_entity : attributeSlot(static_cast<std::size_t>(u.part));
            UseScope scope(m_ctx, u);
            if (!resolveUse(u, target)) return false;
        }
        return true;
    }

    Resolved& attributeSlot(std::size_t index) {
        if (m_attributes.size() <= index) m_attributes.resize(index + 1);
        return m_attributes[index];
    }

    bool resolveUse(const HandleUse& u, Resolved& target) {
        ReadContext& c = m_ctx;
        switch (u.key) {
        case kH:
            return c.defineHandle(u.handle, u.at, target.cell);
        case kL:
            return c.resolve(u.handle, c.layer, u.at, target.layer);
        case kLt:
            return c.resolve(u.handle, c.linetype, u.at, target.linetype);
        case kM:
            return c.resolve(u.handle, c.material, u.at, target.material);
        case kPs:
            return c.resolve(u.handle, c.plotStyle, u.at, target.plotStyle);
        case kB:
            return c.resolve(u.handle, c.block, u.at, target.block);
        case kFl: {
            OxDbObjectId id;
            if (!c.resolve(u.handle, c.layer, u.at, id)) return false;
            target.frozen.append(id);
            return true;
        }
        default:
            return false;
        }
    }

    // The properties that are ids, left unset by the reading side.
    bool idProperties(OxDbEntity& e, std::uint64_t seen, const Resolved& ids, const char* at) {
        const OxDbDatabase::Impl& d = m_ctx.impl;
        auto given = [&](Key key) { return (seen & bit(key)) != 0; };
        bool ok = e.setLayer(given(kL) ? ids.layer : d.layerZero) == Ox::eOk &&
                  e.setLinetype(given(kLt) ? ids.linetype : d.byLayerLinetype) == Ox::eOk &&
                  (ids.plotStyle.isNull() || e.setPlotStyleName(OxDb::kPlotStyleNameById, ids.plotStyle) == Ox::eOk) &&
                  e.setMaterial(given(kM) ? ids.material : d.byLayerMaterial) == Ox::eOk;
        if (ok && !ids.block.isNull()) // an insert
            if (auto* reference = OxDbBlockReference::cast(&e))
                ok = reference->setBlockTableRecord(ids.block) == Ox::eOk;
        if (ok && !ids.frozen.isEmpty()) // a viewport
            if (auto* viewport = OxDbViewport::cast(&e)) ok = viewport->freezeLayersInViewport(ids.frozen) == Ox::eOk;
        return ok || m_ctx.fail(at, "the database refused the entity's properties");
    }

    bool append(EntityBatch& batch, EntityRecord& r) {
        if (!r.entity) {
            const auto vertices = batch.vertices.begin() + r.shape.firstVertex;
            r.entity = makeShape(r.type, r.shape, {vertices, vertices + r.shape.vertexCount});
            if (!r.entity) return m_ctx.fail(r.at, "the database refused the " + std::string(entityTypeName(r.type)));
            if (!setPlainProperties(*r.entity, r.seen, r.plain))
                return m_ctx.fail(r.at, "the database refused the entity's properties");
        }
        if (!idProperties(*r.entity, r.seen, m_entity, r.at)) return false;
        m_ctx.expectCell(m_entity.cell);
        OxDbObjectId id;
        if (!m_ctx.accepted(m_block.value()->appendOxDbEntity(id, r.entity.get()), r.at, "the entity")) return false;
        OxDbEntity* appended = r.entity.release();
        bool ok = true;
        if (r.attributeCount > 0) ok = appendAttributes(static_cast<OxDbBlockReference&>(*appended), batch, r);
        appended->close();
        return ok;
    }

    bool appendAttributes(OxDbBlockReference& reference, EntityBatch& batch, const EntityRecord& r) {
        for (std::uint32_t i = 0; i < r.attributeCount; ++i) {
            AttributeRecord& a = batch.attributes[r.firstAttribute + i];
            if (!idProperties(*a.attribute, a.seen, m_attributes[i], a.at)) return false;
            m_ctx.expectCell(m_attributes[i].cell);
            OxDbObjectId id;
            if (!m_ctx.accepted(reference.appendAttribute(id, a.attribute.get()), a.at, "the attribute")) return false;
            a.attribute.release()->close();
        }
        return true;
    }

    // ---------------------------------------------------------- layers

    bool buildLayers(EntityBatch& batch) {
        if (batch.layersStart) {
            m_layersAt = batch.layersStart;
            m_ctx.enter("layers");
            m_layerTable.emplace(m_ctx.impl.layerTable);
            if (!*m_layerTable) return m_ctx.fail(m_layersAt, "the layer table cannot be opened");
        }
        for (LayerRecord& l : batch.layers) {
            JsonIn::PathScope item(m_ctx, {}, l.index);
            if (!resolveLayer(batch, l) || !l.complete || !addLayer(batch, l)) return false;
        }
        if (!batch.layersEnd) return true;
        m_layerTable.reset();
        const auto* table = pavo::db::peek<OxDbSymbolTable>(m_ctx.impl.layerTable);
        if (!table || table->getIdAt(L"0", m_ctx.impl.layerZero) != Ox::eOk)
            return m_ctx.fail(m_layersAt, "the drawing has no layer \"0\"");
        m_ctx.leave();
        return true;
    }

    bool resolveLayer(const EntityBatch& batch, const LayerRecord& l) {
        m_layer.cell = nullptr;
        m_layer.linetype = m_layer.plotStyle = m_layer.material = OxDbObjectId();
        m_layer.overrides.assign(l.overrideCount, {});
        ReadContext& c = m_ctx;
        for (std::uint32_t i = 0; i < l.useCount; ++i) {
            const HandleUse& u = batch.uses[l.firstUse + i];
            if (u.part >= 0) {
                if (m_layer.overrides.size() <= static_cast<std::size_t>(u.part)) m_layer.overrides.resize(u.part + 1);
                LayerIds::Override& o = m_layer.overrides[static_cast<std::size_t>(u.part)];
                JsonIn::PathScope overrides(c, "overrides");
                JsonIn::PathScope item(c, {}, u.part);
                JsonIn::PathScope key(c, overrideKeyName(u.key));
                const bool ok = u.key == kOverrideViewport   ? c.resolve(u.handle, c.viewport, u.at, o.viewport)
                                : u.key == kOverrideLinetype ? c.resolve(u.handle, c.linetype, u.at, o.linetype)
                                                             : c.resolve(u.handle, c.plotStyle, u.at, o.plotStyle);
                if (!ok) return false;
                continue;
            }
            JsonIn::PathScope key(c, layerKeyName(u.key));
            const bool ok = u.key == kLayerH           ? c.defineHandle(u.handle, u.at, m_layer.cell)
                            : u.key == kLayerLinetype  ? c.resolve(u.handle, c.linetype, u.at, m_layer.linetype)
                            : u.key == kLayerPlotStyle ? c.resolve(u.handle, c.plotStyle, u.at, m_layer.plotStyle)
                                                       : c.resolve(u.handle, c.material, u.at, m_layer.material);
            if (!ok) return false;
        }
        return true;
    }

    bool addLayer(const EntityBatch& batch, LayerRecord& l) {
        OxDbLayerTableRecord& r = *l.record;
        auto given = [&](int key) { return (l.seen >> key) & 1; };
        r.setLinetypeObjectId(given(kLayerLinetype) ? m_layer.linetype : m_ctx.impl.continuousLinetype);
        bool ok = (!given(kLayerPlotStyle) || r.setPlotStyleName(m_layer.plotStyle) == Ox::eOk) &&
                  (!given(kLayerMaterial) || r.setMaterialId(m_layer.material) == Ox::eOk);
        for (std::uint32_t i = 0; ok && i < l.overrideCount; ++i) {
            const OverrideRecord& o = batch.overrides[l.firstOverride + i];
            const LayerIds::Override& ids = m_layer.overrides[i];
            auto has = [&](int key) { return (o.seen >> key) & 1; };
            if (has(kOverrideColor)) r.setColor(o.color, ids.viewport);
            if (has(kOverrideLinetype)) r.setLinetypeObjectId(ids.linetype, ids.viewport);
            ok = (!has(kOverrideLineWeight) || r.setLineWeight(o.lineWeight, ids.viewport) == Ox::eOk) &&
                 (!has(kOverrideTransparency) || r.setTransparency(o.transparency, ids.viewport) == Ox::eOk) &&
                 (!has(kOverridePlotStyle) || r.setPlotStyleName(ids.plotStyle, ids.viewport) == Ox::eOk);
        }
        if (!ok) return m_ctx.fail(l.at, "the database refused the layer's properties"); // checked when read
        OxDbObjectId id;
        if (!m_ctx.addRecord(*m_layerTable->get(), l.record.release(), m_layer.cell, l.name, l.nameAt, "layer", &id))
            return false;
        if (l.locked) m_lockedLayers.push_back(id);
        return true;
    }

    ReadContext& m_ctx;
    const char* m_layersAt = nullptr;
    std::optional<WriteOpen<OxDbLayerTable>> m_layerTable;
    LayerIds m_layer;
    std::vector<OxDbObjectId> m_lockedLayers; // locked once the entities are in
    std::optional<WriteOpen<OxDbBlockTable>> m_blockTable;
    std::optional<WriteOpen<OxDbBlockTableRecord>> m_block; // the block the entities go to
    bool m_inBlock = false;
    Resolved m_entity;
    std::vector<Resolved> m_attributes;
    std::size_t m_prefetchedSlots = 0, m_prefetchedCells = 0;
};

EntityBuilder::EntityBuilder(ReadContext& ctx) : m_impl(std::make_unique<Impl>(ctx)) {}
EntityBuilder::~EntityBuilder() = default;
bool EntityBuilder::build(EntityBatch& batch) { return m_impl->build(batch); }
std::vector<OxDbObjectId> EntityBuilder::takeLockedLayers() { return std::move(m_impl->m_lockedLayers); }

} // namespace pavo::files
