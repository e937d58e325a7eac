// Drawing files: the JSON drawing format (docs/drawing-format.md), read with
// full validation into a fresh database and written atomically.
#pragma once

#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include "OxDbDatabase.h"

namespace pavo::files {

// Where and why a drawing could not be read.
struct LoadError {
    std::string file;
    std::string pointer; // JSON Pointer of the offending value, e.g. /layers/12/color
    std::size_t line = 0, column = 0;
    std::string problem;
    // "FILE:LINE:COLUMN: at POINTER: PROBLEM"
    std::string message() const;
};

// Reads a drawing from JSON text. Returns null (and fills `error`) on the
// first problem; a bad drawing is never half-loaded.
std::unique_ptr<OxDbDatabase> readDrawing(std::string_view json, const std::string& fileName, LoadError& error);
struct FileStamp;

// Reads a drawing file and sets the database's file name. `read` gets the
// stamp of the file read.
std::unique_ptr<OxDbDatabase> readDrawingFile(const std::filesystem::path& path, LoadError& error,
                                              FileStamp* read = nullptr);

// The drawing as JSON text: deterministic, so that load then save reproduces it.
std::string writeDrawing(const OxDbDatabase& db);
// Saves as files/AtomicFile.h saves, keeping the previous file as PATH.bak.
// On failure the old file is untouched and `error` says why.
bool writeDrawingFile(const OxDbDatabase& db, const std::filesystem::path& path, std::string& error,
                      FileStamp* written = nullptr);

// The sample drawing built into the program (resources/samples/building.pvd).
std::string_view embeddedSampleDrawing();

} // namespace pavo::files
