// The host's own commands.
#include <filesystem>
#include <functional>
#include <optional>

#include "base/CaseFold.h"
#include "OxDbDatabase.h"
#include "HostCommands.h"
#include "HelpTopics.h"
#include "HostCommandSets.h"
#include "Session.h"
#include "base/PathText.h"
#include "base/Utf8.h"
#include "editor/Editor.h"
#include "editor/SystemVariables.h"
#include "files/UserPath.h"
#include "oxed.h"

namespace fs = std::filesystem;

namespace pavo::app {

std::optional<bool> askYesNo(const std::wstring& prompt, bool defaultYes) {
    oxedInitGet(0, L"Yes No _Yes No");
    OxString answer;
    const int status = oxedGetKword(prompt.c_str(), answer);
    if (status == STATUS_NONE) return defaultYes;
    if (status != STATUS_NORMAL) return std::nullopt;
    return answer.compareNoCase(L"Yes") == 0;
}

bool mayReplace(const fs::path& path) {
    std::error_code ec;
    return !fs::exists(path, ec) ||
           askYesNo(L"\n" + pathText(path) + L" already exists. Replace it? [Yes/No] <No>: ", false).value_or(false);
}

namespace {

// Asks for a file name; nullopt when cancelled or nothing named.
std::optional<fs::path> askFileName(const wchar_t* prompt) {
    OxString name;
    if (oxedGetString(1, prompt, name) != STATUS_NORMAL) return std::nullopt;
    return files::userPath(name.view());
}

std::wstring drawingTitle(const OxDbDatabase* db) {
    if (!db || db->fileName().isEmpty()) return L"the drawing";
    return fileNameText(pathFromText(db->fileName().view()));
}

int saveAs(Session& s) {
    const std::optional<fs::path> typed = askFileName(L"\nSave drawing as: ");
    if (!typed) return STATUS_CANCEL;
    if (files::namesFolder(*typed)) {
        s.error(pathText(*typed) + L" is a folder; give the drawing a file name.");
        s.saveFailed();
        return STATUS_ERROR;
    }
    const fs::path path = files::withDefaultExtension(*typed, ".pvd");
    if (!mayReplace(path)) return STATUS_CANCEL;
    if (!s.saveDrawing(path)) return STATUS_ERROR;
    oxutPrintf(L"\nSaved %ls.", pathText(path));
    return STATUS_NORMAL;
}

int save(Session& s) {
    OxDbDatabase* db = s.database();
    if (!db) return STATUS_ERROR;
    if (db->fileName().isEmpty()) return saveAs(s);
    const fs::path path = pathFromText(db->fileName().view());
    // Another session (or program) saved the file since this one read or
    // wrote it: replacing it would lose that work without a word.
    if (s.changedOnDisk(path) &&
        !askYesNo(L"\n" + pathText(path) +
                      L" was changed on disk since it was opened or saved. Replace it? [Yes/No] <No>: ",
                  false)
             .value_or(false))
        return STATUS_CANCEL;
    if (!s.saveDrawing(path)) return STATUS_ERROR;
    oxutPrintf(L"\nSaved %ls.", pathText(path));
    return STATUS_NORMAL;
}

int open(Session& s) {
    if (!offerToSave(s)) return STATUS_CANCEL;
    const std::optional<fs::path> typed = askFileName(L"\nDrawing to open: ");
    if (!typed) return STATUS_CANCEL;
    const fs::path path = files::drawingToOpen(*typed);
    if (!s.openDrawing(path)) return STATUS_ERROR;
    oxutPrintf(L"\nOpened %ls.", pathText(path));
    return STATUS_NORMAL;
}

int newDrawing(Session& s) {
    if (!offerToSave(s)) return STATUS_CANCEL;
    s.newDrawing();
    oxutPrintf(L"\nStarted a new drawing.");
    return STATUS_NORMAL;
}

int quit(Session& s) {
    if (!offerToSave(s)) return STATUS_CANCEL;
    s.requestQuit();
    return STATUS_NORMAL;
}

int setvar(Session& s) {
    editor::SystemVariables& vars = s.variables();
    // Any text is a variable name; the keyword list only offers "?".
    oxedInitGet(128, L"? _?");
    OxString name;
    const int status = oxedGetKword(L"\nEnter variable name or [?]: ", name);
    if (status != STATUS_NORMAL) return status;
    if (name == L"?") {
        for (const auto& d : vars.definitions())
            oxutPrintf(L"\n%-16ls %-24ls %ls", d.name, vars.valueText(d.name.c_str()), d.description);
        return STATUS_NORMAL;
    }
    name.makeUpper();
    if (!vars.find(name)) {
        oxutPrintf(L"\nUnknown variable name \"%ls\".", name);
        return STATUS_ERROR;
    }
    s.runCommandLine(name.str());
    return STATUS_NORMAL;
}

int help(Session& s) {
    oxutPrintf(L"\nCommands:");
    for (const auto& e : s.commands().entries()) {
        const wchar_t* description = e.factory->description();
        oxutPrintf(L"\n  %-14ls %ls", e.localName, description && *description ? description : (std::wstring(L"from ") + e.factory->module()).c_str());
    }
    oxutPrintf(L"\nType a command name, or a system variable name to change it (SETVAR ? lists them).");
    oxutPrintf(L"\nA name starting with \"_\" is the command's English name. HELP TOPIC shows a help topic.");
    return STATUS_NORMAL;
}

} // namespace

bool offerToSave(Session& s) {
    const OxDbDatabase* db = s.database();
    if (!db || !db->isModified()) return true;
    oxedInitGet(0, L"Yes No Cancel _Yes No Cancel");
    OxString answer;
    const std::wstring prompt = L"\nSave the changes to " + drawingTitle(db) + L"? [Yes/No/Cancel] <Cancel>: ";
    if (oxedGetKword(prompt.c_str(), answer) != STATUS_NORMAL || answer.compareNoCase(L"Cancel") == 0) return false;
    return answer.compareNoCase(L"No") == 0 || save(s) == STATUS_NORMAL;
}

void registerHostCommands(Session& session, std::vector<std::unique_ptr<HostCommandFactory>>& owned) {
    Session* s = &session;
    auto add = [&](const wchar_t* name, const wchar_t* description, std::function<int()> run) {
        auto factory = std::make_unique<HostCommandFactory>(name, description, std::move(run));
        session.commands().addCommand(factory.get(), 0);
        owned.push_back(std::move(factory));
    };
    add(L"OPEN", L"opens a drawing file", [s] { return open(*s); });
    add(L"NEW", L"starts a new drawing", [s] { return newDrawing(*s); });
    add(L"SAVE", L"saves the drawing", [s] { return save(*s); });
    add(L"SAVEAS", L"saves the drawing under a new name", [s] { return saveAs(*s); });
    add(L"QUIT", L"ends pavo", [s] { return quit(*s); });
    add(L"SETVAR", L"lists or changes system variables", [s] { return setvar(*s); });
    add(L"HELP", L"lists the commands; HELP TOPIC shows a help topic", [s] { return help(*s); });
    owned.back()->setArgumentRunner([](const std::wstring& topic) { return showHelpTopic(topic); });
    add(L"INITDIA", L"makes the next command show its dialog", [s] {
        s->requestDialogForNextCommand();
        return STATUS_NORMAL;
    });
    registerSelectionCommands(add);
    registerDrawingCommands(add);
    registerLayerStateCommands(add);
    registerPropertyCommands(add);
    registerLayoutCommand(add);
    registerSpaceCommands(add);
    registerMviewCommand(add);
    registerPictureCommands(add);
    registerUndoCommands(add);
}

} // namespace pavo::app
