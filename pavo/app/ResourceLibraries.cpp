#include "ResourceLibraries.h"

#include <cstring>
#include <cwchar>
#include <optional>
#include <sstream>

#include "base/CaseFold.h"
#include "OxString.h"
#include "base/Utf8.h"
#include "files/FileRead.h"
#include "oxmd.h"
#include "win32compat.h"

namespace fs = std::filesystem;

namespace pavo::app {

namespace {

// The library's folder name: "X.dll" -> "X".
std::wstring folderName(const std::wstring& name) {
    const size_t dot = name.rfind(L'.');
    if (dot != std::wstring::npos && equalNoCase(std::wstring_view(name).substr(dot), L".dll"))
        return name.substr(0, dot);
    return name;
}

int hexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    return -1;
}

// Decodes the quoted text of one entry; false with `why` on a bad escape.
bool unquote(const std::string& line, size_t open, std::wstring& out, std::string& why) {
    std::string bytes;
    size_t i = open + 1;
    for (; i < line.size() && line[i] != '"'; ++i) {
        if (line[i] != '\\') {
            bytes += line[i];
            continue;
        }
        if (++i >= line.size()) break;
        switch (line[i]) {
        case 'n': bytes += '\n'; break;
        case 't': bytes += '\t'; break;
        case '"': bytes += '"'; break;
        case '\\': bytes += '\\'; break;
        case 'u': {
            if (i + 4 >= line.size()) {
                why = "\\u needs four hexadecimal digits";
                return false;
            }
            unsigned cp = 0;
            for (int k = 1; k <= 4; ++k) {
                const int v = hexValue(line[i + k]);
                if (v < 0) {
                    why = "\\u needs four hexadecimal digits";
                    return false;
                }
                cp = cp * 16 + static_cast<unsigned>(v);
            }
            bytes += toUtf8(std::wstring(1, static_cast<wchar_t>(cp)));
            i += 4;
            break;
        }
        default: why = std::string("unknown escape \\") + line[i]; return false;
        }
    }
    if (i >= line.size()) {
        why = "missing closing quote";
        return false;
    }
    for (size_t k = i + 1; k < line.size(); ++k)
        if (line[k] != ' ' && line[k] != '\t' && line[k] != '\r') {
            why = "text after the closing quote";
            return false;
        }
    out = fromUtf8(bytes);
    return true;
}

} // namespace

std::map<unsigned int, std::wstring> parseStringTable(const std::string& text, std::vector<std::string>& problems) {
    std::map<unsigned int, std::wstring> table;
    std::istringstream in(text);
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        size_t i = line.find_first_not_of(" \t\r");
        if (i == std::string::npos || line[i] == '#') continue;
        unsigned long id = 0;
        size_t digits = 0;
        while (i < line.size() && line[i] >= '0' && line[i] <= '9' && digits < 10) {
            id = id * 10 + static_cast<unsigned long>(line[i] - '0');
            ++i;
            ++digits;
        }
        const size_t quote = line.find('"', i);
        std::wstring value;
        std::string why;
        if (digits == 0 || id > 0xFFFFFFFFul)
            why = "an entry starts with its number";
        else if (quote == std::string::npos || line.find_first_not_of(" \t", i) != quote || quote == i)
            why = "the number is followed by blanks and the quoted text";
        else if (unquote(line, quote, value, why)) {
            if (!table.emplace(static_cast<unsigned int>(id), std::move(value)).second)
                why = "number " + std::to_string(id) + " appears twice";
        }
        if (!why.empty()) problems.push_back("line " + std::to_string(number) + ": " + why);
    }
    return table;
}

ResourceLibrary::ResourceLibrary(std::wstring name, fs::path folder, std::string language)
    : m_name(std::move(name)), m_folder(std::move(folder)), m_language(std::move(language)) {}

void ResourceLibrary::loadTable() const {
    m_loaded = true;
    fs::path file = m_folder / "strings.txt";
    if (!m_language.empty() && m_language != "en") {
        fs::path localized = m_folder / ("strings." + m_language + ".txt");
        if (fs::exists(localized)) file = localized;
    }
    std::string reason;
    const std::optional<std::string> content = files::readFileText(file, reason);
    if (!content) return; // a library without texts: every lookup falls back
    std::vector<std::string> problems;
    m_strings = parseStringTable(*content, problems);
    for (const std::string& p : problems) m_problems.push_back(file.string() + ": " + p);
}

const std::wstring* ResourceLibrary::text(unsigned int id) const {
    if (!m_loaded) loadTable();
    auto it = m_strings.find(id);
    return it == m_strings.end() ? nullptr : &it->second;
}

ResourceLibraries& ResourceLibraries::instance() {
    static ResourceLibraries libraries;
    return libraries;
}

void ResourceLibraries::setSearchPath(std::vector<fs::path> folders) {
    m_path = std::move(folders);
    m_cache.clear();
    m_stack.clear();
}

ResourceLibrary* ResourceLibraries::find(const std::wstring& name) {
    const std::wstring folder = folderName(name);
    if (folder.empty()) return nullptr;
    const std::wstring key = foldCase(folder);
    auto it = m_cache.find(key);
    if (it != m_cache.end()) return it->second.get();
    for (const fs::path& dir : m_path) {
        fs::path candidate = dir / fs::path(folder);
        std::error_code ec;
        if (fs::is_directory(candidate, ec)) {
            auto lib = std::make_unique<ResourceLibrary>(folder, candidate, m_language);
            ResourceLibrary* raw = lib.get();
            m_cache.emplace(key, std::move(lib));
            return raw;
        }
    }
    return nullptr;
}

bool ResourceLibraries::push(const std::wstring& name) {
    ResourceLibrary* lib = find(name);
    if (!lib || current() == lib) return false;
    m_stack.push_back(lib);
    return true;
}

void ResourceLibraries::pop() {
    if (!m_stack.empty()) m_stack.pop_back();
}

} // namespace pavo::app

using pavo::app::ResourceLibraries;
using pavo::app::ResourceLibrary;

bool SetCurrentResourceName(const wchar_t* name) { return name && ResourceLibraries::instance().push(name); }

void RestorePreviousResource() { ResourceLibraries::instance().pop(); }

HINSTANCE AfxGetResourceHandle() { return ResourceLibraries::instance().current(); }

int LoadStringW(HINSTANCE instance, unsigned int id, wchar_t* buffer, int size) {
    if (!buffer || size <= 0) return 0;
    buffer[0] = L'\0';
    const auto* lib = static_cast<const ResourceLibrary*>(instance);
    const std::wstring* text = lib ? lib->text(id) : nullptr;
    if (!text) return 0;
    const size_t n = std::min(text->size(), static_cast<size_t>(size - 1));
    std::wmemcpy(buffer, text->data(), n);
    buffer[n] = L'\0';
    return static_cast<int>(n);
}

OxString oxmdOxResourceString(unsigned int id, const wchar_t* defaultText) {
    const ResourceLibrary* lib = ResourceLibraries::instance().current();
    if (const std::wstring* text = lib ? lib->text(id) : nullptr) return OxString(*text);
    return OxString(defaultText ? defaultText : L"");
}

bool OxString::loadString(unsigned int id) {
    const ResourceLibrary* lib = ResourceLibraries::instance().current();
    const std::wstring* text = lib ? lib->text(id) : nullptr;
    if (!text) return false;
    *this = OxString(*text);
    return true;
}
