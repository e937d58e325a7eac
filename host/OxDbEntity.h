// Entities and their common properties.
#pragma once

#include <memory>
#include <vector>

#include "OxCmColor.h"
#include "OxDbObject.h"
#include "OxGe.h"
#include "OxString.h"

class OxDbObjectIterator;

class PAVO_HOST_API OxDbEntity : public OxDbObject {
    OX_RX_DECLARE_MEMBERS(OxDbEntity)
public:
    OxDbEntity();
    ~OxDbEntity() override;

    // The owning block table record.
    OxDbObjectId blockId() const { return ownerId(); }

    OxDbObjectId layerId() const { return m_layer; }
    Ox::ErrorStatus setLayer(const OxDbObjectId& layerId, bool doSubents = true);
    // By name, in the entity's database (or the working database).
    Ox::ErrorStatus setLayer(const wchar_t* layerName, bool doSubents = true);
    // The layer's name ("" when it cannot be read).
    Ox::ErrorStatus layer(OxString& name) const;
    OxString layer() const;

    OxCmColor color() const { return m_color; }
    virtual Ox::ErrorStatus setColor(const OxCmColor& color, bool doSubents = true);
    std::uint16_t colorIndex() const { return m_color.colorIndex(); }
    Ox::ErrorStatus setColorIndex(std::uint16_t index, bool doSubents = true);

    OxDbObjectId linetypeId() const { return m_linetype; }
    virtual Ox::ErrorStatus setLinetype(const OxDbObjectId& id, bool doSubents = true);
    double linetypeScale() const { return m_linetypeScale; }
    Ox::ErrorStatus setLinetypeScale(double scale, bool doSubents = true);

    OxDb::LineWeight lineWeight() const { return m_lineWeight; }
    virtual Ox::ErrorStatus setLineWeight(OxDb::LineWeight weight, bool doSubents = true);

    // The plot style's name type; `id` set for kPlotStyleNameById.
    OxDb::PlotStyleNameType getPlotStyleNameId(OxDbObjectId& id) const;
    virtual Ox::ErrorStatus setPlotStyleName(OxDb::PlotStyleNameType type, const OxDbObjectId& id = OxDbObjectId(),
                                             bool doSubents = true);

    OxCmTransparency transparency() const { return m_transparency; }
    virtual Ox::ErrorStatus setTransparency(const OxCmTransparency& t, bool doSubents = true);

    OxDbObjectId materialId() const { return m_material; }
    virtual Ox::ErrorStatus setMaterial(const OxDbObjectId& id, bool doSubents = true);

    bool visibility() const { return m_visible; }
    Ox::ErrorStatus setVisibility(bool visible, bool doSubents = true);

    // Distance from `p` to the entity in the XY plane (for picking).
    virtual double distanceTo(const OxGePoint3d& p) const = 0;
    // Axis-aligned extents in the XY plane.
    virtual bool getExtents(OxGePoint3d& minPoint, OxGePoint3d& maxPoint) const = 0;

    // Host internals: common properties copied by cloneState.
    void copyEntityProperties(const OxDbEntity& from);

private:
    OxDbObjectId m_layer;
    OxDbObjectId m_linetype;
    OxDbObjectId m_material;
    OxDbObjectId m_plotStyle;
    OxCmColor m_color;
    OxCmTransparency m_transparency;
    OxDb::LineWeight m_lineWeight = OxDb::kLnWtByLayer;
    double m_linetypeScale = 1.0;
    std::uint8_t m_plotStyleType = OxDb::kPlotStyleNameByLayer;
    bool m_visible = true;
};

