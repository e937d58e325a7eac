#include "files/UserPath.h"

#include <cstdlib>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

#include "base/PathText.h"

namespace fs = std::filesystem;

namespace pavo::files {
namespace {

constexpr std::wstring_view kBlanks = L" \t";

// The home folder of `user` ("" for the one running pavo); nullopt when
// there is no such user.
std::optional<std::string> homeOf(const std::string& user) {
    if (user.empty()) {
        if (const char* home = std::getenv("HOME"); home && *home) return std::string(home);
    }
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    const int error = user.empty() ? ::getpwuid_r(::getuid(), &entry, buffer.data(), buffer.size(), &found)
                                   : ::getpwnam_r(user.c_str(), &entry, buffer.data(), buffer.size(), &found);
    if (error != 0 || !found || !found->pw_dir) return std::nullopt;
    return std::string(found->pw_dir);
}

} // namespace

std::optional<fs::path> userPath(std::wstring_view typed) {
    const std::size_t first = typed.find_first_not_of(kBlanks);
    if (first == std::wstring_view::npos) return std::nullopt;
    typed = typed.substr(first, typed.find_last_not_of(kBlanks) - first + 1);
    if (typed.size() >= 2 && typed.front() == L'"' && typed.back() == L'"') typed = typed.substr(1, typed.size() - 2);
    if (typed.empty()) return std::nullopt;
    const std::string text = pathFromText(typed).native();
    if (text[0] != '~') return fs::path(text);
    const std::size_t slash = text.find('/');
    const std::optional<std::string> home = homeOf(text.substr(1, slash == std::string::npos ? slash : slash - 1));
    if (!home) return fs::path(text); // "~word" that is no user: a name like any other
    return fs::path(*home + (slash == std::string::npos ? std::string() : text.substr(slash)));
}

fs::path withDefaultExtension(fs::path path, std::string_view extension) {
    if (path.has_filename() && !path.has_extension()) path += std::string(extension);
    return path;
}

fs::path drawingToOpen(const fs::path& path) {
    const fs::path withExtension = withDefaultExtension(path, ".pvd");
    struct stat status {};
    return withExtension != path && ::stat(withExtension.c_str(), &status) == 0 ? withExtension : path;
}

bool namesFolder(const fs::path& path) {
    struct stat status {};
    return !path.has_filename() || (::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode));
}

} // namespace pavo::files
