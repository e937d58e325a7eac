#include "HelpTopics.h"

#include "ResourceLibraries.h"
#include "base/CaseFold.h"
#include "base/PathText.h"
#include "base/Utf8.h"
#include "files/FileRead.h"
#include "oxed.h"

namespace fs = std::filesystem;

namespace pavo::app {

namespace {

// The topic's file in `library`'s help folder, matched ignoring case.
std::optional<fs::path> topicFile(const fs::path& library, const std::wstring& topic) {
    std::error_code ec;
    for (fs::directory_iterator it(library / "help", ec), end; !ec && it != end; it.increment(ec)) {
        const fs::path& file = it->path();
        if (file.extension() == ".txt" && equalNoCase(pathText(file.stem()), topic)) return file;
    }
    return std::nullopt;
}

std::wstring readText(const fs::path& file) {
    std::string reason;
    std::wstring wide = fromUtf8(files::readFileText(file, reason).value_or(std::string()));
    while (!wide.empty() && (wide.back() == L'\n' || wide.back() == L'\r')) wide.pop_back();
    return wide;
}

} // namespace

std::optional<std::wstring> findHelpTopic(const std::wstring& topic) {
    if (topic.empty() || topic.find_first_of(L"/\\") != std::wstring::npos) return std::nullopt;
    ResourceLibraries& libraries = ResourceLibraries::instance();
    if (const ResourceLibrary* current = libraries.current())
        if (const auto file = topicFile(current->folder(), topic)) return readText(*file);
    std::error_code ec;
    for (const fs::path& folder : libraries.searchPath())
        for (fs::directory_iterator it(folder, ec), end; !ec && it != end; it.increment(ec))
            if (const auto file = topicFile(it->path(), topic)) return readText(*file);
    return std::nullopt;
}

int showHelpTopic(const std::wstring& topic) {
    const std::optional<std::wstring> text = findHelpTopic(topic);
    if (!text) {
        oxutPrintf(L"\nThere is no help topic \"%ls\".", topic);
        return STATUS_ERROR;
    }
    oxutPrintf(L"\n%ls", *text);
    return STATUS_NORMAL;
}

} // namespace pavo::app
