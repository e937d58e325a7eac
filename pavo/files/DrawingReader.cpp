// Reads a drawing file's sections, in their documented order, into a fresh
// database. Nothing is returned unless every check passed.
#include <cerrno>
#include <new>
#include <cstring>

#include "OxDbDictionary.h"
#include "OxDbEntity.h"
#include "OxDbLayerStateManager.h"
#include "OxDbLayout.h"
#include "OxDbMaterial.h"
#include "SymbolTableImpl.h"
#include "base/MappedBuffer.h"
#include "base/PathText.h"
#include "base/Utf8.h"
#include "files/AtomicFile.h"
#include "db/BlockNesting.h"
#include "files/DrawingFormat.h"
#include "files/EntityReader.h"
#include "files/FileRead.h"

namespace pavo::files {
namespace {

using pavo::db::peek;

enum Section {
    kFormat,
    kVersion,
    kHeader,
    kTables,
    kDictionaries,
    kLinetypes,
    kPlotStyles,
    kMaterials,
    kLayers,
    kBlocks,
    kLayouts,
    kPlotSettings,
    kLayerStates
};

class DrawingReader {
public:
    DrawingReader(OxDbDatabase& db, std::string_view text, const std::string& fileName, LoadError& error)
        : m_ctx(db, text, fileName, error), m_fileName(fileName) {}

    bool read(const simdjson::padded_string_view& json) {
        static const KeyTable keys{"format",    "version",      "header",     "tables", "dictionaries",
                                   "linetypes", "plotStyles",   "materials",  "layers", "blocks",
                                   "layouts",   "plotSettings", "layerStates"};
        sj::parser parser;
        sj::document doc;
        pipeline(); // its building thread gets ready while the parser indexes the text
        if (auto e = parser.iterate(json).get(doc)) return m_ctx.failJson(e, json.data());
        sj::object top;
        if (auto e = doc.get_object().get(top))
            return e == simdjson::INCORRECT_TYPE ? m_ctx.fail(json.data(), "a drawing is a JSON object")
                                                 : m_ctx.failJson(e, json.data());
        std::uint64_t seen = 0;
        int last = -1;
        bool ok = m_ctx.fields(top, keys, "a drawing", seen, [&](int key, sj::value& v) {
            const char* at = m_ctx.keyLocation();
            if (key < last)
                return m_ctx.fail(
                    at,
                    std::string("\"").append(keys.name(key)).append("\" must come before \"").append(keys.name(last)) +
                        "\" (sections are in a fixed order)");
            last = key;
            if (key > kVersion && (seen & 3) != 3)
                return m_ctx.fail(at, "a drawing starts with \"format\" and \"version\"");
            if (key > kBlocks && !endPipeline()) return false;
            return section(key, v, at);
        });
        if (!endPipeline() || !ok) return false;
        const char* trailing = nullptr;
        if (!doc.current_location().get(trailing) && trailing < m_ctx.end())
            return m_ctx.fail(trailing, "unexpected text after the drawing");
        const std::uint64_t required = (1u << kFormat) | (1u << kVersion) | (1u << kHeader) | (1u << kTables) |
                                       (1u << kDictionaries) | (1u << kLinetypes) | (1u << kLayers) | (1u << kBlocks) |
                                       (1u << kLayouts);
        return m_ctx.requireKeys(seen, required, keys, "a drawing", json.data()) && finish() && noInsertionLoop(doc);
    }

private:
    bool section(int key, sj::value& v, const char* at) {
        switch (key) {
        case kFormat: {
            std::string_view name;
            if (!m_ctx.utf8(v, name)) return false;
            return name == kFormatName ||
                   m_ctx.fail(JsonIn::where(v), "not a drawing file (\"format\" must be \"pavo-drawing\")");
        }
        case kVersion: {
            long long version = 0;
            if (!m_ctx.integer(v, version, 1, 1000000)) return false;
            return version == kFormatVersion ||
                   m_ctx.fail(JsonIn::where(v), "format version " + std::to_string(version) +
                                                    " is newer than this program reads (version 1)");
        }
        case kHeader:
            return header(v);
        case kTables:
            return tables(v);
        case kDictionaries:
            return dictionaries(v);
        case kLinetypes:
            return linetypes(v);
        case kPlotStyles:
            return plotStyles(v, at);
        case kMaterials:
            return materials(v, at);
        case kLayers:
            return layers(v);
        case kBlocks:
            return blocks(v);
        case kLayouts:
            return layouts(v);
        case kPlotSettings:
            return plotSettings(v, at);
        case kLayerStates:
            return layerStates(v, at);
        default:
            return false;
        }
    }

    // ------------------------------------------------------------ header

    struct Deferred {
        OxDbObjectId id;
        bool given = false;
        std::string pointer;
        const char* at = nullptr;
    };

    bool deferredRef(sj::value& v, const RefKind& kind, Deferred& d, bool nullable) {
        d.given = true;
        d.pointer = m_ctx.pointer();
        d.at = JsonIn::where(v);
        return m_ctx.reference(v, kind, d.id, nullable);
    }

