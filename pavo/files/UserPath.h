// The one way a file name given by a user becomes a path, whether typed at a
// prompt, read from a script or given on the command line.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace pavo::files {

// The path `typed` names: blanks around it and a pair of double quotes
// around it are removed; "~" or "~/..." at the start is the home folder and
// "~NAME/..." the home folder of user NAME. Any characters are taken as
// they are (the path keeps the name's UTF-8 bytes). nullopt when nothing is
// named.
std::optional<std::filesystem::path> userPath(std::wstring_view typed);

// `path` with `extension` (".pvd") added when its file name has none.
std::filesystem::path withDefaultExtension(std::filesystem::path path, std::string_view extension);

// The drawing a user means by `path`: PATH.pvd when PATH has no extension
// and that file exists, else PATH.
std::filesystem::path drawingToOpen(const std::filesystem::path& path);

// True when `path` names a folder: one that exists, or a name ending in "/"
// (which has no file name).
bool namesFolder(const std::filesystem::path& path);

} // namespace pavo::files
