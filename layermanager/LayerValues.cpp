#include "layermanager/LayerValues.h"

#include <algorithm>
#include <cmath>
#include <cwchar>

#include "OxString.h"
#include "editor/ColorText.h"
#include "layerhelper/LineWeightTable.h"
#include "layerhelper/Transparency.h"

namespace layermanager {

namespace {

std::wstring_view trimmed(std::wstring_view text) {
    const std::size_t first = text.find_first_not_of(L" \t");
    if (first == std::wstring_view::npos) return {};
    return text.substr(first, text.find_last_not_of(L" \t") - first + 1);
}

bool isOneOf(std::wstring_view text, std::initializer_list<const wchar_t*> words) {
    const OxString typed(text);
    return std::any_of(words.begin(), words.end(), [&](const wchar_t* w) { return typed.compareNoCase(w) == 0; });
}

// A whole decimal number, or nullopt.
std::optional<double> number(std::wstring_view text) {
    if (text.empty() || text.size() > 32) return std::nullopt;
    const std::wstring copy(text);
    wchar_t* end = nullptr;
    const double value = std::wcstod(copy.c_str(), &end);
    if (end != copy.c_str() + copy.size() || !std::isfinite(value)) return std::nullopt;
    return value;
}

} // namespace

std::optional<bool> parseSwitch(std::wstring_view text) {
    text = trimmed(text);
    if (isOneOf(text, {L"on", L"yes", L"true", L"1"})) return true;
    if (isOneOf(text, {L"off", L"no", L"false", L"0"})) return false;
    return std::nullopt;
}

std::optional<OxCmColor> parseLayerColor(std::wstring_view text) {
    return pavo::editor::parseColorText(trimmed(text), 0, true);
}

std::wstring colorText(const OxCmColor& color) { return color.colorNameForDisplay().str(); }

std::optional<int> parseLineweight(std::wstring_view text) {
    text = trimmed(text);
    if (isOneOf(text, {L"Default"})) return -3;
    if (text.size() > 2 && isOneOf(text.substr(text.size() - 2), {L"mm"})) text = trimmed(text.substr(0, text.size() - 2));
    const std::optional<double> millimetres = number(text);
    if (!millimetres || *millimetres < 0 || *millimetres > 3) return std::nullopt;
    const int hundredths = static_cast<int>(std::lround(*millimetres * 100.0));
    const auto& valid = vxlayer::kValidLineWeights;
    if (std::find(valid.begin(), valid.end(), hundredths) == valid.end()) return std::nullopt;
    if (std::fabs(*millimetres * 100.0 - hundredths) > 1e-6) return std::nullopt;
    return hundredths;
}

std::wstring lineweightText(int lineweight) {
    if (lineweight == -3) return L"Default";
    if (lineweight == -1) return L"ByLayer";
    if (lineweight == -2) return L"ByBlock";
    wchar_t text[32];
    std::swprintf(text, 32, L"%.2f mm", lineweight / 100.0);
    return text;
}

std::optional<OxCmTransparency> parseLayerTransparency(std::wstring_view text) {
    text = trimmed(text);
    if (text.empty() || text.size() > 3 || text.find_first_not_of(L"0123456789") != std::wstring_view::npos)
        return std::nullopt;
    const int percent = static_cast<int>(std::wcstol(std::wstring(text).c_str(), nullptr, 10));
    if (percent > 90) return std::nullopt;
    return OxCmTransparency(vxlayer::alphaOfPercent(percent));
}

int transparencyPercent(const OxCmTransparency& transparency) {
    if (!transparency.isByAlpha()) return 0;
    return static_cast<int>(std::lround(transparency.alphaPercent()));
}

} // namespace layermanager
