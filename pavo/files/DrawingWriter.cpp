// Writes a database as a drawing file (docs/drawing-format.md). Objects are
// read in place, without opening them, so that saving a million entities
// costs little more than formatting them. Values equal to the documented
// defaults are left out.
#include <memory>

#include "DbBuild.h"
#include "OxDbDictionary.h"
#include "OxDbEntity.h"
#include "OxDbLayerStateManager.h"
#include "OxDbLayout.h"
#include "OxDbMaterial.h"
#include "OxDbSymbolTable.h"
#include "SymbolTableImpl.h"
#include "files/AtomicFile.h"
#include "files/DrawingFile.h"
#include "files/DrawingFormat.h"
#include "files/JsonOut.h"

namespace pavo::files {
namespace {

using pavo::db::peek;

constexpr std::size_t kBytesPerObject = 112;

class DrawingWriter {
public:
    explicit DrawingWriter(const OxDbDatabase& db) : m_db(db), m_impl(*db.impl()) {}

    // The text, valid while the writer lives.
    std::string_view write() {
        // A saved object takes about a hundred bytes: reserving that much
        // up front spares moving the text as it grows.
        m_out.reserve(m_impl.store.cells.size() * kBytesPerObject + (1 << 16));
        m_out.open('{');
        line(0);
        m_out.key("format");
        m_out.string(std::string_view(kFormatName));
        line(0);
        m_out.key("version");
        m_out.integer(kFormatVersion);
        writeHeader();
        writeRoots();
        writeLinetypes();
        writePlotStyles();
        writeMaterials();
        writeLayers();
        writeBlocks();
        writeLayouts();
        writePlotSettings();
        writeLayerStates();
        m_out.newline(0);
        m_out.close('}');
        m_out.raw('\n');
        return m_out.view();
    }

private:
    // A line break before the next key or item, so that each record of a
    // section (and each entity) has a line of its own.
    void line(int indent) { m_out.breakLine(indent); }
    void lineItem(int indent) { m_out.breakLine(indent); }

    // A reference: the handle of a saved object, or null when there is none.
    void ref(const OxDbObjectId& id) {
        if (saved(id))
            m_out.handle(id.handle().value());
        else
            m_out.null();
    }
    // Not null, an object attached and not erased.
    static bool saved(const OxDbObjectId& id) {
        const OxDbCell* cell = id.cell();
        return cell && cell->object && !cell->erased;
    }
    void refKey(std::string_view key, const OxDbObjectId& id) {
        m_out.key(key);
        ref(id);
    }
    void handleKey(const OxDbObjectId& id) {
        m_out.key("h");
        m_out.handle(id.handle().value());
    }
    void stringKey(std::string_view key, std::wstring_view text) {
        m_out.key(key);
        m_out.string(text);
    }
    void optionalString(std::string_view key, std::wstring_view text) {
        if (!text.empty()) stringKey(key, text);
    }
    void numberKey(std::string_view key, double v) {
        m_out.key(key);
        m_out.number(v);
    }
    void optionalNumber(std::string_view key, double v, double byDefault) {
        if (v != byDefault) numberKey(key, v);
    }
    void flag(std::string_view key, bool v) {
        if (v) {
            m_out.key(key);
            m_out.boolean(true);
        }
    }
    void point(const OxGePoint3d& p) {
        m_out.open('[');
        m_out.number(p.x);
        m_out.raw(',');
        m_out.number(p.y);
        if (p.z != 0) {
            m_out.raw(',');
            m_out.number(p.z);
        }
        m_out.close(']');
    }
    void pointKey(std::string_view key, const OxGePoint3d& p) {
        m_out.key(key);
        point(p);
    }
    void point2Key(std::string_view key, const OxGePoint2d& p) { pointKey(key, OxGePoint3d(p.x, p.y, 0)); }

