#include "editor/SelectionVariables.h"

#include "editor/Editor.h"
#include "editor/SystemVariables.h"

namespace pavo::editor::selection {
namespace {

int intVariable(const wchar_t* name, int fallback) {
    Editor* editor = Editor::current();
    resbuf value{};
    if (!editor || editor->variables().get(name, value) != STATUS_NORMAL) return fallback;
    if (value.restype == RTSHORT) return value.resval.rint;
    if (value.restype == RTLONG) return value.resval.rlong;
    if (value.restype == RTREAL) return static_cast<int>(value.resval.rreal);
    return fallback;
}

} // namespace

double pickBox() { return intVariable(L"PICKBOX", 3); }

bool pickFirst() { return intVariable(L"PICKFIRST", 1) != 0; }

void setErrno(int value) {
    if (Editor* editor = Editor::current()) editor->setErrorNumber(value);
}

} // namespace pavo::editor::selection
