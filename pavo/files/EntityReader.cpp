// Entities of a block's "entities": each object is read into one reusable
// record of fields, checked against its kind, then built and appended.
#include <bitset>

#include "OxDbEntity.h"
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
    OxDbStub* stub = nullptr;
    OxDbObjectId layer, linetype, plotStyle, material, block;
    OxCmColor color;
    OxCmTransparency transparency;
    OxDb::LineWeight lineWeight = OxDb::kLnWtByLayer;
    int plotStyleType = OxDb::kPlotStyleNameByLayer;
    double lts = 1, r = 0, sa = 0, ea = 0, elev = 0, w = 0, ht = kDefaultTextHeight, rot = 0, vh = 0, tw = 0;
    OxGePoint3d s, e, p, vt, vd{0, 0, 1};
    OxGePoint2d vc;
    OxGeScale3d sc;
    long long n = 0;
    bool inv = false, closed = false, off = false, lock = false;
    std::size_t attribCount = 0;
};

struct EntityFields : EntityValues {
    const char* keyAt[kKeyCount]; // set for the keys in `seen`
    OxString txt, tag, prompt;
    std::vector<OxDbPolyline::Vertex> vertices;
    OxDbObjectIdArray frozen;
    std::vector<EntityFields> attribs;

    // Empties the fields for the next entity, keeping the buffers of the
    // strings and lists.
    void reset(const char* start) {
        static_cast<EntityValues&>(*this) = EntityValues();
        at = start;
        txt.setEmpty();
        tag.setEmpty();
        prompt.setEmpty();
        vertices.clear();
        frozen.removeAll();
    }
};

} // namespace

struct EntityReader::Impl {
    explicit Impl(ReadContext& ctx) : m_ctx(ctx) {}

    bool read(sj::value& v, OxDbBlockTableRecord& block) {
        EntityFields& f = m_fields;
        f.reset(JsonIn::where(v));
        m_ctx.prefetchAhead(f.at);
        if (!parse(v, f, "an entity")) return false;
        if (!f.seen || !(f.seen & bit(kT))) return m_ctx.fail(f.at, "an entity needs the key \"t\"");
        const KindRule rule = ruleOf(f.type);
        if (!check(f, rule.allowed | kCommon, rule.required | bits(kT, kH), entityTypeName(f.type))) return false;
        return build(f, block);
    }

    bool parse(sj::value& v, EntityFields& f, std::string_view what) {
        return m_ctx.fields(v, entityKeys(), what, f.seen, [&](int key, sj::value& value) {
            f.keyAt[key] = m_ctx.keyLocation();
            return field(key, value, f);
        });
    }

    bool check(EntityFields& f, std::uint64_t allowed, std::uint64_t required, std::string_view kind) {
        const std::uint64_t extra = f.seen & ~allowed;
        if (extra) {
            int key = 0;
            while (!((extra >> key) & 1))
                ++key;
            const std::string_view name = entityKeys().name(key);
            return m_ctx.failAt(m_ctx.pointerWith(name), f.keyAt[key],
                                "the key \"" + std::string(name) + "\" does not belong to " +
                                    (kind == "attribute" ? std::string("an attribute") : "a " + std::string(kind)));
        }
        if (!(required & ~f.seen)) return true; // the message below is made only when needed
        return m_ctx.requireKeys(f.seen, required, entityKeys(), "a " + std::string(kind), f.at);
    }

