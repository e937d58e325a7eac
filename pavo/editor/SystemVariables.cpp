#include "editor/SystemVariables.h"

#include <algorithm>
#include <climits>

#include "OxDbServices.h"
#include "base/CaseFold.h"
#include "editor/NumberText.h"
#include "editor/SystemVariableTable.h"
#include "editor/UserSettings.h"
#include "files/FileRead.h"
#include "base/Utf8.h"

namespace pavo::editor {
namespace {

bool isInteger(SystemVariables::Type type) {
    return type == SystemVariables::Type::Int16 || type == SystemVariables::Type::Int32;
}

int refuse(std::wstring* message, std::wstring text) {
    if (message) *message = std::move(text);
    return STATUS_ERROR;
}

std::wstring rangeText(double minimum, double maximum) {
    return L"Value must be between " + realToText(minimum) + L" and " + realToText(maximum) + L".";
}

// The value a result buffer holds, read for a variable of `type`.
std::optional<SysVarValue> fromResbuf(SystemVariables::Type type, const resbuf& rb) {
    const short t = rb.restype;
    if (type == SystemVariables::Type::String) {
        if (t == RTSTR) return std::wstring(rb.resval.rstring ? rb.resval.rstring : L"");
        return std::nullopt;
    }
    const wchar_t* typed = t == RTSTR && rb.resval.rstring ? rb.resval.rstring : nullptr;
    if (isInteger(type)) {
        if (t == RTSHORT) return static_cast<long long>(rb.resval.rint);
        if (t == RTLONG) return static_cast<long long>(rb.resval.rlong);
        if (t == RTREAL && rb.resval.rreal == static_cast<double>(static_cast<long long>(rb.resval.rreal))) {
            return static_cast<long long>(rb.resval.rreal);
        }
        if (typed) {
            if (const std::optional<long long> n = parseInteger(typed)) return *n;
        }
        return std::nullopt;
    }
    if (t == RTREAL || t == RTANG) return rb.resval.rreal;
    if (t == RTSHORT) return static_cast<double>(rb.resval.rint);
    if (t == RTLONG) return static_cast<double>(rb.resval.rlong);
    if (typed) {
        if (const std::optional<double> r = parseReal(typed)) return *r;
    }
    return std::nullopt;
}

const wchar_t* expectedValue(SystemVariables::Type type) {
    return type == SystemVariables::Type::String ? L"Requires a text value."
           : isInteger(type)                     ? L"Requires an integer value."
                                                 : L"Requires numeric value.";
}

} // namespace

struct SystemVariables::Impl {
    std::function<OxDbDatabase*()> database;
    std::vector<SystemVariableRow> rows; // by name
    std::vector<Definition> definitions;
    std::vector<SysVarValue> sessionValues;    // per row; used by session variables
    std::map<std::wstring, std::size_t> index; // folded name -> row
    std::filesystem::path settingsFile;        // where user variables are kept
    std::function<void(const std::wstring&)> warn;

    void saveUserVariables() {
        if (settingsFile.empty()) return;
        std::vector<UserSetting> settings;
        for (std::size_t i = 0; i < rows.size(); ++i)
            if (rows[i].definition.storage == Storage::User)
                settings.push_back({rows[i].definition.name, std::to_wstring(std::get<long long>(sessionValues[i]))});
        std::string error;
        if (!writeUserSettings(settingsFile, settings, error) && warn)
            warn(L"The setting is kept for this session only: " + fromUtf8(error) + L".");
    }

    std::optional<std::size_t> find(const wchar_t* name) const {
        if (!name) return std::nullopt;
        const auto it = index.find(pavo::foldCase(name));
        if (it == index.end()) return std::nullopt;
        return it->second;
    }

    std::optional<SysVarValue> value(std::size_t i) const {
        const SystemVariableRow& row = rows[i];
        if (row.definition.storage != Storage::Drawing) return sessionValues[i];
        OxDbDatabase* db = database ? database() : nullptr;
        if (!db || !row.read) return std::nullopt;
        return row.read(*db);
    }

