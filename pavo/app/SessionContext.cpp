#include "SessionContext.h"

#include "DialogAvailability.h"
#include "ResourceLibraries.h"
#include "Session.h"

namespace pavo::app {

namespace {
SessionContext* g_active = nullptr;
} // namespace

SessionContext::SessionContext(Session& session, bool dialogRequested)
    : m_session(session), m_dialogRequested(dialogRequested), m_outer(g_active) {
    g_active = this;
}

SessionContext::~SessionContext() {
    // A command that did not restore what it switched must not leave the
    // next one on its library.
    while (m_switches-- > 0) ResourceLibraries::instance().pop();
    g_active = m_outer;
}

SessionContext* SessionContext::active() { return g_active; }

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

bool SessionContext::isNoDialogContext() { return !whyNoDialog(m_session.options()).empty(); }

PavoDocumentData* SessionContext::documentState() { return &m_session.documentData(); }

OxDbDatabase* SessionContext::database() { return m_session.database(); }

void SessionContext::regenerate() { m_session.m_regenerateRequests++; }

} // namespace pavo::app
