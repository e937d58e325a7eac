// What a user can pick: the entities of the working database's current
// space, less those on off or frozen layers, invisible ones, those frozen in
// the viewport the user works in, and the layout's own sheet viewport.
// Inside a layout viewport only what that viewport shows of model space can
// be picked.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "PavoEntSelector.h"

#include "OxDbObjectId.h"
#include "OxGe.h"
#include "resbuf.h"

class OxDbDatabase;
class OxDbEntity;

namespace pavo::editor::selection {

// The type name of an entity in selection filters ("LINE", "INSERT", ...).
std::wstring entityTypeName(const OxDbEntity& entity);

// The RTDXF0 (5020) entries of a filter list: an entity passes when its type
// name matches one of them (each may be a wildcard pattern). Other codes are
// ignored; no entry lets everything pass.
class TypeFilter {
public:
    TypeFilter() = default;
    explicit TypeFilter(const resbuf* list);
    bool accepts(const OxDbEntity& entity) const;

private:
    std::vector<std::wstring> m_patterns;
};

// The part of model space a layout viewport shows: a rectangle of the
// viewport's shape around its view centre, turned by its twist angle.
struct ViewWindow {
    OxGePoint2d center;
    double halfWidth = 0, halfHeight = 0, twist = 0;
    // Model units per sheet unit.
    double modelPerSheet = 1;

    bool contains(const OxGePoint3d& p) const;
    // Whether an axis-aligned box (an entity's extents) reaches into it.
    bool touches(const OxGePoint3d& lo, const OxGePoint3d& hi) const;
};

// The window of the viewport `id`; nothing when it is not a viewport.
std::optional<ViewWindow> viewWindowOf(const OxDbObjectId& viewportId);

class PickableSpace {
public:
    using Exclusions = int; // PavoEntSelectorRequest::Exclude bits
    static constexpr Exclusions kUsual = PavoEntSelectorRequest::kUsualExclusions;

    // The working database's current space; empty without a database.
    PickableSpace();
    explicit PickableSpace(OxDbDatabase* db, Exclusions exclusions = kUsual, bool lockedLayers = true);

    bool isPickable(const OxDbObjectId& id, const TypeFilter& filter = {}) const;
    // Pickable entities in drawing order (the last one is drawn on top).
    std::vector<OxDbObjectId> entities(const TypeFilter& filter = {}) const;
    // The topmost pickable entity within `pickbox` of `point`. `pickbox` is
    // in sheet units inside a viewport (so a pick reaches as far on the
    // sheet whatever the viewport's scale), else in drawing units.
    std::optional<OxDbObjectId> at(const OxGePoint3d& point, double pickbox, const TypeFilter& filter = {}) const;
    // Every pickable entity within `pickbox` of `point`, topmost first.
    std::vector<OxDbObjectId> allAt(const OxGePoint3d& point, double pickbox, const TypeFilter& filter = {}) const;
    // Entities whose extents lie inside the window (`crossing`: or cross it).
    std::vector<OxDbObjectId> inWindow(const OxGePoint3d& corner1, const OxGePoint3d& corner2, bool crossing,
                                       const TypeFilter& filter = {}) const;

private:
    // Calls `visit` for each pickable entity (open for read during the call).
    void forEach(const TypeFilter& filter, const std::function<void(const OxDbEntity&)>& visit) const;
    bool entityPickable(const OxDbEntity& entity) const;
    bool layerPickable(const OxDbObjectId& layerId) const;
    bool frozenInViewport(const OxDbObjectId& layerId) const;

    OxDbDatabase* m_db = nullptr;
    OxDbObjectId m_space;
    Exclusions m_exclusions = kUsual;
    bool m_lockedLayers = true;
    OxDbObjectId m_viewport;            // the model viewport the user works in
    std::optional<ViewWindow> m_window; // what it shows
    mutable std::unordered_map<OxDbObjectId, bool> m_layerCache;
};

// The viewport the user works in (a layout's model-space viewport); null in
// model space and in a layout's paper space.
OxDbObjectId currentModelViewport(OxDbDatabase& db);

} // namespace pavo::editor::selection
