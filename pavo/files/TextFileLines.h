// The line-oriented text files of the support path (linetype files, plot
// style tables, colour books, layer state files) share their lexical rules:
// UTF-8, ";;" starts a comment line, blank lines are ignored, and a problem
// is reported with its line number.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace pavo::files {

struct TextLine {
    int number = 0;    // 1-based line number in the file
    std::wstring text; // without the line end and surrounding blanks
};

// The meaningful lines of `path`; nullopt, with the system's reason in
// `problem`, when the file cannot be read.
std::optional<std::vector<TextLine>> readTextLines(const std::filesystem::path& path, std::string& problem);
// The same rules applied to text already in memory.
std::vector<TextLine> splitTextLines(std::string_view utf8);

// "field<sep>field..." with each field trimmed of blanks; an empty text
// gives one empty field.
std::vector<std::wstring> splitFields(std::wstring_view text, wchar_t separator);
// A whole field as a number (blanks around it allowed), else nullopt.
std::optional<long long> parseIntegerField(std::wstring_view text);
std::optional<double> parseRealField(std::wstring_view text);
// "r,g,b" with each part 0..255.
bool parseRgb(std::wstring_view text, int rgb[3]);

// "file:line: message", the form every reader reports a problem in.
std::wstring problemAt(const std::filesystem::path& path, int line, std::wstring_view message);
// "Cannot read PATH: REASON."
std::wstring cannotRead(const std::filesystem::path& path, const std::string& reason);

} // namespace pavo::files