    int assign(std::size_t i, const SysVarValue& value, std::wstring* message) {
        const SystemVariableRow& row = rows[i];
        const Definition& def = row.definition;
        if (def.type != Type::String) {
            const double number = std::holds_alternative<long long>(value)
                                      ? static_cast<double>(std::get<long long>(value))
                                      : std::get<double>(value);
            if (def.minimum != def.maximum && (number < def.minimum || number > def.maximum)) {
                return refuse(message, rangeText(def.minimum, def.maximum));
            }
            if (def.type == Type::Int16 && (number < SHRT_MIN || number > SHRT_MAX)) {
                return refuse(message, rangeText(SHRT_MIN, SHRT_MAX));
            }
            if (def.type == Type::Int32 && (number < INT_MIN || number > INT_MAX)) {
                return refuse(message, rangeText(INT_MIN, INT_MAX));
            }
        }
        if (row.check) {
            if (std::wstring why = row.check(value); !why.empty()) return refuse(message, std::move(why));
        }
        if (def.storage != Storage::Drawing) {
            const bool changed = sessionValues[i] != value;
            sessionValues[i] = value;
            if (def.storage == Storage::User && changed) saveUserVariables();
            return STATUS_NORMAL;
        }
        OxDbDatabase* db = database ? database() : nullptr;
        if (!db) return refuse(message, L"No drawing is open.");
        if (std::wstring why = row.write(*db, value); !why.empty()) return refuse(message, std::move(why));
        return STATUS_NORMAL;
    }

