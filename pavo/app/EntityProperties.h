// Properties of objects given by name, shared by the commands that make and
// change objects.
#pragma once

#include <optional>

#include "OxDbObjectId.h"
#include "OxString.h"

class OxDbDatabase;
class OxDbEntity;

namespace pavo::app {

// True for "ByLayer", "ByBlock" and the plot styles of the drawing.
bool isPlotStyleName(OxDbDatabase& db, const OxString& name);

// Gives `entity` the plot style "ByLayer", "ByBlock" or a named one of the
// drawing; false (nothing changed) for an unknown name.
bool setPlotStyleByName(OxDbDatabase& db, OxDbEntity& entity, const OxString& name);

// The material of that name (ByLayer, ByBlock, Global or the drawing's own).
std::optional<OxDbObjectId> materialNamed(OxDbDatabase& db, const OxString& name);

// The linetype of that name, loaded from the linetype file of the drawing's
// measurement system when the drawing lacks it.
std::optional<OxDbObjectId> linetypeNamed(OxDbDatabase& db, const OxString& name);

} // namespace pavo::app