    bool header(sj::value& v) {
        static const KeyTable keys{"clayer",     "celtype",     "cecolor",  "celweight", "tilemode",
                                   "pstylemode", "measurement", "extnames", "ltscale",   "insunits",
                                   "cvport",     "ctab",        "handseed", "cetransparency", "cepstyle"};
        std::uint64_t seen = 0;
        OxDbDatabase::Impl& h = m_ctx.impl;
        return m_ctx.fields(v, keys, "the header", seen, [&](int key, sj::value& value) {
            long long n = 0;
            bool isNull = false;
            switch (key) {
            case 0:
                return deferredRef(value, m_ctx.layer, m_clayer, false);
            case 1:
                return deferredRef(value, m_ctx.linetype, m_celtype, false);
            case 2:
                return m_ctx.color(value, h.cecolor);
            case 3:
                return m_ctx.lineWeight(value, h.celweight);
            case 4:
                return m_ctx.integer(value, n, 0, 1) && ((h.tilemode = n == 1), true);
            case 5:
                return m_ctx.integer(value, n, 0, 1) && ((h.pstylemode = static_cast<int>(n)), true);
            case 6:
                return m_ctx.integer(value, n, 0, 1) && ((h.measurement = static_cast<int>(n)), true);
            case 7:
                return m_ctx.integer(value, n, 0, 1) && ((h.extnames = static_cast<int>(n)), true);
            case 8:
                return m_ctx.number(value, h.ltscale) &&
                       (h.ltscale > 0 || m_ctx.fail(JsonIn::where(value), "ltscale must be positive"));
            case 9:
                return m_ctx.integer(value, n, 0, 24) && ((h.insunits = static_cast<int>(n)), true);
            case 10:
                return m_ctx.integer(value, n, 1, 32767) && ((h.cvport = static_cast<int>(n)), true);
            case 11:
                return deferredRef(value, m_ctx.layout, m_ctab, true);
            case 12:
                if (!m_ctx.handle(value, m_handseed, false, isNull)) return false;
                // Nearly every handle below the seed will be used. An object
                // takes a dozen bytes of text at least, which bounds a wild seed.
                m_ctx.store.byHandle.reserve(std::min<std::uint64_t>(m_handseed, m_ctx.textSize() / 12));
                return true;
            case 13:
                return m_ctx.transparency(value, h.cetransparency);
            case 14:
                m_cepstyle.given = true;
                m_cepstyle.pointer = m_ctx.pointer();
                m_cepstyle.at = JsonIn::where(value);
                return m_ctx.text(value, h.cepstyle);
            default:
                return false;
            }
        });
    }

    // ------------------------------------------------------------ roots

    template <class T> bool root(sj::value& v, OxDbObjectId& id) {
        OxDbCell* cell = nullptr;
        if (!m_ctx.define(v, cell)) return false;
        id = pavo::db::createRootObject(&m_ctx.db, new T, cell);
        return !id.isNull() || m_ctx.fail(JsonIn::where(v), "the database refused the object");
    }

    bool tables(sj::value& v) {
        static const KeyTable keys{"layers", "linetypes", "blocks"};
        std::uint64_t seen = 0;
        OxDbDatabase::Impl& d = m_ctx.impl;
        const char* at = JsonIn::where(v);
        return m_ctx.fields(v, keys, "\"tables\"", seen, [&](int key, sj::value& value) {
            if (key == 0) return root<OxDbLayerTable>(value, d.layerTable);
            if (key == 1) return root<OxDbLinetypeTable>(value, d.linetypeTable);
            return root<OxDbBlockTable>(value, d.blockTable);
        }) && m_ctx.requireKeys(seen, 7, keys, "\"tables\"", at);
    }

    bool dictionaries(sj::value& v) {
        static const KeyTable keys{"namedObjects", "layouts", "plotSettings", "plotStyles", "materials", "layerStates"};
        std::uint64_t seen = 0;
        OxDbDatabase::Impl& d = m_ctx.impl;
        OxDbObjectId* targets[] = {&d.namedObjects,           &d.layoutDictionary,
                                   &d.plotSettingsDictionary, &d.plotStyleNameDictionary,
                                   &d.materialDictionary,     &d.layerStatesDictionary};
        const char* at = JsonIn::where(v);
        return m_ctx.fields(v, keys, "\"dictionaries\"", seen, [&](int key, sj::value& value) {
            if (key == 0) return root<OxDbDictionary>(value, d.namedObjects);
            if (d.namedObjects.isNull()) return m_ctx.fail(m_ctx.keyLocation(), "\"namedObjects\" comes first");
            return dictionary(value, *targets[key]);
        }) && m_ctx.requireKeys(seen, 3, keys, "\"dictionaries\"", at);
    }

