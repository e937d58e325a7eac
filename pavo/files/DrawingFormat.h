// Names and defaults of the drawing format shared by its reader and writer.
#pragma once

#include <string_view>

#include "OxDb.h"

class OxDbEntity;

namespace pavo::files {

inline constexpr std::string_view kFormatName = "pavo-drawing";
inline constexpr int kFormatVersion = 1;
inline constexpr double kDefaultTextHeight = 2.5;

enum class EntityType {
    Line,
    Circle,
    Arc,
    Polyline,
    Point,
    Text,
    AttributeDefinition,
    BlockReference,
    Viewport,
    Unknown
};

// The value of an entity's "t" key, and back (Unknown for other names).
std::string_view entityTypeName(EntityType type);
EntityType entityTypeFromName(std::string_view name);
// The exact kind of `entity` (an attribute definition is not a text here).
EntityType entityTypeOf(const OxDbEntity& entity);

// A lineweight of the standard set, or by layer, by block, default.
bool isValidLineWeight(long long value);

} // namespace pavo::files
