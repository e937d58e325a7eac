#include "DialogAvailability.h"

#include <cstdlib>
#include <filesystem>
#include <string_view>

#include "Session.h"
#include "base/Utf8.h"
#include "oxed.h"
#include "oxui.h"

namespace pavo::app {

namespace {

// The local X server of DISPLAY (":N" or ":N.S") listens on a socket; a
// display on another machine is taken as reachable. Qt would end the
// process on a display that does not answer, so it is checked first.
bool localXServerMissing(std::string_view display) {
    if (display.empty() || display[0] != ':') return false;
    std::string_view number = display.substr(1);
    number = number.substr(0, number.find('.'));
    std::error_code ec;
    return !std::filesystem::exists("/tmp/.X11-unix/X" + std::string(number), ec);
}

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

} // namespace

std::wstring whyNoDialog(const SessionOptions& options) {
    if (options.noDialogs) return L"Dialogs are turned off (--no-dialogs).";
    const std::string platform = environment("QT_QPA_PLATFORM");
    if (platform == "offscreen" || platform == "minimal") return L"";
    if (!environment("WAYLAND_DISPLAY").empty()) return L"";
    const std::string display = environment("DISPLAY");
    if (display.empty()) return L"There is no display to show a dialog on (DISPLAY is not set).";
    if (localXServerMissing(display))
        return L"There is no display to show a dialog on (no X server answers on " + fromUtf8(display) + L").";
    return L"";
}

} // namespace pavo::app

int oxuiRefuseDialog() {
    const pavo::app::Session* session = pavo::app::Session::current();
    if (!session) return IDCANCEL;
    const std::wstring why = pavo::app::whyNoDialog(session->options());
    if (why.empty()) return 0;
    oxutPrintf(L"\n%ls The dialog was not shown.", why);
    return IDCANCEL;
}
