// Resource libraries: a library named "X.dll" is the folder X/ on the
// resource path, holding a string table (strings.txt, or strings.<lang>.txt
// for another language) and dialog layouts. Libraries are made current on a
// stack; the numbered texts come from the current one.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace pavo::app {

class ResourceLibrary {
public:
    ResourceLibrary(std::wstring name, std::filesystem::path folder, std::string language);
    const std::wstring& name() const { return m_name; }
    const std::filesystem::path& folder() const { return m_folder; }
    // The text of `id`, or null when the table has none.
    const std::wstring* text(unsigned int id) const;
    // Problems found while reading the table (reported once by the session).
    const std::vector<std::string>& problems() const { return m_problems; }

private:
    void loadTable() const;
    std::wstring m_name;
    std::filesystem::path m_folder;
    std::string m_language;
    mutable bool m_loaded = false;
    mutable std::map<unsigned int, std::wstring> m_strings;
    mutable std::vector<std::string> m_problems;
};

class ResourceLibraries {
public:
    static ResourceLibraries& instance();

    void setSearchPath(std::vector<std::filesystem::path> folders);
    const std::vector<std::filesystem::path>& searchPath() const { return m_path; }
    void setLanguage(std::string language) { m_language = std::move(language); }

    // The library of that name ("VxLayerCmdsRes.dll" or "VxLayerCmdsRes"),
    // found on the path and cached, or null.
    ResourceLibrary* find(const std::wstring& name);
    // Makes a library current; false when it is absent or already current.
    bool push(const std::wstring& name);
    void pop();
    ResourceLibrary* current() const { return m_stack.empty() ? nullptr : m_stack.back(); }
    size_t depth() const { return m_stack.size(); }
    // Forgets the stack (after a command that failed to restore it).
    void resetStack() { m_stack.clear(); }

private:
    std::vector<std::filesystem::path> m_path;
    std::string m_language;
    std::map<std::wstring, std::unique_ptr<ResourceLibrary>> m_cache; // by folded name
    std::vector<ResourceLibrary*> m_stack;
};

// Parses one string table; `problems` receives "line N: why" for bad lines.
std::map<unsigned int, std::wstring> parseStringTable(const std::string& text, std::vector<std::string>& problems);

} // namespace pavo::app
