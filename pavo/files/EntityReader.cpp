// Entities of a block's "entities": each object is read into one reusable
// record of fields, checked against its kind and made (not resident) on the
// reading side; the builder resolves its handles and appends it.

#include "files/EntityReader.h"
#include "OxDbEntity.h"
#include "base/Utf8.h"
#include "files/DrawingFormat.h"
#include "files/EntityKeys.h"
#include "files/EntityShapes.h"

namespace pavo::files {
namespace {

using namespace entitykeys;

constexpr std::uint64_t kCommon = bits(kT, kH, kL, kC, kLt, kLts, kLw, kPs, kTr, kM, kInv);
constexpr std::uint64_t kTextKeys = bits(kP, kTxt, kHt, kRot);

struct KindRule {
    std::uint64_t allowed, required;
};

KindRule ruleOf(EntityType type) {
    switch (type) {
    case EntityType::Line:
        return {bits(kS, kE), bits(kS, kE)};
    case EntityType::Circle:
        return {bits(kP, kR), bits(kP, kR)};
    case EntityType::Arc:
        return {bits(kP, kR, kSa, kEa), bits(kP, kR, kSa, kEa)};
    case EntityType::Polyline:
        return {bits(kV, kClosed, kElev, kW), bits(kV)};
    case EntityType::Point:
        return {bits(kP), bits(kP)};
    case EntityType::Text:
        return {kTextKeys, bits(kP, kTxt)};
    case EntityType::AttributeDefinition:
        return {kTextKeys | bits(kTag, kPrompt), bits(kP, kTag)};
    case EntityType::BlockReference:
        return {bits(kB, kP, kSc, kRot, kAttribs), bits(kB, kP)};
    case EntityType::Viewport:
        return {bits(kP, kW, kHt, kN, kOff, kLock, kVc, kVh, kVt, kVd, kTw, kFl), bits(kP, kW, kHt, kN, kVc, kVh)};
    case EntityType::Unknown:
        break;
    }
    return {0, 0};
}
// An attribute of a block reference: no "t", text keys and a tag.
constexpr KindRule kAttributeRule{(kCommon & ~bit(kT)) | kTextKeys | bits(kTag), bits(kH, kP, kTag)};

// The plain values of an entity being read, reset as one block per entity.
struct EntityValues {
    std::uint64_t seen = 0;
    const char* at = nullptr;
    EntityType type = EntityType::Unknown;
    bool layerNull = false, plotStyleHandle = false; // what decides whether the ids will be accepted
    PlainValues plain;
    double r = 0, sa = 0, ea = 0, elev = 0, w = 0, ht = kDefaultTextHeight, rot = 0, vh = 0, tw = 0;
    OxGePoint3d s, e, p, vt, vd{0, 0, 1};
    OxGePoint2d vc;
    OxGeScale3d sc;
    long long n = 0;
    bool closed = false, off = false, lock = false;
    std::size_t attribCount = 0;
};

struct EntityFields : EntityValues {
    const char* keyAt[kKeyCount]; // set for the keys in `seen`
    std::string_view txt;         // in the text or the parser's buffer
    OxString tag, prompt;
    std::vector<OxDbPolyline::Vertex> vertices;
    std::vector<EntityFields> attribs;

    // Empties the fields for the next entity, keeping the buffers of the
    // strings and lists.
    void reset(const char* start) {
        static_cast<EntityValues&>(*this) = EntityValues();
        at = start;
        txt = {};
        tag.setEmpty();
        prompt.setEmpty();
        vertices.clear();
    }
};

} // namespace

struct EntityReader::Impl {
    Impl(JsonIn& json, EntityPipeline& pipeline) : m_json(json), m_pipeline(pipeline) {}

