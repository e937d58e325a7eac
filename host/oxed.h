// User input and command-line output of the host editor.
#pragma once

#include "OxDbObjectId.h"
#include "OxFormat.h"
#include "OxString.h"
#include "PavoExport.h"
#include "resbuf.h"

class IPavoBuildInCommandContext;

// Flags of oxedInitGet; each applies to the next input call only.
enum : int {
    OX_INP_NONULL = 1,     // Enter is refused
    OX_INP_NOZERO = 2,     // zero is refused (numbers)
    OX_INP_NONEG = 4,      // negative numbers are refused
    OX_INP_ARBITRARY = 128 // any text is accepted beside the keywords
};

// Keyword list "local _ global" for the next input call.
PAVO_HOST_API int oxedInitGet(int flags, const wchar_t* keywords);
PAVO_HOST_API int oxedGetKword(const wchar_t* prompt, OxString& result);
PAVO_HOST_API int oxedGetString(int cronly, const wchar_t* prompt, OxString& result);
PAVO_HOST_API int oxedGetStringForName(IPavoBuildInCommandContext* ctx, const wchar_t* prompt, OxString& result);
PAVO_HOST_API int oxedGetReal(const wchar_t* prompt, double* result);
PAVO_HOST_API int oxedGetInt(const wchar_t* prompt, int* result);
// The last answer: the global keyword when it matched one, else the text.
PAVO_HOST_API int oxedGetInput(OxString& result);

// System variables.
PAVO_HOST_API int oxedGetVar(const wchar_t* name, resbuf* result);
PAVO_HOST_API int oxedSetVar(const wchar_t* name, const resbuf* value);

// Output to the command line (UTF-8). Formats are printf-style with %s and
// %ls both printing wide strings; see OxFormat.h.
PAVO_HOST_API int oxedPromptText(const wchar_t* text);
PAVO_HOST_API int oxutPrintText(const wchar_t* text);

template <class... Args>
int oxedPrompt(const wchar_t* format, const Args&... args) {
    return oxedPromptText(oxFormat(format ? format : L"", args...).c_str());
}

template <class... Args>
int oxutPrintf(const wchar_t* format, const Args&... args) {
    return oxutPrintText(oxFormat(format ? format : L"", args...).c_str());
}

// Files: the drawing's folder first, then the support path. 5100 when found.
PAVO_HOST_API int oxedFindFile(const wchar_t* name, wchar_t* result, int length);

// True while the host evaluates commands automatically (none in this host).
PAVO_HOST_API bool oxedCurFDERunning();

// Help on a topic.
PAVO_HOST_API int oxedHelp(const wchar_t* file, const wchar_t* topic, int command);
