// Entities of a block's "entities": each object is read into one reusable
// record of fields, checked against its kind and made (not resident) on the
// reading side; the builder resolves its handles and appends it.
#include <optional>

#include "OxDbEntity.h"
#include "base/Utf8.h"
#include "files/DrawingFormat.h"
#include "files/EntityReader.h"

namespace pavo::files {
namespace {

enum Key {
    kT,
    kH,
    kL,
    kC,
    kLt,
    kLts,
    kLw,
    kPs,
    kTr,
    kM,
    kInv, // common
    kS,
    kE,
    kP,
    kR,
    kSa,
    kEa,
    kV,
    kClosed,
    kElev,
    kW,
    kTxt,
    kHt,
    kRot,
    kTag,
    kPrompt,
    kB,
    kSc,
    kAttribs,
    kN,
    kOff,
    kLock,
    kVc,
    kVh,
    kVt,
    kVd,
    kTw,
    kFl,
    kKeyCount
};

const KeyTable& entityKeys() {
    static const KeyTable keys{"t",   "h",    "l",  "c",   "lt",  "lts",    "lw", "ps", "tr",      "m",
                               "inv", "s",    "e",  "p",   "r",   "sa",     "ea", "v",  "closed",  "elev",
                               "w",   "txt",  "ht", "rot", "tag", "prompt", "b",  "sc", "attribs", "n",
                               "off", "lock", "vc", "vh",  "vt",  "vd",     "tw", "fl"};
    return keys;
}

constexpr std::uint64_t bit(int k) { return std::uint64_t(1) << k; }
template <class... K> constexpr std::uint64_t bits(K... k) { return (bit(k) | ...); }

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

// A property left out of the file keeps the value a new entity has, which is
// the documented default: only those given are set. A plot style by id is
// set with the ids.
bool setPlainProperties(OxDbEntity& e, std::uint64_t seen, const PlainValues& p) {
    auto given = [&](Key key) { return (seen & bit(key)) != 0; };
    const auto plotStyleType = static_cast<OxDb::PlotStyleNameType>(p.plotStyleType);
    return (!given(kC) || e.setColor(p.color) == Ox::eOk) && (!given(kLts) || e.setLinetypeScale(p.lts) == Ox::eOk) &&
           (!given(kLw) || e.setLineWeight(p.lineWeight) == Ox::eOk) &&
           (!given(kPs) || plotStyleType == OxDb::kPlotStyleNameById ||
            e.setPlotStyleName(plotStyleType, OxDbObjectId()) == Ox::eOk) &&
           (!given(kTr) || e.setTransparency(p.transparency) == Ox::eOk) &&
           (!given(kInv) || e.setVisibility(!p.inv) == Ox::eOk);
}

bool isShape(EntityType type) {
    return type == EntityType::Line || type == EntityType::Circle || type == EntityType::Arc ||
           type == EntityType::Point || type == EntityType::Polyline || type == EntityType::Text;
}

OxString wideText(std::string_view utf8) { return OxString(pavo::fromUtf8(utf8)); }

bool setPolyline(OxDbPolyline& p, std::vector<OxDbPolyline::Vertex> vertices, const ShapeValues& s) {
    return p.setVertices(std::move(vertices)) == Ox::eOk && p.setClosed(s.closed) == Ox::eOk &&
           p.setElevation(s.elevation) == Ox::eOk && p.setConstantWidth(s.width) == Ox::eOk;
}

bool setText(OxDbText& t, const OxGePoint3d& position, const OxString& text, double height, double rotation) {
    return t.setPosition(position) == Ox::eOk && t.setTextString(text.kwszPtr()) == Ox::eOk &&
           t.setHeight(height) == Ox::eOk && t.setRotation(rotation) == Ox::eOk;
}

// A shape (not resident); null when a setter refuses.
std::unique_ptr<OxDbEntity> makeShape(EntityType type, const ShapeValues& s,
                                      std::vector<OxDbPolyline::Vertex> vertices) {
    switch (type) {
    case EntityType::Line:
        return std::make_unique<OxDbLine>(s.a, s.b);
    case EntityType::Circle:
        return std::make_unique<OxDbCircle>(s.a, s.r);
    case EntityType::Arc:
        return std::make_unique<OxDbArc>(s.a, s.r, s.sa, s.ea);
    case EntityType::Point:
        return std::make_unique<OxDbPoint>(s.a);
    case EntityType::Polyline: {
        auto p = std::make_unique<OxDbPolyline>();
        return setPolyline(*p, std::move(vertices), s) ? std::move(p) : nullptr;
    }
    case EntityType::Text: {
        auto t = std::make_unique<OxDbText>();
        return setText(*t, s.a, wideText(s.text), s.height, s.rotation) ? std::move(t) : nullptr;
    }
    default:
        return nullptr;
    }
}

} // namespace

// ------------------------------------------------------------ reading side

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
                return c.fail(JsonIn::where(v), "unknown entity type \"" + std::string(name) +
                                                    "\" (line, circle, arc, polyline, point, text, attdef, "
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

// ------------------------------------------------------------ building side

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
        std::optional<JsonIn::PathScope> entities;
        if (b.hasEntities) entities.emplace(m_ctx, "entities");
        OxDbObjectId id;
        if (!m_ctx.addRecord(*m_blockTable->get(), b.record.release(), cell, b.name, b.nameAt, "block", &id))
            return false;
        if (!b.hasEntities) return true;
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
