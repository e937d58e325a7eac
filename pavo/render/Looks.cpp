#include "render/Looks.h"

#include <cmath>

#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbSymbolTable.h"
#include "PavoPlotStyles.h"
#include "base/CaseFold.h"
#include "base/ColorNames.h"

namespace pavo::render {
namespace {

const PavoPlotStyle* styleNamed(const PavoPlotStyleTable& table, std::wstring_view name) {
    for (int i = 0; i < table.count(); ++i)
        if (equalNoCase(table.getPlotStyleAt(i)->getName(), name)) return table.getPlotStyleAt(i);
    return nullptr;
}

// The colour index a colour-dependent style is named after: "1" to "255"
// or a standard colour name; 0 for another name.
int styleColourIndex(std::wstring_view name) {
    if (const auto index = standardColorIndex(name)) return *index;
    int index = 0;
    for (const wchar_t ch : name) {
        if (ch < L'0' || ch > L'9' || index > 255) return 0;
        index = index * 10 + (ch - L'0');
    }
    return index <= 255 ? index : 0;
}

// Colour 7 is "white" on a dark screen and black on paper.
Rgba paperColour(const OxCmColor& color) {
    if (color.isByACI() && color.colorIndex() == 7) return {0, 0, 0, 255};
    return {color.red(), color.green(), color.blue(), 255};
}

// Screening thins the ink towards the paper's white.
std::uint8_t screened(std::uint8_t channel, int percent) {
    return static_cast<std::uint8_t>(std::lround(255 - (255 - channel) * percent / 100.0));
}

double lineweightMm(OxDb::LineWeight weight, double defaultMm) {
    return weight >= 0 ? static_cast<int>(weight) / 100.0 : defaultMm;
}

} // namespace

Looks::Looks(const PictureRequest& request) : m_request(request) {
    m_ltscale = request.database ? request.database->ltscale() : 1;
    if (!request.plot || !request.plotStyles) return;
    const PavoPlotStyleTable& table = *request.plotStyles;
    m_normalStyle = styleNamed(table, L"Normal");
    for (int i = 0; i < table.count(); ++i) {
        const PavoPlotStyle* style = table.getPlotStyleAt(i);
        if (const int index = styleColourIndex(style->getName()); index > 0 && !m_colourStyles[index])
            m_colourStyles[static_cast<std::size_t>(index)] = style;
    }
}

const PavoPlotStyle* Looks::plotStyleOf(const db::EffectiveProperties& p) {
    if (!m_request.plot || !m_request.plotStyles) return nullptr;
    if (m_request.colourDependentStyles)
        return p.color.isByACI() && p.color.colorIndex() < 256 ? m_colourStyles[p.color.colorIndex()] : nullptr;
    if (p.plotStyle.isNull()) return m_normalStyle;
    const auto found = m_namedStyles.find(p.plotStyle);
    if (found != m_namedStyles.end()) return found->second;
    OxString name;
    OxDbDictionary* names = nullptr;
    if (m_request.database->getPlotStyleNameDictionary(names, OxDb::kForRead) == Ox::eOk) {
        names->nameAt(p.plotStyle, name);
        names->close();
    }
    const PavoPlotStyle* style = name.isEmpty() ? nullptr : styleNamed(*m_request.plotStyles, name.view());
    m_namedStyles.emplace(p.plotStyle, style);
    return style;
}

const std::vector<double>* Looks::patternOf(const OxDbObjectId& linetype) {
    auto found = m_patterns.find(linetype);
    if (found == m_patterns.end()) {
        std::vector<double> dashes;
        OxDbLinetypeTableRecord* record = nullptr;
        if (oxdbOpenObject(record, linetype, OxDb::kForRead) == Ox::eOk) {
            // A pattern of one dash, or one whose lengths add up to nothing,
            // draws as a continuous line.
            if (record->numDashes() >= 2 && record->patternLength() > 0)
                for (int i = 0; i < record->numDashes(); ++i) dashes.push_back(record->dashLengthAt(i));
            record->close();
        }
        found = m_patterns.emplace(linetype, std::move(dashes)).first;
    }
    return found->second.empty() ? nullptr : &found->second;
}

Look Looks::lookOf(const db::EffectiveProperties& p, double objectLinetypeScale) {
    Look look;
    look.stroke.color = paperColour(p.color);
    look.stroke.color.a = p.transparency.isByAlpha() ? p.transparency.alpha() : 255;
    double weight = lineweightMm(p.lineWeight, m_request.defaultLineweightMm);
    OxDbObjectId linetype = p.linetype;
    if (const PavoPlotStyle* style = plotStyleOf(p)) {
        if (!style->m_color.isByLayer()) {
            const std::uint8_t alpha = look.stroke.color.a;
            look.stroke.color = paperColour(style->m_color);
            look.stroke.color.a = alpha;
        }
        if (style->m_lineWeight != OxDb::kLnWtByLayer) weight = lineweightMm(style->m_lineWeight, weight);
        if (!style->m_linetype.isEmpty()) {
            auto known = m_styleLinetypes.find(style);
            if (known == m_styleLinetypes.end()) {
                OxDbObjectId id;
                OxDbLinetypeTable* table = nullptr;
                if (m_request.database->getLinetypeTable(table, OxDb::kForRead) == Ox::eOk) {
                    table->getIdAt(style->m_linetype.kwszPtr(), id);
                    table->close();
                }
                known = m_styleLinetypes.emplace(style, id).first;
            }
            // A style's linetype that the drawing lacks leaves the object's own.
            if (!known->second.isNull()) linetype = known->second;
        }
        Rgba& c = look.stroke.color;
        c = {screened(c.r, style->m_screening), screened(c.g, style->m_screening), screened(c.b, style->m_screening),
             c.a};
    }
    look.stroke.width = weight * m_request.lineweightScale;
    look.pattern = patternOf(linetype);
    look.patternScale = m_ltscale * objectLinetypeScale;
    return look;
}

} // namespace pavo::render
