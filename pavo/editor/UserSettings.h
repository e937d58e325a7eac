// The user's settings file: system variables kept for the user between
// sessions (SETBYLAYERMODE), in $XDG_CONFIG_HOME/pavo/settings (or
// ~/.config/pavo/settings). One "NAME=value" a line; '#' starts a comment.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace pavo::editor {

struct UserSetting {
    std::wstring name, value;
    int line = 0;
};

struct UserSettingsText {
    std::vector<UserSetting> settings;
    std::vector<std::wstring> problems; // "LINE: what is wrong", one each
};

// Reads the text of a settings file; lines it cannot read are reported and
// left out. Never throws, whatever the bytes.
UserSettingsText parseUserSettings(std::string_view text);

// The file in the user's configuration folder; empty when neither
// XDG_CONFIG_HOME nor HOME is set.
std::filesystem::path defaultUserSettingsFile();

// Writes the settings: a temporary file renamed into place, so that the old
// file stays whole when writing fails. false with `error` set on failure.
bool writeUserSettings(const std::filesystem::path& file, const std::vector<UserSetting>& settings, std::string& error);

} // namespace pavo::editor
