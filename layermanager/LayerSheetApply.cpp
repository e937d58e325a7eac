// Writing the sheet's changes to the drawing: new layers, changed
// properties and names, the current layer, then deletions, each record
// opened for write and closed as every command does.
#include "OxDbDatabase.h"
#include "OxDbEntity.h"
#include "OxDbSymbolTable.h"
#include "layerhelper/LayerRecords.h"
#include "layerhelper/Linetypes.h"
#include "layerhelper/PavoLayerHelper.h"
#include "layermanager/LayerSheet.h"

namespace layermanager {

namespace {

// Makes sure every entry rows refer to has its record: linetypes loaded
// from the standard file, plot style names added to the drawing.
void resolveEntries(OxDbDatabase* db, NamedEntries& linetypes, NamedEntries& plotStyles,
                    const std::vector<LayerRow>& rows) {
    std::vector<bool> usedLinetype(linetypes.size()), usedPlotStyle(plotStyles.size());
    for (const LayerRow& row : rows) {
        if (row.deleted || row.changed == 0) continue;
        for (std::uint32_t entry : {row.linetype, row.vpLinetype})
            if (entry != kNoEntry) usedLinetype[entry] = true;
        for (std::uint32_t entry : {row.plotStyle, row.vpPlotStyle})
            if (entry != kNoEntry) usedPlotStyle[entry] = true;
    }
    for (std::uint32_t i = 0; i < linetypes.size(); ++i)
        if (usedLinetype[i] && linetypes.at(i).id.isNull())
            linetypes.at(i).id = vxlayer::linetypeOrLoad(db, linetypes.at(i).name);
    for (std::uint32_t i = 0; i < plotStyles.size(); ++i)
        if (usedPlotStyle[i] && plotStyles.at(i).id.isNull())
            plotStyles.at(i).id = PavoLayerHelper::createPlotStye(plotStyles.at(i).name, db);
}

// The current viewport's overrides of `layer`: set, or removed.
void writeOverrides(OxDbLayerTableRecord& layer, const LayerRow& row, const OxDbObjectId& vp,
                    const NamedEntries& linetypes, const NamedEntries& plotStyles) {
    using C = LayerColumn;
    const auto wanted = [&](C column) { return row.isChanged(column) && row.isOverridden(column); };
    const auto dropped = [&](C column) { return row.isChanged(column) && !row.isOverridden(column); };
    if (wanted(C::VpColor)) layer.setColor(row.vpColor, vp);
    if (dropped(C::VpColor)) layer.removeColorOverride(vp);
    if (wanted(C::VpLinetype) && row.vpLinetype != kNoEntry && !linetypes.at(row.vpLinetype).id.isNull())
        layer.setLinetypeObjectId(linetypes.at(row.vpLinetype).id, vp);
    if (dropped(C::VpLinetype)) layer.removeLinetypeOverride(vp);
    if (wanted(C::VpLineweight)) layer.setLineWeight(static_cast<OxDb::LineWeight>(row.vpLineweight), vp);
    if (dropped(C::VpLineweight)) layer.removeLineWeightOverride(vp);
    if (wanted(C::VpTransparency)) layer.setTransparency(row.vpTransparency, vp);
    if (dropped(C::VpTransparency)) layer.removeTransparencyOverride(vp);
    if (wanted(C::VpPlotStyle) && row.vpPlotStyle != kNoEntry && !plotStyles.at(row.vpPlotStyle).id.isNull())
        layer.setPlotStyleName(plotStyles.at(row.vpPlotStyle).id, vp);
    if (dropped(C::VpPlotStyle)) layer.removePlotStyleOverride(vp);
}

// Freezes and thaws layers in the current viewport, one write open of it.
void writeViewportFreezing(const OxDbObjectId& vp, const std::vector<LayerRow>& rows) {
    OxDbObjectIdArray freeze, thaw;
    for (const LayerRow& row : rows) {
        if (row.deleted || row.id.isNull() || !row.isChanged(LayerColumn::VpFreeze)) continue;
        (row.vpFrozen ? freeze : thaw).append(row.id);
    }
    OxDbViewport* viewport = nullptr;
    if ((freeze.isEmpty() && thaw.isEmpty()) || oxdbOpenObject(viewport, vp, OxDb::kForWrite) != Ox::eOk) return;
    if (!freeze.isEmpty()) viewport->freezeLayersInViewport(freeze);
    if (!thaw.isEmpty()) viewport->thawLayersInViewport(thaw);
    viewport->close();
}

void writeProperties(OxDbLayerTableRecord& layer, const LayerRow& row, const NamedEntries& linetypes,
                     const NamedEntries& plotStyles) {
    using C = LayerColumn;
    if (row.isChanged(C::On)) layer.setIsOff(!row.on);
    if (row.isChanged(C::Frozen)) layer.setIsFrozen(row.frozen);
    if (row.isChanged(C::Locked)) layer.setIsLocked(row.locked);
    if (row.isChanged(C::Plot)) layer.setIsPlottable(row.plot);
    if (row.isChanged(C::NewVpFreeze)) layer.setVPDFLT(row.newVpFrozen);
    if (row.isChanged(C::Color)) layer.setColor(row.color);
    if (row.isChanged(C::Linetype) && row.linetype != kNoEntry && !linetypes.at(row.linetype).id.isNull())
        layer.setLinetypeObjectId(linetypes.at(row.linetype).id);
    if (row.isChanged(C::Lineweight)) layer.setLineWeight(static_cast<OxDb::LineWeight>(row.lineweight));
    if (row.isChanged(C::Transparency)) layer.setTransparency(row.transparency);
    if (row.isChanged(C::PlotStyle) && row.plotStyle != kNoEntry && !plotStyles.at(row.plotStyle).id.isNull())
        layer.setPlotStyleName(plotStyles.at(row.plotStyle).id);
    if (row.isChanged(C::Description)) layer.setDescription(row.description);
}

// Renamed layers first take a name no layer has, so that names passed
// between layers (A to C, then B to A) never meet in the table.
std::wstring passingName(const OxDbObjectId& id) { return L"$pavo-rename-" + id.handle().toString(); }

} // namespace

void LayerSheet::apply() {
    if (!m_edited || !m_db) return;
    // Deleted layers go first, so that their names are free for the others
    // (the dialog never deletes the drawing's current layer).
    for (const OxDbObjectId& id : m_deleted) {
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, id, OxDb::kForWrite) != Ox::eOk) continue;
        layer->erase(true);
        layer->close();
    }
    resolveEntries(m_db, m_linetypes, m_plotStyles, m_rows);

    std::vector<const LayerRow*> renamed;
    const auto write = [&](const LayerRow& row) {
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, row.id, OxDb::kForWrite) != Ox::eOk) return;
        writeProperties(*layer, row, m_linetypes, m_plotStyles);
        if (!m_viewport.isNull()) writeOverrides(*layer, row, m_viewport, m_linetypes, m_plotStyles);
        if (row.isChanged(LayerColumn::Name) && layer->name() != row.name) {
            layer->setName(passingName(row.id).c_str());
            renamed.push_back(&row);
        }
        layer->close();
    };
    for (const LayerRow& row : m_rows)
        if (!row.deleted && row.changed != 0 && !row.id.isNull()) write(row);
    for (const LayerRow* row : renamed) {
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, row->id, OxDb::kForWrite) != Ox::eOk) continue;
        layer->setName(row->name);
        layer->close();
    }

    // New layers once renamed layers have given up their names.
    std::vector<const LayerRow*> made;
    OxDbLayerTable* table = nullptr;
    if (m_db->getSymbolTable(table, OxDb::kForWrite) == Ox::eOk) {
        for (LayerRow& row : m_rows) {
            if (!row.id.isNull() || row.deleted) continue;
            row.id = PavoLayerHelper::createNewLayer(m_db, table, row.name);
            if (!row.id.isNull()) made.push_back(&row);
        }
        table->close();
    }
    for (const LayerRow* row : made) write(*row);

    if (m_current != m_currentAtStart && m_current != kNoEntry) {
        const OxDbObjectId before = m_db->clayer();
        PavoLayerHelper::setCurrentLayer(m_db, m_rows[m_current].id);
        // The layer that was current could not be frozen while it was.
        for (const LayerRow& row : m_rows) {
            if (row.id != before || !row.frozen || !row.isChanged(LayerColumn::Frozen)) continue;
            OxDbLayerTableRecord* layer = nullptr;
            if (oxdbOpenObject(layer, row.id, OxDb::kForWrite) != Ox::eOk) continue;
            layer->setIsFrozen(true);
            layer->close();
        }
    }
    if (!m_viewport.isNull()) writeViewportFreezing(m_viewport, m_rows);

    read();
    refreshShown();
}

} // namespace layermanager