    // {"h": handle, "key": name in the named-objects dictionary}
    bool dictionary(sj::value& v, OxDbObjectId& id) {
        static const KeyTable keys{"h", "key"};
        std::uint64_t seen = 0;
        OxDbCell* cell = nullptr;
        OxString key;
        const char* at = JsonIn::where(v);
        bool ok = m_ctx.fields(v, keys, "a dictionary", seen, [&](int k, sj::value& value) {
            return k == 0 ? m_ctx.define(value, cell) : m_ctx.nonEmptyText(value, key);
        });
        if (!ok || !m_ctx.requireKeys(seen, 1, keys, "a dictionary", at)) return false;
        if (key.isEmpty()) {
            id = pavo::db::createRootObject(&m_ctx.db, new OxDbDictionary, cell);
            return !id.isNull() || m_ctx.fail(at, "the database refused the dictionary");
        }
        WriteOpen<OxDbDictionary> nod(m_ctx.impl.namedObjects);
        if (!nod) return m_ctx.fail(at, "the named-objects dictionary cannot be opened");
        if (nod->has(key.kwszPtr())) return m_ctx.fail(at, "duplicate key " + quoteValue(key.utf8()) + " in namedObjects");
        return addToDictionary(*nod.get(), key, new OxDbDictionary, cell, at, "the dictionary", id);
    }

    // Adds `obj` (owned from here on) under `key`, keeping the saved handle.
    bool addToDictionary(OxDbDictionary& dict, const OxString& key, OxDbObject* obj, OxDbCell* cell, const char* at,
                         std::string_view what, OxDbObjectId& id) {
        std::unique_ptr<OxDbObject> owned(obj);
        m_ctx.expectCell(cell);
        if (!m_ctx.accepted(dict.setAt(key.kwszPtr(), obj, id), at, what)) return false;
        owned.release()->close();
        return true;
    }

    // ------------------------------------------------------------ records

    // The fields of a list of named records: "h" and "name" required.
    struct Named {
        OxDbCell* cell = nullptr;
        OxString name;
        const char* nameAt = nullptr;
        const char* at = nullptr;
    };
    bool nameField(int key, sj::value& value, Named& n) {
        if (key == 0) return m_ctx.define(value, n.cell);
        n.nameAt = JsonIn::where(value);
        return m_ctx.nonEmptyText(value, n.name);
    }

    bool addRecord(OxDbSymbolTable& table, OxDbSymbolTableRecord* record, const Named& n, const char* what,
                   OxDbObjectId* idOut = nullptr) {
        return m_ctx.addRecord(table, record, n.cell, n.name, n.nameAt, what, idOut);
    }

    bool wellKnown(const OxDbObjectId& tableId, const wchar_t* name, OxDbObjectId& out, const char* what) {
        const auto* table = peek<OxDbSymbolTable>(tableId);
        if (table && table->getIdAt(name, out) == Ox::eOk) return true;
        return m_ctx.fail(m_sectionAt,
                          std::string("the drawing has no ") + what + " \"" + OxString(name).utf8() + "\"");
    }

    bool linetypes(sj::value& v) {
        static const KeyTable keys{"h", "name", "description", "pattern", "scaledToFit"};
        m_sectionAt = JsonIn::where(v);
        WriteOpen<OxDbLinetypeTable> table(m_ctx.impl.linetypeTable);
        if (!table) return m_ctx.fail(m_sectionAt, "the linetype table cannot be opened");
        bool ok = m_ctx.items(v, [&](sj::value& item) {
            Named n;
            n.at = JsonIn::where(item);
            auto record = std::make_unique<OxDbLinetypeTableRecord>();
            std::vector<double> dashes;
            std::uint64_t seen = 0;
            bool good = m_ctx.fields(item, keys, "a linetype", seen, [&](int key, sj::value& value) {
                OxString text;
                bool flag = false;
                switch (key) {
                case 2:
                    return m_ctx.text(value, text) && record->setComments(text.kwszPtr()) == Ox::eOk;
                case 3:
                    return m_ctx.items(value, [&](sj::value& d) {
                        double dash = 0;
                        if (!m_ctx.number(d, dash)) return false;
                        dashes.push_back(dash);
                        return true;
                    });
                case 4:
                    return m_ctx.boolean(value, flag) && (record->setIsScaledToFit(flag), true);
                default:
                    return nameField(key, value, n);
                }
            });
            if (!good || !m_ctx.requireKeys(seen, 3, keys, "a linetype", n.at)) return false;
            record->setNumDashes(static_cast<int>(dashes.size()));
            for (std::size_t i = 0; i < dashes.size(); ++i)
                record->setDashLengthAt(static_cast<int>(i), dashes[i]);
            return addRecord(*table.get(), record.release(), n, "linetype");
        });
        OxDbDatabase::Impl& d = m_ctx.impl;
        return ok && wellKnown(d.linetypeTable, L"ByBlock", d.byBlockLinetype, "linetype") &&
               wellKnown(d.linetypeTable, L"ByLayer", d.byLayerLinetype, "linetype") &&
               wellKnown(d.linetypeTable, L"Continuous", d.continuousLinetype, "linetype");
    }

