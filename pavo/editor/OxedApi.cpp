// The oxed* input and output functions of the host API: each forwards to the
// session's current editor. Without one (no session yet) they fail.
#include "editor/Editor.h"
#include "editor/SystemVariables.h"
#include "oxed.h"

using pavo::editor::Editor;

int oxedInitGet(int flags, const wchar_t* keywords) {
    Editor* editor = Editor::current();
    if (!editor) return STATUS_ERROR;
    editor->initGet(flags, keywords);
    return STATUS_NORMAL;
}

int oxedGetKword(const wchar_t* prompt, OxString& result) {
    Editor* editor = Editor::current();
    return editor ? editor->getKword(prompt, result) : STATUS_ERROR;
}

int oxedGetString(int cronly, const wchar_t* prompt, OxString& result) {
    Editor* editor = Editor::current();
    return editor ? editor->getString(cronly != 0, prompt, result) : STATUS_ERROR;
}

int oxedGetStringForName(IPavoBuildInCommandContext*, const wchar_t* prompt, OxString& result) {
    Editor* editor = Editor::current();
    return editor ? editor->getString(true, prompt, result) : STATUS_ERROR;
}

int oxedGetReal(const wchar_t* prompt, double* result) {
    Editor* editor = Editor::current();
    if (!editor) return STATUS_ERROR;
    double value = 0;
    const int status = editor->getReal(prompt, value);
    if (status == STATUS_NORMAL && result) *result = value;
    return status;
}

int oxedGetInt(const wchar_t* prompt, int* result) {
    Editor* editor = Editor::current();
    if (!editor) return STATUS_ERROR;
    int value = 0;
    const int status = editor->getInt(prompt, value);
    if (status == STATUS_NORMAL && result) *result = value;
    return status;
}

int oxedGetInput(OxString& result) {
    const Editor* editor = Editor::current();
    return editor ? editor->getInput(result) : STATUS_ERROR;
}

int oxedGetVar(const wchar_t* name, resbuf* result) {
    Editor* editor = Editor::current();
    if (!editor || !name || !result) return STATUS_ERROR;
    return editor->variables().get(name, *result);
}

int oxedSetVar(const wchar_t* name, const resbuf* value) {
    Editor* editor = Editor::current();
    if (!editor || !name || !value) return STATUS_ERROR;
    return editor->variables().set(name, *value);
}

int oxedPromptText(const wchar_t* text) {
    Editor* editor = Editor::current();
    if (!editor) return STATUS_ERROR;
    if (text) editor->output().write(text);
    return STATUS_NORMAL;
}

int oxutPrintText(const wchar_t* text) { return oxedPromptText(text); }
