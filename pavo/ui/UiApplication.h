// The Qt application of a session that shows dialogs: made the first time a
// dialog is built, never before, and kept until the process ends.
#pragma once

class QWidget;

namespace pavo::ui {

// Makes the QApplication when there is none yet, on Qt's offscreen
// platform when asked (pictures made where no display can be used).
void ensureApplication(bool offscreen = false);
// The host's main window: a hidden top-level widget, parent of dialogs.
QWidget* mainWindow();

} // namespace pavo::ui
