// The names of the first seven colour indices: shown for those colours and
// accepted, in any letter case, wherever a colour is typed or read.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace pavo {

// Indices 1 to 7, in order.
inline constexpr std::array<const wchar_t*, 7> kStandardColorNames = {L"red",  L"yellow",  L"green", L"cyan",
                                                                      L"blue", L"magenta", L"white"};

// The name of index 1 to 7; null for any other index.
inline const wchar_t* standardColorName(int index) {
    return index >= 1 && index <= 7 ? kStandardColorNames[static_cast<std::size_t>(index - 1)] : nullptr;
}

// The index of a standard colour name, letter case ignored.
std::optional<std::uint16_t> standardColorIndex(std::wstring_view name);

} // namespace pavo
