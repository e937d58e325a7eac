// The user settings reader on arbitrary bytes: every line is either a
// setting or a reported problem, and it never crashes or hangs.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "editor/UserSettings.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const pavo::editor::UserSettingsText parsed = pavo::editor::parseUserSettings(text);
    for (const pavo::editor::UserSetting& s : parsed.settings)
        if (s.name.empty() || s.line < 1) std::abort();
    return 0;
}