    // Plot style names and materials: {"h", "name"[, "description"]}.
    bool namedEntries(sj::value& v, const char* at, const OxDbObjectId& dictId, const char* dictKey, bool isMaterial) {
        if (dictId.isNull())
            return m_ctx.fail(at, std::string("the drawing has no \"") + dictKey + "\" in \"dictionaries\"");
        static const KeyTable plotStyleKeys{"h", "name"};
        static const KeyTable materialKeys{"h", "name", "description"};
        const KeyTable& keys = isMaterial ? materialKeys : plotStyleKeys;
        const char* what = isMaterial ? "a material" : "a plot style name";
        WriteOpen<OxDbDictionary> dict(dictId);
        if (!dict) return m_ctx.fail(at, "a dictionary cannot be opened");
        return m_ctx.items(v, [&](sj::value& item) {
            Named n;
            n.at = JsonIn::where(item);
            OxString description;
            std::uint64_t seen = 0;
            bool good = m_ctx.fields(item, keys, what, seen, [&](int key, sj::value& value) {
                return key == 2 ? m_ctx.text(value, description) : nameField(key, value, n);
            });
            if (!good || !m_ctx.requireKeys(seen, 3, keys, what, n.at)) return false;
            if (dict->has(n.name.kwszPtr()))
                return m_ctx.failAt(m_ctx.pointerWith("name"), n.nameAt,
                                    "duplicate name " + quoteValue(n.name.utf8()) + " (names ignore letter case)");
            OxDbObject* obj = nullptr;
            if (isMaterial) {
                auto* material = new OxDbMaterial;
                material->setName(n.name.kwszPtr());
                material->setDescription(description.kwszPtr());
                obj = material;
            } else {
                obj = new OxDbPlaceHolder;
            }
            OxDbObjectId id;
            return addToDictionary(*dict.get(), n.name, obj, n.cell, n.at, what, id);
        });
    }

    bool plotStyles(sj::value& v, const char* at) {
        return namedEntries(v, at, m_ctx.impl.plotStyleNameDictionary, "plotStyles", false);
    }

    bool materials(sj::value& v, const char* at) {
        OxDbDatabase::Impl& d = m_ctx.impl;
        if (!namedEntries(v, at, d.materialDictionary, "materials", true)) return false;
        const auto* dict = peek<OxDbDictionary>(d.materialDictionary);
        dict->getAt(L"ByLayer", d.byLayerMaterial);
        dict->getAt(L"ByBlock", d.byBlockMaterial);
        dict->getAt(L"Global", d.globalMaterial);
        return true;
    }

    // ------------------------------------------------------------ layers and blocks

    // Layers and entities are most of a drawing: their JSON is read here
    // while the builder, on a second thread for a large drawing, makes them
    // resident. Until it has finished, only it touches the database.
    EntityPipeline& pipeline() {
        if (!m_pipeline) {
            m_builderContext = std::make_unique<ReadContext>(
                m_ctx.db, std::string_view(m_ctx.begin(), m_ctx.textSize()), m_fileName, m_builderError);
            m_builder = std::make_unique<EntityBuilder>(*m_builderContext);
            m_pipeline = std::make_unique<EntityPipeline>(*m_builder, m_ctx.textSize());
            m_entities = std::make_unique<EntityReader>(m_ctx, *m_pipeline);
        }
        return *m_pipeline;
    }

    // Waits for the builder. Its problem, earlier in the file, wins over one
    // found here since.
    bool endPipeline() {
        if (!m_pipeline) return true;
        const bool built = m_pipeline->finish();
        m_entities.reset();
        m_pipeline.reset();
        m_lockedLayers = m_builder->takeLockedLayers();
        m_builder.reset();
        if (m_builderContext->failed())
            m_ctx.adoptFailure(m_builderError);
        else
            m_ctx.adoptForwards(*m_builderContext);
        m_builderContext.reset();
        return built;
    }

    bool layers(sj::value& v) {
        m_sectionAt = JsonIn::where(v);
        EntityPipeline& p = pipeline();
        p.current().layersStart = m_sectionAt;
        std::uint32_t index = 0;
        if (!m_ctx.items(v, [&](sj::value& item) { return layer(item, index++); })) return false;
        p.current().layersEnd = true;
        return p.flush();
    }

