// What an object's ByLayer and ByBlock properties come to, as shown by
// LIST: ByLayer takes the layer's value; ByBlock takes the value of the
// block reference that shows the object (a top-level object is in no block
// and gets the defaults: white, Continuous, the default lineweight, opaque).
#pragma once

#include <string>

class OxDbEntity;
class OxDbObjectId;

namespace pavo::app {

struct ResolvedProperties {
    std::wstring color, linetype, lineweight, transparency, plotStyle, material;
};

// `enclosing`: what the reference that shows `entity` resolved to (null for
// a top-level object).
ResolvedProperties resolveProperties(const OxDbEntity& entity, const ResolvedProperties* enclosing);

// The name of a symbol table record ("?" when it does not open).
std::wstring recordName(const OxDbObjectId& id);

} // namespace pavo::app
