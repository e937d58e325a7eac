// The command framework: module application objects, the command store,
// command factories, commands and their context.
#pragma once

#include <cstdint>

#include "PavoExport.h"
#include "oxstatus.h"

class OxDbDatabase;
class IPavoCommandFactory;

// Notifications sent to command modules.
enum PavoCmdAppMsg : int {
    kPavoMsgNone = 0,
    kPavoMsgDocumentOpened = 1,
    kPavoMsgDocumentClosing = 2,
    kPavoMsgQuitting = 3,
};

// The command store of the host; modules add and remove their factories.
class IPavoCommandStore {
public:
    // Registers the command the factory describes (names and flags are
    // queried from it). 0 on success, else an Ox::ErrorStatus.
    virtual int addCommand(IPavoCommandFactory* factory, unsigned int reserved) = 0;
    // Removes a command by global name. 0 on success.
    virtual int removeCommand(const wchar_t* globalName) = 0;

protected:
    ~IPavoCommandStore() = default;
};

// A module's application object, returned by its GetPavoCmdApplication.
class IPavoCmdApplication {
public:
    virtual bool initialize() = 0;
    virtual int registCommand(IPavoCommandStore* store) = 0;
    virtual int unregistCommand(IPavoCommandStore* store) = 0;
    virtual void uninitialize() = 0;
    virtual std::intptr_t sendMessage(PavoCmdAppMsg msg, void* param1, void* param2) = 0;

protected:
    ~IPavoCmdApplication() = default;
};

typedef IPavoCmdApplication* (*GetPavoCmdApplicationFn)();

// Per-document state seen by commands.
struct PavoDocumentData {
    enum : std::uint32_t {
        kScriptRunning = 1u << 0,
        kInputNotTerminal = 1u << 2,
    };
    std::uint32_t stateFlags = 0;
    // Set by a command while it runs.
    unsigned char commandActive = 0;
};

class IPavoBuildInCommandContext {
public:
    // Makes the resource library current for this command; true if it
    // switched (and restoreResource must follow).
    virtual bool setCurrentResource(const wchar_t* moduleFileName) = 0;
    virtual void restoreResource(int reserved) = 0;
    // True when no dialog can be shown (no display, or --no-dialogs).
    virtual bool isNoDialogContext() = 0;
    virtual PavoDocumentData* documentState() = 0;
    // True for the command right after INITDIA.
    virtual bool isDialogRequested() = 0;
    virtual OxDbDatabase* database() = 0;
    // Asks for the drawing to be regenerated.
    virtual void regenerate() = 0;

protected:
    ~IPavoBuildInCommandContext() = default;
};

// Parameters of a command started by an entity's grip action (unused here).
struct EntityParameters {
    const void* reserved = nullptr;
};

class IPavoGUIManagerClient {
public:
    virtual ~IPavoGUIManagerClient() = default;
};

class IPavoBuildInCommand : public IPavoGUIManagerClient {
public:
    virtual int doAction(IPavoBuildInCommandContext*, EntityParameters&, int) { return STATUS_NORMAL; }
    virtual int execute(IPavoBuildInCommandContext* ctx) = 0;
};

class IPavoCommandFactory {
public:
    virtual IPavoBuildInCommand* create() = 0;
    virtual void release(IPavoBuildInCommand* cmd) = 0;
    virtual unsigned int flags() const = 0;
    virtual void addFlags(unsigned int bits, bool set) = 0;
    virtual const wchar_t* module() const = 0;
    virtual const wchar_t* globalName() const = 0;
    virtual const wchar_t* localName() const = 0;
    virtual const wchar_t* description() const = 0;
    virtual const wchar_t* helpTopicOverride() const { return nullptr; }

protected:
    ~IPavoCommandFactory() = default;
};

// Flag bits of a factory, as the host reads them.
enum : unsigned int {
    kPavoCmdModal = 1u << 0,       // runs at "Command: " only
    kPavoCmdScriptable = 1u << 1,  // may run from a script
    kPavoCmdTransparent = 1u << 2, // may be typed inside another command
};

// The host application interface; its first operation tells whether the
// host is ready to run commands on a document.
class IPavoAppInterface {
public:
    virtual int isReady() = 0;

protected:
    ~IPavoAppInterface() = default;
};

PAVO_HOST_API IPavoAppInterface* GetPavoAppInterface();
PAVO_HOST_API PavoDocumentData* GetPavoAppCtxActiveDocData();
// The context of the command that runs in the active document (null between
// commands): for callbacks that the host calls in the middle of a command.
PAVO_HOST_API IPavoBuildInCommandContext* GetPavoAppCtxActiveCommandContext();
// Writes the product's module-name prefix into a buffer of 1024 wide
// characters; 0 when there is none.
PAVO_HOST_API int GetPavoProductPreName(wchar_t* buffer);
