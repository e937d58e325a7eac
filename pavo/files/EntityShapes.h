// Making the most common kinds of entity from values already checked, on
// whichever side of the reader makes them.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "OxDbEntity.h"
#include "files/EntityBatch.h"

namespace pavo::files {

bool isShape(EntityType type);
OxString wideText(std::string_view utf8);
bool setPolyline(OxDbPolyline& p, std::vector<OxDbPolyline::Vertex> vertices, const ShapeValues& s);
bool setText(OxDbText& t, const OxGePoint3d& position, const OxString& text, double height, double rotation);
// Sets the plain properties given (`seen`, one bit per entity key).
bool setPlainProperties(OxDbEntity& e, std::uint64_t seen, const PlainValues& p);
// A shape (not resident); null when a setter refuses.
std::unique_ptr<OxDbEntity> makeShape(EntityType type, const ShapeValues& s,
                                      std::vector<OxDbPolyline::Vertex> vertices);

} // namespace pavo::files
