// Picks and selection sets.
#pragma once

#include "OxDbObjectId.h"
#include "PavoExport.h"
#include "resbuf.h"

// Asks for one entity: a point "x,y" picks the topmost pickable entity within
// PICKBOX of it in the current space. 5100 with the entity and the point;
// -5001 with ERRNO 7 when nothing is there, -5001 with ERRNO 52 for Enter;
// -5002 for Escape. A null prompt shows "Select object: ".
PAVO_HOST_API int oxedEntSel(const wchar_t* prompt, ox_name entity, ox_point point);

// Makes a selection set. Modes: null or "" asks "Select objects: " until
// Enter; "_I" returns the pre-selection; ":$" takes the prompts from
// `pt1` (two wide strings: select, remove); ":K" passes other words to the
// keyword callback, with the keyword list in `pt2`. `filter` keeps only
// entities of the types listed with code RTDXF0 (5020). 5100 with a set (the
// caller frees it with oxedSSFree), -5002 when cancelled, -5001 when empty.
PAVO_HOST_API int oxedSSGet(const wchar_t* mode, const void* pt1, const void* pt2, const resbuf* filter,
                            ox_name set);
PAVO_HOST_API int oxedSSLength(const ox_name set, int* length);
PAVO_HOST_API int oxedSSName(const ox_name set, int index, ox_name entity);
PAVO_HOST_API int oxedSSFree(const ox_name set);
// Sets the pre-selection (null clears it).
PAVO_HOST_API int oxedSSSetFirst(const ox_name pickSet, const ox_name unused);
// The pre-selection as a result buffer holding a set name (RTPICKS); the
// caller frees the set with oxedSSFree and the buffer with oxutRelRb.
PAVO_HOST_API int oxedSSGetFirst(resbuf** gripSet, resbuf** pickSet);

// Keyword callback of selection prompts (mode ":K"): null lets the
// selection go on.
typedef resbuf* (*OxedSSKwordCallback)(const wchar_t* keyword);
PAVO_HOST_API int oxedSSGetKwordCallbackPtr(OxedSSKwordCallback* callback);
PAVO_HOST_API int oxedSSSetKwordCallbackPtr(OxedSSKwordCallback callback);
// The ids of the set made by the last oxedSSGet.
PAVO_HOST_API int oxedGetCurrentSelectionSet(OxDbObjectIdArray& ids);

// Switches between paper space and the model space of the current viewport.
PAVO_HOST_API int oxedPspace();
PAVO_HOST_API int oxedMspace();
