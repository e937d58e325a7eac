// A pavo session: one drawing, one command line, the loaded modules and the
// read-eval loop at "Command: ".
#pragma once

#include <filesystem>
#include <functional>
#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "CommandStore.h"
#include "files/AtomicFile.h"
#include "IPavoCommand.h"
#include "editor/Input.h"

class OxDbDatabase;

namespace pavo::editor {
class Editor;
class Output;
class SystemVariables;
} // namespace pavo::editor

namespace pavo::app {

class HostCommandFactory;
class ModuleLoader;
class SessionContext;

// Exit statuses of pavo.
enum ExitCode : int {
    kExitOk = 0,
    kExitUsage = 1,            // bad command line options
    kExitBadDrawing = 2,       // the drawing cannot be read
    kExitScriptEnded = 3,      // the script ended inside a command
    kExitInternalError = 4,    // a leak or misuse found after a command, or an exception
    kExitModuleNotLoaded = 5,  // a configured module could not be loaded
    kExitSaveFailed = 6,       // a save of the drawing failed
    kExitPictureFailed = 7,    // --plot or --export wrote no picture
};

struct SessionOptions {
    std::vector<std::filesystem::path> resourcePath; // folders holding resource libraries
    std::vector<std::filesystem::path> modulePath;   // folders holding modules
    std::vector<std::wstring> modules{L"VxLayerCmds"};
    std::vector<std::filesystem::path> supportPath; // linetype files, plot styles, ...
    std::string language;                           // "" for English
    bool noDialogs = false;
    std::string historyFile;
    // Where settings kept between sessions live (SETBYLAYERMODE); empty:
    // they last for the session only.
    std::filesystem::path userSettingsFile;
};

// The default folders: PAVO_RESOURCE_PATH / PAVO_MODULE_PATH (colon
// separated) first, then next to the executable, then the source tree.
SessionOptions defaultSessionOptions(const std::filesystem::path& executable);

// The file of the running program, whatever it was started as (through
// PATH, a symbolic link, from another folder): /proc/self/exe, else
// `argv0` taken from the current folder.
std::filesystem::path runningExecutable(const char* argv0);

class Session {
public:
    // Errors go to `errors` when given (pavo gives standard error), else to `out`.
    Session(SessionOptions options, std::unique_ptr<editor::InputSource> input, std::ostream& out,
            std::ostream* errors = nullptr);
    ~Session();
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    // Loads the configured modules; false (with messages printed) if one failed.
    bool loadModules();
    // For a process that ends right after the session: the drawing is left
    // for the system to take back with the process, since freeing a large
    // one object by object takes a time the user waits for. (Sanitized
    // builds free it, so that their leak check sees every object freed.)
    void leaveDrawingToProcessEnd();

    // The drawing. Each returns false with a message printed on failure,
    // keeping the current drawing.
    bool openDrawing(const std::filesystem::path& path);
    bool openSample();
    void newDrawing();
    // Works on `db` from now on (benchmarks hand in generated drawings).
    void useDrawing(std::unique_ptr<OxDbDatabase> db);
    bool saveDrawing(const std::filesystem::path& path);
    // Records a save that could not be done (the exit status becomes 6).
    void saveFailed();
    // True when the file at `path` is not the one this session last read or
    // wrote there: another session or program saved it since (its identity,
    // size or modification time differ). False for a file that is gone.
    bool changedOnDisk(const std::filesystem::path& path) const;
    OxDbDatabase* database() const;

    // The read-eval loop; returns the exit status.
    int run();
    // Runs one line typed at "Command: " (a command or a variable name).
    void runCommandLine(const std::wstring& text);
    bool quitRequested() const { return m_quit; }
    void requestQuit() { m_quit = true; }

    // Records an internal error (reported, and the exit status becomes 4).
    void internalError(const std::wstring& what);
    // Reports an error: a file that cannot be read or written, a module
    // that cannot be loaded (on standard error in pavo).
    void error(const std::wstring& text);
    int exitCode() const { return m_exitCode; }
    void setExitCode(int code) {
        if (m_exitCode == kExitOk) m_exitCode = code;
    }

    CommandStore& commands() { return m_commands; }
    editor::Editor& editor() { return *m_editor; }
    editor::Output& output() { return *m_output; }
    editor::SystemVariables& variables() { return *m_variables; }
    ModuleLoader& modules() { return *m_loader; }
    const SessionOptions& options() const { return m_options; }
    PavoDocumentData& documentData() { return m_documentData; }
    // The next command asks for its dialog (INITDIA).
    void requestDialogForNextCommand() { m_dialogRequested = true; }
    int regenerateRequests() const { return m_regenerateRequests; }
    // What the last command's execute returned (STATUS_NORMAL, STATUS_NONE,
    // STATUS_FAIL, ...); STATUS_ERROR when it threw.
    int lastCommandStatus() const { return m_lastCommandStatus; }

    static Session* current();

private:
    friend class SessionContext;
    void runCommand(const CommandStore::Entry& entry);
    void checkAfterCommand(const std::wstring& name);
    void askVariable(const std::wstring& name);
    void adoptDrawing(std::unique_ptr<OxDbDatabase> db);

    SessionOptions m_options;
    std::unique_ptr<editor::InputSource> m_input;
    std::unique_ptr<editor::Output> m_output;
    std::unique_ptr<editor::SystemVariables> m_variables;
    std::unique_ptr<editor::Editor> m_editor;
    CommandStore m_commands;
    std::unique_ptr<ModuleLoader> m_loader;
    std::vector<std::unique_ptr<HostCommandFactory>> m_hostCommands;
    std::unique_ptr<OxDbDatabase> m_db;
    std::optional<files::FileStamp> m_stamp; // of the drawing's file as last read or written
    PavoDocumentData m_documentData;
    std::wstring m_lastCommand;
    bool m_dialogRequested = false;
    bool m_dialogRequestedForThisCommand = false;
    bool m_quit = false;
    int m_exitCode = kExitOk;
    int m_regenerateRequests = 0;
    int m_lastCommandStatus = STATUS_NONE;
};

} // namespace pavo::app
