#include "files/PlotStyleTable.h"

#include <cmath>
#include <unordered_set>

#include "base/CaseFold.h"
#include "base/ColorNames.h"
#include "base/PathText.h"
#include "db/LineWeights.h"
#include "files/FileRead.h"
#include "files/SupportFile.h"
#include "files/UserPath.h"
#include "files/TextFileLines.h"

namespace pavo::files {
namespace {

constexpr std::wstring_view kHeader = L"pavo plot style table 1";
constexpr std::wstring_view kObject = L"object"; // use the object's own value

bool readColor(const std::wstring& text, OxCmColor& color) {
    if (pavo::equalNoCase(text, kObject)) {
        color = OxCmColor::byLayer();
        return true;
    }
    if (const std::optional<std::uint16_t> index = pavo::standardColorIndex(text)) {
        color = OxCmColor::fromIndex(*index);
        return true;
    }
    if (const std::optional<long long> index = parseIntegerField(text)) {
        if (*index < 1 || *index > 255) return false;
        color = OxCmColor::fromIndex(static_cast<std::uint16_t>(*index));
        return true;
    }
    int rgb[3];
    if (!parseRgb(text, rgb)) return false;
    color = OxCmColor::fromRgb(static_cast<std::uint8_t>(rgb[0]), static_cast<std::uint8_t>(rgb[1]),
                               static_cast<std::uint8_t>(rgb[2]));
    return true;
}

// Millimetres, one of the standard lineweights.
bool readLineWeight(const std::wstring& text, OxDb::LineWeight& weight) {
    if (pavo::equalNoCase(text, kObject)) {
        weight = OxDb::kLnWtByLayer;
        return true;
    }
    const std::optional<double> mm = parseRealField(text);
    if (!mm) return false;
    const std::optional<OxDb::LineWeight> standard = db::standardLineWeightOfMillimetres(*mm);
    if (standard) weight = *standard;
    return standard.has_value();
}

// One style line; the problem text when it is malformed.
std::wstring readStyle(const std::wstring& text, PavoPlotStyle& style) {
    const std::vector<std::wstring> fields = splitFields(text, L'\t');
    if (fields.size() < 5 || fields.size() > 6)
        return L"expected \"name<TAB>colour<TAB>lineweight<TAB>linetype<TAB>screening<TAB>description\"";
    if (fields[0].empty()) return L"the style has no name";
    style.m_name = fields[0];
    if (!readColor(fields[1], style.m_color))
        return L"colour \"" + fields[1] + L"\": use object, 1 to 255, a colour name or r,g,b";
    if (!readLineWeight(fields[2], style.m_lineWeight))
        return L"lineweight \"" + fields[2] + L"\": use object or a standard lineweight in millimetres";
    if (fields[3].empty()) return L"the linetype is empty: use object or a linetype name";
    style.m_linetype = pavo::equalNoCase(fields[3], kObject) ? std::wstring() : fields[3];
    const std::optional<long long> screening = parseIntegerField(fields[4]);
    if (!screening || *screening < 0 || *screening > 100) return L"screening \"" + fields[4] + L"\": use 0 to 100";
    style.m_screening = static_cast<int>(*screening);
    if (fields.size() == 6) style.m_description = fields[5];
    return {};
}

} // namespace

std::unique_ptr<PavoPlotStyleTable> parsePlotStyleTable(std::string_view utf8, const std::filesystem::path& path,
                                                        std::wstring& problem) {
    const std::vector<TextLine> lines = splitTextLines(utf8);
    if (lines.empty() || lines[0].text != kHeader) {
        problem = problemAt(path, lines.empty() ? 1 : lines[0].number,
                            L"not a plot style table (the first line must be \"" + std::wstring(kHeader) + L"\")");
        return nullptr;
    }
    if (lines.size() < 2) {
        problem = problemAt(path, lines[0].number, L"the description line is missing");
        return nullptr;
    }
    auto table = std::make_unique<PavoPlotStyleTable>();
    table->m_description = lines[1].text;
    std::unordered_set<std::wstring> names;
    for (size_t i = 2; i < lines.size(); ++i) {
        auto style = std::make_unique<PavoPlotStyle>();
        std::wstring why = readStyle(lines[i].text, *style);
        if (why.empty() && !names.insert(pavo::foldCase(style->m_name.view())).second)
            why = L"style \"" + style->m_name.str() + L"\" is listed twice";
        if (!why.empty()) {
            problem = problemAt(path, lines[i].number, why);
            return nullptr;
        }
        table->m_styles.push_back(std::move(style));
    }
    return table;
}

std::unique_ptr<PavoPlotStyleTable> readPlotStyleTable(const std::filesystem::path& path, std::wstring& problem) {
    std::string reason;
    const std::optional<std::string> text = readFileText(path, reason);
    if (!text) {
        problem = cannotRead(path, reason);
        return nullptr;
    }
    return parsePlotStyleTable(*text, path, problem);
}

} // namespace pavo::files

// ------------------------------------------------------------ host interface

PavoPlotStyleTable::PavoPlotStyleTable() = default;
PavoPlotStyleTable::~PavoPlotStyleTable() = default;

int PavoPlotStyleTable::count() const { return static_cast<int>(m_styles.size()); }

PavoPlotStyle* PavoPlotStyleTable::getPlotStyleAt(int index) const {
    return index >= 0 && index < count() ? m_styles[static_cast<size_t>(index)].get() : nullptr;
}

bool PavoPlotManager::LoadPlotStyleTable(const wchar_t* path, PavoPlotStyleTable*& table) {
    table = nullptr;
    if (!path || !*path) return false;
    std::wstring problem;
    table = pavo::files::readPlotStyleTable(pavo::pathFromText(path), problem).release();
    return table != nullptr;
}

OxString searchPrintstylePath(const wchar_t* styleSheet, OxDbDatabase* db) {
    if (!styleSheet || !*styleSheet) return OxString();
    const std::filesystem::path name = pavo::files::withDefaultExtension(pavo::pathFromText(styleSheet), ".pst");
    return OxString(pavo::pathText(pavo::files::findSupportFile(pavo::pathText(name), db)));
}
