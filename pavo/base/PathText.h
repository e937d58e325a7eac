// File names as text. A path is bytes; pavo shows and takes file names as
// UTF-8 text, and a byte that is not part of UTF-8 travels in the text as
// U+DC80..U+DCFF, so that any path survives the trip to text and back
// (never through the C library's locale, which knows only ASCII by default).
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace pavo {

std::filesystem::path pathFromText(std::wstring_view text);
std::wstring pathText(const std::filesystem::path& path);
// The file name part of `path` as text.
std::wstring fileNameText(const std::filesystem::path& path);

} // namespace pavo
