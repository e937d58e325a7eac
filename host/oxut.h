// Utilities: wildcard matching.
#pragma once

#include "PavoExport.h"

// True when `name` matches the wildcard `pattern`: '#' a digit, '@' a
// letter, '.' a character that is neither letter nor digit, '*' any
// sequence, '?' any character, '~' at the start negates, "[...]" and
// "[~...]" classes with ranges, '`' escapes the next character, ',' separates
// alternative patterns. Case is ignored when `ignoreCase`.
PAVO_HOST_API bool oxutWcMatchEx(const wchar_t* name, const wchar_t* pattern, bool ignoreCase);
