// How an object is drawn: its stroke and linetype, from what its properties
// came to (db/EffectiveProperties.h), the plot style table of a plot and
// the picture's settings.
#pragma once

#include <array>
#include <unordered_map>
#include <vector>

#include "db/EffectiveProperties.h"
#include "render/Canvas.h"
#include "render/PictureRequest.h"

class PavoPlotStyle;

namespace pavo::render {

struct Look {
    Stroke stroke;
    // Dash lengths in the linetype's units (positive a dash, negative a gap,
    // zero a dot); null for a continuous line.
    const std::vector<double>* pattern = nullptr;
    // LTSCALE times the object's own linetype scale.
    double patternScale = 1;
};

class Looks {
public:
    explicit Looks(const PictureRequest& request);
    Look lookOf(const db::EffectiveProperties& properties, double objectLinetypeScale);

private:
    const PavoPlotStyle* plotStyleOf(const db::EffectiveProperties& properties);
    const std::vector<double>* patternOf(const OxDbObjectId& linetype);

    const PictureRequest& m_request;
    double m_ltscale = 1;
    std::unordered_map<OxDbObjectId, std::vector<double>> m_patterns;
    std::unordered_map<OxDbObjectId, const PavoPlotStyle*> m_namedStyles;
    std::unordered_map<const PavoPlotStyle*, OxDbObjectId> m_styleLinetypes;
    std::array<const PavoPlotStyle*, 256> m_colourStyles{};
    const PavoPlotStyle* m_normalStyle = nullptr;
};

} // namespace pavo::render
