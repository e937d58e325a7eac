#include "HostVariables.h"

#include "oxed.h"

namespace vxlayer {

bool readIntVariable(const wchar_t* name, int& value) {
    resbuf rb{};
    if (oxedGetVar(name, &rb) != STATUS_NORMAL) return false;
    switch (rb.restype) {
    case RTSHORT:
        value = rb.resval.rint;
        return true;
    case RTLONG:
        value = rb.resval.rlong;
        return true;
    case RTSTR:
        oxutDelBuffer(rb.resval.rstring);
        return false;
    default:
        return false;
    }
}

bool readStringVariable(const wchar_t* name, OxString& value) {
    resbuf rb{};
    if (oxedGetVar(name, &rb) != STATUS_NORMAL) return false;
    if (rb.restype != RTSTR) return false;
    value = rb.resval.rstring;
    oxutDelBuffer(rb.resval.rstring);
    return true;
}

} // namespace vxlayer
