#include "files/TextFileLines.h"

#include "base/PathText.h"
#include "base/Utf8.h"
#include "editor/NumberText.h"
#include "files/FileRead.h"

namespace pavo::files {

std::vector<TextLine> splitTextLines(std::string_view utf8) {
    if (utf8.starts_with("\xEF\xBB\xBF")) utf8.remove_prefix(3); // editors on some systems write a BOM
    std::vector<TextLine> lines;
    int number = 0;
    while (!utf8.empty() || number == 0) {
        const size_t end = utf8.find('\n');
        std::string_view raw = utf8.substr(0, end);
        utf8 = end == std::string_view::npos ? std::string_view() : utf8.substr(end + 1);
        ++number;
        const std::wstring wide = pavo::fromUtf8(raw);
        const std::wstring_view text = editor::trimBlanks(wide);
        if (!text.empty() && !text.starts_with(L";;")) lines.push_back({number, std::wstring(text)});
        if (end == std::string_view::npos) break;
    }
    return lines;
}

std::optional<std::vector<TextLine>> readTextLines(const std::filesystem::path& path, std::string& problem) {
    const std::optional<std::string> text = readFileText(path, problem);
    if (!text) return std::nullopt;
    return splitTextLines(*text);
}

std::vector<std::wstring> splitFields(std::wstring_view text, wchar_t separator) {
    std::vector<std::wstring> fields;
    for (;;) {
        const size_t at = text.find(separator);
        fields.emplace_back(editor::trimBlanks(text.substr(0, at)));
        if (at == std::wstring_view::npos) return fields;
        text.remove_prefix(at + 1);
    }
}

std::optional<long long> parseIntegerField(std::wstring_view text) { return editor::parseInteger(text); }

std::optional<double> parseRealField(std::wstring_view text) { return editor::parseReal(text); }

bool parseRgb(std::wstring_view text, int rgb[3]) {
    const std::vector<std::wstring> parts = splitFields(text, L',');
    if (parts.size() != 3) return false;
    for (size_t i = 0; i < 3; ++i) {
        const std::optional<long long> value = parseIntegerField(parts[i]);
        if (!value || *value < 0 || *value > 255) return false;
        rgb[i] = static_cast<int>(*value);
    }
    return true;
}

std::wstring problemAt(const std::filesystem::path& path, int line, std::wstring_view message) {
    return fileNameText(path) + L":" + std::to_wstring(line) + L": " + std::wstring(message);
}

std::wstring cannotRead(const std::filesystem::path& path, const std::string& reason) {
    return L"Cannot read " + pathText(path) + L": " + fromUtf8(reason) + L".";
}

} // namespace pavo::files
