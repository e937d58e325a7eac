#include "files/ColorBook.h"

#include <unordered_set>

#include "base/CaseFold.h"
#include "base/PathText.h"
#include "files/SupportFile.h"
#include "files/TextFileLines.h"

namespace pavo::files {
namespace {

constexpr std::wstring_view kHeader = L"pavo colour book 1";

} // namespace

std::optional<ColorBook> ColorBook::read(const std::filesystem::path& path, std::wstring& problem) {
    std::string reason;
    const std::optional<std::vector<TextLine>> lines = readTextLines(path, reason);
    if (!lines) {
        problem = cannotRead(path, reason);
        return std::nullopt;
    }
    return fromLines(*lines, path, problem);
}

std::optional<ColorBook> ColorBook::parse(std::string_view utf8, const std::filesystem::path& path,
                                          std::wstring& problem) {
    return fromLines(splitTextLines(utf8), path, problem);
}

std::optional<ColorBook> ColorBook::fromLines(const std::vector<TextLine>& lines, const std::filesystem::path& path,
                                              std::wstring& problem) {
    ColorBook book;
    std::unordered_set<std::wstring> seen;
    if (lines.size() < 2 || lines[0].text != kHeader) {
        problem = problemAt(path, lines.empty() ? 1 : lines[0].number,
                            L"not a colour book (the first line must be \"" + std::wstring(kHeader) + L"\")");
        return std::nullopt;
    }
    book.m_name = lines[1].text;
    for (size_t i = 2; i < lines.size(); ++i) {
        const TextLine& line = lines[i];
        const std::vector<std::wstring> fields = splitFields(line.text, L'\t');
        int rgb[3] = {0, 0, 0};
        if (fields.size() < 2 || fields.size() > 3 || fields[0].empty() || !parseRgb(fields[1], rgb)) {
            problem = problemAt(path, line.number, L"expected \"name<TAB>r,g,b\" with 0 to 255 for each part");
            return std::nullopt;
        }
        if (!seen.insert(pavo::foldCase(fields[0])).second) {
            problem = problemAt(path, line.number, L"colour \"" + fields[0] + L"\" is listed twice");
            return std::nullopt;
        }
        book.m_colors.push_back({fields[0], static_cast<std::uint8_t>(rgb[0]), static_cast<std::uint8_t>(rgb[1]),
                                 static_cast<std::uint8_t>(rgb[2]), fields.size() > 2 ? fields[2] : L""});
    }
    return book;
}

const BookColor* ColorBook::find(std::wstring_view name) const {
    for (const BookColor& color : m_colors)
        if (pavo::equalNoCase(color.name, name)) return &color;
    return nullptr;
}

std::wstring colorBookFileName(std::wstring_view bookName) {
    std::wstring file = pavo::foldCase(bookName);
    for (wchar_t& ch : file)
        if (ch == L' ') ch = L'-';
    return file + L".pcb";
}

std::optional<ColorBook> findColorBook(std::wstring_view bookName, std::wstring& problem, const OxDbDatabase* db) {
    const std::wstring quoted = L"\"" + std::wstring(bookName) + L"\"";
    if (bookName.empty() || bookName.find_first_of(L"/\\") != std::wstring_view::npos) {
        problem = L"Unknown colour book " + quoted + L".";
        return std::nullopt;
    }
    const std::filesystem::path path = findSupportFile(colorBookFileName(bookName), db);
    if (path.empty()) {
        problem = L"Unknown colour book " + quoted + L".";
        return std::nullopt;
    }
    std::optional<ColorBook> book = ColorBook::read(path, problem);
    if (book && !pavo::equalNoCase(book->name(), bookName)) {
        problem = fileNameText(path) + L" holds colour book \"" + book->name() + L"\", not " + quoted + L".";
        return std::nullopt;
    }
    return book;
}

} // namespace pavo::files
