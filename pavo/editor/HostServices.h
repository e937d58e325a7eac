// What PavoServicesManager and the console guard were asked, for tests and
// for listings that must not be split.
#pragma once

namespace pavo::editor {

// How many times a command asked to bring the text screen forward.
int textScreenRequests();
// How many console guards are held now.
int consoleGuardsHeld();

} // namespace pavo::editor
