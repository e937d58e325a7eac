#include "files/LinetypeFile.h"

#include <unordered_set>

#include "DbInternal.h"
#include "LinetypeFileHook.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "base/CaseFold.h"
#include "editor/NumberText.h"
#include "files/FileRead.h"
#include "files/SupportFile.h"
#include "files/TextFileLines.h"
#include "oxed.h"
#include "oxut.h"

namespace pavo::files {
namespace {

// Reads "A,dash,gap,..." into `def`; the problem text when it is malformed.
std::wstring readPattern(const TextLine& line, LinetypeDefinition& def) {
    const std::vector<std::wstring> fields = splitFields(line.text, L',');
    if (!pavo::equalNoCase(fields[0], L"A")) return L"expected a pattern line \"A,dash,gap,...\"";
    if (fields.size() < 3) return L"a pattern needs at least a dash and a gap";
    for (size_t i = 1; i < fields.size(); ++i) {
        if (fields[i].find_first_of(L"[]") != std::wstring::npos)
            return L"shapes and text in linetypes are not supported";
        const std::optional<double> value = parseRealField(fields[i]);
        if (!value) return L"\"" + fields[i] + L"\" is not a number";
        def.dashes.push_back(*value);
    }
    if (def.dashes.front() < 0) return L"a pattern starts with a dash or a dot, not a gap";
    return {};
}

} // namespace

std::vector<const LinetypeDefinition*> LinetypeFile::matching(std::wstring_view pattern) const {
    const std::wstring wanted(pattern);
    std::vector<const LinetypeDefinition*> found;
    for (const LinetypeDefinition& def : linetypes)
        if (pavo::equalNoCase(def.name, wanted) || oxutWcMatchEx(def.name.c_str(), wanted.c_str(), true))
            found.push_back(&def);
    return found;
}

LinetypeFile parseLinetypeFile(std::string_view utf8, const std::filesystem::path& path) {
    LinetypeFile file;
    std::unordered_set<std::wstring> names;
    const std::vector<TextLine> lines = splitTextLines(utf8);
    for (size_t i = 0; i < lines.size(); ++i) {
        const TextLine& header = lines[i];
        if (!header.text.starts_with(L'*')) {
            file.problems.push_back(
                problemAt(path, header.number, L"expected a linetype header \"*NAME,description\""));
            continue;
        }
        LinetypeDefinition def;
        def.line = header.number;
        const size_t comma = header.text.find(L',');
        def.name = std::wstring(editor::trimBlanks(std::wstring_view(header.text).substr(1, comma - 1)));
        if (comma != std::wstring::npos)
            def.description = std::wstring(editor::trimBlanks(std::wstring_view(header.text).substr(comma + 1)));
        if (def.name.empty()) {
            file.problems.push_back(problemAt(path, header.number, L"the linetype has no name"));
        } else if (!names.insert(pavo::foldCase(def.name)).second) {
            file.problems.push_back(problemAt(path, header.number, L"linetype " + def.name + L" is defined twice"));
        }
        if (i + 1 == lines.size() || lines[i + 1].text.starts_with(L'*')) {
            file.problems.push_back(problemAt(path, header.number, L"linetype " + def.name + L" has no pattern line"));
            continue;
        }
        const TextLine& patternLine = lines[++i];
        if (const std::wstring problem = readPattern(patternLine, def); !problem.empty()) {
            file.problems.push_back(problemAt(path, patternLine.number, problem));
            continue;
        }
        file.linetypes.push_back(std::move(def));
    }
    return file;
}

std::optional<LinetypeFile> readLinetypeFile(const std::filesystem::path& path, std::string& problem) {
    const std::optional<std::string> text = readFileText(path, problem);
    if (!text) return std::nullopt;
    return parseLinetypeFile(*text, path);
}

Ox::ErrorStatus loadLinetypes(OxDbDatabase* db, const wchar_t* pattern, const wchar_t* fileName) {
    if (!db) return Ox::eNoDatabase;
    const std::filesystem::path path = findSupportFile(fileName, db);
    if (path.empty()) return Ox::eFileNotFound;
    std::string reason;
    const std::optional<LinetypeFile> file = readLinetypeFile(path, reason);
    if (!file) {
        oxutPrintf(L"\n%ls", cannotRead(path, reason));
        return Ox::eFileAccessErr;
    }
    if (!file->problems.empty()) {
        for (const std::wstring& problem : file->problems)
            oxutPrintf(L"\n%ls", problem);
        return Ox::eInvalidFileFormat;
    }
    const std::vector<const LinetypeDefinition*> wanted = file->matching(pattern);
    if (wanted.empty()) return Ox::eKeyNotFound;
    auto* table = OxDbLinetypeTable::cast(pavo::db::objectOf(db->linetypeTableId()));
    if (!table) return Ox::eNoDatabase;
    for (const LinetypeDefinition* def : wanted) {
        if (table->has(def->name.c_str())) continue; // the drawing's own definition stays
        if (oxdbGetSymbolSvc()->checkSymbolName(def->name.c_str(), true) != Ox::eOk) continue;
        auto* record = new OxDbLinetypeTableRecord();
        record->setName(def->name.c_str());
        record->setComments(def->description.c_str());
        record->setNumDashes(static_cast<int>(def->dashes.size()));
        for (size_t i = 0; i < def->dashes.size(); ++i)
            record->setDashLengthAt(static_cast<int>(i), def->dashes[i]);
        // The host adds to its own table even while a command reads it.
        pavo::db::addRecordDirect(table, record);
    }
    return Ox::eOk;
}

namespace {
// The database calls the reader through this hook (it does not depend on
// the files layer).
const bool s_loaderInstalled = [] {
    pavo::db::setLinetypeFileLoader(&loadLinetypes);
    return true;
}();
} // namespace

} // namespace pavo::files
