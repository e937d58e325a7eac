// Texts, attribute definitions and attributes.
#include <cmath>

#include "DbInternal.h"
#include "Geometry.h"
#include "OxDbEntity.h"
#include "RxDefine.h"

OX_RX_DEFINE_MEMBERS(OxDbText, OxDbEntity)
OX_RX_DEFINE_MEMBERS(OxDbAttributeDefinition, OxDbText)
OX_RX_DEFINE_MEMBERS(OxDbAttribute, OxDbText)

using namespace pavo::db;
namespace geom = pavo::db::geom;

namespace {

// Characters are taken as 0.6 of the height wide: enough for picking.
constexpr double kCharacterWidth = 0.6;

geom::Box textBox(const OxGePoint3d& at, std::size_t characters, double height, double rotation) {
    const double width = static_cast<double>(characters) * height * kCharacterWidth;
    const double c = std::cos(rotation), s = std::sin(rotation);
    geom::Box box;
    for (auto [u, v] : {std::pair{0.0, 0.0}, {width, 0.0}, {width, height}, {0.0, height}})
        box.add(at.x + u * c - v * s, at.y + u * s + v * c);
    return box;
}

} // namespace

OxDbObject* OxDbText::cloneState() const {
    auto* copy = new OxDbText();
    copy->copyTextProperties(*this);
    return copy;
}

void OxDbText::copyTextProperties(const OxDbText& from) {
    copyEntityProperties(from);
    m_position = from.m_position;
    m_text = from.m_text;
    m_height = from.m_height;
    m_rotation = from.m_rotation;
}

Ox::ErrorStatus OxDbText::setPosition(const OxGePoint3d& p) { return assignIf(writeCheck(), m_position, p); }

Ox::ErrorStatus OxDbText::setTextString(const wchar_t* text) {
    if (!text) return Ox::eInvalidInput;
    return assignIf(writeCheck(), m_text, OxString(text));
}

Ox::ErrorStatus OxDbText::setHeight(double h) {
    if (!(h > 0)) return Ox::eInvalidInput;
    return assignIf(writeCheck(), m_height, h);
}

Ox::ErrorStatus OxDbText::setRotation(double r) { return assignIf(writeCheck(), m_rotation, r); }

double OxDbText::distanceTo(const OxGePoint3d& p) const {
    return textBox(m_position, m_text.str().size(), m_height, m_rotation).distanceTo(p.x, p.y);
}

bool OxDbText::getExtents(OxGePoint3d& lo, OxGePoint3d& hi) const {
    return textBox(m_position, m_text.str().size(), m_height, m_rotation).store(lo, hi);
}

OxDbObject* OxDbAttributeDefinition::cloneState() const {
    auto* copy = new OxDbAttributeDefinition();
    copy->copyTextProperties(*this);
    copy->m_tag = m_tag;
    copy->m_prompt = m_prompt;
    return copy;
}

Ox::ErrorStatus OxDbAttributeDefinition::setTag(const wchar_t* tag) {
    if (!tag || !*tag) return Ox::eInvalidInput;
    return assignIf(writeCheck(), m_tag, OxString(tag));
}

Ox::ErrorStatus OxDbAttributeDefinition::setPrompt(const wchar_t* prompt) {
    return assignIf(writeCheck(), m_prompt, OxString(prompt));
}

OxDbObject* OxDbAttribute::cloneState() const {
    auto* copy = new OxDbAttribute();
    copy->copyTextProperties(*this);
    copy->m_tag = m_tag;
    return copy;
}

Ox::ErrorStatus OxDbAttribute::setTag(const wchar_t* tag) {
    if (!tag || !*tag) return Ox::eInvalidInput;
    return assignIf(writeCheck(), m_tag, OxString(tag));
}
