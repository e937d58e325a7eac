#include "DbInternal.h"
#include "OxDbEntity.h"
#include "OxDbLayout.h"
#include "OxDbSymbolTable.h"
#include "RxDefine.h"
#include "SymbolTableImpl.h"
#include "base/CaseFold.h"

OX_RX_DEFINE_MEMBERS(OxDbPlotSettings, OxDbObject)
OX_RX_DEFINE_MEMBERS(OxDbLayout, OxDbPlotSettings)

using namespace pavo::db;

OxDbObject* OxDbPlotSettings::cloneState() const {
    auto* copy = new OxDbPlotSettings();
    copy->copyPlotSettings(*this);
    return copy;
}

void OxDbPlotSettings::copyPlotSettings(const OxDbPlotSettings& from) {
    m_name = from.m_name;
    m_styleSheet = from.m_styleSheet;
    m_plotViewportBorders = from.m_plotViewportBorders;
}

Ox::ErrorStatus OxDbPlotSettings::getPlotSettingsName(OxString& name) const {
    name = m_name;
    return Ox::eOk;
}

Ox::ErrorStatus OxDbPlotSettings::setPlotSettingsName(const wchar_t* name) {
    return assignIf(writeCheck(), m_name, OxString(name));
}

Ox::ErrorStatus OxDbPlotSettings::getCurrentStyleSheet(OxString& name) const {
    name = m_styleSheet;
    return Ox::eOk;
}

Ox::ErrorStatus OxDbPlotSettings::getCurrentStyleSheet(const wchar_t*& name) const {
    name = m_styleSheet.kwszPtr();
    return Ox::eOk;
}

Ox::ErrorStatus OxDbPlotSettings::setCurrentStyleSheet(const wchar_t* name) {
    return assignIf(writeCheck(), m_styleSheet, OxString(name));
}

Ox::ErrorStatus OxDbPlotSettings::setPlotViewportBorders(bool v) {
    return assignIf(writeCheck(), m_plotViewportBorders, v);
}

// ------------------------------------------------------------ layouts

OxDbObject* OxDbLayout::cloneState() const {
    auto* copy = new OxDbLayout();
    copy->copyPlotSettings(*this);
    copy->m_layoutName = m_layoutName;
    copy->m_tabOrder = m_tabOrder;
    copy->m_block = m_block;
    copy->m_activeViewport = m_activeViewport;
    copy->m_lastModelViewport = m_lastModelViewport;
    return copy;
}

Ox::ErrorStatus OxDbLayout::getLayoutName(OxString& name) const {
    name = m_layoutName;
    return Ox::eOk;
}

Ox::ErrorStatus OxDbLayout::getLayoutName(const wchar_t*& name) const {
    name = m_layoutName.kwszPtr();
    return Ox::eOk;
}

Ox::ErrorStatus OxDbLayout::setLayoutName(const wchar_t* name) {
    if (!name || !*name) return Ox::eInvalidInput;
    return assignIf(writeCheck(), m_layoutName, OxString(name));
}

Ox::ErrorStatus OxDbLayout::setTabOrder(int order) {
    if (order < 0) return Ox::eInvalidInput;
    return assignIf(writeCheck(), m_tabOrder, order);
}

Ox::ErrorStatus OxDbLayout::setBlockTableRecordId(const OxDbObjectId& id) {
    return assignIf(writeCheck(), m_block, id);
}

bool OxDbLayout::isModelLayout() const {
    if (const OxDbDatabase* db = database(); db && !m_block.isNull()) return m_block == db->modelSpaceId();
    return pavo::equalNoCase(m_layoutName.view(), L"Model");
}

OxDbObjectIdArray OxDbLayout::getViewportArray() const {
    OxDbObjectIdArray ids;
    if (isModelLayout()) return ids;
    if (const auto* block = OxDbBlockTableRecord::cast(objectOf(m_block))) {
        for (OxDbCell* cell : block->impl()->entities)
            if (!cell->erased && OxDbViewport::cast(cell->object.get())) ids.append(OxDbObjectId(cell));
    }
    return ids;
}

Ox::ErrorStatus OxDbLayout::setActiveViewportId(const OxDbObjectId& id) {
    if (const OxDbObject* target = objectOf(id); target && !OxDbViewport::cast(target)) return Ox::eNotThatKindOfClass;
    return assignIf(writeCheck(), m_activeViewport, id);
}
