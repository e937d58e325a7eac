// LINE, CIRCLE, TEXT and INSERT: new entities in the current space, on the
// current layer with the current colour, linetype and lineweight.
#include <cmath>
#include <memory>
#include <numbers>
#include <optional>
#include <string>
#include <vector>

#include "EntityProperties.h"
#include "HostCommandSets.h"
#include "OxDbDatabase.h"
#include "OxDbEntity.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "db/BlockNesting.h"
#include "editor/Editor.h"
#include "editor/PointInput.h"
#include "oxed.h"

namespace pavo::app {
namespace {

using editor::PointAnswer;

OxDbDatabase* workingDatabase() { return oxdbHostApplicationServices()->workingDatabase(); }

// Appends `entity` (made with new) to the current space with the current
// properties; it is open for write afterwards and the caller closes it. On
// failure the entity is deleted and the reason printed.
bool appendToCurrentSpace(OxDbEntity* entity, OxDbObjectId& id) {
    std::unique_ptr<OxDbEntity> owned(entity);
    OxDbDatabase* db = workingDatabase();
    OxDbBlockTableRecord* space = nullptr;
    if (!db || oxdbOpenObject(space, db->currentSpaceId(), OxDb::kForWrite) != Ox::eOk) {
        oxutPrintf(L"\nThe current space cannot be changed now.");
        return false;
    }
    entity->setLayer(db->clayer());
    entity->setColor(db->cecolor());
    entity->setLinetype(db->celtype());
    entity->setLineWeight(db->celweight());
    entity->setTransparency(db->cetransparency());
    setPlotStyleByName(*db, *entity, db->cepstyle());
    const Ox::ErrorStatus es = space->appendOxDbEntity(id, entity);
    space->close();
    if (es != Ox::eOk) {
        oxutPrintf(L"\nThe object cannot be added to the drawing (error %d).", static_cast<int>(es));
        return false;
    }
    owned.release();
    return true;
}

bool addEntity(OxDbEntity* entity) {
    OxDbObjectId id;
    if (!appendToCurrentSpace(entity, id)) return false;
    entity->close();
    return true;
}

constexpr double kDegree = std::numbers::pi / 180.0;

// A real with a default for Enter; nullopt when cancelled.
std::optional<double> askReal(const wchar_t* prompt, double fallback, int flags) {
    oxedInitGet(flags, nullptr);
    double value = 0;
    const int status = oxedGetReal(prompt, &value);
    if (status == STATUS_NONE) return fallback;
    if (status != STATUS_NORMAL) return std::nullopt;
    return value;
}

PointAnswer askPoint(const wchar_t* prompt, const editor::KeywordList& keywords = {}) {
    return editor::askPoint(*editor::Editor::current(), prompt, keywords);
}

int line() {
    PointAnswer first = askPoint(L"\nSpecify first point: ");
    if (first.kind != PointAnswer::Point) return first.kind == PointAnswer::Cancel ? STATUS_CANCEL : STATUS_NONE;
    std::vector<OxGePoint3d> points{first.point};
    std::vector<OxDbObjectId> segments;
    const editor::KeywordList undo(L"Undo _Undo");
    for (;;) {
        const PointAnswer next = askPoint(L"\nSpecify next point or [Undo]: ", undo);
        if (next.kind == PointAnswer::None) return STATUS_NORMAL;
        if (next.kind == PointAnswer::Cancel) return STATUS_CANCEL; // the lines drawn stay
        if (next.kind == PointAnswer::Keyword) {
            if (segments.empty()) {
                oxutPrintf(L"\nAll segments already undone.");
                continue;
            }
            OxDbLine* last = nullptr;
            if (oxdbOpenObject(last, segments.back(), OxDb::kForWrite) != Ox::eOk) {
                oxutPrintf(L"\nThe last segment cannot be removed (its layer may be locked).");
                continue;
            }
            last->erase();
            last->close();
            segments.pop_back();
            points.pop_back();
            continue;
        }
        auto* segment = new OxDbLine(points.back(), next.point);
        OxDbObjectId id;
        if (!appendToCurrentSpace(segment, id)) return STATUS_ERROR;
        segment->close();
        segments.push_back(id);
        points.push_back(next.point);
    }
}

int circle() {
    const PointAnswer center = askPoint(L"\nSpecify center point for circle: ");
    if (center.kind != PointAnswer::Point) return center.kind == PointAnswer::Cancel ? STATUS_CANCEL : STATUS_NONE;
    oxedInitGet(OX_INP_NONULL | OX_INP_NOZERO | OX_INP_NONEG, nullptr);
    double radius = 0;
    const int status = oxedGetReal(L"\nSpecify radius of circle: ", &radius);
    if (status != STATUS_NORMAL) return status;
    return addEntity(new OxDbCircle(center.point, radius)) ? STATUS_NORMAL : STATUS_ERROR;
}

int text() {
    const PointAnswer start = askPoint(L"\nSpecify start point of text: ");
    if (start.kind != PointAnswer::Point) return start.kind == PointAnswer::Cancel ? STATUS_CANCEL : STATUS_NONE;
    const std::optional<double> height = askReal(L"\nSpecify height <2.5000>: ", 2.5, OX_INP_NOZERO | OX_INP_NONEG);
    if (!height) return STATUS_CANCEL;
    const std::optional<double> rotation = askReal(L"\nSpecify rotation angle of text <0>: ", 0.0, 0);
    if (!rotation) return STATUS_CANCEL;
    OxString content;
    if (oxedGetString(1, L"\nEnter text: ", content) != STATUS_NORMAL) return STATUS_CANCEL;
    if (content.isEmpty()) return STATUS_NONE; // nothing typed, nothing made
    return addEntity(new OxDbText(start.point, content.kwszPtr(), *height, *rotation * kDegree)) ? STATUS_NORMAL
                                                                                                 : STATUS_ERROR;
}

// ------------------------------------------------------------------ INSERT

// Block definitions a user may insert: not model space, not a layout.
std::vector<OxString> insertableBlocks() {
    std::vector<OxString> names;
    OxDbBlockTable* table = nullptr;
    OxDbDatabase* db = workingDatabase();
    if (!db || db->getBlockTable(table, OxDb::kForRead) != Ox::eOk) return names;
    OxDbSymbolTableIterator* it = nullptr;
    if (table->newIterator(it) == Ox::eOk) {
        for (; !it->done(); it->step()) {
            OxDbBlockTableRecord* block = nullptr;
            if (it->getRecord(block, OxDb::kForRead) != Ox::eOk) continue;
            if (!block->isLayout() && block->objectId() != db->modelSpaceId()) names.push_back(block->name());
            block->close();
        }
        delete it;
    }
    table->close();
    return names;
}

// Asks for a block name until an insertable one is given; null when the
// user gives none.
OxDbObjectId askBlock() {
    for (;;) {
        OxString name;
        if (oxedGetString(1, L"\nEnter block name: ", name) != STATUS_NORMAL) return {};
        name.trim();
        if (name.isEmpty()) return {};
        const std::vector<OxString> blocks = insertableBlocks();
        if (name == L"?") {
            oxutPrintf(blocks.empty() ? L"\nThe drawing has no block definitions." : L"\nBlock definitions:");
            for (const OxString& b : blocks)
                oxutPrintf(L"\n  %ls", b);
            continue;
        }
        bool known = false;
        for (const OxString& b : blocks)
            known = known || b.compareNoCase(name) == 0;
        OxDbBlockTable* table = nullptr;
        OxDbObjectId id;
        if (known && workingDatabase()->getBlockTable(table, OxDb::kForRead) == Ox::eOk) {
            table->getIdAt(name, id);
            table->close();
        }
        if (id.isNull()) {
            oxutPrintf(L"\nBlock \"%ls\" not found.", name);
            continue;
        }
        // A block that inserts the current space, however deep, cannot go in it.
        const std::vector<OxDbObjectId> loop = db::loopIfInserted(workingDatabase()->currentSpaceId(), id);
        if (loop.empty()) return id;
        oxutPrintf(L"\nBlock \"%ls\" cannot be inserted here: a block would insert itself (%ls).", name,
                   db::blockChainText(loop));
    }
}

// Asks for the value of each attribute definition of `blockId`; the
// attributes are placed for the reference. False when cancelled.
bool askAttributes(const OxDbObjectId& blockId, const OxGePoint3d& at, double scale, double rotation,
                   std::vector<std::unique_ptr<OxDbAttribute>>& out) {
    struct Definition {
        OxString tag, prompt, value;
        OxGePoint3d position;
        double height, rotation;
    };
    std::vector<Definition> definitions;
    OxDbBlockTableRecord* block = nullptr;
    if (oxdbOpenObject(block, blockId, OxDb::kForRead) != Ox::eOk) return false;
    const OxGePoint3d origin = block->origin();
    OxDbBlockTableRecordIterator* it = nullptr;
    if (block->newIterator(it) == Ox::eOk) {
        for (; !it->done(); it->step()) {
            OxDbEntity* entity = nullptr;
            if (it->getEntity(entity, OxDb::kForRead) != Ox::eOk) continue;
            if (const auto* def = OxDbAttributeDefinition::cast(entity))
                definitions.push_back(
                    {def->tag(), def->prompt(), def->textString(), def->position(), def->height(), def->rotation()});
            entity->close();
        }
        delete it;
    }
    block->close();
    const double c = std::cos(rotation), s = std::sin(rotation);
    for (const Definition& d : definitions) {
        const OxString question = (d.prompt.isEmpty() ? d.tag : d.prompt) + L" <" + d.value + L">: ";
        OxString value;
        if (oxedGetString(1, (L"\n" + question).kwszPtr(), value) != STATUS_NORMAL) return false;
        if (value.isEmpty()) value = d.value;
        const double dx = (d.position.x - origin.x) * scale, dy = (d.position.y - origin.y) * scale;
        auto attribute = std::make_unique<OxDbAttribute>();
        attribute->setTag(d.tag);
        attribute->setTextString(value);
        attribute->setPosition(OxGePoint3d(at.x + dx * c - dy * s, at.y + dx * s + dy * c, at.z));
        attribute->setHeight(d.height * scale);
        attribute->setRotation(d.rotation + rotation);
        out.push_back(std::move(attribute));
    }
    return true;
}

int insert() {
    const OxDbObjectId blockId = askBlock();
    if (blockId.isNull()) return STATUS_NONE;
    const PointAnswer at = askPoint(L"\nSpecify insertion point: ");
    if (at.kind != PointAnswer::Point) return at.kind == PointAnswer::Cancel ? STATUS_CANCEL : STATUS_NONE;
    const std::optional<double> scale = askReal(L"\nEnter scale factor <1>: ", 1.0, OX_INP_NOZERO);
    if (!scale) return STATUS_CANCEL;
    const std::optional<double> degrees = askReal(L"\nSpecify rotation angle <0>: ", 0.0, 0);
    if (!degrees) return STATUS_CANCEL;
    std::vector<std::unique_ptr<OxDbAttribute>> attributes;
    if (!askAttributes(blockId, at.point, *scale, *degrees * kDegree, attributes)) return STATUS_CANCEL;

    auto* reference = new OxDbBlockReference(at.point, blockId);
    reference->setScaleFactors(OxGeScale3d{*scale, *scale, *scale});
    reference->setRotation(*degrees * kDegree);
    OxDbObjectId id;
    if (!appendToCurrentSpace(reference, id)) return STATUS_ERROR;
    for (auto& attribute : attributes) {
        attribute->copyEntityProperties(*reference);
        OxDbObjectId attributeId;
        OxDbAttribute* added = attribute.get();
        if (reference->appendAttribute(attributeId, added) != Ox::eOk) continue;
        attribute.release();
        added->close();
    }
    reference->close();
    return STATUS_NORMAL;
}

} // namespace

void registerDrawingCommands(const AddHostCommand& add) {
    add(L"LINE", L"draws lines", [] { return line(); });
    add(L"CIRCLE", L"draws a circle", [] { return circle(); });
    add(L"TEXT", L"writes a line of text", [] { return text(); });
    add(L"INSERT", L"inserts a block with its attributes", [] { return insert(); });
}

} // namespace pavo::app
