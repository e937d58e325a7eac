// The context a command runs in: resource switching, dialogs, the document.
#pragma once

#include "IPavoCommand.h"

namespace pavo::app {

class Session;

class SessionContext : public IPavoBuildInCommandContext {
public:
    SessionContext(Session& session, bool dialogRequested);
    ~SessionContext();

    // The context of the command that runs now (null between commands).
    static SessionContext* active();

    bool setCurrentResource(const wchar_t* moduleFileName) override;
    void restoreResource(int reserved) override;
    bool isNoDialogContext() override;
    PavoDocumentData* documentState() override;
    bool isDialogRequested() override { return m_dialogRequested; }
    OxDbDatabase* database() override;
    void regenerate() override;

    // Switches made and not restored yet (a leak when the command ends).
    int unrestoredSwitches() const { return m_switches; }

private:
    Session& m_session;
    bool m_dialogRequested;
    int m_switches = 0;
    SessionContext* m_outer; // the context active before this one
};

} // namespace pavo::app