    // The JSON side of a layer: its handles and ids are the builder's.
    bool layer(sj::value& item, std::uint32_t index) {
        static const KeyTable keys{
            "h",           "name",     "off",      "frozen",     "locked",    "plottable",    "newViewportFrozen",
            "hidden",      "color",    "linetype", "lineweight", "plotStyle", "transparency", "material",
            "description", "overrides"};
        static_assert(kLayerH == 0 && kLayerLinetype == 9 && kLayerPlotStyle == 11 && kLayerMaterial == 13);
        EntityBatch& batch = m_pipeline->current();
        LayerRecord& l = batch.layers.emplace_back();
        l.index = index;
        l.at = JsonIn::where(item);
        l.record = std::make_unique<OxDbLayerTableRecord>();
        l.firstUse = static_cast<std::uint32_t>(batch.uses.size());
        l.firstOverride = static_cast<std::uint32_t>(batch.overrides.size());
        OxDbLayerTableRecord& r = *l.record;
        bool good = m_ctx.fields(item, keys, "a layer", l.seen, [&](int key, sj::value& value) {
            bool flag = false;
            OxCmColor color;
            OxCmTransparency transparency;
            OxDb::LineWeight weight;
            OxString text;
            const char* at = JsonIn::where(value);
            switch (key) {
            case kLayerH:
                return use(batch, value, key, false);
            case 1:
                l.nameAt = at;
                return m_ctx.nonEmptyText(value, l.name);
            case 2:
                return m_ctx.boolean(value, flag) && (r.setIsOff(flag), true);
            case 3:
                return m_ctx.boolean(value, flag) && (r.setIsFrozen(flag), true);
            case 4:
                return m_ctx.boolean(value, l.locked); // applied when the entities are in
            case 5:
                return m_ctx.boolean(value, flag) && m_ctx.statusOk(r.setIsPlottable(flag), at, "plottable");
            case 6:
                return m_ctx.boolean(value, flag) && (r.setVPDFLT(flag), true);
            case 7:
                return m_ctx.boolean(value, flag) && m_ctx.statusOk(r.setIsHidden(flag), at, "hidden");
            case 8:
                return m_ctx.color(value, color) && (r.setColor(color), true);
            case 10:
                return m_ctx.lineWeight(value, weight) && m_ctx.statusOk(r.setLineWeight(weight), at, "the lineweight");
            case 12:
                return m_ctx.transparency(value, transparency) &&
                       m_ctx.statusOk(r.setTransparency(transparency), at, "the transparency");
            case 14:
                return m_ctx.text(value, text) &&
                       m_ctx.statusOk(r.setDescription(text.kwszPtr()), at, "the description");
            case 15: {
                std::int32_t part = 0;
                return m_ctx.items(value, [&](sj::value& o) { return layerOverride(o, batch, part++); });
            }
            default: // kLayerLinetype, kLayerPlotStyle, kLayerMaterial: ids the builder's layer cannot refuse
                return use(batch, value, key, true);
            }
        });
        l.useCount = static_cast<std::uint32_t>(batch.uses.size()) - l.firstUse;
        l.overrideCount = static_cast<std::uint32_t>(batch.overrides.size()) - l.firstOverride;
        if (!good || !m_ctx.requireKeys(l.seen, 3, keys, "a layer", l.at)) {
            l.complete = false; // its handles are still checked, before this problem
            return false;
        }
        return !m_pipeline->full() || m_pipeline->flush();
    }

    // A handle of a layer (`part` -1) or of its override `part`, for the builder.
    bool use(EntityBatch& batch, sj::value& v, int key, bool nullable, std::int32_t part = -1) {
        std::uint64_t handle = 0;
        bool isNull = false;
        if (!m_ctx.handle(v, handle, nullable, isNull)) return false;
        if (!isNull) batch.uses.push_back({handle, JsonIn::where(v), part, -1, static_cast<std::uint8_t>(key)});
        return true;
    }

    bool layerOverride(sj::value& v, EntityBatch& batch, std::int32_t part) {
        static const KeyTable keys{"viewport", "color", "linetype", "lineweight", "transparency", "plotStyle"};
        const char* at = JsonIn::where(v);
        OverrideRecord& o = batch.overrides.emplace_back();
        // The viewport comes first so that every override knows its key. Its
        // id is the builder's: the values are tried here on a stand-in.
        return m_ctx.fields(v, keys, "a viewport override", o.seen, [&](int key, sj::value& value) {
            if (key != 0 && !(o.seen & 1))
                return m_ctx.fail(m_ctx.keyLocation(), "\"viewport\" comes first in an override");
            const char* valueAt = JsonIn::where(value);
            switch (key) {
            case kOverrideViewport:
                return use(batch, value, key, false, part);
            case kOverrideColor:
                return m_ctx.color(value, o.color);
            case kOverrideLineWeight:
                return m_ctx.lineWeight(value, o.lineWeight) &&
                       m_ctx.statusOk(m_probeLayer.setLineWeight(o.lineWeight, m_probeViewport), valueAt,
                                      "the lineweight override");
            case kOverrideTransparency:
                return m_ctx.transparency(value, o.transparency) &&
                       m_ctx.statusOk(m_probeLayer.setTransparency(o.transparency, m_probeViewport), valueAt,
                                      "the transparency override");
            default: // kOverrideLinetype, kOverridePlotStyle: ids the builder's layer cannot refuse
                return use(batch, value, key, true, part);
            }
        }) && m_ctx.requireKeys(o.seen, 1, keys, "a viewport override", at);
    }

    bool blocks(sj::value& v) {
        m_sectionAt = JsonIn::where(v);
        pipeline().current().blocksStart = m_sectionAt;
        std::uint32_t index = 0;
        return m_ctx.items(v, [&](sj::value& item) { return m_entities->readBlock(item, index++); });
    }

