// What a top-level object's ByLayer and ByBlock properties come to, as LIST
// shows them (db/EffectiveProperties.h resolves them; this names them).
#pragma once

#include <string>

class OxDbEntity;
class OxDbObjectId;

namespace pavo::app {

struct ResolvedProperties {
    std::wstring color, linetype, lineweight, transparency, plotStyle, material;
};

ResolvedProperties resolveProperties(const OxDbEntity& entity);

// The name of a symbol table record ("?" when it does not open).
std::wstring recordName(const OxDbObjectId& id);

} // namespace pavo::app
