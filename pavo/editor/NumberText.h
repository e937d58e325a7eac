// Numbers typed on the command line. The whole text must be the number
// (surrounding blanks aside); the C locale is never consulted.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace pavo::editor {

// "1.5", "-2", "+3", ".5", "1e3"; not "inf", "nan" or "1,5".
std::optional<double> parseReal(std::wstring_view text);
// "12", "-7", "+3"; not "2.0" or "12abc".
std::optional<long long> parseInteger(std::wstring_view text);
// Text without leading and trailing blanks.
std::wstring_view trimBlanks(std::wstring_view text);
// Shortest text that reads back as `value` ("0.25", "3").
std::wstring realToText(double value);

} // namespace pavo::editor
