// Application-level host functions: file search, help, the application
// interface and the active document's data.
#include <cwchar>
#include <filesystem>

#include "IPavoCommand.h"
#include "OxDbDatabase.h"
#include "OxDbServices.h"
#include "HelpTopics.h"
#include "Session.h"
#include "SessionContext.h"
#include "base/PathText.h"
#include "oxed.h"

namespace fs = std::filesystem;

namespace {

class AppInterface final : public IPavoAppInterface {
public:
    // Ready while a session has a drawing.
    int isReady() override {
        const pavo::app::Session* s = pavo::app::Session::current();
        return s && s->database() ? 1 : 0;
    }
};

bool copyPath(const fs::path& path, wchar_t* result, int length) {
    const std::wstring text = pavo::pathText(path);
    if (static_cast<int>(text.size()) >= length) return false;
    std::wmemcpy(result, text.c_str(), text.size() + 1);
    return true;
}

} // namespace

int oxedFindFile(const wchar_t* name, wchar_t* result, int length) {
    if (!name || !*name || !result || length <= 0) return STATUS_ERROR;
    result[0] = L'\0';
    const fs::path wanted = pavo::pathFromText(name);
    std::error_code ec;
    if (wanted.is_absolute()) return fs::is_regular_file(wanted, ec) && copyPath(wanted, result, length) ? STATUS_NORMAL : STATUS_ERROR;
    std::vector<fs::path> folders;
    if (const OxDbDatabase* db = oxdbHostApplicationServices()->workingDatabase())
        if (!db->fileName().isEmpty()) folders.push_back(pavo::pathFromText(db->fileName().view()).parent_path());
    if (const pavo::app::Session* s = pavo::app::Session::current())
        for (const fs::path& p : s->options().supportPath) folders.push_back(p);
    for (const fs::path& folder : folders) {
        const fs::path candidate = folder / wanted;
        if (fs::is_regular_file(candidate, ec)) return copyPath(candidate, result, length) ? STATUS_NORMAL : STATUS_ERROR;
    }
    return STATUS_ERROR;
}

bool oxedCurFDERunning() { return false; }

int oxedHelp(const wchar_t*, const wchar_t* topic, int) {
    if (!topic || !*topic) {
        oxutPrintf(L"\nType HELP for the list of commands; the documentation is in docs/.");
        return STATUS_NORMAL;
    }
    return pavo::app::showHelpTopic(topic);
}

IPavoAppInterface* GetPavoAppInterface() {
    static AppInterface app;
    return &app;
}

PavoDocumentData* GetPavoAppCtxActiveDocData() {
    pavo::app::Session* s = pavo::app::Session::current();
    return s ? &s->documentData() : nullptr;
}

IPavoBuildInCommandContext* GetPavoAppCtxActiveCommandContext() { return pavo::app::SessionContext::active(); }

int GetPavoProductPreName(wchar_t* buffer) {
    // This host's modules keep their own names: no product prefix.
    if (buffer) buffer[0] = L'\0';
    return 0;
}
