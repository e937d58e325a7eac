// Whether this session can show a dialog, and why not.
#pragma once

#include <string>

namespace pavo::app {

struct SessionOptions;

// Empty when a dialog can be shown: Qt's platform is "offscreen" or
// "minimal", or there is a display (Wayland, or an X server whose socket
// exists). Otherwise one line saying why not.
std::wstring whyNoDialog(const SessionOptions& options);

} // namespace pavo::app