    bool readBlock(sj::value& item, std::uint32_t index) {
        static const KeyTable keys{"h", "name", "origin", "comments", "entities"};
        if (!m_pipeline.flush()) return false; // a block starts a batch
        EntityBatch& batch = m_pipeline.current();
        batch.block = std::make_unique<BlockRecord>();
        BlockRecord& b = *batch.block;
        b.index = index;
        b.at = JsonIn::where(item);
        b.record = std::make_unique<OxDbBlockTableRecord>();
        bool entitiesRead = false;
        std::uint64_t seen = 0;
        // After "entities" the batch (and `b`) may have been handed over.
        bool good = m_json.fields(item, keys, "a block", seen, [&](int key, sj::value& value) {
            if (entitiesRead) return m_json.fail(m_json.keyLocation(), "\"entities\" is the last key of a block");
            OxGePoint3d origin;
            OxString text;
            bool isNull = false;
            switch (key) {
            case 0:
                if (!m_json.handle(value, b.handle, false, isNull)) return false;
                b.handleAt = JsonIn::where(value);
                return true;
            case 1:
                b.nameAt = JsonIn::where(value);
                return m_json.nonEmptyText(value, b.name);
            case 2:
                return m_json.point(value, origin) && (b.record->setOrigin(origin), true);
            case 3:
                return m_json.text(value, text) && b.record->setComments(text.kwszPtr()) == Ox::eOk;
            default: {
                if (!m_json.requireKeys(seen, 3, keys, "a block", b.at)) return false;
                batch.blockComplete = true;
                b.hasEntities = true;
                entitiesRead = true;
                std::uint32_t entity = 0;
                return m_json.items(value, [&](sj::value& e) { return readEntity(e, entity++); });
            }
            }
        });
        if (!good || entitiesRead) return good;
        if (!m_json.requireKeys(seen, 3, keys, "a block", b.at)) return false;
        batch.blockComplete = true;
        return true;
    }

    bool readEntity(sj::value& v, std::uint32_t index) {
        EntityFields& f = m_fields;
        f.reset(JsonIn::where(v));
        EntityBatch& batch = m_pipeline.current();
        m_batch = &batch;
        const std::size_t firstUse = batch.uses.size();
        const std::size_t firstAttribute = batch.attributes.size();
        EntityRecord& r = batch.entities.emplace_back();
        const bool ok = parse(v, f, "an entity") && checkEntity(f) && make(f, r) && makeAttributes(f, batch);
        r.at = f.at;
        r.seen = f.seen;
        r.index = index;
        r.type = f.type;
        r.firstUse = static_cast<std::uint32_t>(firstUse);
        r.useCount = static_cast<std::uint32_t>(batch.uses.size() - firstUse);
        r.firstAttribute = static_cast<std::uint32_t>(firstAttribute);
        r.attributeCount = static_cast<std::uint32_t>(batch.attributes.size() - firstAttribute);
        if (!ok) {
            r.complete = false; // its handles are still checked, before this problem
            r.entity.reset();
            return false;
        }
        return !m_pipeline.full() || m_pipeline.flush();
    }

    bool parse(sj::value& v, EntityFields& f, std::string_view what) {
        return m_json.fields(v, entityKeys(), what, f.seen, [&](int key, sj::value& value) {
            f.keyAt[key] = m_json.keyLocation();
            return field(key, value, f);
        });
    }

    bool checkEntity(EntityFields& f) {
        if (!f.seen || !(f.seen & bit(kT))) return m_json.fail(f.at, "an entity needs the key \"t\"");
        const KindRule rule = ruleOf(f.type);
        return check(f, rule.allowed | kCommon, rule.required | bits(kT, kH), entityTypeName(f.type));
    }

    bool check(EntityFields& f, std::uint64_t allowed, std::uint64_t required, std::string_view kind) {
        const std::uint64_t extra = f.seen & ~allowed;
        if (extra) {
            int key = 0;
            while (!((extra >> key) & 1))
                ++key;
            const std::string_view name = entityKeys().name(key);
            return m_json.failAt(m_json.pointerWith(name), f.keyAt[key],
                                 "the key \"" + std::string(name) + "\" does not belong to " +
                                     (kind == "attribute" ? std::string("an attribute") : "a " + std::string(kind)));
        }
        if (!(required & ~f.seen)) return true; // the message below is made only when needed
        return m_json.requireKeys(f.seen, required, entityKeys(), "a " + std::string(kind), f.at);
    }

