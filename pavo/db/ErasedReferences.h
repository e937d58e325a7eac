// Erasing a viewport or a layer drops what refers to it: the layers'
// overrides for the viewport, the viewports' frozen lists for the layer, a
// layout's note of the viewport as active. So no list keeps an id that
// leads nowhere.
#pragma once

class OxDbCell;

namespace pavo::db {

// Called once `cell`'s object has been erased; other kinds of objects are
// left alone. The changed objects go through the database's first-write
// hook, as if opened for write, so that undo can record them.
void dropReferencesTo(const OxDbCell* cell);

} // namespace pavo::db