    void color(const OxCmColor& c) {
        switch (c.colorMethod()) {
        case OxCmEntityColor::kByLayer:
            m_out.string(std::string_view("bylayer"));
            return;
        case OxCmEntityColor::kByBlock:
            m_out.string(std::string_view("byblock"));
            return;
        case OxCmEntityColor::kNone:
            m_out.string(std::string_view("none"));
            return;
        case OxCmEntityColor::kByColor:
            m_out.open('{');
            m_out.key("rgb");
            m_out.raw('[');
            m_out.integer(c.red());
            m_out.raw(',');
            m_out.integer(c.green());
            m_out.raw(',');
            m_out.integer(c.blue());
            m_out.raw(']');
            if (c.hasBookName()) {
                stringKey("book", c.bookName() ? c.bookName() : L"");
                stringKey("name", c.colorName() ? c.colorName() : L"");
            }
            m_out.close('}');
            return;
        default:
            break;
        }
        // The index is 16 bits wide so that a negative index survives: write
        // it signed. 0 and 256 are the index forms of by block and by layer.
        const auto index = static_cast<std::int16_t>(c.colorIndex());
        if (index == 0)
            m_out.string(std::string_view("byblock"));
        else if (index == 256)
            m_out.string(std::string_view("bylayer"));
        else
            m_out.integer(index);
    }
    void colorKey(std::string_view key, const OxCmColor& c) {
        m_out.key(key);
        color(c);
    }
    void transparency(const OxCmTransparency& t) {
        if (t.isByAlpha()) {
            m_out.open('{');
            m_out.key("alpha");
            m_out.integer(t.alpha());
            m_out.close('}');
        } else {
            m_out.string(std::string_view(t.isByBlock() ? "byblock" : "bylayer"));
        }
    }
    void transparencyKey(std::string_view key, const OxCmTransparency& t) {
        m_out.key(key);
        transparency(t);
    }
    void lineweightKey(std::string_view key, OxDb::LineWeight w) {
        m_out.key(key);
        m_out.integer(w);
    }

    // ------------------------------------------------------------ sections

    void section(std::string_view name, char bracket) {
        line(0);
        m_out.key(name);
        m_out.open(bracket);
    }
    void endSection(char bracket) {
        m_out.newline(0);
        m_out.close(bracket);
    }

    void writeHeader() {
        section("header", '{');
        const auto& h = m_impl;
        line(1);
        refKey("clayer", h.clayer);
        refKey("celtype", h.celtype);
        colorKey("cecolor", h.cecolor);
        lineweightKey("celweight", h.celweight);
        if (!h.cetransparency.isByLayer()) transparencyKey("cetransparency", h.cetransparency);
        if (h.cepstyle.compareNoCase(L"ByLayer") != 0) stringKey("cepstyle", h.cepstyle.kwszPtr());
        line(1);
        m_out.key("tilemode");
        m_out.integer(h.tilemode ? 1 : 0);
        m_out.key("pstylemode");
        m_out.integer(h.pstylemode);
        m_out.key("measurement");
        m_out.integer(h.measurement);
        m_out.key("extnames");
        m_out.integer(h.extnames);
        numberKey("ltscale", h.ltscale);
        m_out.key("insunits");
        m_out.integer(h.insunits);
        m_out.key("cvport");
        m_out.integer(h.cvport);
        line(1);
        refKey("ctab", h.currentLayout);
        m_out.key("handseed");
        m_out.handle(m_db.handseed());
        endSection('}');
    }

    void writeRoots() {
        section("tables", '{');
        refKey("layers", m_impl.layerTable);
        refKey("linetypes", m_impl.linetypeTable);
        refKey("blocks", m_impl.blockTable);
        m_out.close('}');

        section("dictionaries", '{');
        line(1);
        refKey("namedObjects", m_impl.namedObjects);
        const auto* nod = peek<OxDbDictionary>(m_impl.namedObjects);
        for (const auto& [role, id] : dictionaryRoles()) {
            if (!saved(id)) continue;
            line(1);
            m_out.key(role);
            m_out.open('{');
            handleKey(id);
            OxString key;
            if (nod && nod->nameAt(id, key) == Ox::eOk) stringKey("key", key.view());
            m_out.close('}');
        }
        endSection('}');
    }

    std::vector<std::pair<std::string_view, OxDbObjectId>> dictionaryRoles() const {
        return {{"layouts", m_impl.layoutDictionary},
                {"plotSettings", m_impl.plotSettingsDictionary},
                {"plotStyles", m_impl.plotStyleNameDictionary},
                {"materials", m_impl.materialDictionary},
                {"layerStates", m_impl.layerStatesDictionary}};
    }