    bool field(int key, sj::value& v, EntityFields& f) {
        ReadContext& c = m_ctx;
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
            return c.define(v, f.stub);
        case kL:
            return c.reference(v, c.layer, f.layer);
        case kC:
            return c.color(v, f.color);
        case kLt:
            return c.reference(v, c.linetype, f.linetype);
        case kLts:
            return c.number(v, f.lts);
        case kLw:
            return c.lineWeight(v, f.lineWeight);
        case kPs:
            return plotStyle(v, f);
        case kTr:
            return c.transparency(v, f.transparency);
        case kM:
            return c.reference(v, c.material, f.material);
        case kInv:
            return c.boolean(v, f.inv);
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
            return c.text(v, f.txt);
        case kHt:
            return c.number(v, f.ht);
        case kRot:
            return c.number(v, f.rot);
        case kTag:
            return c.text(v, f.tag) && (!f.tag.isEmpty() || c.fail(JsonIn::where(v), "a tag must not be empty"));
        case kPrompt:
            return c.text(v, f.prompt);
        case kB:
            return c.reference(v, c.block, f.block, false);
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
        case kFl:
            return c.items(v, [&](sj::value& item) {
                OxDbObjectId id;
                if (!c.reference(item, c.layer, id, false)) return false;
                f.frozen.append(id);
                return true;
            });
        default:
            return false;
        }
    }

    bool plotStyle(sj::value& v, EntityFields& f) {
        ReadContext& c = m_ctx;
        bool isNull = false;
        if (!v.is_null().get(isNull) && isNull) {
            f.plotStyleType = OxDb::kPlotStyleNameById;
            return true;
        }
        std::string_view s;
        if (!c.utf8(v, s)) return false;
        if (s == "byblock") {
            f.plotStyleType = OxDb::kPlotStyleNameByBlock;
            return true;
        }
        if (s == "default") {
            f.plotStyleType = OxDb::kPlotStyleNameIsDictDefault;
            return true;
        }
        std::uint64_t handle = 0;
        if (!c.handleFromText(s, JsonIn::where(v), handle)) return false;
        f.plotStyleType = OxDb::kPlotStyleNameById;
        return c.resolve(handle, c.plotStyle, JsonIn::where(v), f.plotStyle);
    }

    bool vertices(sj::value& v, EntityFields& f) {
        ReadContext& c = m_ctx;
        return c.items(v, [&](sj::value& item) {
            OxGePoint3d p; // x, y and the bulge
            if (!c.point(item, p)) return false;
            f.vertices.push_back({OxGePoint2d(p.x, p.y), p.z});
            return true;
        });
    }

    bool scale(sj::value& v, EntityFields& f) {
        OxGePoint3d s;
        if (!m_ctx.point(v, s)) return false;
        f.sc.sx = s.x;
        f.sc.sy = s.y;
        f.sc.sz = s.z;
        return true;
    }

    bool attributes(sj::value& v, EntityFields& f) {
        return m_ctx.items(v, [&](sj::value& item) {
            if (f.attribs.size() <= f.attribCount) f.attribs.emplace_back();
            EntityFields& a = f.attribs[f.attribCount++];
            a.reset(JsonIn::where(item));
            if (!parse(item, a, "an attribute")) return false;
            return check(a, kAttributeRule.allowed, kAttributeRule.required, "attribute");
        });
    }

    // A property left out of the file keeps the value a new entity has,
    // which is the documented default: only those given are set.
    bool common(OxDbEntity& e, const EntityFields& f) {
        const ReadContext& c = m_ctx;
        auto given = [&](Key key) { return (f.seen & bit(key)) != 0; };
        const bool ok = e.setLayer(given(kL) ? f.layer : c.impl.layerZero) == Ox::eOk &&
                        (!given(kC) || e.setColor(f.color) == Ox::eOk) &&
                        e.setLinetype(given(kLt) ? f.linetype : c.impl.byLayerLinetype) == Ox::eOk &&
                        (!given(kLts) || e.setLinetypeScale(f.lts) == Ox::eOk) &&
                        (!given(kLw) || e.setLineWeight(f.lineWeight) == Ox::eOk) &&
                        (!given(kPs) || e.setPlotStyleName(static_cast<OxDb::PlotStyleNameType>(f.plotStyleType),
                                                           f.plotStyle) == Ox::eOk) &&
                        (!given(kTr) || e.setTransparency(f.transparency) == Ox::eOk) &&
                        e.setMaterial(given(kM) ? f.material : c.impl.byLayerMaterial) == Ox::eOk &&
                        (!given(kInv) || e.setVisibility(!f.inv) == Ox::eOk);
        return ok || m_ctx.fail(f.at, "the database refused the entity's properties");
    }

    static bool setText(OxDbText& t, const EntityFields& f) {
        return t.setPosition(f.p) == Ox::eOk && t.setTextString(f.txt.kwszPtr()) == Ox::eOk &&
               t.setHeight(f.ht) == Ox::eOk && t.setRotation(f.rot) == Ox::eOk;
    }

    // Makes the entity of `f` (not resident); null when a setter refuses.
    static std::unique_ptr<OxDbEntity> make(const EntityFields& f) {
        switch (f.type) {
        case EntityType::Line:
            return std::make_unique<OxDbLine>(f.s, f.e);
        case EntityType::Circle:
            return std::make_unique<OxDbCircle>(f.p, f.r);
        case EntityType::Arc:
            return std::make_unique<OxDbArc>(f.p, f.r, f.sa, f.ea);
        case EntityType::Point:
            return std::make_unique<OxDbPoint>(f.p);
        case EntityType::Polyline: {
            auto p = std::make_unique<OxDbPolyline>();
            const bool ok = p->setVertices(f.vertices) == Ox::eOk && p->setClosed(f.closed) == Ox::eOk &&
                            p->setElevation(f.elev) == Ox::eOk && p->setConstantWidth(f.w) == Ox::eOk;
            return ok ? std::move(p) : nullptr;
        }
        case EntityType::Text: {
            auto t = std::make_unique<OxDbText>();
            return setText(*t, f) ? std::move(t) : nullptr;
        }
        case EntityType::AttributeDefinition: {
            auto a = std::make_unique<OxDbAttributeDefinition>();
            const bool ok =
                setText(*a, f) && a->setTag(f.tag.kwszPtr()) == Ox::eOk && a->setPrompt(f.prompt.kwszPtr()) == Ox::eOk;
            return ok ? std::move(a) : nullptr;
        }
        case EntityType::BlockReference: {
            auto r = std::make_unique<OxDbBlockReference>(f.p, f.block);
            const bool ok = r->setScaleFactors(f.sc) == Ox::eOk && r->setRotation(f.rot) == Ox::eOk;
            return ok ? std::move(r) : nullptr;
        }
        case EntityType::Viewport: {
            auto v = std::make_unique<OxDbViewport>();
            const bool ok = v->setCenterPoint(f.p) == Ox::eOk && v->setWidth(f.w) == Ox::eOk &&
                            v->setHeight(f.ht) == Ox::eOk && v->setNumber(static_cast<short>(f.n)) == Ox::eOk &&
                            v->setOn(!f.off) == Ox::eOk && v->setLocked(f.lock) == Ox::eOk &&
                            v->setViewCenter(f.vc) == Ox::eOk && v->setViewHeight(f.vh) == Ox::eOk &&
                            v->setViewTarget(f.vt) == Ox::eOk &&
                            v->setViewDirection(OxGeVector3d(f.vd.x, f.vd.y, f.vd.z)) == Ox::eOk &&
                            v->setTwistAngle(f.tw) == Ox::eOk &&
                            (f.frozen.isEmpty() || v->freezeLayersInViewport(f.frozen) == Ox::eOk);
            return ok ? std::move(v) : nullptr;
        }
        case EntityType::Unknown:
            break;
        }
        return nullptr;
    }

    bool build(const EntityFields& f, OxDbBlockTableRecord& block) {
        std::unique_ptr<OxDbEntity> entity = make(f);
        if (!entity) return m_ctx.fail(f.at, "the database refused the " + std::string(entityTypeName(f.type)));
        if (!common(*entity, f)) return false;
        m_ctx.expectStub(f.stub);
        OxDbObjectId id;
        if (!m_ctx.accepted(block.appendOxDbEntity(id, entity.get()), f.at, "the entity")) return false;
        OxDbEntity* appended = entity.release();
        bool ok = true;
        if (f.type == EntityType::BlockReference) ok = appendAttributes(static_cast<OxDbBlockReference&>(*appended), f);
        appended->close();
        return ok;
    }

    bool appendAttributes(OxDbBlockReference& reference, const EntityFields& f) {
        for (std::size_t i = 0; i < f.attribCount; ++i) {
            const EntityFields& a = f.attribs[i];
            auto attribute = std::make_unique<OxDbAttribute>();
            if (!setText(*attribute, a) || attribute->setTag(a.tag.kwszPtr()) != Ox::eOk)
                return m_ctx.fail(a.at, "the database refused the attribute");
            if (!common(*attribute, a)) return false;
            m_ctx.expectStub(a.stub);
            OxDbObjectId id;
            if (!m_ctx.accepted(reference.appendAttribute(id, attribute.get()), a.at, "the attribute")) return false;
            attribute.release()->close();
        }
        return true;
    }

    ReadContext& m_ctx;
    EntityFields m_fields = EntityFields(); // value-initialized: keyAt starts null
};

EntityReader::EntityReader(ReadContext& ctx) : m_impl(std::make_unique<Impl>(ctx)) {}
EntityReader::~EntityReader() = default;
bool EntityReader::read(sj::value& v, OxDbBlockTableRecord& block) { return m_impl->read(v, block); }

} // namespace pavo::files