    bool layouts(sj::value& v) {
        static const KeyTable keys{
            "h", "name", "tabOrder", "block", "styleSheet", "plotSettingsName", "viewportBorders", "activeViewport"};
        m_sectionAt = JsonIn::where(v);
        WriteOpen<OxDbDictionary> dict(m_ctx.impl.layoutDictionary);
        if (!dict) return m_ctx.fail(m_sectionAt, "the layout dictionary cannot be opened");
        bool ok = m_ctx.items(v, [&](sj::value& item) {
            Named n;
            n.at = JsonIn::where(item);
            auto layout = std::make_unique<OxDbLayout>();
            OxDbObjectId blockId;
            const char* blockAt = nullptr;
            std::string blockPointer;
            std::uint64_t seen = 0;
            bool good = m_ctx.fields(item, keys, "a layout", seen, [&](int key, sj::value& value) {
                long long order = 0;
                OxDbObjectId id;
                const char* at = JsonIn::where(value);
                switch (key) {
                case 2:
                    return m_ctx.integer(value, order, 0, 32767) &&
                           m_ctx.accepted(layout->setTabOrder(static_cast<int>(order)), at, "the tab order");
                case 3:
                    blockAt = at;
                    blockPointer = m_ctx.pointer();
                    return m_ctx.reference(value, m_ctx.block, blockId, false);
                case 7:
                    return m_ctx.reference(value, m_ctx.viewport, id) &&
                           m_ctx.accepted(layout->setActiveViewportId(id), at, "the active viewport");
                case 0:
                case 1:
                    return nameField(key, value, n);
                default:
                    return plotSettingsField(key - 4, value, *layout);
                }
            });
            if (!good || !m_ctx.requireKeys(seen, 0xB, keys, "a layout", n.at)) return false;
            if (dict->has(n.name.kwszPtr()))
                return m_ctx.failAt(m_ctx.pointerWith("name"), n.nameAt,
                                    "duplicate layout name " + quoteValue(n.name.utf8()) + " (names ignore letter case)");
            WriteOpen<OxDbBlockTableRecord> block(blockId);
            if (!block) return m_ctx.failAt(blockPointer, blockAt, "the layout's block is not a block of the drawing");
            if (block->isLayout()) return m_ctx.failAt(blockPointer, blockAt, "the block already belongs to a layout");
            layout->setLayoutName(n.name.kwszPtr());
            layout->setBlockTableRecordId(blockId);
            OxDbObjectId id;
            if (!addToDictionary(*dict.get(), n.name, layout.release(), n.cell, n.at, "the layout", id)) return false;
            return m_ctx.accepted(block->setLayoutId(id), n.at, "the layout's block");
        });
        if (!ok) return false;
        OxDbObjectId model;
        if (dict->getAt(L"Model", model) != Ox::eOk)
            return m_ctx.fail(m_sectionAt, "the drawing has no layout \"Model\"");
        const auto* layout = peek<OxDbLayout>(model);
        m_ctx.impl.modelSpace = layout ? layout->getBlockTableRecordId() : OxDbObjectId();
        return true;
    }

    // "styleSheet", "plotSettingsName", "viewportBorders" (0, 1, 2).
    bool plotSettingsField(int key, sj::value& value, OxDbPlotSettings& settings) {
        OxString text;
        bool flag = false;
        const char* at = JsonIn::where(value);
        if (key == 0)
            return m_ctx.text(value, text) &&
                   m_ctx.accepted(settings.setCurrentStyleSheet(text.kwszPtr()), at, "the style sheet");
        if (key == 1)
            return m_ctx.text(value, text) &&
                   m_ctx.accepted(settings.setPlotSettingsName(text.kwszPtr()), at, "the plot settings name");
        return m_ctx.boolean(value, flag) &&
               m_ctx.accepted(settings.setPlotViewportBorders(flag), at, "the viewport borders");
    }

    bool plotSettings(sj::value& v, const char* at) {
        static const KeyTable keys{"h", "name", "styleSheet", "plotSettingsName", "viewportBorders"};
        if (m_ctx.impl.plotSettingsDictionary.isNull())
            return m_ctx.fail(at, "the drawing has no \"plotSettings\" in \"dictionaries\"");
        WriteOpen<OxDbDictionary> dict(m_ctx.impl.plotSettingsDictionary);
        if (!dict) return m_ctx.fail(at, "the plot settings dictionary cannot be opened");
        return m_ctx.items(v, [&](sj::value& item) {
            Named n;
            n.at = JsonIn::where(item);
            auto settings = std::make_unique<OxDbPlotSettings>();
            std::uint64_t seen = 0;
            bool good = m_ctx.fields(item, keys, "plot settings", seen, [&](int key, sj::value& value) {
                return key < 2 ? nameField(key, value, n) : plotSettingsField(key - 2, value, *settings);
            });
            if (!good || !m_ctx.requireKeys(seen, 3, keys, "plot settings", n.at)) return false;
            if (dict->has(n.name.kwszPtr()))
                return m_ctx.failAt(m_ctx.pointerWith("name"), n.nameAt,
                                    "duplicate plot settings name " + quoteValue(n.name.utf8()));
            OxDbObjectId id;
            return addToDictionary(*dict.get(), n.name, settings.release(), n.cell, n.at, "the plot settings", id);
        });
    }

