// The property resets of SETBYLAYER: single entities, block references with
// the contents of their definitions, and the selected set with its counts.
#include <algorithm>
#include <memory>
#include <vector>

#include "OxDbDatabase.h"
#include "OxDbEntity.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "commands/setbylayer/PavoSetByLayerCmdProcess.h"
#include "commands/setbylayer/SetByLayerMode.h"
#include "oxed.h"
#include "oxmd.h"

using namespace vxlayer::setbylayer;

namespace {

// The definitions being walked into, outermost first: a drawing whose block
// contains a reference to itself must not send the walk round for ever.
std::vector<OxDbObjectId>& definitionsBeingVisited() {
    static std::vector<OxDbObjectId> path;
    return path;
}

class VisitingDefinition {
public:
    explicit VisitingDefinition(const OxDbObjectId& id) { definitionsBeingVisited().push_back(id); }
    ~VisitingDefinition() { definitionsBeingVisited().pop_back(); }
    VisitingDefinition(const VisitingDefinition&) = delete;
    VisitingDefinition& operator=(const VisitingDefinition&) = delete;
};

bool isBeingVisited(const OxDbObjectId& id) {
    const auto& path = definitionsBeingVisited();
    return std::find(path.begin(), path.end(), id) != path.end();
}

} // namespace

bool PavoSetByLayerCmdProcess::ChangeEntityProps(OxDbEntity* entity) {
    if (!entity) return false;
    const std::uint16_t mode = m_iSetByLayerMode;
    const bool byBlockToo = (mode & kByBlockToByLayer) != 0;
    bool changed = false;
    // A value is reset unless it is ByLayer already, or ByBlock while ByBlock
    // values are kept; the entity is opened for write on the first reset.
    const auto mayReset = [&](bool byLayer, bool byBlock) {
        if (byLayer || (byBlock && !byBlockToo)) return false;
        return entity->isWriteEnabled() || entity->upgradeOpen() == Ox::eOk;
    };
    OxDbDatabase* db = entity->database();

    if (mode & kColor) {
        const OxCmColor color = entity->color();
        if (mayReset(color.isByLayer(), color.isByBlock())) {
            OxCmColor byLayer;
            byLayer.setColorMethod(OxCmEntityColor::kByLayer);
            entity->setColor(byLayer, true);
            changed = true;
        }
    }
    if ((mode & kLinetype) && db) {
        const OxDbObjectId linetype = entity->linetypeId();
        if (mayReset(linetype == db->byLayerLinetype(), linetype == db->byBlockLinetype())) {
            entity->setLinetype(db->byLayerLinetype(), true);
            changed = true;
        }
    }
    if ((mode & kPlotStyle) && !m_bColorPStyleMode) {
        OxDbObjectId styleId;
        const OxDb::PlotStyleNameType type = entity->getPlotStyleNameId(styleId);
        if (mayReset(type == OxDb::kPlotStyleNameByLayer, type == OxDb::kPlotStyleNameByBlock)) {
            entity->setPlotStyleName(OxDb::kPlotStyleNameByLayer, OxDbObjectId(), true);
            changed = true;
        }
    }
    if (mode & kLineweight) {
        const OxDb::LineWeight weight = entity->lineWeight();
        if (mayReset(weight == OxDb::kLnWtByLayer, weight == OxDb::kLnWtByBlock)) {
            entity->setLineWeight(OxDb::kLnWtByLayer, true);
            changed = true;
        }
    }
    if (mode & kTransparency) {
        const OxCmTransparency transparency = entity->transparency();
        if (mayReset(transparency.isByLayer(), transparency.isByBlock())) {
            OxCmTransparency byLayer;
            byLayer.setMethod(OxCmTransparency::kByLayer);
            entity->setTransparency(byLayer, true);
            changed = true;
        }
    }
    if ((mode & kMaterial) && db) {
        const OxDbObjectId material = entity->materialId();
        if (mayReset(material == db->byLayerMaterial(), material == db->byBlockMaterial())) {
            entity->setMaterial(db->byLayerMaterial(), true);
            changed = true;
        }
    }
    if (changed) entity->downgradeOpen();
    return changed;
}

bool PavoSetByLayerCmdProcess::ChangeBlockRefProps(OxDbBlockReference* reference, OxArray<OxDbObjectId>& regen) {
    if (!reference) return false;
    const OxDbObjectId definitionId = reference->blockTableRecord();
    OxDbBlockTableRecord* definition = nullptr;
    if (oxdbOpenObject(definition, definitionId, OxDb::kForRead) != Ox::eOk) return false;
    OxDbObjectIdArray references;
    definition->getBlockReferenceIds(references, false, false);
    regen.append(references);
    OxDbBlockTableRecordIterator* made = nullptr;
    const bool iterating = definition->newIterator(made, true, true) == Ox::eOk && made;
    definition->close();
    if (!iterating) return false;
    const std::unique_ptr<OxDbBlockTableRecordIterator> it(made);

    bool changed = ChangeEntityProps(reference);
    if (const std::unique_ptr<OxDbObjectIterator> attributes{reference->attributeIterator()}) {
        for (attributes->start(); !attributes->done(); attributes->step()) {
            OxDbEntity* attribute = nullptr;
            if (oxdbOpenObject(attribute, attributes->objectId(), OxDb::kForRead) != Ox::eOk) continue;
            if (ChangeEntityProps(attribute)) changed = true;
            attribute->close();
        }
    }
    if (isBeingVisited(definitionId)) return changed;
    const VisitingDefinition visiting(definitionId);
    for (; !it->done(); it->step()) {
        OxDbEntity* entity = nullptr;
        if (it->getEntity(entity, OxDb::kForRead) != Ox::eOk) continue;
        const bool entityChanged = OxRxClass::isDerivedFrom(entity->isA(), OxDbBlockReference::desc())
                                       ? ChangeBlockRefProps(static_cast<OxDbBlockReference*>(entity), regen)
                                       : ChangeEntityProps(entity);
        if (entityChanged) changed = true;
        entity->close();
    }
    return changed;
}

void PavoSetByLayerCmdProcess::ChangeEntitySetProps(const OxArray<OxDbObjectId>& ids) {
    int modified = 0;
    for (const OxDbObjectId& id : ids) {
        OxDbEntity* entity = nullptr;
        if (oxdbOpenObject(entity, id, OxDb::kForRead) != Ox::eOk) continue;
        const bool isReference = entity->isA() == OxDbBlockReference::desc();
        if (isReference && (m_iSetByLayerMode & kIncludeBlocks)) {
            OxArray<OxDbObjectId> regen;
            if (ChangeBlockRefProps(static_cast<OxDbBlockReference*>(entity), regen)) {
                ++modified;
                // Marks the reference itself changed, so that it is redrawn.
                if (entity->upgradeOpen() == Ox::eOk) {
                    entity->assertWriteEnabled(true, true);
                    entity->downgradeOpen();
                }
            }
            oxdbQueueForRegen(regen.asArrayPtr(), regen.length());
        } else if (!isReference && ChangeEntityProps(entity)) {
            ++modified;
        }
        entity->close();
    }
    const int count = ids.length();
    if (modified == 0 || count == 0)
        oxutPrintf(oxmdOxResourceString(29021, L"All object properties have been set to ByLayer. No objects modified."));
    else if (modified == count)
        oxutPrintf(oxmdOxResourceString(29020, L"%d object(s) modified."), modified);
    else
        oxutPrintf(oxmdOxResourceString(29029, L"%d object(s) modified, %d object(s) did not need to change."),
                   modified, count - modified);
}
