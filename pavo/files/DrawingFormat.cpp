#include "files/DrawingFormat.h"

#include <array>

#include "OxDbEntity.h"
#include "db/LineWeights.h"

namespace pavo::files {
namespace {

constexpr std::array<std::string_view, 9> kTypeNames = {"line", "circle", "arc",    "polyline", "point",
                                                        "text", "attdef", "insert", "viewport"};

} // namespace

std::string_view entityTypeName(EntityType type) {
    const auto i = static_cast<std::size_t>(type);
    return i < kTypeNames.size() ? kTypeNames[i] : std::string_view("unknown");
}

EntityType entityTypeFromName(std::string_view name) {
    for (std::size_t i = 0; i < kTypeNames.size(); ++i)
        if (kTypeNames[i] == name) return static_cast<EntityType>(i);
    return EntityType::Unknown;
}

EntityType entityTypeOf(const OxDbEntity& entity) {
    const OxRxClass* cls = entity.isA();
    if (cls == OxDbLine::desc()) return EntityType::Line;
    if (cls == OxDbCircle::desc()) return EntityType::Circle;
    if (cls == OxDbArc::desc()) return EntityType::Arc;
    if (cls == OxDbPolyline::desc()) return EntityType::Polyline;
    if (cls == OxDbPoint::desc()) return EntityType::Point;
    if (cls == OxDbText::desc()) return EntityType::Text;
    if (cls == OxDbAttributeDefinition::desc()) return EntityType::AttributeDefinition;
    if (cls == OxDbBlockReference::desc()) return EntityType::BlockReference;
    if (cls == OxDbViewport::desc()) return EntityType::Viewport;
    return EntityType::Unknown;
}

bool isValidLineWeight(long long value) {
    return db::isEntityLineWeight(value);
}

} // namespace pavo::files
