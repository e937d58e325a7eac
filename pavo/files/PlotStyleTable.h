// Plot style table files ("NAME.pst", docs/plot-styles.md): the reader
// behind PavoPlotManager::LoadPlotStyleTable and searchPrintstylePath.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "PavoPlotStyles.h"

namespace pavo::files {

// The table in `utf8`; null with `problem` ("file:line: why") when it is
// not a plot style table. `path` names the file in messages.
std::unique_ptr<PavoPlotStyleTable> parsePlotStyleTable(std::string_view utf8, const std::filesystem::path& path,
                                                        std::wstring& problem);
std::unique_ptr<PavoPlotStyleTable> readPlotStyleTable(const std::filesystem::path& path, std::wstring& problem);

} // namespace pavo::files
