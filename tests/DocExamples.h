// The repository's documents, for tests that run their examples exactly as
// written.
#pragma once

#include <string>
#include <vector>

namespace pavotest {

// The text of a file of the repository ("docs/setbylayer.md"); empty when
// it cannot be read.
std::string repositoryFile(const std::string& relativePath);

// The lines of a script, as pavo reads them.
std::vector<std::string> scriptLines(const std::string& text);

// The body of the first ```text block of `markdown` whose first line is
// `firstLine`; empty when there is none.
std::string textBlockStartingWith(const std::string& markdown, const std::string& firstLine);

} // namespace pavotest
