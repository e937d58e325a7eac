// Reading the drawing's layers, linetypes and plot style names into the
// sheet: one pass over each table, each record opened for read and closed.
#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbEntity.h"
#include "OxDbSymbolTable.h"
#include "layerhelper/ActiveViewport.h"
#include "layerhelper/LayerNameList.h"
#include "layerhelper/LayerRecords.h"
#include "layermanager/LayerSheet.h"

namespace layermanager {

namespace {

void readLinetypes(OxDbDatabase* db, NamedEntries& linetypes) {
    OxDbLinetypeTable* table = nullptr;
    if (db->getSymbolTable(table, OxDb::kForRead) != Ox::eOk) return;
    OxDbSymbolTableIterator* it = nullptr;
    if (table->newIterator(it) == Ox::eOk && it) {
        for (; !it->done(); it->step()) {
            OxDbLinetypeTableRecord* linetype = nullptr;
            if (it->getRecord(linetype, OxDb::kForRead) != Ox::eOk) continue;
            linetypes.add(linetype->name(), linetype->objectId());
            linetype->close();
        }
    }
    delete it;
    table->close();
}

void readPlotStyleNames(OxDbDatabase* db, NamedEntries& plotStyles) {
    OxDbDictionary* dictionary = nullptr;
    if (oxdbOpenObject(dictionary, db->getPlotStyleNameDictionaryId(false), OxDb::kForRead) != Ox::eOk) return;
    OxDbDictionaryIterator* it = dictionary->newIterator();
    for (; it && !it->done(); it->next())
        plotStyles.add(it->name(), it->objectId());
    delete it;
    dictionary->close();
}

// The number of the entry `id` refers to; an entry the tables above did not
// list (a record kept elsewhere) is added by `name`.
template <class NameOf>
std::uint32_t entryOf(NamedEntries& entries, const OxDbObjectId& id, NameOf nameOf) {
    if (id.isNull()) return kNoEntry;
    const std::uint32_t found = entries.indexOfId(id);
    return found != kNoEntry ? found : entries.add(nameOf(), id);
}

} // namespace

std::uint32_t NamedEntries::indexOfId(const OxDbObjectId& id) const {
    for (std::uint32_t i = 0; i < m_entries.size(); ++i)
        if (m_entries[i].id == id) return i;
    return kNoEntry;
}

std::uint32_t NamedEntries::indexOfName(const OxString& name) const {
    for (std::uint32_t i = 0; i < m_entries.size(); ++i)
        if (m_entries[i].name.compareNoCase(name) == 0) return i;
    return kNoEntry;
}

std::uint32_t NamedEntries::add(const OxString& name, const OxDbObjectId& id) {
    const std::uint32_t found = indexOfName(name);
    if (found != kNoEntry) return found;
    m_entries.push_back({name, id});
    return static_cast<std::uint32_t>(m_entries.size() - 1);
}

LayerSheet::LayerSheet(OxDbDatabase* db) : m_db(db) {
    read();
    refreshShown();
}

void LayerSheet::read() {
    m_rows.clear();
    m_deleted.clear();
    m_linetypes = NamedEntries();
    m_plotStyles = NamedEntries();
    m_deletedCount = 0;
    m_edited = false;
    m_current = m_currentAtStart = kNoEntry;
    if (!m_db) return;
    m_namedPlotStyles = m_db->pstylemode() == 0;
    readLinetypes(m_db, m_linetypes);
    readPlotStyleNames(m_db, m_plotStyles);
    m_viewport = vxlayer::currentModelViewport(m_db);
    OxDbViewport* viewport = nullptr; // open while the layers are read

    const auto fill = [this, &viewport](LayerRow& row, const OxDbLayerTableRecord& layer) {
        row.name = layer.name();
        row.description = layer.description();
        row.color = layer.color();
        row.transparency = layer.transparency();
        row.lineweight = static_cast<std::int16_t>(layer.lineWeight());
        row.linetype = entryOf(m_linetypes, layer.linetypeObjectId(), [] { return OxString(L"?"); });
        row.plotStyle = entryOf(m_plotStyles, layer.plotStyleNameId(), [&] { return layer.plotStyleName(); });
        row.on = !layer.isOff();
        row.frozen = layer.isFrozen();
        row.locked = layer.isLocked();
        row.plot = layer.isPlottable();
        row.newVpFrozen = layer.VPDFLT();
        row.dependent = layer.isDependent();
        if (!viewport) return;
        row.vpFrozen = viewport->isLayerFrozenInViewport(layer.objectId());
        if (!layer.hasOverrides(m_viewport)) return;
        const OxDbLayerViewportOverrides o = layer.viewportOverrides(m_viewport);
        const auto take = [&row](bool has, LayerColumn column) {
            if (has) row.vpOverrides |= LayerRow::bit(column);
        };
        take(o.hasColor, LayerColumn::VpColor);
        take(o.hasLinetype, LayerColumn::VpLinetype);
        take(o.hasLineWeight, LayerColumn::VpLineweight);
        take(o.hasTransparency, LayerColumn::VpTransparency);
        take(o.hasPlotStyle, LayerColumn::VpPlotStyle);
        row.vpColor = o.color;
        row.vpTransparency = o.transparency;
        row.vpLineweight = static_cast<std::int16_t>(o.lineWeight);
        row.vpLinetype = entryOf(m_linetypes, o.linetypeId, [] { return OxString(L"?"); });
        row.vpPlotStyle = entryOf(m_plotStyles, o.plotStyleNameId, [] { return OxString(L"?"); });
    };

    // A new layer's look, from the same defaults "-LAYER" New gives; made
    // without a record in the drawing.
    if (OxDbLayerTableRecord* defaults = vxlayer::newLayerWithDefaults(m_db, OxString(), false)) {
        fill(m_newLayerDefaults, *defaults);
        delete defaults;
    }

    if (!m_viewport.isNull() && oxdbOpenObject(viewport, m_viewport, OxDb::kForRead) != Ox::eOk) m_viewport.setNull();
    const OxDbObjectId current = m_db->clayer();
    OxDbLayerTable* table = nullptr;
    if (m_db->getSymbolTable(table, OxDb::kForRead) != Ox::eOk) {
        if (viewport) viewport->close();
        return;
    }
    m_rows.reserve(static_cast<std::size_t>(table->numEntries()));
    OxDbSymbolTableIterator* it = nullptr;
    if (table->newIterator(it) == Ox::eOk && it) {
        for (; !it->done(); it->step()) {
            OxDbLayerTableRecord* layer = nullptr;
            if (it->getRecord(layer, OxDb::kForRead) != Ox::eOk) continue;
            if (!vxlayer::isConstraintsLayer(layer->name().view())) {
                LayerRow& row = m_rows.emplace_back();
                row.id = layer->objectId();
                fill(row, *layer);
                if (row.id == current) m_current = static_cast<std::uint32_t>(m_rows.size() - 1);
            }
            layer->close();
        }
    }
    delete it;
    table->close();
    if (viewport) viewport->close();
    m_currentAtStart = m_current;
}

} // namespace layermanager
