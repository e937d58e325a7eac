#include "base/ColorNames.h"

#include "base/CaseFold.h"

namespace pavo {

std::optional<std::uint16_t> standardColorIndex(std::wstring_view name) {
    for (std::size_t i = 0; i < kStandardColorNames.size(); ++i)
        if (equalNoCase(name, kStandardColorNames[i])) return static_cast<std::uint16_t>(i + 1);
    return std::nullopt;
}

} // namespace pavo
