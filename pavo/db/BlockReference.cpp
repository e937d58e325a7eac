#include <algorithm>
#include <cmath>

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
    const Ox::ErrorStatus es = assignIf(writeCheck(), m_block, id);
    if (es == Ox::eOk && cell()) storeOf(cell()).referencesChanged();
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
    geom::Box content;
    if (const auto* block = OxDbBlockTableRecord::cast(objectOf(reference.blockTableRecord()))) {
        for (const OxDbCell* cell : block->impl()->entities) {
            const auto* entity = OxDbEntity::cast(cell->object.get());
            OxGePoint3d lo, hi;
            if (entity && !cell->erased && entity->getExtents(lo, hi)) {
                content.add(lo.x, lo.y);
                content.add(hi.x, hi.y);
            }
        }
        if (content.empty) return content;
        const OxGePoint3d base = block->origin();
        const OxGeScale3d s = reference.scaleFactors();
        const double c = std::cos(reference.rotation()), sn = std::sin(reference.rotation());
        const OxGePoint3d at = reference.position();
        geom::Box placed;
        for (auto [x, y] : {std::pair{content.minX, content.minY},
                            {content.maxX, content.minY},
                            {content.maxX, content.maxY},
                            {content.minX, content.maxY}}) {
            const double u = (x - base.x) * s.sx, v = (y - base.y) * s.sy;
            placed.add(at.x + u * c - v * sn, at.y + u * sn + v * c);
        }
        return placed;
    }
    return content;
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