class PAVO_HOST_API OxDbLine : public OxDbEntity {
    OX_RX_DECLARE_MEMBERS(OxDbLine)
public:
    OxDbLine() = default;
    OxDbLine(const OxGePoint3d& start, const OxGePoint3d& end) : m_start(start), m_end(end) {}
    OxDbObject* cloneState() const override;
    OxGePoint3d startPoint() const { return m_start; }
    OxGePoint3d endPoint() const { return m_end; }
    Ox::ErrorStatus setStartPoint(const OxGePoint3d& p);
    Ox::ErrorStatus setEndPoint(const OxGePoint3d& p);
    double distanceTo(const OxGePoint3d& p) const override;
    bool getExtents(OxGePoint3d& lo, OxGePoint3d& hi) const override;

private:
    OxGePoint3d m_start, m_end;
};

class PAVO_HOST_API OxDbCircle : public OxDbEntity {
    OX_RX_DECLARE_MEMBERS(OxDbCircle)
public:
    OxDbCircle() = default;
    OxDbCircle(const OxGePoint3d& center, double radius) : m_center(center), m_radius(radius) {}
    OxDbObject* cloneState() const override;
    OxGePoint3d center() const { return m_center; }
    double radius() const { return m_radius; }
    Ox::ErrorStatus setCenter(const OxGePoint3d& p);
    Ox::ErrorStatus setRadius(double r);
    double distanceTo(const OxGePoint3d& p) const override;
    bool getExtents(OxGePoint3d& lo, OxGePoint3d& hi) const override;

protected:
    OxGePoint3d m_center;
    double m_radius = 1.0;
};

// Angles in radians, counter-clockwise from start to end.
class PAVO_HOST_API OxDbArc : public OxDbEntity {
    OX_RX_DECLARE_MEMBERS(OxDbArc)
public:
    OxDbArc() = default;
    OxDbArc(const OxGePoint3d& center, double radius, double startAngle, double endAngle)
        : m_center(center), m_radius(radius), m_start(startAngle), m_end(endAngle) {}
    OxDbObject* cloneState() const override;
    OxGePoint3d center() const { return m_center; }
    double radius() const { return m_radius; }
    double startAngle() const { return m_start; }
    double endAngle() const { return m_end; }
    Ox::ErrorStatus setCenter(const OxGePoint3d& p);
    Ox::ErrorStatus setRadius(double r);
    Ox::ErrorStatus setStartAngle(double a);
    Ox::ErrorStatus setEndAngle(double a);
    double distanceTo(const OxGePoint3d& p) const override;
    bool getExtents(OxGePoint3d& lo, OxGePoint3d& hi) const override;

private:
    OxGePoint3d m_center;
    double m_radius = 1.0, m_start = 0.0, m_end = 3.14159265358979323846;
};

// A lightweight polyline: 2D vertices with bulges.
class PAVO_HOST_API OxDbPolyline : public OxDbEntity {
    OX_RX_DECLARE_MEMBERS(OxDbPolyline)
public:
    struct Vertex {
        OxGePoint2d point;
        double bulge = 0.0;
        bool operator==(const Vertex& o) const { return point == o.point && bulge == o.bulge; }
    };
    OxDbObject* cloneState() const override;
    int numVerts() const { return static_cast<int>(m_vertices.size()); }
    const std::vector<Vertex>& vertices() const { return m_vertices; }
    Ox::ErrorStatus addVertexAt(int index, const OxGePoint2d& p, double bulge = 0.0);
    Ox::ErrorStatus setVertices(std::vector<Vertex> vertices);
    bool isClosed() const { return m_closed; }
    Ox::ErrorStatus setClosed(bool closed);
    double elevation() const { return m_elevation; }
    Ox::ErrorStatus setElevation(double z);
    double constantWidth() const { return m_width; }
    Ox::ErrorStatus setConstantWidth(double w);
    double distanceTo(const OxGePoint3d& p) const override;
    bool getExtents(OxGePoint3d& lo, OxGePoint3d& hi) const override;

private:
    std::vector<Vertex> m_vertices;
    bool m_closed = false;
    double m_elevation = 0.0, m_width = 0.0;
};