    // A handle for the builder, in the order of the text.
    bool use(sj::value& v, Key key, bool nullable, bool* isNullOut = nullptr, std::int32_t item = -1) {
        std::uint64_t handle = 0;
        bool isNull = false;
        if (!m_json.handle(v, handle, nullable, isNull)) return false;
        if (isNullOut) *isNullOut = isNull;
        if (!isNull) addUse(handle, JsonIn::where(v), key, item);
        return true;
    }
    void addUse(std::uint64_t handle, const char* at, Key key, std::int32_t item = -1) {
        m_batch->uses.push_back({handle, at, m_attribute, item, static_cast<std::uint8_t>(key)});
    }

    bool field(int key, sj::value& v, EntityFields& f) {
        JsonIn& c = m_json;
        switch (key) {
        case kT: {
            std::string_view name;
            if (!c.utf8(v, name)) return false;
            f.type = entityTypeFromName(name);
            if (f.type == EntityType::Unknown)
                return c.fail(JsonIn::where(v), "unknown entity type " + quoteValue(name) +
                                                    " (line, circle, arc, polyline, point, text, attdef, "
                                                    "insert, viewport)");
            return true;
        }
        case kH:
            return use(v, kH, false);
        case kL:
            return use(v, kL, true, &f.layerNull);
        case kC:
            return c.color(v, f.plain.color);
        case kLt:
            return use(v, kLt, true);
        case kLts:
            return c.number(v, f.plain.lts);
        case kLw:
            return c.lineWeight(v, f.plain.lineWeight);
        case kPs:
            return plotStyle(v, f);
        case kTr:
            return c.transparency(v, f.plain.transparency);
        case kM:
            return use(v, kM, true);
        case kInv:
            return c.boolean(v, f.plain.inv);
        case kS:
            return c.point(v, f.s);
        case kE:
            return c.point(v, f.e);
        case kP:
            return c.point(v, f.p);
        case kR:
            if (!c.number(v, f.r)) return false;
            return f.r >= 0 || c.fail(JsonIn::where(v), "a radius cannot be negative");
        case kSa:
            return c.number(v, f.sa);
        case kEa:
            return c.number(v, f.ea);
        case kV:
            return vertices(v, f);
        case kClosed:
            return c.boolean(v, f.closed);
        case kElev:
            return c.number(v, f.elev);
        case kW:
            return c.number(v, f.w);
        case kTxt:
            return c.utf8(v, f.txt); // made wide by whoever makes the entity
        case kHt:
            return c.number(v, f.ht);
        case kRot:
            return c.number(v, f.rot);
        case kTag:
            return c.text(v, f.tag) && (!f.tag.isEmpty() || c.fail(JsonIn::where(v), "a tag must not be empty"));
        case kPrompt:
            return c.text(v, f.prompt);
        case kB:
            return use(v, kB, false);
        case kSc:
            return scale(v, f);
        case kAttribs:
            return attributes(v, f);
        case kN:
            return c.integer(v, f.n, 1, 32767);
        case kOff:
            return c.boolean(v, f.off);
        case kLock:
            return c.boolean(v, f.lock);
        case kVc:
            return c.point2(v, f.vc);
        case kVh:
            return c.number(v, f.vh);
        case kVt:
            return c.point(v, f.vt);
        case kVd:
            return c.point(v, f.vd);
        case kTw:
            return c.number(v, f.tw);
        case kFl: {
            std::int32_t item = 0;
            return c.items(v, [&](sj::value& value) { return use(value, kFl, false, nullptr, item++); });
        }
        default:
            return false;
        }
    }

