// Colour books: named sets of named true colours, each book a text file
// "<book name>.pcb" on the support path (see docs/colour-books.md).
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class OxDbDatabase;

namespace pavo::files {

struct TextLine;

struct BookColor {
    std::wstring name;
    std::uint8_t red = 0, green = 0, blue = 0;
    std::wstring description; // may be empty
};

class ColorBook {
public:
    // Reads a book file; nullopt with `problem` ("file:line: why") when it
    // cannot be read or is not a colour book.
    static std::optional<ColorBook> read(const std::filesystem::path& path, std::wstring& problem);
    // The same from text in memory (`path` names it in messages).
    static std::optional<ColorBook> parse(std::string_view utf8, const std::filesystem::path& path,
                                          std::wstring& problem);

    const std::wstring& name() const { return m_name; }
    const std::vector<BookColor>& colors() const { return m_colors; }
    // The colour called `name`, case ignored; null when the book has none.
    const BookColor* find(std::wstring_view name) const;

private:
    static std::optional<ColorBook> fromLines(const std::vector<TextLine>& lines, const std::filesystem::path& path,
                                              std::wstring& problem);
    std::wstring m_name;
    std::vector<BookColor> m_colors;
};

// The file a book is kept in: its name in lower case, blanks as "-",
// extension ".pcb" ("RAL CLASSIC" -> "ral-classic.pcb").
std::wstring colorBookFileName(std::wstring_view bookName);

// Looks a book up by name (case ignored) in the drawing's folder, then on the
// support path. nullopt with `problem` set when it is missing or unreadable.
std::optional<ColorBook> findColorBook(std::wstring_view bookName, std::wstring& problem,
                                       const OxDbDatabase* db = nullptr);

} // namespace pavo::files