    bool layerStates(sj::value& v, const char* at) {
        static const KeyTable keys{"h", "name", "mask", "description", "currentLayer", "viewport", "layers"};
        if (m_ctx.impl.layerStatesDictionary.isNull())
            return m_ctx.fail(at, "the drawing has no \"layerStates\" in \"dictionaries\"");
        WriteOpen<OxDbDictionary> dict(m_ctx.impl.layerStatesDictionary);
        if (!dict) return m_ctx.fail(at, "the layer states dictionary cannot be opened");
        return m_ctx.items(v, [&](sj::value& item) {
            Named n;
            n.at = JsonIn::where(item);
            auto state = std::make_unique<OxDbLayerState>();
            std::vector<OxDbLayerState::LayerEntry> entries;
            std::uint64_t seen = 0;
            bool good = m_ctx.fields(item, keys, "a layer state", seen, [&](int key, sj::value& value) {
                long long mask = 0;
                OxString text;
                OxDbObjectId id;
                switch (key) {
                case 2:
                    return m_ctx.integer(value, mask, 0, 0x7FF) && (state->setMask(static_cast<unsigned>(mask)), true);
                case 3:
                    return m_ctx.text(value, text) && (state->setDescription(text.kwszPtr()), true);
                case 4:
                    return m_ctx.text(value, text) && (state->setCurrentLayerName(text.kwszPtr()), true);
                case 5:
                    return m_ctx.reference(value, m_ctx.viewport, id) && (state->setViewportId(id), true);
                case 6:
                    return m_ctx.items(value, [&](sj::value& e) {
                        entries.emplace_back();
                        return layerStateEntry(e, entries.back());
                    });
                default:
                    return nameField(key, value, n);
                }
            });
            if (!good || !m_ctx.requireKeys(seen, 3, keys, "a layer state", n.at)) return false;
            if (dict->has(n.name.kwszPtr()))
                return m_ctx.failAt(m_ctx.pointerWith("name"), n.nameAt,
                                    "duplicate layer state name " + quoteValue(n.name.utf8()));
            state->setLayers(std::move(entries));
            OxDbObjectId id;
            return addToDictionary(*dict.get(), n.name, state.release(), n.cell, n.at, "the layer state", id);
        });
    }

    bool layerStateEntry(sj::value& v, OxDbLayerState::LayerEntry& e) {
        static const KeyTable keys{
            "name",           "off",   "frozen",   "locked",     "plottable", "newViewportFrozen",
            "viewportFrozen", "color", "linetype", "lineweight", "plotStyle", "transparency"};
        const char* at = JsonIn::where(v);
        std::uint64_t seen = 0;
        return m_ctx.fields(v, keys, "a layer state entry", seen, [&](int key, sj::value& value) {
            switch (key) {
            case 0:
                return m_ctx.nonEmptyText(value, e.name);
            case 1:
                return m_ctx.boolean(value, e.off);
            case 2:
                return m_ctx.boolean(value, e.frozen);
            case 3:
                return m_ctx.boolean(value, e.locked);
            case 4:
                return m_ctx.boolean(value, e.plottable);
            case 5:
                return m_ctx.boolean(value, e.newViewportFrozen);
            case 6:
                return m_ctx.boolean(value, e.frozenInViewport);
            case 7:
                return m_ctx.color(value, e.color);
            case 8:
                return m_ctx.reference(value, m_ctx.linetype, e.linetypeId);
            case 9:
                return m_ctx.lineWeight(value, e.lineWeight);
            case 10:
                return m_ctx.text(value, e.plotStyleName);
            default:
                return m_ctx.transparency(value, e.transparency);
            }
        }) && m_ctx.requireKeys(seen, 1, keys, "a layer state entry", at);
    }

    // ------------------------------------------------------------ the end

    bool finish() {
        if (!m_ctx.checkForwardReferences()) return false;
        OxDbDatabase::Impl& d = m_ctx.impl;
        d.clayer = m_clayer.given ? m_clayer.id : d.layerZero;
        const auto* current = peek<OxDbLayerTableRecord>(d.clayer);
        if (current && current->isFrozen())
            return m_ctx.failAt(m_clayer.pointer, m_clayer.at,
                                "the current layer " + quoteValue(current->name().utf8()) + " is frozen");
        d.celtype = m_celtype.given ? m_celtype.id : d.byLayerLinetype;
        if (m_cepstyle.given && d.cepstyle.compareNoCase(L"ByLayer") != 0 && d.cepstyle.compareNoCase(L"ByBlock") != 0) {
            const auto* styles = peek<OxDbDictionary>(d.plotStyleNameDictionary);
            OxDbObjectId id;
            if (!styles || styles->getAt(d.cepstyle.kwszPtr(), id) != Ox::eOk)
                return m_ctx.failAt(m_cepstyle.pointer, m_cepstyle.at,
                                    "cepstyle " + quoteValue(d.cepstyle.utf8()) + " is not a plot style of the drawing");
        }
        d.currentLayout = m_ctab.id;
        for (const auto& id : m_lockedLayers) {
            WriteOpen<OxDbLayerTableRecord> layer(id);
            if (layer) layer->setIsLocked(true);
        }
        if (m_handseed > d.store.nextHandle) d.store.nextHandle = m_handseed;
        return true;
    }