    bool plotStyle(sj::value& v, EntityFields& f) {
        JsonIn& c = m_json;
        bool isNull = false;
        if (!v.is_null().get(isNull) && isNull) {
            f.plain.plotStyleType = OxDb::kPlotStyleNameById;
            return true;
        }
        std::string_view s;
        if (!c.utf8(v, s)) return false;
        if (s == "byblock") {
            f.plain.plotStyleType = OxDb::kPlotStyleNameByBlock;
            return true;
        }
        if (s == "default") {
            f.plain.plotStyleType = OxDb::kPlotStyleNameIsDictDefault;
            return true;
        }
        std::uint64_t handle = 0;
        if (!c.handleFromText(s, JsonIn::where(v), handle)) return false;
        f.plain.plotStyleType = OxDb::kPlotStyleNameById;
        f.plotStyleHandle = true;
        addUse(handle, JsonIn::where(v), kPs);
        return true;
    }

    bool vertices(sj::value& v, EntityFields& f) {
        return m_json.items(v, [&](sj::value& item) {
            OxGePoint3d p; // x, y and the bulge
            if (!m_json.point(item, p)) return false;
            f.vertices.push_back({OxGePoint2d(p.x, p.y), p.z});
            return true;
        });
    }

    bool scale(sj::value& v, EntityFields& f) {
        OxGePoint3d s;
        if (!m_json.point(v, s)) return false;
        f.sc.sx = s.x;
        f.sc.sy = s.y;
        f.sc.sz = s.z;
        return true;
    }

    bool attributes(sj::value& v, EntityFields& f) {
        const bool ok = m_json.items(v, [&](sj::value& item) {
            if (f.attribs.size() <= f.attribCount) f.attribs.emplace_back();
            m_attribute = static_cast<std::int32_t>(f.attribCount);
            EntityFields& a = f.attribs[f.attribCount++];
            a.reset(JsonIn::where(item));
            if (!parse(item, a, "an attribute")) return false;
            return check(a, kAttributeRule.allowed, kAttributeRule.required, "attribute");
        });
        m_attribute = -1;
        return ok;
    }

    // The properties that need no database, set on a made entity (or a probe
    // when the builder makes it). The ids are set by the builder; whether it
    // will be able to is known here (a null layer or plot style is refused),
    // so that a refusal is reported where a single pass reports it.
    bool plainProperties(OxDbEntity& e, const EntityFields& f) {
        auto given = [&](Key key) { return (f.seen & bit(key)) != 0; };
        const bool idsOk = !(given(kL) && f.layerNull) &&
                           !(given(kPs) && f.plain.plotStyleType == OxDb::kPlotStyleNameById && !f.plotStyleHandle);
        return (idsOk && setPlainProperties(e, f.seen, f.plain)) ||
               m_json.fail(f.at, "the database refused the entity's properties");
    }

    static bool setText(OxDbText& t, const EntityFields& f) {
        return files::setText(t, f.p, wideText(f.txt), f.ht, f.rot);
    }

    // Whether the builder will be able to make the shape of `f`: its values
    // are tried here on stand-ins (the text and vertices are not checked by
    // the database, only kept).
    bool shapeAccepted(const EntityFields& f) {
        if (f.type == EntityType::Polyline) return setPolyline(m_probePolyline, {}, shapeOf(f));
        if (f.type == EntityType::Text) return files::setText(m_probeText, f.p, OxString(), f.ht, f.rot);
        return true; // made by a constructor
    }

    static ShapeValues shapeOf(const EntityFields& f) {
        ShapeValues s;
        s.a = f.type == EntityType::Line ? f.s : f.p;
        s.b = f.e;
        s.r = f.r;
        s.sa = f.sa;
        s.ea = f.ea;
        s.height = f.ht;
        s.rotation = f.rot;
        s.elevation = f.elev;
        s.width = f.w;
        s.closed = f.closed;
        s.text = f.txt;
        return s;
    }

