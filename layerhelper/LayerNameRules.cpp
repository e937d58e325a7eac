#include "LayerNameRules.h"

#include "HostVariables.h"
#include "OxDbServices.h"
#include "PavoLayerHelper.h"

namespace vxlayer {

int readExtnames() {
    int extnames = 1;
    return readIntVariable(L"EXTNAMES", extnames) ? extnames : 1;
}

bool exceedsNameLength(const OxString& name, int extnames) {
    if (extnames == 0) return name.length() > 31;
    if (extnames == 1) return name.length() > 255;
    return false;
}

bool symbolNameRefused(const OxString& name) {
    return OxDbSymbolUtilities::servicesPtr()->checkSymbolName(name.kwszPtr(), false) != Ox::eOk;
}

} // namespace vxlayer

OxString PavoLayerHelper::trimName(OxString& name) {
    name.trimLeft().trimRight();
    if (!name.isEmpty() && name.getAt(0) == L'"' && name.getAt(name.length() - 1) == L'"') {
        name.trimLeft(L"\"");
        name.trimRight(L"\"");
    }
    name.trimLeft().trimRight();
    return name;
}

bool PavoLayerHelper::haveInvalidCharacters(OxString name) {
    // Tested in this order; the apostrophe by substring, as the others by set.
    static constexpr const wchar_t* kSets[] = {L"<",  L",", L">", L"/", L"?", nullptr, L"\"",
                                               L"\\", L"|", L";", L":", L"=", L"*"};
    for (const wchar_t* set : kSets) {
        const int hit = set ? name.findOneOf(set, 0) : name.find(L"'", 0);
        if (hit >= 0) return true;
    }
    return false;
}
