// The rows of the system variable table: each variable's definition, its
// default, extra checks, and for drawing variables how the working database
// keeps it.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "editor/SystemVariables.h"

class OxDbDatabase;

namespace pavo::editor {

// A variable's value: an integer (Int16, Int32), a real or a text.
using SysVarValue = std::variant<long long, double, std::wstring>;

struct SystemVariableRow {
    SystemVariables::Definition definition;
    SysVarValue defaultValue;
    // A refusal message for a value inside the range but still not allowed
    // (LWDEFAULT takes only standard lineweights); empty when accepted.
    std::function<std::wstring(const SysVarValue&)> check;
    // Drawing variables: the value in the database (nothing when it cannot
    // be read), and writing it (a refusal message, empty on success).
    std::function<std::optional<SysVarValue>(OxDbDatabase&)> read;
    std::function<std::wstring(OxDbDatabase&, const SysVarValue&)> write;
};

std::vector<SystemVariableRow> sessionVariableRows();
std::vector<SystemVariableRow> drawingVariableRows();

} // namespace pavo::editor
