// Replacing a file safely: the new content goes to a temporary file in the
// same folder, is synced, and is renamed over the old file, which is kept as
// PATH.bak. On any failure the old file is left as it was.
#pragma once

#include <string>
#include <string_view>

namespace pavo::files {

bool replaceFileAtomically(const std::string& path, std::string_view content, std::string& error);

} // namespace pavo::files
