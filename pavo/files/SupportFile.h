// Finding the host's data files: the drawing's folder, then the support path.
#pragma once

#include <filesystem>
#include <string_view>

class OxDbDatabase;

namespace pavo::files {

// The full path of `name` (a bare name or a path), searched in `db`'s folder
// when `db` has a file, then where oxedFindFile looks (the working drawing's
// folder, then the support path). Empty when not found.
std::filesystem::path findSupportFile(std::wstring_view name, const OxDbDatabase* db = nullptr);

} // namespace pavo::files
