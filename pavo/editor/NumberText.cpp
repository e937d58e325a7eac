#include "editor/NumberText.h"

#include <charconv>
#include <cmath>
#include <cwctype>

#include <fmt/format.h>

namespace pavo::editor {
namespace {

// The ASCII text of a number, or nothing when `text` holds anything else.
std::optional<std::string> asciiNumber(std::wstring_view text) {
    text = trimBlanks(text);
    // from_chars takes no '+'; one is allowed before the digits.
    if (!text.empty() && text.front() == L'+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == L'-') return std::nullopt;
    }
    if (text.empty()) return std::nullopt;
    std::string ascii;
    for (wchar_t ch : text) {
        if (ch > 0x7F) return std::nullopt;
        ascii += static_cast<char>(ch);
    }
    return ascii;
}

} // namespace

std::wstring_view trimBlanks(std::wstring_view text) {
    while (!text.empty() && std::iswspace(static_cast<wint_t>(text.front())))
        text.remove_prefix(1);
    while (!text.empty() && std::iswspace(static_cast<wint_t>(text.back())))
        text.remove_suffix(1);
    return text;
}

std::optional<double> parseReal(std::wstring_view text) {
    const std::optional<std::string> ascii = asciiNumber(text);
    if (!ascii) return std::nullopt;
    double value = 0;
    const char* end = ascii->data() + ascii->size();
    const auto [ptr, ec] = std::from_chars(ascii->data(), end, value, std::chars_format::general);
    if (ec != std::errc() || ptr != end || !std::isfinite(value)) return std::nullopt;
    return value;
}

std::optional<long long> parseInteger(std::wstring_view text) {
    const std::optional<std::string> ascii = asciiNumber(text);
    if (!ascii) return std::nullopt;
    long long value = 0;
    const char* end = ascii->data() + ascii->size();
    const auto [ptr, ec] = std::from_chars(ascii->data(), end, value);
    if (ec != std::errc() || ptr != end) return std::nullopt;
    return value;
}

std::wstring realToText(double value) {
    const std::string text = fmt::format("{}", value);
    return std::wstring(text.begin(), text.end());
}

} // namespace pavo::editor
