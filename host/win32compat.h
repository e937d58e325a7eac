// Win32-style calls that the host maps to its resource libraries and its
// module loader.
#pragma once

#include "PavoExport.h"

typedef void* HMODULE;
typedef void* HINSTANCE;
typedef void (*FARPROC)();

// Makes the resource library `name` ("X.dll" is the folder X/ on the
// resource path) current; true if it switched and must be switched back.
PAVO_HOST_API bool SetCurrentResourceName(const wchar_t* name);
// Undoes the last successful SetCurrentResourceName.
PAVO_HOST_API void RestorePreviousResource();
// The current resource library.
PAVO_HOST_API HINSTANCE AfxGetResourceHandle();
// Copies string `id` of library `instance` into `buffer` (at most `size`
// characters, terminator included); returns the number of characters
// copied, 0 (and an empty buffer) when absent.
PAVO_HOST_API int LoadStringW(HINSTANCE instance, unsigned int id, wchar_t* buffer, int size);
// The handle of a loaded module by file name, else null.
PAVO_HOST_API HMODULE GetModuleHandleW(const wchar_t* name);
PAVO_HOST_API FARPROC GetProcAddress(HMODULE module, const char* symbol);
