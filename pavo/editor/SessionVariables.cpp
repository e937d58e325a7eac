// System variables kept for the session.
#include "db/LineWeights.h"
#include "editor/SystemVariableTable.h"

namespace pavo::editor {
namespace {

using Type = SystemVariables::Type;
using Storage = SystemVariables::Storage;

std::wstring checkLineweight(const SysVarValue& value) {
    const long long* weight = std::get_if<long long>(&value);
    if (weight && db::isStandardLineWeight(*weight)) return {};
    return L"Value must be a standard lineweight: 0, 5, 9, 13, 15, 18, 20, 25, 30, 35, 40, 50, 53, 60, 70, 80, "
           L"90, 100, 106, 120, 140, 158, 200 or 211.";
}

SystemVariableRow session(std::wstring name, double minimum, double maximum, long long defaultValue,
                          std::wstring description) {
    return {{std::move(name), Type::Int16, Storage::Session, false, minimum, maximum, std::move(description)},
            defaultValue,
            {},
            {},
            {}};
}

} // namespace

std::vector<SystemVariableRow> sessionVariableRows() {
    std::vector<SystemVariableRow> rows = {
        session(L"ERRNO", 0, 32767, 0, L"Error code of the last failed pick"),
        session(L"EXPERT", 0, 5, 0, L"Which confirmations are skipped"),
        session(L"LWDEFAULT", 0, 211, 25, L"Default lineweight in hundredths of a millimetre"),
        session(L"LWUNITS", 0, 1, 1, L"Lineweight units: 0 inches, 1 millimetres"),
        session(L"PICKBOX", 0, 50, 3, L"Pick distance in drawing units"),
        session(L"PICKFIRST", 0, 1, 1, L"Commands see the objects selected before them"),
        session(L"SETBYLAYERMODE", 0, 255, 255, L"Properties that SETBYLAYER changes (bits)"),
        session(L"UNDOLIMIT", 1, 32767, 100, L"Most commands that U and UNDO can undo"),
    };
    for (SystemVariableRow& row : rows) {
        if (row.definition.name == L"LWDEFAULT") row.check = checkLineweight;
        if (row.definition.name == L"SETBYLAYERMODE") row.definition.storage = Storage::User;
    }
    return rows;
}

} // namespace pavo::editor