    // Refuses a block that inserts itself, naming the chain of blocks, at
    // the first reference of the loop.
    bool noInsertionLoop(sj::document& doc) {
        const std::vector<OxDbObjectId> loop = pavo::db::findInsertionLoop(m_ctx.db);
        if (loop.empty()) return true;
        const auto* table = peek<OxDbBlockTable>(m_ctx.impl.blockTable);
        const auto& blocks = table->impl()->records;
        const auto& entities = peek<OxDbBlockTableRecord>(loop[0])->impl()->entities;
        std::size_t block = 0, entity = 0;
        while (blocks[block] != loop[0].cell())
            ++block;
        while (!pavo::db::holdsKindOf(entities[entity], OxDbBlockReference::desc()) ||
               pavo::db::peek<OxDbBlockReference>(OxDbObjectId(entities[entity]))->blockTableRecord() != loop[1])
            ++entity;
        const std::string pointer = "/blocks/" + std::to_string(block) + "/entities/" + std::to_string(entity) + "/b";
        doc.rewind();
        sj::value value;
        const char* at = doc.at_pointer(pointer).get(value) ? nullptr : JsonIn::where(value);
        return m_ctx.failAt(pointer, at,
                            "block \"" + toUtf8(pavo::db::recordName(loop[0].cell())) +
                                "\" inserts itself: " + toUtf8(pavo::db::blockChainText(loop)));
    }

    ReadContext m_ctx;
    const std::string& m_fileName;
    // The building side of "layers" and "blocks", from the start of the one
    // to the end of the other.
    LoadError m_builderError;
    std::unique_ptr<ReadContext> m_builderContext;
    std::unique_ptr<EntityBuilder> m_builder;
    std::unique_ptr<EntityPipeline> m_pipeline;
    std::unique_ptr<EntityReader> m_entities;
    // Stand-ins on which the values of a layer's overrides are tried.
    OxDbLayerTableRecord m_probeLayer;
    OxDbCell m_probeCell;
    const OxDbObjectId m_probeViewport{&m_probeCell};
    Deferred m_clayer, m_celtype, m_ctab, m_cepstyle;
    std::uint64_t m_handseed = 0;
    std::vector<OxDbObjectId> m_lockedLayers;
    const char* m_sectionAt = nullptr;
};

std::unique_ptr<OxDbDatabase> readPadded(const simdjson::padded_string_view& json, const std::string& fileName,
                                         LoadError& error) {
    auto db = std::make_unique<OxDbDatabase>(false);
    {
        pavo::db::Store& store = db->impl()->store;
        store.loading = true;
        DrawingReader reader(*db, std::string_view(json.data(), json.size()), fileName, error);
        if (!reader.read(json)) return nullptr;
        store.loading = false;
    }
    db->setModified(false);
    return db;
}

// The file's bytes with the padding the parser needs (zeros past the end),
// in a mapping of their own; false with a problem.
bool load(InputFile& file, MappedBuffer& out, std::string& problem) {
    try {
        out = MappedBuffer(file.size() + simdjson::SIMDJSON_PADDING);
    } catch (const std::bad_alloc&) {
        problem = std::strerror(ENOMEM);
        return false;
    }
    if (!file.readInto(out.data(), file.size())) {
        problem = file.problem();
        return false;
    }
    return true;
}

} // namespace

std::unique_ptr<OxDbDatabase> readDrawing(std::string_view json, const std::string& fileName, LoadError& error) {
    simdjson::padded_string padded(json);
    return readPadded(padded, fileName, error);
}

std::unique_ptr<OxDbDatabase> readDrawingFile(const std::filesystem::path& path, LoadError& error, FileStamp* read) {
    InputFile file(path);
    const std::string shownPath = toUtf8(pathText(path));
    MappedBuffer text;
    std::string problem = file.problem();
    if (!file.isOpen() || !load(file, text, problem)) {
        error = LoadError{shownPath, "", 0, 0, problem};
        return nullptr;
    }
    auto db = readPadded(simdjson::padded_string_view(text.data(), file.size(), text.capacity()), shownPath, error);
    if (db) {
        db->setFileName(pathText(path).c_str());
        db->setModified(false);
        if (read) *read = stampOf(file.status());
    }
    return db;
}

std::string LoadError::message() const {
    std::string out = file;
    if (line) {
        out += ':';
        out += std::to_string(line);
        out += ':';
        out += std::to_string(column);
    }
    out += ": ";
    if (!pointer.empty()) out += "at " + pointer + ": ";
    return out + problem;
}

} // namespace pavo::files