    template <class Fn> void forEachRecord(const OxDbObjectId& tableId, Fn&& fn) {
        const auto* table = peek<OxDbSymbolTable>(tableId);
        if (!table) return;
        OxDbSymbolTableIterator* raw = nullptr;
        if (table->newIterator(raw) != Ox::eOk || !raw) return;
        std::unique_ptr<OxDbSymbolTableIterator> it(raw);
        for (; !it->done(); it->step()) {
            OxDbObjectId id;
            if (it->getRecordId(id) == Ox::eOk && saved(id)) fn(id);
        }
    }

    template <class Fn> void forEachEntry(const OxDbObjectId& dictId, Fn&& fn) {
        const auto* dict = peek<OxDbDictionary>(dictId);
        if (!dict) return;
        std::unique_ptr<OxDbDictionaryIterator> it(dict->newIterator());
        for (; it && !it->done(); it->next())
            if (saved(it->objectId())) fn(it->name() ? it->name() : L"", it->objectId());
    }

    void writeLinetypes() {
        section("linetypes", '[');
        forEachRecord(m_impl.linetypeTable, [&](const OxDbObjectId& id) {
            const auto* lt = peek<OxDbLinetypeTableRecord>(id);
            if (!lt) return;
            lineItem(1);
            m_out.open('{');
            handleKey(id);
            stringKey("name", lt->name().view());
            optionalString("description", lt->comments() ? lt->comments() : L"");
            if (lt->numDashes() > 0) {
                m_out.key("pattern");
                m_out.open('[');
                for (int i = 0; i < lt->numDashes(); ++i) {
                    m_out.item();
                    m_out.number(lt->dashLengthAt(i));
                }
                m_out.close(']');
            }
            flag("scaledToFit", lt->isScaledToFit());
            m_out.close('}');
        });
        endSection(']');
    }

    void writeNamedEntries(std::string_view sectionName, const OxDbObjectId& dictId, bool withDescription) {
        if (!saved(dictId)) return;
        section(sectionName, '[');
        forEachEntry(dictId, [&](const wchar_t* name, const OxDbObjectId& id) {
            lineItem(1);
            m_out.open('{');
            handleKey(id);
            stringKey("name", name);
            if (withDescription)
                if (const auto* material = peek<OxDbMaterial>(id))
                    optionalString("description", material->description() ? material->description() : L"");
            m_out.close('}');
        });
        endSection(']');
    }
    void writePlotStyles() { writeNamedEntries("plotStyles", m_impl.plotStyleNameDictionary, false); }
    void writeMaterials() { writeNamedEntries("materials", m_impl.materialDictionary, true); }

    void writeLayers() {
        section("layers", '[');
        forEachRecord(m_impl.layerTable, [&](const OxDbObjectId& id) {
            if (const auto* layer = peek<OxDbLayerTableRecord>(id)) writeLayer(id, *layer);
        });
        endSection(']');
    }

    void writeLayer(const OxDbObjectId& id, const OxDbLayerTableRecord& layer) {
        lineItem(1);
        m_out.open('{');
        handleKey(id);
        stringKey("name", layer.name().view());
        flag("off", layer.isOff());
        flag("frozen", layer.isFrozen());
        flag("locked", layer.isLocked());
        if (!layer.isPlottable()) {
            m_out.key("plottable");
            m_out.boolean(false);
        }
        flag("newViewportFrozen", layer.VPDFLT());
        flag("hidden", layer.isHidden());
        if (layer.color() != OxCmColor::fromIndex(7)) colorKey("color", layer.color());
        if (layer.linetypeObjectId() != m_impl.continuousLinetype) refKey("linetype", layer.linetypeObjectId());
        if (layer.lineWeight() != OxDb::kLnWtByLwDefault) lineweightKey("lineweight", layer.lineWeight());
        if (saved(layer.plotStyleNameId())) refKey("plotStyle", layer.plotStyleNameId());
        if (layer.transparency() != OxCmTransparency(255)) transparencyKey("transparency", layer.transparency());
        if (saved(layer.materialId())) refKey("material", layer.materialId());
        optionalString("description", layer.description().view());
        bool any = false;
        for (const auto& o : layer.viewportOverrides()) {
            if (o.isEmpty() || !saved(o.viewportId)) continue;
            if (!any) {
                m_out.key("overrides");
                m_out.open('[');
                any = true;
            }
            m_out.item();
            m_out.open('{');
            refKey("viewport", o.viewportId);
            if (o.hasColor) colorKey("color", o.color);
            if (o.hasLinetype) refKey("linetype", o.linetypeId);
            if (o.hasLineWeight) lineweightKey("lineweight", o.lineWeight);
            if (o.hasTransparency) transparencyKey("transparency", o.transparency);
            if (o.hasPlotStyle) refKey("plotStyle", o.plotStyleNameId);
            m_out.close('}');
        }
        if (any) m_out.close(']');
        m_out.close('}');
    }