class PAVO_HOST_API OxDbPoint : public OxDbEntity {
    OX_RX_DECLARE_MEMBERS(OxDbPoint)
public:
    OxDbPoint() = default;
    explicit OxDbPoint(const OxGePoint3d& p) : m_position(p) {}
    OxDbObject* cloneState() const override;
    OxGePoint3d position() const { return m_position; }
    Ox::ErrorStatus setPosition(const OxGePoint3d& p);
    double distanceTo(const OxGePoint3d& p) const override;
    bool getExtents(OxGePoint3d& lo, OxGePoint3d& hi) const override;

private:
    OxGePoint3d m_position;
};

class PAVO_HOST_API OxDbText : public OxDbEntity {
    OX_RX_DECLARE_MEMBERS(OxDbText)
public:
    OxDbText() = default;
    OxDbText(const OxGePoint3d& position, const wchar_t* text, double height = 2.5, double rotation = 0.0)
        : m_position(position), m_text(text), m_height(height), m_rotation(rotation) {}
    OxDbObject* cloneState() const override;
    OxGePoint3d position() const { return m_position; }
    Ox::ErrorStatus setPosition(const OxGePoint3d& p);
    const wchar_t* textString() const { return m_text.kwszPtr(); }
    Ox::ErrorStatus setTextString(const wchar_t* text);
    double height() const { return m_height; }
    Ox::ErrorStatus setHeight(double h);
    double rotation() const { return m_rotation; }
    Ox::ErrorStatus setRotation(double r);
    double distanceTo(const OxGePoint3d& p) const override;
    bool getExtents(OxGePoint3d& lo, OxGePoint3d& hi) const override;

protected:
    void copyTextProperties(const OxDbText& from);

private:
    OxGePoint3d m_position;
    OxString m_text;
    double m_height = 2.5, m_rotation = 0.0;
};

// An attribute definition inside a block definition.
class PAVO_HOST_API OxDbAttributeDefinition : public OxDbText {
    OX_RX_DECLARE_MEMBERS(OxDbAttributeDefinition)
public:
    OxDbObject* cloneState() const override;
    const wchar_t* tag() const { return m_tag.kwszPtr(); }
    Ox::ErrorStatus setTag(const wchar_t* tag);
    const wchar_t* prompt() const { return m_prompt.kwszPtr(); }
    Ox::ErrorStatus setPrompt(const wchar_t* prompt);

private:
    OxString m_tag, m_prompt;
};

// An attribute of a block reference; owned by the reference.
class PAVO_HOST_API OxDbAttribute : public OxDbText {
    OX_RX_DECLARE_MEMBERS(OxDbAttribute)
public:
    OxDbObject* cloneState() const override;
    const wchar_t* tag() const { return m_tag.kwszPtr(); }
    Ox::ErrorStatus setTag(const wchar_t* tag);

private:
    OxString m_tag;
};

// Iterates owned sub-objects (a block reference's attributes). Delete it.
class PAVO_HOST_API OxDbObjectIterator {
public:
    explicit OxDbObjectIterator(std::vector<OxDbObjectId> ids) : m_ids(std::move(ids)) {}
    virtual ~OxDbObjectIterator() = default;
    void start() { m_pos = 0; }
    bool done() const { return m_pos >= m_ids.size(); }
    void step() { ++m_pos; }
    OxDbObjectId objectId() const { return done() ? OxDbObjectId() : m_ids[m_pos]; }

private:
    std::vector<OxDbObjectId> m_ids;
    size_t m_pos = 0;
};

class PAVO_HOST_API OxDbBlockReference : public OxDbEntity {
    OX_RX_DECLARE_MEMBERS(OxDbBlockReference)
public:
    OxDbBlockReference() = default;
    OxDbBlockReference(const OxGePoint3d& position, const OxDbObjectId& blockId)
        : m_position(position), m_block(blockId) {}
    ~OxDbBlockReference() override;
    OxDbObject* cloneState() const override;

