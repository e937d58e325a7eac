#include "files/EntityShapes.h"

#include "base/Utf8.h"
#include "files/EntityKeys.h"

namespace pavo::files {

using namespace entitykeys;

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

} // namespace pavo::files
