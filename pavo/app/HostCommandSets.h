// Groups of host commands kept in files of their own; registerHostCommands
// hands each group its way of adding a command.
#pragma once

#include <functional>

namespace pavo::app {

using AddHostCommand = std::function<void(const wchar_t* name, const wchar_t* description, std::function<int()> run)>;

// SELECT and LIST.
void registerSelectionCommands(const AddHostCommand& add);
// LINE, CIRCLE, TEXT and INSERT.
void registerDrawingCommands(const AddHostCommand& add);
// LAYERSTATE.
void registerLayerStateCommands(const AddHostCommand& add);
// CHPROP.
void registerPropertyCommands(const AddHostCommand& add);
// Paper space: LAYOUT, MSPACE and PSPACE, MVIEW.
void registerLayoutCommand(const AddHostCommand& add);
void registerSpaceCommands(const AddHostCommand& add);
void registerMviewCommand(const AddHostCommand& add);
// PLOT and EXPORT.
void registerPictureCommands(const AddHostCommand& add);
// U, UNDO, REDO, LAYERP and LAYERPMODE.
void registerUndoCommands(const AddHostCommand& add);

} // namespace pavo::app