    OxDbObjectId blockTableRecord() const { return m_block; }
    Ox::ErrorStatus setBlockTableRecord(const OxDbObjectId& id);
    OxGePoint3d position() const { return m_position; }
    Ox::ErrorStatus setPosition(const OxGePoint3d& p);
    OxGeScale3d scaleFactors() const { return m_scale; }
    Ox::ErrorStatus setScaleFactors(const OxGeScale3d& s);
    double rotation() const { return m_rotation; }
    Ox::ErrorStatus setRotation(double r);

    // Adds a non-resident attribute (resident and open for write after).
    Ox::ErrorStatus appendAttribute(OxDbObjectId& id, OxDbAttribute* attribute);
    OxDbObjectIterator* attributeIterator() const;
    const std::vector<OxDbObjectId>& attributeIds() const { return m_attributes; }

    double distanceTo(const OxGePoint3d& p) const override;
    bool getExtents(OxGePoint3d& lo, OxGePoint3d& hi) const override;

private:
    OxGePoint3d m_position;
    OxDbObjectId m_block;
    OxGeScale3d m_scale;
    double m_rotation = 0.0;
    std::vector<OxDbObjectId> m_attributes;
};

// A paper-space viewport. Number 1 is the layout's own paper-space view.
class PAVO_HOST_API OxDbViewport : public OxDbEntity {
    OX_RX_DECLARE_MEMBERS(OxDbViewport)
public:
    OxDbViewport();
    ~OxDbViewport() override;
    OxDbObject* cloneState() const override;

    OxGePoint3d centerPoint() const { return m_center; }
    Ox::ErrorStatus setCenterPoint(const OxGePoint3d& p);
    double width() const { return m_width; }
    double height() const { return m_height; }
    Ox::ErrorStatus setWidth(double w);
    Ox::ErrorStatus setHeight(double h);
    short number() const { return m_number; }
    Ox::ErrorStatus setNumber(short n); // host internals
    bool isOn() const { return m_on; }
    Ox::ErrorStatus setOn(bool on);
    bool isLocked() const { return m_displayLocked; }
    Ox::ErrorStatus setLocked(bool locked);

    // The view into model space.
    OxGePoint2d viewCenter() const { return m_viewCenter; }
    Ox::ErrorStatus setViewCenter(const OxGePoint2d& p);
    double viewHeight() const { return m_viewHeight; }
    Ox::ErrorStatus setViewHeight(double h);
    OxGePoint3d viewTarget() const { return m_viewTarget; }
    Ox::ErrorStatus setViewTarget(const OxGePoint3d& p);
    OxGeVector3d viewDirection() const { return m_viewDirection; }
    Ox::ErrorStatus setViewDirection(const OxGeVector3d& v);
    double twistAngle() const { return m_twist; }
    Ox::ErrorStatus setTwistAngle(double a);
    double customScale() const { return m_viewHeight != 0 ? m_height / m_viewHeight : 1.0; }

    // Layers frozen in this viewport, in the order they were frozen. A
    // layer already frozen is not added again; null ids are ignored.
    Ox::ErrorStatus getFrozenLayerList(OxDbObjectIdArray& ids) const;
    Ox::ErrorStatus freezeLayersInViewport(const OxDbObjectIdArray& ids);
    Ox::ErrorStatus thawLayersInViewport(const OxDbObjectIdArray& ids);
    Ox::ErrorStatus thawAllLayersInViewport();
    bool isLayerFrozenInViewport(const OxDbObjectId& layerId) const;
    int numFrozenLayers() const;

    double distanceTo(const OxGePoint3d& p) const override;
    bool getExtents(OxGePoint3d& lo, OxGePoint3d& hi) const override;

private:
    OxGePoint3d m_center;
    double m_width = 100, m_height = 100;
    short m_number = 0;
    bool m_on = true, m_displayLocked = false;
    OxGePoint2d m_viewCenter;
    double m_viewHeight = 100;
    OxGePoint3d m_viewTarget;
    OxGeVector3d m_viewDirection{0, 0, 1};
    double m_twist = 0;
    struct FrozenLayers; // host internals: O(1) membership and removal
    std::unique_ptr<FrozenLayers> m_frozen;
};