    // An entity of the other kinds (not resident); null when a setter refuses.
    static std::unique_ptr<OxDbEntity> makeOther(const EntityFields& f) {
        switch (f.type) {
        case EntityType::AttributeDefinition: {
            auto a = std::make_unique<OxDbAttributeDefinition>();
            const bool ok =
                setText(*a, f) && a->setTag(f.tag.kwszPtr()) == Ox::eOk && a->setPrompt(f.prompt.kwszPtr()) == Ox::eOk;
            return ok ? std::move(a) : nullptr;
        }
        case EntityType::BlockReference: {
            auto r = std::make_unique<OxDbBlockReference>(); // the block is set by the builder
            const bool ok = r->setPosition(f.p) == Ox::eOk && r->setScaleFactors(f.sc) == Ox::eOk &&
                            r->setRotation(f.rot) == Ox::eOk;
            return ok ? std::move(r) : nullptr;
        }
        case EntityType::Viewport: {
            auto v = std::make_unique<OxDbViewport>(); // so are the layers frozen in it
            const bool ok = v->setCenterPoint(f.p) == Ox::eOk && v->setWidth(f.w) == Ox::eOk &&
                            v->setHeight(f.ht) == Ox::eOk && v->setNumber(static_cast<short>(f.n)) == Ox::eOk &&
                            v->setOn(!f.off) == Ox::eOk && v->setLocked(f.lock) == Ox::eOk &&
                            v->setViewCenter(f.vc) == Ox::eOk && v->setViewHeight(f.vh) == Ox::eOk &&
                            v->setViewTarget(f.vt) == Ox::eOk &&
                            v->setViewDirection(OxGeVector3d(f.vd.x, f.vd.y, f.vd.z)) == Ox::eOk &&
                            v->setTwistAngle(f.tw) == Ox::eOk;
            return ok ? std::move(v) : nullptr;
        }
        default:
            break;
        }
        return nullptr;
    }

    // The entity of `f` with its plain properties; null after a problem, or
    // for a shape made by the builder (then `r` has its values). Shapes are
    // left to a builder on another thread while it keeps up.
    bool make(const EntityFields& f, EntityRecord& r) {
        if (isShape(f.type) && m_pipeline.builderHasRoom()) {
            if (!shapeAccepted(f))
                return m_json.fail(f.at, "the database refused the " + std::string(entityTypeName(f.type)));
            if (!plainProperties(m_probe, f)) return false;
            r.shape = shapeOf(f);
            r.shape.firstVertex = static_cast<std::uint32_t>(m_batch->vertices.size());
            r.shape.vertexCount = static_cast<std::uint32_t>(f.vertices.size());
            m_batch->vertices.insert(m_batch->vertices.end(), f.vertices.begin(), f.vertices.end());
            r.plain = f.plain;
            return true;
        }
        std::unique_ptr<OxDbEntity> entity = isShape(f.type) ? makeShape(f.type, shapeOf(f), f.vertices) : makeOther(f);
        if (!entity) {
            return m_json.fail(f.at, "the database refused the " + std::string(entityTypeName(f.type)));
        }
        if (!plainProperties(*entity, f)) return false;
        r.entity = std::move(entity);
        return true;
    }

    bool makeAttributes(const EntityFields& f, EntityBatch& batch) {
        if (f.type != EntityType::BlockReference) return true;
        for (std::size_t i = 0; i < f.attribCount; ++i) {
            const EntityFields& a = f.attribs[i];
            auto attribute = std::make_unique<OxDbAttribute>();
            if (!setText(*attribute, a) || attribute->setTag(a.tag.kwszPtr()) != Ox::eOk)
                return m_json.fail(a.at, "the database refused the attribute");
            if (!plainProperties(*attribute, a)) return false;
            batch.attributes.push_back({std::move(attribute), a.at, a.seen});
        }
        return true;
    }

    JsonIn& m_json;
    EntityPipeline& m_pipeline;
    EntityBatch* m_batch = nullptr;
    std::int32_t m_attribute = -1;          // the attribute being read, -1 for none
    EntityFields m_fields = EntityFields(); // value-initialized: keyAt starts null
    // Stand-ins that try the values of a shape made by the builder.
    OxDbLine m_probe;
    OxDbPolyline m_probePolyline;
    OxDbText m_probeText;
};

EntityReader::EntityReader(JsonIn& json, EntityPipeline& pipeline) : m_impl(std::make_unique<Impl>(json, pipeline)) {}
EntityReader::~EntityReader() = default;
bool EntityReader::readBlock(sj::value& v, std::uint32_t index) { return m_impl->readBlock(v, index); }

} // namespace pavo::files
