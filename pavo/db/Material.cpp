#include "DbInternal.h"
#include "OxDbMaterial.h"
#include "RxDefine.h"

OX_RX_DEFINE_MEMBERS(OxDbMaterial, OxDbObject)

using namespace pavo::db;

OxDbObject* OxDbMaterial::cloneState() const {
    auto* copy = new OxDbMaterial();
    copy->m_name = m_name;
    copy->m_description = m_description;
    return copy;
}

Ox::ErrorStatus OxDbMaterial::setName(const wchar_t* name) {
    if (!name || !*name) return Ox::eInvalidInput;
    return assignIf(writeCheck(), m_name, OxString(name));
}

Ox::ErrorStatus OxDbMaterial::setDescription(const wchar_t* text) {
    return assignIf(writeCheck(), m_description, OxString(text));
}