    void writeBlocks() {
        section("blocks", '[');
        forEachRecord(m_impl.blockTable, [&](const OxDbObjectId& id) {
            const auto* block = peek<OxDbBlockTableRecord>(id);
            if (!block) return;
            lineItem(1);
            m_out.open('{');
            handleKey(id);
            stringKey("name", block->name().view());
            if (!(block->origin() == OxGePoint3d())) pointKey("origin", block->origin());
            optionalString("comments", block->comments().view());
            m_out.key("entities");
            m_out.open('[');
            writeEntities(block->impl()->entities);
            m_out.newline(1);
            m_out.close(']');
            m_out.close('}');
        });
        endSection(']');
    }

    // A block's entities in order, erased ones left out. The entities and
    // their layers' cells lie all over memory: fetching them a few entities
    // ahead keeps the processor from waiting on each.
    void writeEntities(const std::vector<OxDbCell*>& cells) {
        constexpr std::size_t kEntityAhead = 8, kLayerAhead = 4;
        const std::size_t count = cells.size();
        for (std::size_t i = 0; i < count; ++i) {
            if (i + kEntityAhead < count) __builtin_prefetch(cells[i + kEntityAhead]->object.get());
            if (i + kLayerAhead < count) // a block lists entities only
                if (const OxDbObject* ahead = cells[i + kLayerAhead]->object.get())
                    __builtin_prefetch(static_cast<const OxDbEntity*>(ahead)->layerId().cell());
            const OxDbObjectId id(cells[i]);
            if (!saved(id)) continue;
            if (const auto* entity = peek<OxDbEntity>(id)) writeEntity(id, *entity);
        }
    }

    void writeCommon(const OxDbObjectId& id, const OxDbEntity& e) {
        handleKey(id);
        if (e.layerId() != m_impl.layerZero) refKey("l", e.layerId());
        if (!e.color().isByLayer()) colorKey("c", e.color());
        if (e.linetypeId() != m_impl.byLayerLinetype) refKey("lt", e.linetypeId());
        optionalNumber("lts", e.linetypeScale(), 1.0);
        if (e.lineWeight() != OxDb::kLnWtByLayer) lineweightKey("lw", e.lineWeight());
        OxDbObjectId plotStyle;
        switch (e.getPlotStyleNameId(plotStyle)) {
        case OxDb::kPlotStyleNameByLayer:
            break;
        case OxDb::kPlotStyleNameByBlock:
            stringKey("ps", L"byblock");
            break;
        case OxDb::kPlotStyleNameIsDictDefault:
            stringKey("ps", L"default");
            break;
        case OxDb::kPlotStyleNameById:
            refKey("ps", plotStyle);
            break;
        }
        if (!e.transparency().isByLayer()) transparencyKey("tr", e.transparency());
        if (e.materialId() != m_impl.byLayerMaterial) refKey("m", e.materialId());
        flag("inv", !e.visibility());
    }

    void writeTextFields(const OxDbText& t) {
        pointKey("p", t.position());
        stringKey("txt", t.textString() ? t.textString() : L"");
        optionalNumber("ht", t.height(), kDefaultTextHeight);
        optionalNumber("rot", t.rotation(), 0.0);
    }

