// The user settings file on arbitrary bytes: every line is either a setting
// or a reported problem, a setting that is taken is within its range, and
// nothing crashes or hangs.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cwchar>
#include <string_view>

#include "editor/SystemVariables.h"
#include "editor/UserSettings.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const pavo::editor::UserSettingsText parsed = pavo::editor::parseUserSettings(text);
    for (const pavo::editor::UserSetting& s : parsed.settings)
        if (s.name.empty() || s.line < 1) std::abort();

    // Applied as a session applies its settings file (no drawing, nothing
    // written back).
    pavo::editor::SystemVariables variables([] { return nullptr; });
    variables.applyUserSettings(text);
    const std::wstring mode = variables.valueText(L"SETBYLAYERMODE");
    const long value = std::wcstol(mode.c_str(), nullptr, 10);
    if (mode.empty() || value < 0 || value > 255) std::abort();
    return 0;
}
