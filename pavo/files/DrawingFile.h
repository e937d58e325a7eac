// Drawing files: the JSON drawing format (docs/drawing-format.md), read with
// full validation into a fresh database and written atomically.
#pragma once

#include <cstddef>
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
// Reads a drawing file and sets the database's file name.
std::unique_ptr<OxDbDatabase> readDrawingFile(const std::string& path, LoadError& error);

// The drawing as JSON text: deterministic, so that load then save reproduces it.
std::string writeDrawing(const OxDbDatabase& db);
// Saves atomically: a temporary file in the same folder is written and
// synced, the previous file is kept as PATH.bak, then the temporary file is
// renamed over PATH. On failure the old file is untouched and `error` says why.
bool writeDrawingFile(const OxDbDatabase& db, const std::string& path, std::string& error);

// The sample drawing built into the program (resources/samples/building.pvd).
std::string_view embeddedSampleDrawing();

} // namespace pavo::files
