#include "files/SupportFile.h"

#include <string>
#include <vector>

#include "OxDbDatabase.h"
#include "base/PathText.h"
#include "oxed.h"

namespace fs = std::filesystem;

namespace pavo::files {

fs::path findSupportFile(std::wstring_view name, const OxDbDatabase* db) {
    if (name.empty()) return {};
    std::error_code ec;
    if (db && !db->fileName().isEmpty() && !pathFromText(name).is_absolute()) {
        const fs::path candidate = pathFromText(db->fileName().view()).parent_path() / pathFromText(name);
        if (fs::is_regular_file(candidate, ec)) return candidate;
    }
    std::vector<wchar_t> found(4096);
    const std::wstring wanted(name);
    if (oxedFindFile(wanted.c_str(), found.data(), static_cast<int>(found.size())) != STATUS_NORMAL) return {};
    return pathFromText(found.data());
}

} // namespace pavo::files
