#include <cmath>

#include "OxDbSymbolTable.h"
#include "RxDefine.h"

OX_RX_DEFINE_MEMBERS(OxDbLinetypeTable, OxDbSymbolTable)
OX_RX_DEFINE_MEMBERS(OxDbLinetypeTableRecord, OxDbSymbolTableRecord)

const OxRxClass* OxDbLinetypeTable::recordClass() const { return OxDbLinetypeTableRecord::desc(); }

OxDbObject* OxDbLinetypeTableRecord::cloneState() const {
    auto* copy = new OxDbLinetypeTableRecord();
    copy->setName(getName());
    copy->m_comments = m_comments;
    copy->m_dashes = m_dashes;
    copy->m_scaledToFit = m_scaledToFit;
    return copy;
}

Ox::ErrorStatus OxDbLinetypeTableRecord::comments(OxString& text) const {
    text = m_comments;
    return Ox::eOk;
}

Ox::ErrorStatus OxDbLinetypeTableRecord::setComments(const wchar_t* text) {
    if (!writeCheck()) return Ox::eNotOpenForWrite;
    m_comments = text;
    return Ox::eOk;
}

double OxDbLinetypeTableRecord::patternLength() const {
    double total = 0;
    for (double dash : m_dashes)
        total += std::fabs(dash);
    return total;
}

double OxDbLinetypeTableRecord::dashLengthAt(int index) const {
    return index >= 0 && index < numDashes() ? m_dashes[static_cast<size_t>(index)] : 0.0;
}

void OxDbLinetypeTableRecord::setNumDashes(int count) {
    if (count >= 0 && writeCheck()) m_dashes.resize(static_cast<size_t>(count));
}

void OxDbLinetypeTableRecord::setDashLengthAt(int index, double length) {
    if (index >= 0 && index < numDashes() && writeCheck()) m_dashes[static_cast<size_t>(index)] = length;
}

void OxDbLinetypeTableRecord::setIsScaledToFit(bool v) {
    if (writeCheck()) m_scaledToFit = v;
}
