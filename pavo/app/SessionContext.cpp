#include "SessionContext.h"

#include <cstdlib>

#include "ResourceLibraries.h"
#include "Session.h"

namespace pavo::app {

SessionContext::~SessionContext() {
    // A command that did not restore what it switched must not leave the
    // next one on its library.
    while (m_switches-- > 0) ResourceLibraries::instance().pop();
}

bool SessionContext::setCurrentResource(const wchar_t* moduleFileName) {
    if (!moduleFileName || !ResourceLibraries::instance().push(moduleFileName)) return false;
    ++m_switches;
    return true;
}

void SessionContext::restoreResource(int) {
    if (m_switches <= 0) return;
    --m_switches;
    ResourceLibraries::instance().pop();
}

bool SessionContext::isNoDialogContext() {
    if (m_session.options().noDialogs) return true;
    const char* display = std::getenv("DISPLAY");
    const char* wayland = std::getenv("WAYLAND_DISPLAY");
    const char* platform = std::getenv("QT_QPA_PLATFORM");
    const bool offscreen = platform && std::string(platform) == "offscreen";
    return !offscreen && !(display && *display) && !(wayland && *wayland);
}

PavoDocumentData* SessionContext::documentState() { return &m_session.documentData(); }

OxDbDatabase* SessionContext::database() { return m_session.database(); }

void SessionContext::regenerate() { m_session.m_regenerateRequests++; }

} // namespace pavo::app
