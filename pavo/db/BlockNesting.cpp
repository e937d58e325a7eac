#include "BlockNesting.h"

#include <cmath>
#include <unordered_map>
#include <unordered_set>

#include "DbInternal.h"
#include "OxDbEntity.h"
#include "OxDbSymbolTable.h"
#include "SymbolTableImpl.h"

namespace pavo::db {

namespace {

const OxDbBlockTableRecord* blockOf(const OxDbCell* cell) {
    return holdsKindOf(cell, OxDbBlockTableRecord::desc()) ? static_cast<OxDbBlockTableRecord*>(cell->object.get())
                                                           : nullptr;
}

const OxDbBlockReference* referenceOf(const OxDbCell* cell) {
    return holdsKindOf(cell, OxDbBlockReference::desc()) ? static_cast<OxDbBlockReference*>(cell->object.get())
                                                         : nullptr;
}

// The block that entity `index` of `block` inserts, or null. Erased
// references count: they may come back.
const OxDbCell* insertedBy(const OxDbBlockTableRecord& block, std::size_t index) {
    const OxDbBlockReference* reference = referenceOf(block.impl()->entities[index]);
    if (!reference) return nullptr;
    const OxDbCell* target = reference->blockTableRecord().cell();
    return blockOf(target) ? target : nullptr;
}

// A block being walked: the next of its entities to look at.
struct Frame {
    const OxDbCell* cell;
    std::size_t next = 0;
};

// Walks the blocks that `from` inserts, depth first, without recursion.
// `visit(child, stack)` is called for each insertion met; it returns true to
// stop the walk. Each block is entered once.
template <class Visit> void walkInsertions(const OxDbCell* from, Visit&& visit) {
    std::unordered_set<const OxDbCell*> entered{from};
    std::vector<Frame> stack{{from}};
    while (!stack.empty()) {
        Frame& top = stack.back();
        const OxDbBlockTableRecord* block = blockOf(top.cell);
        if (!block || top.next >= block->impl()->entities.size()) {
            stack.pop_back();
            continue;
        }
        const OxDbCell* child = insertedBy(*block, top.next++);
        if (!child) continue;
        if (visit(child, stack)) return;
        if (entered.insert(child).second) stack.push_back({child});
    }
}

} // namespace

std::vector<OxDbObjectId> loopIfInserted(const OxDbObjectId& owner, const OxDbObjectId& inserted) {
    OxDbCell* const ownerCell = owner.cell();
    if (!ownerCell || !inserted.cell()) return {};
    if (owner == inserted) return {owner, owner};
    std::vector<OxDbObjectId> loop;
    walkInsertions(inserted.cell(), [&](const OxDbCell* child, const std::vector<Frame>& stack) {
        if (child != ownerCell) return false;
        loop.push_back(owner);
        for (const Frame& f : stack)
            loop.emplace_back(const_cast<OxDbCell*>(f.cell));
        loop.push_back(owner);
        return true;
    });
    return loop;
}

std::vector<OxDbObjectId> findInsertionLoop(const OxDbDatabase& db) {
    const auto* table = OxDbBlockTable::cast(objectOf(db.blockTableId()));
    if (!table) return {};
    enum State : char { kWalking = 1, kDone = 2 };
    std::unordered_map<const OxDbCell*, char> state;
    std::vector<OxDbObjectId> loop;
    for (const OxDbCell* start : table->impl()->records) {
        if (state[start] == kDone) continue;
        // The blocks on the walk's stack are the ones being walked: meeting
        // one of them again closes a loop.
        std::vector<Frame> stack{{start}};
        state[start] = kWalking;
        while (!stack.empty() && loop.empty()) {
            Frame& top = stack.back();
            const OxDbBlockTableRecord* block = blockOf(top.cell);
            if (!block || top.next >= block->impl()->entities.size()) {
                state[top.cell] = kDone;
                stack.pop_back();
                continue;
            }
            const OxDbCell* child = insertedBy(*block, top.next++);
            if (!child) continue;
            char& s = state[child];
            if (s == kDone) continue;
            if (s == kWalking) {
                std::size_t first = 0;
                while (stack[first].cell != child)
                    ++first;
                for (std::size_t i = first; i < stack.size(); ++i)
                    loop.emplace_back(const_cast<OxDbCell*>(stack[i].cell));
                loop.emplace_back(const_cast<OxDbCell*>(child));
                break;
            }
            s = kWalking;
            stack.push_back({child});
        }
        if (!loop.empty()) return loop;
    }
    return loop;
}

std::wstring blockChainText(const std::vector<OxDbObjectId>& chain) {
    std::wstring text;
    for (const OxDbObjectId& id : chain) {
        if (!text.empty()) text += L" -> ";
        text += recordName(id.cell());
    }
    return text;
}

geom::Box placedBox(const geom::Box& content, const OxGePoint3d& base, const OxGeScale3d& scale, double rotation,
                    const OxGePoint3d& at) {
    geom::Box placed;
    if (content.empty) return placed;
    const double c = std::cos(rotation), s = std::sin(rotation);
    for (auto [x, y] : {std::pair{content.minX, content.minY},
                        {content.maxX, content.minY},
                        {content.maxX, content.maxY},
                        {content.minX, content.maxY}}) {
        const double u = (x - base.x) * scale.sx, v = (y - base.y) * scale.sy;
        placed.add(at.x + u * c - v * s, at.y + u * s + v * c);
    }
    return placed;
}

geom::Box blockContentBox(const OxDbObjectId& block) {
    if (!blockOf(block.cell())) return {};
    // Boxes of the blocks measured so far; a block is measured after the
    // blocks it inserts (a block met again while being measured, which the
    // database does not allow, counts as empty).
    struct Measure {
        const OxDbCell* cell;
        std::size_t next = 0;
        geom::Box box;
    };
    std::unordered_map<const OxDbCell*, geom::Box> measured;
    std::unordered_set<const OxDbCell*> measuring{block.cell()};
    std::vector<Measure> stack{{block.cell(), 0, {}}};
    while (true) {
        Measure& top = stack.back();
        const auto& entities = blockOf(top.cell)->impl()->entities;
        if (top.next == entities.size()) {
            if (stack.size() == 1) return top.box;
            measured[top.cell] = top.box;
            measuring.erase(top.cell);
            stack.pop_back();
            continue;
        }
        const OxDbCell* cell = entities[top.next];
        if (cell->erased || !holdsKindOf(cell, OxDbEntity::desc())) {
            ++top.next;
            continue;
        }
        if (const OxDbBlockReference* reference = referenceOf(cell)) {
            const OxDbCell* inner = reference->blockTableRecord().cell();
            const OxDbBlockTableRecord* innerBlock = blockOf(inner);
            if (innerBlock && !measured.count(inner) && !measuring.count(inner)) {
                measuring.insert(inner);
                stack.push_back({inner, 0, {}}); // `top` is not used after this
                continue;
            }
            top.box.add(reference->position().x, reference->position().y);
            if (innerBlock && measured.count(inner))
                top.box.add(placedBox(measured[inner], innerBlock->origin(), reference->scaleFactors(),
                                      reference->rotation(), reference->position()));
        } else {
            OxGePoint3d lo, hi;
            if (static_cast<const OxDbEntity*>(cell->object.get())->getExtents(lo, hi)) {
                top.box.add(lo.x, lo.y);
                top.box.add(hi.x, hi.y);
            }
        }
        ++top.next;
    }
}

} // namespace pavo::db
