// System variables: a table of name, type, default, range and where each is
// kept (the drawing, or the session).
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "OxString.h"
#include "resbuf.h"

class OxDbDatabase;

namespace pavo::editor {

class SystemVariables {
public:
    enum class Type { Int16, Int32, Real, String };
    // User variables last for the session and are kept in the user's
    // settings file for the next ones.
    enum class Storage { Drawing, Session, User };

    struct Definition {
        std::wstring name;
        Type type;
        Storage storage;
        bool readOnly = false;
        double minimum = 0, maximum = 0; // numbers; equal bounds mean no range
        std::wstring description;
    };

    // `database` gives the working database for drawing variables.
    explicit SystemVariables(std::function<OxDbDatabase*()> database);

    const std::vector<Definition>& definitions() const;
    const Definition* find(const wchar_t* name) const;

    // STATUS_NORMAL with the value (a string value is host-allocated; the
    // caller frees it with oxutDelBuffer); STATUS_ERROR for an unknown name.
    int get(const wchar_t* name, resbuf& value) const;
    // STATUS_NORMAL, or STATUS_ERROR with `message` saying why it was refused
    // (unknown, read-only, out of range, wrong type, no such layer...).
    int set(const wchar_t* name, const resbuf& value, std::wstring* message = nullptr);
    // Parses text typed for the variable's type, then set().
    int setFromText(const wchar_t* name, const std::wstring& text, std::wstring* message = nullptr);
    // The value as text, for prompts and listings ("CLAYER" -> "0").
    std::wstring valueText(const wchar_t* name) const;

    // Session values that a caller may set directly (ERRNO from picks).
    void setSessionInt(const wchar_t* name, int value);

    // Reads the user variables from the settings file `file` and keeps them
    // there from now on (an empty path: for this session only). Returns
    // what was wrong in the file, one line each; those lines are ignored.
    std::vector<std::wstring> useSettingsFile(const std::filesystem::path& file);
    // Sets the user variables named in `text`, a settings file's content;
    // what was wrong, one line each, as for useSettingsFile.
    std::vector<std::wstring> applyUserSettings(std::string_view text);
    // Where a failure to keep a user variable is reported.
    void setWarningSink(std::function<void(const std::wstring&)> sink);

private:
    struct Impl;
    std::shared_ptr<Impl> m_impl;
};

// The working database of the host application services: the usual source
// for SystemVariables' drawing variables.
std::function<OxDbDatabase*()> workingDatabaseSource();

} // namespace pavo::editor
