// Text helpers of the host's database utilities.
#pragma once

#include "OxArray.h"
#include "OxString.h"
#include "PavoExport.h"

class PAVO_HOST_API VxDbUtil {
public:
    VxDbUtil() = delete;
    // Appends to `parts` the pieces of `text` between occurrences of
    // `separator`, empty pieces included ("A,,B" gives "A", "", "B"; ""
    // gives one empty piece). An empty separator gives `text` whole.
    static void SplitString(const OxString& text, const OxString& separator, OxArray<OxString>& parts);
};
