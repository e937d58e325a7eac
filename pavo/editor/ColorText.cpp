#include "editor/ColorText.h"

#include <cmath>

#include "PavoAcquireInput.h"
#include "base/CaseFold.h"
#include "base/ColorNames.h"
#include "editor/NumberText.h"

namespace pavo::editor {

namespace {

// "r,g,b", each 0 to 255.
std::optional<OxCmColor> rgbColor(std::wstring_view text) {
    int parts[3] = {0, 0, 0};
    for (int i = 0; i < 3; ++i) {
        const size_t comma = text.find(L',');
        if ((i < 2) != (comma != std::wstring_view::npos)) return std::nullopt;
        const std::optional<long long> n = parseInteger(trimBlanks(text.substr(0, comma)));
        if (!n || *n < 0 || *n > 255) return std::nullopt;
        parts[i] = static_cast<int>(*n);
        text = comma == std::wstring_view::npos ? std::wstring_view() : text.substr(comma + 1);
    }
    return OxCmColor::fromRgb(static_cast<std::uint8_t>(parts[0]), static_cast<std::uint8_t>(parts[1]),
                              static_cast<std::uint8_t>(parts[2]));
}

} // namespace

std::optional<OxCmColor> parseColorText(std::wstring_view text, unsigned short options, bool rgb) {
    using In = PavoAcquireInput;
    const auto allows = [options](unsigned short bit) { return (options & bit) != 0; };
    const std::wstring_view answer = trimBlanks(text);
    if (const std::optional<long long> n = parseInteger(answer)) {
        if (*n >= 1 && *n <= 255) return OxCmColor::fromIndex(static_cast<std::uint16_t>(*n));
        if (*n <= -1 && *n >= -255 && allows(In::kAllowNegativeIndex))
            return OxCmColor::fromIndex(static_cast<std::uint16_t>(static_cast<std::int16_t>(*n)));
        if (*n == 0 && allows(In::kAllowByBlock)) return OxCmColor::byBlock();
        if (*n == 256 && allows(In::kAllowByLayer)) return OxCmColor::byLayer();
        return std::nullopt;
    }
    if (const std::optional<std::uint16_t> index = pavo::standardColorIndex(answer)) return OxCmColor::fromIndex(*index);
    if (allows(In::kAllowByLayer) && pavo::equalNoCase(answer, L"ByLayer")) return OxCmColor::byLayer();
    if (allows(In::kAllowByBlock) && pavo::equalNoCase(answer, L"ByBlock")) return OxCmColor::byBlock();
    if (rgb) return rgbColor(answer);
    return std::nullopt;
}

std::optional<OxCmTransparency> parseTransparencyText(std::wstring_view text) {
    const std::wstring_view answer = trimBlanks(text);
    OxCmTransparency t;
    if (pavo::equalNoCase(answer, L"ByLayer")) return t;
    if (pavo::equalNoCase(answer, L"ByBlock")) {
        t.setMethod(OxCmTransparency::kByBlock);
        return t;
    }
    const std::optional<long long> percent = parseInteger(answer);
    if (!percent || *percent < 0 || *percent > 90) return std::nullopt;
    t.setAlpha(static_cast<std::uint8_t>(std::lround(255.0 - static_cast<double>(*percent) * 255.0 / 100.0)));
    return t;
}

std::wstring transparencyText(const OxCmTransparency& transparency) {
    if (transparency.isByLayer()) return L"ByLayer";
    if (transparency.isByBlock()) return L"ByBlock";
    return std::to_wstring(std::lround(transparency.alphaPercent()));
}

} // namespace pavo::editor
