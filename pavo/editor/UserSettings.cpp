#include "editor/UserSettings.h"

#include <cstdio>
#include <cstdlib>
#include "base/Utf8.h"
#include "editor/NumberText.h"
#include "files/AtomicFile.h"

namespace pavo::editor {

namespace {

constexpr std::size_t kLongestLine = 4096;

std::wstring lineProblem(int line, const std::wstring& what) { return L"line " + std::to_wstring(line) + L": " + what; }

} // namespace

UserSettingsText parseUserSettings(std::string_view text) {
    UserSettingsText out;
    int number = 0;
    while (!text.empty()) {
        const std::size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text = end == std::string_view::npos ? std::string_view() : text.substr(end + 1);
        ++number;
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        const std::wstring wide = fromUtf8(std::string(line.substr(0, kLongestLine)));
        const std::wstring_view trimmed = trimBlanks(wide);
        if (trimmed.empty() || trimmed[0] == L'#') continue;
        if (line.size() > kLongestLine || wide.find(L'\0') != std::wstring::npos) {
            out.problems.push_back(lineProblem(number, L"the line cannot be read"));
            continue;
        }
        const std::size_t equals = trimmed.find(L'=');
        const std::wstring_view name = trimBlanks(trimmed.substr(0, equals));
        if (equals == std::wstring_view::npos || name.empty()) {
            out.problems.push_back(lineProblem(number, L"expected NAME=value"));
            continue;
        }
        out.settings.push_back({std::wstring(name), std::wstring(trimBlanks(trimmed.substr(equals + 1))), number});
    }
    return out;
}

std::filesystem::path defaultUserSettingsFile() {
    const char* config = std::getenv("XDG_CONFIG_HOME");
    if (config && *config == '/') return std::filesystem::path(config) / "pavo" / "settings";
    const char* home = std::getenv("HOME");
    if (home && *home) return std::filesystem::path(home) / ".config" / "pavo" / "settings";
    return {};
}

bool writeUserSettings(const std::filesystem::path& file, const std::vector<UserSetting>& settings, std::string& error) {
    std::error_code ec;
    std::filesystem::create_directories(file.parent_path(), ec);
    std::string text = "# pavo settings kept between sessions: NAME=value\n";
    for (const UserSetting& s : settings)
        text += toUtf8(s.name) + '=' + toUtf8(s.value) + '\n';
    return files::replaceFileAtomically(file, text, error, files::Backup::None);
}

} // namespace pavo::editor