    // Refuses unknown and read-only variables; the row otherwise.
    std::optional<std::size_t> writable(const wchar_t* name, std::wstring* message) const {
        const std::optional<std::size_t> i = find(name);
        if (!i) {
            refuse(message, L"Unknown variable name.");
        } else if (rows[*i].definition.readOnly) {
            refuse(message, rows[*i].definition.name + L" is read-only.");
            return std::nullopt;
        }
        return i;
    }
};

SystemVariables::SystemVariables(std::function<OxDbDatabase*()> database) : m_impl(std::make_shared<Impl>()) {
    m_impl->database = std::move(database);
    m_impl->rows = sessionVariableRows();
    std::vector<SystemVariableRow> drawingRows = drawingVariableRows();
    std::move(drawingRows.begin(), drawingRows.end(), std::back_inserter(m_impl->rows));
    std::sort(m_impl->rows.begin(), m_impl->rows.end(), [](const SystemVariableRow& a, const SystemVariableRow& b) {
        return a.definition.name < b.definition.name;
    });
    for (std::size_t i = 0; i < m_impl->rows.size(); ++i) {
        m_impl->definitions.push_back(m_impl->rows[i].definition);
        m_impl->sessionValues.push_back(m_impl->rows[i].defaultValue);
        m_impl->index.emplace(pavo::foldCase(m_impl->rows[i].definition.name), i);
    }
}

const std::vector<SystemVariables::Definition>& SystemVariables::definitions() const { return m_impl->definitions; }

const SystemVariables::Definition* SystemVariables::find(const wchar_t* name) const {
    const std::optional<std::size_t> i = m_impl->find(name);
    return i ? &m_impl->definitions[*i] : nullptr;
}

int SystemVariables::get(const wchar_t* name, resbuf& value) const {
    const std::optional<std::size_t> i = m_impl->find(name);
    if (!i) return STATUS_ERROR;
    const std::optional<SysVarValue> current = m_impl->value(*i);
    if (!current) return STATUS_ERROR;
    value.rbnext = nullptr;
    switch (m_impl->rows[*i].definition.type) {
    case Type::Int16:
        value.restype = RTSHORT;
        value.resval.rint = static_cast<short>(std::get<long long>(*current));
        break;
    case Type::Int32:
        value.restype = RTLONG;
        value.resval.rlong = static_cast<std::int32_t>(std::get<long long>(*current));
        break;
    case Type::Real:
        value.restype = RTREAL;
        value.resval.rreal = std::get<double>(*current);
        break;
    case Type::String:
        value.restype = RTSTR;
        oxutNewString(std::get<std::wstring>(*current).c_str(), value.resval.rstring);
        break;
    }
    return STATUS_NORMAL;
}

int SystemVariables::set(const wchar_t* name, const resbuf& value, std::wstring* message) {
    const std::optional<std::size_t> i = m_impl->writable(name, message);
    if (!i) return STATUS_ERROR;
    const Type type = m_impl->rows[*i].definition.type;
    const std::optional<SysVarValue> converted = fromResbuf(type, value);
    if (!converted) return refuse(message, expectedValue(type));
    return m_impl->assign(*i, *converted, message);
}

int SystemVariables::setFromText(const wchar_t* name, const std::wstring& text, std::wstring* message) {
    const std::optional<std::size_t> i = m_impl->writable(name, message);
    if (!i) return STATUS_ERROR;
    const Type type = m_impl->rows[*i].definition.type;
    const std::wstring_view typed = trimBlanks(text);
    std::optional<SysVarValue> value;
    if (type == Type::String) {
        value = std::wstring(typed);
    } else if (isInteger(type)) {
        if (const std::optional<long long> n = parseInteger(typed)) value = *n;
    } else if (const std::optional<double> r = parseReal(typed)) {
        value = *r;
    }
    if (!value) return refuse(message, expectedValue(type));
    return m_impl->assign(*i, *value, message);
}

std::wstring SystemVariables::valueText(const wchar_t* name) const {
    const std::optional<std::size_t> i = m_impl->find(name);
    if (!i) return {};
    const std::optional<SysVarValue> value = m_impl->value(*i);
    if (!value) return {};
    if (const long long* n = std::get_if<long long>(&*value)) return std::to_wstring(*n);
    if (const double* r = std::get_if<double>(&*value)) return realToText(*r);
    return std::get<std::wstring>(*value);
}

void SystemVariables::setSessionInt(const wchar_t* name, int value) {
    const std::optional<std::size_t> i = m_impl->find(name);
    if (i && m_impl->rows[*i].definition.storage == Storage::Session && isInteger(m_impl->rows[*i].definition.type)) {
        m_impl->sessionValues[*i] = static_cast<long long>(value);
    }
}

std::vector<std::wstring> SystemVariables::useSettingsFile(const std::filesystem::path& file) {
    m_impl->settingsFile.clear(); // reading the file must not write it back
    std::vector<std::wstring> problems;
    std::error_code ec;
    if (!file.empty() && std::filesystem::exists(file, ec)) {
        std::string reason;
        const std::optional<std::string> text = files::readFileText(file, reason);
        if (!text) problems.push_back(L"the file cannot be read: " + fromUtf8(reason));
        const std::vector<std::wstring> applied = applyUserSettings(text ? *text : std::string());
        problems.insert(problems.end(), applied.begin(), applied.end());
    }
    m_impl->settingsFile = file;
    return problems;
}

std::vector<std::wstring> SystemVariables::applyUserSettings(std::string_view text) {
    UserSettingsText parsed = parseUserSettings(text);
    std::vector<std::wstring> problems = std::move(parsed.problems);
    for (const UserSetting& setting : parsed.settings) {
        const std::optional<std::size_t> i = m_impl->find(setting.name.c_str());
        if (!i || m_impl->rows[*i].definition.storage != Storage::User) {
            problems.push_back(L"line " + std::to_wstring(setting.line) + L": " + setting.name +
                               L" is not a setting kept between sessions");
            continue;
        }
        std::wstring why;
        if (setFromText(setting.name.c_str(), setting.value, &why) != STATUS_NORMAL)
            problems.push_back(L"line " + std::to_wstring(setting.line) + L": " + setting.name + L": " + why);
    }
    return problems;
}

void SystemVariables::setWarningSink(std::function<void(const std::wstring&)> sink) { m_impl->warn = std::move(sink); }

std::function<OxDbDatabase*()> workingDatabaseSource() {
    return [] {
        OxDbHostApplicationServices* services = oxdbHostApplicationServices();
        return services ? services->workingDatabase() : nullptr;
    };
}

} // namespace pavo::editor
