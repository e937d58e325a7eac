// Dialog layouts of resource libraries: Qt Designer files whose top-level
// widget is the dialog, named by its dialog id.
#pragma once

#include <QString>

class QWidget;

namespace pavo::ui {

// Builds the form of dialog `dialogId` from layout `resource`
// ("Library/Layout": Layout.ui in resource library Library) as a plain
// widget, child of `parent`. Null with `error` saying why.
QWidget* loadDialogForm(const QString& resource, const QString& dialogId, QWidget* parent, QString& error);

} // namespace pavo::ui
