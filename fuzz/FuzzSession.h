// What the command fuzzers (and the tests that replay their findings) share:
// answers from fuzzer bytes, a session that cannot touch the disk, and the
// run of picks and commands over a drawing that loaded.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "app/Session.h"

namespace pavofuzz {

// The lines of `data` (at most `most`), as answers.
std::vector<std::string> answerLines(std::string_view data, std::size_t most);

// A session for fuzzing: resources from `resourceDir`, the module from
// `moduleDir`, no dialogs, no settings file.
pavo::app::SessionOptions fuzzSessionOptions(const std::string& resourceDir, const std::string& moduleDir);

// Takes the commands that name, read or write files (OPEN, NEW, SAVE, SAVEAS,
// QUIT, LAYERSTATE) out of `session`, so that no answer reaches the disk:
// however they are typed ("save", "_SaVeAs"), they are then unknown
// commands. NEW and QUIT go too because they offer to save.
void removeFileCommands(pavo::app::Session& session);

// An input of the drawing session fuzzer: a drawing file's text, then,
// after a line holding only a form feed, answers typed after the drawing
// loaded.
struct DrawingInput {
    std::string_view drawing;
    std::string_view answers;
};
DrawingInput splitDrawingInput(std::string_view data);
constexpr std::string_view kAnswersMark = "\n\f\n";

// Answers that exercise a loaded drawing: picks at its objects in model
// space and on each layout, LIST, CHPROP, SETBYLAYER, the layer options,
// INSERT of each block, new objects, and VPLAYER inside each layout's
// viewports. Empty when `drawingText` is not JSON.
std::vector<std::string> exerciseAnswers(std::string_view drawingText);

// Loads `data`'s drawing; when it loads, runs the exercise and then
// `data`'s own answers in a session without file commands. The session's
// exit status, or -1 when the drawing was refused.
int runDrawingSession(std::string_view data, const pavo::app::SessionOptions& options, std::ostream& transcript);

} // namespace pavofuzz
