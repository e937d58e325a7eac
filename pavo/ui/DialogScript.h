// Dialogs in scripts: while a dialog is open, the script's lines that start
// with "@" drive it through its real widgets (see docs/command-line.md).
#pragma once

class COxUiDialog;

namespace pavo::ui {

// True when dialogs are driven by the script's lines rather than by a
// person (the input is not a terminal).
bool scriptDrivesDialogs();

// Shows `dialog` and runs the script's "@" lines on it until it is closed;
// IDOK or IDCANCEL. The end of the script, Escape, or a line that is not
// an "@" line cancels the dialog (that line then goes to the next prompt).
int runScriptedDialog(COxUiDialog& dialog);

} // namespace pavo::ui
