#include "ui/DialogScript.h"

#include <QCoreApplication>

#include "OxUiDialog.h"
#include "editor/Editor.h"
#include "oxed.h"

using pavo::editor::Editor;
using pavo::editor::InputLine;

namespace pavo::ui {

bool scriptDrivesDialogs() {
    Editor* editor = Editor::current();
    return editor && !editor->input().isTerminal();
}

int runScriptedDialog(COxUiDialog& dialog) {
    Editor* editor = Editor::current();
    dialog.show();
    QCoreApplication::processEvents();
    const std::wstring prompt = L"\nDialog \"" + dialog.windowTitle().toStdWString() + L"\": ";
    while (editor && !dialog.isClosed()) {
        const InputLine line = editor->ask(prompt);
        if (line.kind == InputLine::End) {
            oxutPrintf(L"\nThe script ended with the dialog open; the dialog was cancelled.");
            dialog.reject();
            break;
        }
        if (line.kind == InputLine::Cancel) {
            dialog.reject();
            break;
        }
        const QString text = QString::fromStdString(line.text).trimmed();
        if (!text.startsWith(QLatin1Char('@'))) {
            oxutPrintf(L"\n\"%ls\" is not a dialog action; the dialog was cancelled and the line goes to the next "
                       L"prompt.",
                       QString::fromStdString(line.text).toStdWString());
            editor->unread(line);
            dialog.reject();
            break;
        }
        dialog.runScriptLine(text);
        QCoreApplication::processEvents();
    }
    if (!dialog.isClosed()) dialog.reject();
    dialog.hide();
    QCoreApplication::processEvents();
    return dialog.result() == QDialog::Accepted ? IDOK : IDCANCEL;
}

} // namespace pavo::ui
