// Numbered texts of the current resource library.
#pragma once

#include "OxString.h"
#include "PavoExport.h"

// The text `id` of the current resource library, or `defaultText` when the
// library or the id is absent.
PAVO_HOST_API OxString oxmdOxResourceString(unsigned int id, const wchar_t* defaultText = L"");