    void writeEntity(const OxDbObjectId& id, const OxDbEntity& e) {
        const EntityType type = entityTypeOf(e);
        if (type == EntityType::Unknown) return; // no other kinds exist in the database
        lineItem(2);
        m_out.open('{');
        m_out.key("t");
        m_out.string(entityTypeName(type));
        writeCommon(id, e);
        switch (type) {
        case EntityType::Line: {
            const auto& l = static_cast<const OxDbLine&>(e);
            pointKey("s", l.startPoint());
            pointKey("e", l.endPoint());
            break;
        }
        case EntityType::Circle: {
            const auto& c = static_cast<const OxDbCircle&>(e);
            pointKey("p", c.center());
            numberKey("r", c.radius());
            break;
        }
        case EntityType::Arc: {
            const auto& a = static_cast<const OxDbArc&>(e);
            pointKey("p", a.center());
            numberKey("r", a.radius());
            numberKey("sa", a.startAngle());
            numberKey("ea", a.endAngle());
            break;
        }
        case EntityType::Polyline:
            writePolyline(static_cast<const OxDbPolyline&>(e));
            break;
        case EntityType::Point:
            pointKey("p", static_cast<const OxDbPoint&>(e).position());
            break;
        case EntityType::Text:
            writeTextFields(static_cast<const OxDbText&>(e));
            break;
        case EntityType::AttributeDefinition: {
            const auto& a = static_cast<const OxDbAttributeDefinition&>(e);
            writeTextFields(a);
            stringKey("tag", a.tag() ? a.tag() : L"");
            optionalString("prompt", a.prompt() ? a.prompt() : L"");
            break;
        }
        case EntityType::BlockReference:
            writeBlockReference(static_cast<const OxDbBlockReference&>(e));
            break;
        case EntityType::Viewport:
            writeViewport(static_cast<const OxDbViewport&>(e));
            break;
        case EntityType::Unknown:
            break;
        }
        m_out.close('}');
    }

    void writePolyline(const OxDbPolyline& p) {
        m_out.key("v");
        m_out.open('[');
        for (const auto& v : p.vertices()) {
            m_out.item();
            m_out.raw('[');
            m_out.number(v.point.x);
            m_out.raw(',');
            m_out.number(v.point.y);
            if (v.bulge != 0) {
                m_out.raw(',');
                m_out.number(v.bulge);
            }
            m_out.raw(']');
        }
        m_out.close(']');
        flag("closed", p.isClosed());
        optionalNumber("elev", p.elevation(), 0.0);
        optionalNumber("w", p.constantWidth(), 0.0);
    }

    void writeBlockReference(const OxDbBlockReference& r) {
        refKey("b", r.blockTableRecord());
        pointKey("p", r.position());
        if (!(r.scaleFactors() == OxGeScale3d())) {
            const auto s = r.scaleFactors();
            m_out.key("sc");
            m_out.raw('[');
            m_out.number(s.sx);
            m_out.raw(',');
            m_out.number(s.sy);
            m_out.raw(',');
            m_out.number(s.sz);
            m_out.raw(']');
        }
        optionalNumber("rot", r.rotation(), 0.0);
        bool any = false;
        for (const auto& attributeId : r.attributeIds()) {
            const auto* a = saved(attributeId) ? peek<OxDbAttribute>(attributeId) : nullptr;
            if (!a) continue;
            if (!any) {
                m_out.key("attribs");
                m_out.open('[');
                any = true;
            }
            m_out.item();
            m_out.open('{');
            writeCommon(attributeId, *a);
            writeTextFields(*a);
            stringKey("tag", a->tag() ? a->tag() : L"");
            m_out.close('}');
        }
        if (any) m_out.close(']');
    }

    void writeViewport(const OxDbViewport& v) {
        pointKey("p", v.centerPoint());
        numberKey("w", v.width());
        numberKey("ht", v.height());
        m_out.key("n");
        m_out.integer(v.number());
        flag("off", !v.isOn());
        flag("lock", v.isLocked());
        point2Key("vc", v.viewCenter());
        numberKey("vh", v.viewHeight());
        if (!(v.viewTarget() == OxGePoint3d())) pointKey("vt", v.viewTarget());
        const auto d = v.viewDirection();
        if (!(d == OxGeVector3d(0, 0, 1))) pointKey("vd", OxGePoint3d(d.x, d.y, d.z));
        optionalNumber("tw", v.twistAngle(), 0.0);
        OxDbObjectIdArray frozen;
        v.getFrozenLayerList(frozen);
        bool any = false;
        for (int i = 0; i < frozen.length(); ++i) {
            if (!saved(frozen[i])) continue;
            if (!any) {
                m_out.key("fl");
                m_out.open('[');
                any = true;
            }
            m_out.item();
            ref(frozen[i]);
        }
        if (any) m_out.close(']');
    }

