#include <cmath>

#include "BlockNesting.h"
#include "DbInternal.h"
#include "Geometry.h"
#include "OxDbEntity.h"
#include "OxDbSymbolTable.h"
#include "RxDefine.h"
#include "SymbolTableImpl.h"

OX_RX_DEFINE_MEMBERS(OxDbBlockReference, OxDbEntity)

using namespace pavo::db;
namespace geom = pavo::db::geom;

OxDbBlockReference::~OxDbBlockReference() = default;

OxDbObject* OxDbBlockReference::cloneState() const {
    auto* copy = new OxDbBlockReference(m_position, m_block);
    copy->copyEntityProperties(*this);
    copy->m_scale = m_scale;
    copy->m_rotation = m_rotation;
    copy->m_attributes = m_attributes;
    return copy;
}

Ox::ErrorStatus OxDbBlockReference::setBlockTableRecord(const OxDbObjectId& id) {
    if (id.isNull()) return Ox::eNullObjectId;
    if (const OxDbObject* target = objectOf(id); target && !OxDbBlockTableRecord::cast(target))
        return Ox::eNotThatKindOfClass;
    const OxDbCell* self = cell();
    if (self && !storeOf(self).loading && !loopIfInserted(self->owner, id).empty()) return Ox::eSelfReference;
    const Ox::ErrorStatus es = assignIf(writeCheck(), m_block, id);
    if (es == Ox::eOk && self) storeOf(self).referencesChanged();
    return es;
}

Ox::ErrorStatus OxDbBlockReference::setPosition(const OxGePoint3d& p) { return assignIf(writeCheck(), m_position, p); }

Ox::ErrorStatus OxDbBlockReference::setScaleFactors(const OxGeScale3d& s) {
    if (s.sx == 0 || s.sy == 0 || s.sz == 0) return Ox::eInvalidInput;
    return assignIf(writeCheck(), m_scale, s);
}

Ox::ErrorStatus OxDbBlockReference::setRotation(double r) { return assignIf(writeCheck(), m_rotation, r); }

Ox::ErrorStatus OxDbBlockReference::appendAttribute(OxDbObjectId& id, OxDbAttribute* attribute) {
    Ox::ErrorStatus es = appendOwnedEntity(*this, attribute, id);
    if (es == Ox::eOk) m_attributes.push_back(id);
    return es;
}

OxDbObjectIterator* OxDbBlockReference::attributeIterator() const {
    std::vector<OxDbObjectId> live;
    for (const OxDbObjectId& id : m_attributes)
        if (!id.isErased()) live.push_back(id);
    return new OxDbObjectIterator(std::move(live));
}

namespace {

// The block's content in the reference's placement (without attributes).
geom::Box placedBlockBox(const OxDbBlockReference& reference) {
    const auto* block = OxDbBlockTableRecord::cast(objectOf(reference.blockTableRecord()));
    if (!block) return {};
    return placedBox(blockContentBox(reference.blockTableRecord()), block->origin(), reference.scaleFactors(),
                     reference.rotation(), reference.position());
}

} // namespace

double OxDbBlockReference::distanceTo(const OxGePoint3d& p) const {
    const geom::Box box = placedBlockBox(*this);
    if (box.empty) return std::hypot(p.x - m_position.x, p.y - m_position.y);
    return box.distanceTo(p.x, p.y);
}

bool OxDbBlockReference::getExtents(OxGePoint3d& lo, OxGePoint3d& hi) const {
    geom::Box box = placedBlockBox(*this);
    box.add(m_position.x, m_position.y);
    return box.store(lo, hi);
}
