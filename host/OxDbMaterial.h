// Materials: entries of the material dictionary ("ByLayer", "ByBlock",
// "Global" and the drawing's own).
#pragma once

#include "OxDbObject.h"
#include "OxString.h"

class PAVO_HOST_API OxDbMaterial : public OxDbObject {
    OX_RX_DECLARE_MEMBERS(OxDbMaterial)
public:
    OxDbObject* cloneState() const override;
    const wchar_t* name() const { return m_name.kwszPtr(); }
    Ox::ErrorStatus setName(const wchar_t* name);
    const wchar_t* description() const { return m_description.kwszPtr(); }
    Ox::ErrorStatus setDescription(const wchar_t* text);

private:
    OxString m_name, m_description;
};
