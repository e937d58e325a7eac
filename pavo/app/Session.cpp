#include "Session.h"

#include <cstdlib>
#include <cwctype>
#include <ostream>
#include <sstream>

#include "base/CaseFold.h"
#include "base/HostAllocations.h"
#include "HostCommands.h"
#include "ModuleLoader.h"
#include "OxDbDatabase.h"
#include "OxDbServices.h"
#include "ResourceLibraries.h"
#include "SessionContext.h"
#include "base/PathText.h"
#include "base/Utf8.h"
#include "db/DbStore.h"
#include "db/UndoHistory.h"
#include "editor/Editor.h"
#include "editor/Output.h"
#include "editor/SelectionSets.h"
#include "editor/SystemVariables.h"
#include "editor/UserSettings.h"
#include "files/DrawingFile.h"
#include "oxed.h"

namespace fs = std::filesystem;

namespace pavo::app {

namespace {

Session* g_current = nullptr;
#if !defined(PAVO_SANITIZED)
// The drawing of a session that ended with the process: still reachable
// from here, so not a leak.
OxDbDatabase* g_leftToProcessEnd = nullptr;
#endif

std::vector<fs::path> splitPath(const char* value) {
    std::vector<fs::path> out;
    if (!value) return out;
    std::string s(value);
    size_t start = 0;
    while (start <= s.size()) {
        size_t colon = s.find(':', start);
        if (colon == std::string::npos) colon = s.size();
        if (colon > start) out.emplace_back(s.substr(start, colon - start));
        start = colon + 1;
    }
    return out;
}

// One undo step around a command, or a variable typed at "Command: ":
// whatever it changes, U undoes at once. Nested ones join the outer one.
class UndoStepScope {
public:
    UndoStepScope(Session& session, const std::wstring& name) : m_session(session), m_db(session.database()) {
        if (!m_db) return;
        db::UndoHistory& history = db::undoHistory(m_db);
        resbuf limit{};
        if (session.variables().get(L"UNDOLIMIT", limit) == STATUS_NORMAL && limit.restype == RTSHORT)
            history.setStepLimit(static_cast<std::size_t>(limit.resval.rint));
        history.beginCommand(name);
    }
    ~UndoStepScope() {
        // OPEN and NEW replace the drawing: the old one's step went with it.
        if (!m_db || m_session.database() != m_db) return;
        db::UndoHistory& history = db::undoHistory(m_db);
        history.endCommand();
        if (history.takeDropNotice())
            oxutPrintf(L"\nThe oldest commands can no longer be undone: the undo history keeps UNDOLIMIT commands "
                       L"and at most %d MB.",
                       static_cast<int>(db::UndoHistory::kMemoryCap >> 20));
    }
    UndoStepScope(const UndoStepScope&) = delete;
    UndoStepScope& operator=(const UndoStepScope&) = delete;

private:
    Session& m_session;
    OxDbDatabase* m_db;
};

std::wstring trimmed(const std::wstring& s) {
    const size_t a = s.find_first_not_of(L" \t");
    if (a == std::wstring::npos) return L"";
    const size_t b = s.find_last_not_of(L" \t");
    return s.substr(a, b - a + 1);
}

} // namespace

fs::path runningExecutable(const char* argv0) {
    std::error_code ec;
    const fs::path self = fs::read_symlink("/proc/self/exe", ec);
    if (!ec && self.is_absolute()) return self;
    return fs::absolute(argv0 ? fs::path(argv0) : fs::path(), ec);
}

SessionOptions defaultSessionOptions(const fs::path& executable) {
    SessionOptions o;
    const fs::path exeDir = executable.has_parent_path() ? fs::absolute(executable).parent_path() : fs::current_path();
    o.resourcePath = splitPath(std::getenv("PAVO_RESOURCE_PATH"));
    o.resourcePath.push_back(exeDir / ".." / "share" / "pavo" / "resources");
#ifdef PAVO_SOURCE_RESOURCE_DIR
    o.resourcePath.emplace_back(PAVO_SOURCE_RESOURCE_DIR);
#endif
    o.modulePath = splitPath(std::getenv("PAVO_MODULE_PATH"));
    o.modulePath.push_back(exeDir);
    o.modulePath.push_back(exeDir / ".." / "lib" / "pavo");
    o.supportPath = splitPath(std::getenv("PAVO_SUPPORT_PATH"));
    for (const fs::path& r : o.resourcePath) o.supportPath.push_back(r / "support");
    if (const char* home = std::getenv("HOME")) o.historyFile = std::string(home) + "/.pavo_history";
    if (const char* lang = std::getenv("PAVO_LANGUAGE")) o.language = lang;
    o.userSettingsFile = editor::defaultUserSettingsFile();
    return o;
}

Session* Session::current() { return g_current; }

Session::Session(SessionOptions options, std::unique_ptr<editor::InputSource> input, std::ostream& out,
                 std::ostream* errors)
    : m_options(std::move(options)), m_input(std::move(input)) {
    g_current = this;
    ResourceLibraries::instance().setSearchPath(m_options.resourcePath);
    ResourceLibraries::instance().setLanguage(m_options.language);
    m_output = std::make_unique<editor::Output>(out, errors);
    m_variables = std::make_unique<editor::SystemVariables>([this] { return m_db.get(); });
    m_editor = std::make_unique<editor::Editor>(*m_input, *m_output, *m_variables);
    editor::Editor::setCurrent(m_editor.get());
    m_variables->setWarningSink([](const std::wstring& text) { oxutPrintf(L"\n%ls", text); });
    for (const std::wstring& problem : m_variables->useSettingsFile(m_options.userSettingsFile))
        oxutPrintf(L"\nIgnored in the settings file %ls: %ls", pathText(m_options.userSettingsFile), problem);
    m_loader = std::make_unique<ModuleLoader>(&m_commands);
    m_loader->setSearchPath(m_options.modulePath);
    if (!m_input->isTerminal()) m_documentData.stateFlags |= PavoDocumentData::kInputNotTerminal;
    if (m_input->echoes()) m_documentData.stateFlags |= PavoDocumentData::kScriptRunning;
    registerHostCommands(*this, m_hostCommands);
}

Session::~Session() {
    m_loader->unloadAll();
    for (auto& f : m_hostCommands) m_commands.removeCommand(f->globalName());
    m_output->finishLine();
    m_output->flush();
    if (oxdbHostApplicationServices()->workingDatabase() == m_db.get())
        oxdbHostApplicationServices()->setWorkingDatabase(nullptr);
    editor::selection::forgetDrawing();
    m_db.reset();
    if (editor::Editor::current() == m_editor.get()) editor::Editor::setCurrent(nullptr);
    if (g_current == this) g_current = nullptr;
}

void Session::leaveDrawingToProcessEnd() {
#if !defined(PAVO_SANITIZED)
    g_leftToProcessEnd = m_db.release();
#endif
}

bool Session::loadModules() {
    bool ok = true;
    for (const std::wstring& name : m_options.modules) {
        std::string error;
        if (!m_loader->load(name, error)) {
            this->error(L"Cannot load module " + name + L": " + fromUtf8(error));
            ok = false;
        }
    }
    if (!ok) setExitCode(kExitModuleNotLoaded);
    return ok;
}

OxDbDatabase* Session::database() const { return m_db.get(); }

void Session::adoptDrawing(std::unique_ptr<OxDbDatabase> db) {
    editor::selection::forgetDrawing();
    oxdbHostApplicationServices()->setWorkingDatabase(db.get());
    m_db = std::move(db);
    m_stamp.reset();
}

bool Session::openDrawing(const fs::path& path) {
    files::LoadError error;
    files::FileStamp stamp;
    std::unique_ptr<OxDbDatabase> db = files::readDrawingFile(path, error, &stamp);
    if (!db) {
        this->error(L"Cannot open drawing: " + fromUtf8(error.message()));
        return false;
    }
    adoptDrawing(std::move(db));
    m_stamp = stamp;
    return true;
}

bool Session::openSample() {
    files::LoadError error;
    std::unique_ptr<OxDbDatabase> db = files::readDrawing(files::embeddedSampleDrawing(), "sample", error);
    if (!db) {
        internalError(L"the embedded sample drawing cannot be read: " + fromUtf8(error.message()));
        return false;
    }
    adoptDrawing(std::move(db));
    return true;
}

void Session::useDrawing(std::unique_ptr<OxDbDatabase> db) { adoptDrawing(std::move(db)); }

void Session::newDrawing() { adoptDrawing(std::make_unique<OxDbDatabase>(true)); }

bool Session::saveDrawing(const fs::path& path) {
    if (!m_db) return false;
    std::string error;
    files::FileStamp stamp;
    if (!files::writeDrawingFile(*m_db, path, error, &stamp)) {
        this->error(L"Cannot save drawing: " + fromUtf8(error));
        saveFailed();
        return false;
    }
    m_db->setFileName(pathText(path).c_str());
    m_db->setModified(false);
    m_stamp = stamp;
    return true;
}

void Session::saveFailed() { setExitCode(kExitSaveFailed); }

bool Session::changedOnDisk(const fs::path& path) const {
    const std::optional<files::FileStamp> now = files::stampOf(path);
    return m_stamp && now && !(*now == *m_stamp);
}

void Session::error(const std::wstring& text) { m_output->error(text); }

void Session::internalError(const std::wstring& what) {
    error(L"Internal error: " + what);
    if (m_exitCode == kExitOk || m_exitCode == kExitScriptEnded) m_exitCode = kExitInternalError;
}

int Session::run() {
    if (!m_db) newDrawing();
    while (!m_quit) {
        std::vector<std::wstring> names;
        for (const auto& e : m_commands.entries()) names.push_back(e.localName);
        const editor::InputLine line = m_editor->ask(L"\nCommand: ", names);
        if (line.kind == editor::InputLine::End) {
            // Ctrl-D at a terminal ends pavo as QUIT does, asking first
            // when there are changes; a terminal that is gone cannot answer.
            if (m_input->isTerminal() && m_output->stream().good() && !offerToSave(*this)) continue;
            break;
        }
        if (line.kind == editor::InputLine::Cancel) {
            editor::selection::clearPreselection();
            continue;
        }
        std::wstring text = trimmed(fromUtf8(line.text));
        if (editor::selection::pickAtCommandPrompt(text)) continue;
        if (text.empty()) {
            // A person at a terminal repeats the last command with Enter; in
            // a script an empty line at "Command: " does nothing.
            if (!m_input->isTerminal() || m_lastCommand.empty()) continue;
            text = m_lastCommand;
        }
        runCommandLine(text);
        if (m_editor->inputEnded() && !m_quit) {
            setExitCode(kExitScriptEnded);
            error(L"The script ended inside a command; the command was cancelled.");
            break;
        }
    }
    m_output->finishLine();
    m_output->flush();
    return m_exitCode;
}

void Session::runCommandLine(const std::wstring& text) {
    if (const CommandStore::Entry* entry = m_commands.lookup(text)) {
        m_lastCommand = text;
        runCommand(*entry);
        return;
    }
    const std::wstring bare = !text.empty() && text[0] == L'_' ? text.substr(1) : text;
    if (m_variables->find(bare.c_str())) {
        askVariable(bare);
        return;
    }
    // "HELP TOPIC": a host command that takes the rest of the line.
    if (const size_t blank = text.find_first_of(L" \t"); blank != std::wstring::npos) {
        const CommandStore::Entry* entry = m_commands.lookup(text.substr(0, blank));
        auto* host = entry ? dynamic_cast<HostCommandFactory*>(entry->factory) : nullptr;
        if (host && host->takesArgument()) {
            m_lastCommand = text;
            host->setArgument(trimmed(text.substr(blank)));
            runCommand(*entry);
            return;
        }
    }
    oxutPrintf(L"\nUnknown command \"%ls\". Type HELP for the list of commands.", text);
}

void Session::askVariable(const std::wstring& name) {
    std::wstring upper = name;
    for (wchar_t& c : upper) c = static_cast<wchar_t>(std::towupper(c));
    UndoStepScope step(*this, upper);
    const std::wstring prompt = L"\nEnter new value for " + upper + L" <" + m_variables->valueText(upper.c_str()) + L">: ";
    for (;;) {
        const editor::InputLine line = m_editor->ask(prompt);
        if (line.kind != editor::InputLine::Text || line.text.empty()) return;
        std::wstring message;
        if (m_variables->setFromText(upper.c_str(), fromUtf8(line.text), &message) == STATUS_NORMAL) return;
        oxutPrintf(L"\n%ls", message);
    }
}

void Session::runCommand(const CommandStore::Entry& entry) {
    if (m_db) m_db->impl()->regenQueue.clear();
    UndoStepScope step(*this, entry.globalName);
    const HostAllocations before = hostAllocations();
    const bool dialog = m_dialogRequested;
    m_dialogRequested = false;
    IPavoCommandFactory* factory = entry.factory;
    {
        SessionContext context(*this, dialog);
        IPavoBuildInCommand* command = nullptr;
        m_lastCommandStatus = STATUS_ERROR;
        try {
            command = factory->create();
            if (command) m_lastCommandStatus = command->execute(&context);
        } catch (const std::exception& e) {
            internalError(entry.globalName + L" failed: " + fromUtf8(e.what()));
        } catch (...) {
            internalError(entry.globalName + L" failed with an unknown exception");
        }
        if (command) factory->release(command);
        if (context.unrestoredSwitches() > 0)
            internalError(entry.globalName + L" left its resource library current");
    }
    const HostAllocations after = hostAllocations();
    if (after.strings != before.strings)
        internalError(entry.globalName + L" left " + std::to_wstring(after.strings - before.strings) +
                      L" host string(s) unreleased");
    if (after.resbufs != before.resbufs)
        internalError(entry.globalName + L" left " + std::to_wstring(after.resbufs - before.resbufs) +
                      L" result buffer(s) unreleased");
    if (after.selectionSets != before.selectionSets)
        internalError(entry.globalName + L" left " + std::to_wstring(after.selectionSets - before.selectionSets) +
                      L" selection set(s) unreleased");
    checkAfterCommand(entry.globalName);
    // A pre-selection serves the next command only.
    editor::selection::clearPreselection();
}

void Session::checkAfterCommand(const std::wstring& name) {
    if (!m_db) return;
    db::Store& store = m_db->impl()->store;
    for (const db::Misuse& m : store.misuses) internalError(name + L": " + m.what);
    store.misuses.clear();
    if (!store.open.empty()) {
        std::wostringstream what;
        what << name << L" left " << store.open.size() << L" object(s) open:";
        for (OxDbCell* cell : store.open) {
            what << L" " << (cell->object ? cell->object->isA()->name() : L"?") << L" "
                 << OxDbHandle(cell->handle).toString();
            // Close them so that the session can go on.
            cell->readers = 0;
            cell->writer = false;
        }
        store.open.clear();
        internalError(what.str());
    }
}

} // namespace pavo::app