    void writeLayouts() {
        section("layouts", '[');
        forEachEntry(m_impl.layoutDictionary, [&](const wchar_t*, const OxDbObjectId& id) {
            const auto* layout = peek<OxDbLayout>(id);
            if (!layout) return;
            lineItem(1);
            m_out.open('{');
            handleKey(id);
            OxString text;
            layout->getLayoutName(text);
            stringKey("name", text.view());
            m_out.key("tabOrder");
            m_out.integer(layout->getTabOrder());
            refKey("block", layout->getBlockTableRecordId());
            writePlotSettingsFields(*layout);
            if (saved(layout->activeViewportId())) refKey("activeViewport", layout->activeViewportId());
            m_out.close('}');
        });
        endSection(']');
    }

    void writePlotSettingsFields(const OxDbPlotSettings& settings) {
        OxString text;
        settings.getCurrentStyleSheet(text);
        optionalString("styleSheet", text.view());
        text.setEmpty();
        settings.getPlotSettingsName(text);
        optionalString("plotSettingsName", text.view());
        flag("viewportBorders", settings.plotViewportBorders());
    }

    void writePlotSettings() {
        if (!saved(m_impl.plotSettingsDictionary)) return;
        section("plotSettings", '[');
        forEachEntry(m_impl.plotSettingsDictionary, [&](const wchar_t* name, const OxDbObjectId& id) {
            const auto* settings = peek<OxDbPlotSettings>(id);
            if (!settings) return;
            lineItem(1);
            m_out.open('{');
            handleKey(id);
            stringKey("name", name);
            writePlotSettingsFields(*settings);
            m_out.close('}');
        });
        endSection(']');
    }

    void writeLayerStates() {
        if (!saved(m_impl.layerStatesDictionary)) return;
        section("layerStates", '[');
        forEachEntry(m_impl.layerStatesDictionary, [&](const wchar_t* name, const OxDbObjectId& id) {
            const auto* state = peek<OxDbLayerState>(id);
            if (!state) return;
            lineItem(1);
            m_out.open('{');
            handleKey(id);
            stringKey("name", name);
            m_out.key("mask");
            m_out.integer(state->mask());
            optionalString("description", state->description().view());
            optionalString("currentLayer", state->currentLayerName().view());
            if (saved(state->viewportId())) refKey("viewport", state->viewportId());
            m_out.key("layers");
            m_out.open('[');
            for (const auto& entry : state->layers()) {
                lineItem(2);
                writeLayerStateEntry(entry);
            }
            m_out.newline(1);
            m_out.close(']');
            m_out.close('}');
        });
        endSection(']');
    }

    void writeLayerStateEntry(const OxDbLayerState::LayerEntry& entry) {
        const OxDbLayerState::LayerEntry defaults;
        m_out.open('{');
        stringKey("name", entry.name.view());
        flag("off", entry.off);
        flag("frozen", entry.frozen);
        flag("locked", entry.locked);
        if (!entry.plottable) {
            m_out.key("plottable");
            m_out.boolean(false);
        }
        flag("newViewportFrozen", entry.newViewportFrozen);
        flag("viewportFrozen", entry.frozenInViewport);
        if (entry.color != defaults.color) colorKey("color", entry.color);
        if (!entry.linetypeId.isNull()) refKey("linetype", entry.linetypeId);
        if (entry.lineWeight != defaults.lineWeight) lineweightKey("lineweight", entry.lineWeight);
        optionalString("plotStyle", entry.plotStyleName.view());
        if (entry.transparency != defaults.transparency) transparencyKey("transparency", entry.transparency);
        m_out.close('}');
    }

    const OxDbDatabase& m_db;
    const OxDbDatabase::Impl& m_impl;
    JsonOut m_out;
};

} // namespace

std::string writeDrawing(const OxDbDatabase& db) {
    DrawingWriter writer(db);
    return std::string(writer.write());
}

// The text goes from the writer's own buffer to the file, never copied.
bool writeDrawingFile(const OxDbDatabase& db, const std::filesystem::path& path, std::string& error,
                      FileStamp* written) {
    DrawingWriter writer(db);
    return replaceFileAtomically(path, writer.write(), error, Backup::Keep, written);
}

} // namespace pavo::files
