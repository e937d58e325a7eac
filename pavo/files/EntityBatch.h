// What the JSON side of the drawing reader hands to the database side for
// the "layers" and "blocks" sections: layers and entities already made (not
// resident, with their plain properties set) and the handles they use, in
// file order. Nothing here touches a database, so a batch may be filled on
// one thread and built on another.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

#include "OxDbEntity.h"
#include "OxDbSymbolTable.h"
#include "OxString.h"
#include "files/DrawingFormat.h"

namespace pavo::files {

// A handle met in a layer or an entity: its own "h" or a reference. The database side
// defines or resolves them in this order, which is the order of the text, so
// that the first problem found is the one a single pass would find.
struct HandleUse {
    std::uint64_t handle;
    const char* at;    // the value in the text
    std::int32_t part; // index in the entity's "attribs" or the layer's "overrides", -1 for none
    std::int32_t item; // index in "fl", -1 for other keys
    std::uint8_t key;  // the key it was found under (in the part when there is one)
};

// The properties of an entity that are not ids.
struct PlainValues {
    OxCmColor color;
    OxCmTransparency transparency;
    double lts = 1;
    OxDb::LineWeight lineWeight = OxDb::kLnWtByLayer;
    std::uint8_t plotStyleType = OxDb::kPlotStyleNameByLayer;
    bool inv = false;
};

// A line, circle, arc, point, polyline or text: the most common kinds, whose
// making is left to the builder, which has less to do than the JSON side.
struct ShapeValues {
    OxGePoint3d a, b; // the start and end of a line; the centre or position of the others
    double r = 0, sa = 0, ea = 0;
    double height = 0, rotation = 0; // of a text
    double elevation = 0, width = 0; // of a polyline
    bool closed = false;
    // UTF-8, in the drawing's text or the parser's buffer, which outlive the batch.
    std::string_view text;
    std::uint32_t firstVertex = 0, vertexCount = 0; // in the batch's vertices
};

struct AttributeRecord {
    std::unique_ptr<OxDbAttribute> attribute;
    const char* at = nullptr;
    std::uint64_t seen = 0; // keys present
};

struct EntityRecord {
    // Null when the record is cut short, or for a shape the builder makes
    // from `shape` and `plain` (both checked already).
    std::unique_ptr<OxDbEntity> entity;
    ShapeValues shape;
    PlainValues plain;
    const char* at = nullptr;
    std::uint64_t seen = 0;
    std::uint32_t index = 0; // in the block's "entities"
    std::uint32_t firstUse = 0, useCount = 0;
    std::uint32_t firstAttribute = 0, attributeCount = 0;
    EntityType type = EntityType::Unknown;
    // False when the JSON side stopped at a problem inside this entity: only
    // the handles read before it are checked, and nothing is built.
    bool complete = true;
};

// The keys of a layer that hold handles, and the keys of an override: their
// indexes in the reader's key tables, as found in HandleUse::key.
enum LayerKey { kLayerH = 0, kLayerLinetype = 9, kLayerPlotStyle = 11, kLayerMaterial = 13 };
enum OverrideKey {
    kOverrideViewport = 0,
    kOverrideColor,
    kOverrideLinetype,
    kOverrideLineWeight,
    kOverrideTransparency,
    kOverridePlotStyle
};

// A layer of "layers" (without its ids).
struct LayerRecord {
    std::unique_ptr<OxDbLayerTableRecord> record;
    std::uint32_t index = 0; // in "layers"
    const char* at = nullptr;
    OxString name;
    const char* nameAt = nullptr;
    std::uint64_t seen = 0;
    std::uint32_t firstUse = 0, useCount = 0;
    std::uint32_t firstOverride = 0, overrideCount = 0;
    bool locked = false;
    bool complete = true; // as for an entity
};

// A per-viewport override of a layer, applied once the viewport's id is
// known (its values were accepted already).
struct OverrideRecord {
    std::uint64_t seen = 0;
    OxCmColor color;
    OxDb::LineWeight lineWeight = OxDb::kLnWtByLayer;
    OxCmTransparency transparency;
};

// A block of the "blocks" list, up to its "entities".
struct BlockRecord {
    std::unique_ptr<OxDbBlockTableRecord> record;
    std::uint32_t index = 0; // in "blocks"
    std::uint64_t handle = 0;
    const char* handleAt = nullptr; // null until "h" was read
    OxString name;
    const char* nameAt = nullptr;
    const char* at = nullptr;
    bool hasEntities = false; // its problems are reported under ".../entities"
};

struct EntityBatch {
    // In this order: the start of "layers" (its position), layers, the end
    // of "layers", the start of "blocks", a block, entities.
    const char* layersStart = nullptr;
    std::vector<LayerRecord> layers;
    std::vector<OverrideRecord> overrides;
    bool layersEnd = false;
    const char* blocksStart = nullptr;
    // A block that starts here; the entities are its own. Without one they
    // continue the block of the previous batch.
    std::unique_ptr<BlockRecord> block;
    bool blockComplete = false; // false: as `complete` of an entity
    std::vector<EntityRecord> entities;
    std::vector<HandleUse> uses;
    std::vector<AttributeRecord> attributes;
    std::vector<OxDbPolyline::Vertex> vertices;

    std::size_t records() const { return layers.size() + entities.size(); }
    bool empty() const {
        return !layersStart && layers.empty() && !layersEnd && !blocksStart && !block && entities.empty();
    }
    void clear() {
        layersStart = nullptr;
        layers.clear();
        overrides.clear();
        layersEnd = false;
        blocksStart = nullptr;
        block.reset();
        blockComplete = false;
        entities.clear();
        uses.clear();
        attributes.clear();
        vertices.clear();
    }
};

} // namespace pavo::files
