// Linetype files: "*NAME,description" then "A,dash,gap,..." (a positive
// length a dash, a negative one a gap, 0 a dot), ";;" comments. The format
// and the shipped files are described in docs/linetypes.md.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "oxstatus.h"

class OxDbDatabase;

namespace pavo::files {

struct LinetypeDefinition {
    std::wstring name;
    std::wstring description;
    std::vector<double> dashes;
    int line = 0; // where the definition starts
};

struct LinetypeFile {
    std::vector<LinetypeDefinition> linetypes;
    // "file:line: why" for each malformed line; a file with problems is not
    // used at all, so that a drawing never gets half a library.
    std::vector<std::wstring> problems;

    // Definitions whose names match `pattern` (a name, or a wildcard pattern
    // as oxutWcMatchEx takes it), case ignored, in file order.
    std::vector<const LinetypeDefinition*> matching(std::wstring_view pattern) const;
};

LinetypeFile parseLinetypeFile(std::string_view utf8, const std::filesystem::path& path);
// nullopt, with the system's reason, when the file cannot be read.
std::optional<LinetypeFile> readLinetypeFile(const std::filesystem::path& path, std::string& problem);

// What OxDbDatabase::loadLineTypeFile does: finds `fileName` (the drawing's
// folder, then the support path), and adds every linetype matching `pattern`
// that the drawing does not have yet. eFileNotFound, eFileAccessErr,
// eInvalidFileFormat (the problems are printed), eKeyNotFound (nothing
// matches), eOk also when every match was already there.
Ox::ErrorStatus loadLinetypes(OxDbDatabase* db, const wchar_t* pattern, const wchar_t* fileName);

} // namespace pavo::files
