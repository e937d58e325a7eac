#include "DocExamples.h"

#include <fstream>
#include <sstream>

namespace pavotest {

std::string repositoryFile(const std::string& relativePath) {
    std::ifstream in(std::string(PAVO_TEST_RESOURCE_DIR) + "/../" + relativePath, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

std::vector<std::string> scriptLines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

std::string textBlockStartingWith(const std::string& markdown, const std::string& firstLine) {
    const std::string opening = "```text\n" + firstLine + "\n";
    const size_t start = markdown.find(opening);
    if (start == std::string::npos) return {};
    const size_t from = start + 8, end = markdown.find("```", from);
    return end == std::string::npos ? std::string() : markdown.substr(from, end - from);
}

} // namespace pavotest
