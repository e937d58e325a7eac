// Reading a whole file into memory; a large one with two threads at once,
// each filling (and taking the page faults of) its half of the buffer.
#pragma once

#include <cstddef>
#include <string>

namespace pavo::files {

// The size of the file at `path`; false when it cannot be opened.
bool fileSizeOf(const std::string& path, std::size_t& size);
// Reads the first `size` bytes of the file into `out`; false when the file
// cannot be read or is shorter.
bool readFileInto(const std::string& path, char* out, std::size_t size);

} // namespace pavo::files
