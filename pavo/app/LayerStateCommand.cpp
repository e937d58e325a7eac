// LAYERSTATE: lists, restores, exports, imports, deletes and renames the
// drawing's named layer states (docs/layer-states.md).
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "HostCommandSets.h"
#include "OxDbDatabase.h"
#include "OxDbDictionary.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "app/LayerStateTransfer.h"
#include "base/PathText.h"
#include "base/Utf8.h"
#include "files/AtomicFile.h"
#include "files/FileRead.h"
#include "files/LayerStateFile.h"
#include "files/TextFileLines.h"
#include "files/UserPath.h"
#include "oxed.h"

namespace fs = std::filesystem;

namespace pavo::app {
namespace {

constexpr const wchar_t* kOptions = L"? Restore Export Import Delete Rename _? Restore Export Import Delete Rename";

std::wstring joined(const std::vector<std::wstring>& items) {
    std::wstring text;
    for (const std::wstring& item : items)
        text += (text.empty() ? L"" : L", ") + item;
    return text;
}

std::wstring layerCount(size_t n) { return std::to_wstring(n) + (n == 1 ? L" layer" : L" layers"); }

// A line of text; nullopt on Escape. Enter gives "".
std::optional<std::wstring> askText(const std::wstring& prompt) {
    OxString answer;
    if (oxedGetString(1, prompt.c_str(), answer) != STATUS_NORMAL) return std::nullopt;
    return std::wstring(answer.trim().str());
}

// Yes or No (Enter: No); false on Escape.
bool confirm(const std::wstring& question) {
    oxedInitGet(0, L"Yes No _Yes No");
    OxString answer;
    return oxedGetKword((question + L" [Yes/No] <No>: ").c_str(), answer) == STATUS_NORMAL && answer == L"Yes";
}

class LayerStateCommand {
public:
    explicit LayerStateCommand(OxDbDatabase* db) : m_db(db), m_states(db->getLayerStateManager()) {}
    int run();

private:
    std::vector<std::wstring> stateNames() const;
    // Asks for the name of an existing state; nullopt when none was given.
    std::optional<std::wstring> askStateName(const std::wstring& what);
    void list();
    void restore();
    void exportState();
    void importState();
    void remove();
    void rename();

    OxDbDatabase* m_db;
    OxDbLayerStateManager* m_states;
};

int LayerStateCommand::run() {
    for (;;) {
        oxedInitGet(0, kOptions);
        OxString option;
        const int status = oxedGetKword(L"\nEnter an option [?/Restore/Export/Import/Delete/Rename]: ", option);
        if (status == STATUS_NONE) return STATUS_NORMAL;
        if (status != STATUS_NORMAL) return status;
        if (option == L"?")
            list();
        else if (option == L"Restore")
            restore();
        else if (option == L"Export")
            exportState();
        else if (option == L"Import")
            importState();
        else if (option == L"Delete")
            remove();
        else if (option == L"Rename")
            rename();
    }
}

std::vector<std::wstring> LayerStateCommand::stateNames() const {
    std::vector<std::wstring> names;
    OxDbDictionary* states = nullptr;
    const OxDbObjectId id = m_db->layerStatesDictionaryId(false);
    if (id.isNull() || oxdbOpenObject(states, id, OxDb::kForRead) != Ox::eOk) return names;
    OxDbDictionaryIterator* it = states->newIterator();
    for (; !it->done(); it->next())
        names.emplace_back(it->name());
    delete it;
    states->close();
    return names;
}

std::optional<std::wstring> LayerStateCommand::askStateName(const std::wstring& what) {
    for (;;) {
        const std::optional<std::wstring> name = askText(L"\nEnter the name of the layer state to " + what + L": ");
        if (!name || name->empty()) return std::nullopt;
        if (m_states->hasLayerState(name->c_str())) return name;
        oxutPrintf(L"\nNo layer state is named \"%ls\".", *name);
    }
}

void LayerStateCommand::list() {
    const std::vector<std::wstring> names = stateNames();
    if (names.empty()) {
        oxutPrintf(L"\nThe drawing has no layer states.");
        return;
    }
    oxutPrintf(L"\nLayer states: %d", static_cast<int>(names.size()));
    for (const std::wstring& name : names) {
        const std::optional<files::LayerStateDocument> state = layerStateOf(m_db, name);
        if (!state) continue;
        oxutPrintf(L"\n  %ls (%ls)%ls", state->name, layerCount(state->layers.size()),
                   state->description.empty() ? std::wstring() : L": " + state->description);
        oxutPrintf(L"\n    records: %ls", joined(files::maskPropertyNames(state->mask)));
    }
}

void LayerStateCommand::restore() {
    const std::optional<std::wstring> name = askStateName(L"restore");
    if (!name) return;
    const std::optional<files::LayerStateDocument> state = layerStateOf(m_db, *name);
    if (!state) return;
    std::vector<std::wstring> missing;
    OxDbLayerTable* layers = nullptr;
    if (m_db->getLayerTable(layers, OxDb::kForRead) == Ox::eOk) {
        for (const auto& layer : state->layers)
            if (!layers->has(layer.properties.name.kwszPtr())) missing.push_back(layer.properties.name.str());
        layers->close();
    }
    if (m_states->restoreLayerState(name->c_str()) != Ox::eOk) {
        oxutPrintf(L"\nLayer state \"%ls\" could not be restored.", state->name);
        return;
    }
    oxutPrintf(L"\nLayer state \"%ls\" restored: %ls of %ls.", state->name,
               joined(files::maskPropertyNames(state->mask)), layerCount(state->layers.size() - missing.size()));
    if (!missing.empty()) oxutPrintf(L"\nNot in this drawing: %ls.", joined(missing));
}

void LayerStateCommand::exportState() {
    const std::optional<std::wstring> name = askStateName(L"export");
    if (!name) return;
    const std::optional<files::LayerStateDocument> state = layerStateOf(m_db, *name);
    if (!state) return;
    const std::wstring suggested = state->name + L".pls";
    const std::optional<std::wstring> typed = askText(L"\nEnter the file name to export to <" + suggested + L">: ");
    if (!typed) return;
    const std::optional<fs::path> named = files::userPath(typed->empty() ? suggested : *typed);
    if (!named) return;
    if (files::namesFolder(*named)) {
        oxutPrintf(L"\n%ls is a folder; give the layer state file a name.", pathText(*named));
        return;
    }
    const fs::path path = files::withDefaultExtension(*named, ".pls");
    std::error_code ec;
    if (fs::exists(path, ec) && !confirm(L"\n" + pathText(path) + L" already exists. Replace it?")) return;
    std::string error;
    if (!files::replaceFileAtomically(path, files::writeLayerStateDocument(*state), error)) {
        oxutPrintf(L"\nCannot write the layer state: %ls", pavo::fromUtf8(error));
        return;
    }
    oxutPrintf(L"\nLayer state \"%ls\" exported to %ls.", state->name, pathText(path));
}

void LayerStateCommand::importState() {
    const std::optional<std::wstring> typed = askText(L"\nEnter the layer state file to import: ");
    if (!typed) return;
    const std::optional<fs::path> named = files::userPath(*typed);
    if (!named) return;
    const fs::path path = files::withDefaultExtension(*named, ".pls");
    std::string reason;
    const std::optional<std::string> text = files::readFileText(path, reason);
    if (!text) {
        oxutPrintf(L"\n%ls", files::cannotRead(path, reason));
        return;
    }
    std::wstring problem;
    const std::optional<files::LayerStateDocument> state = files::parseLayerStateDocument(*text, problem);
    if (!state) {
        oxutPrintf(L"\n%ls: %ls", fileNameText(path), problem);
        return;
    }
    if (m_states->hasLayerState(state->name.c_str()) &&
        !confirm(L"\nA layer state named \"" + state->name + L"\" exists. Replace it?"))
        return;
    LayerStateImport report;
    if (storeLayerState(m_db, *state, report) != Ox::eOk) {
        oxutPrintf(L"\nLayer state \"%ls\" could not be imported.", state->name);
        return;
    }
    oxutPrintf(L"\nLayer state \"%ls\" imported (%ls).", state->name, layerCount(state->layers.size()));
    if (!report.loadedLinetypes.empty())
        oxutPrintf(L"\nLinetypes loaded from %ls: %ls.", report.linetypeFile, joined(report.loadedLinetypes));
    if (!report.missingLinetypes.empty())
        oxutPrintf(L"\nLinetypes neither in the drawing nor in %ls: %ls (restoring leaves those layers' linetypes as "
                   L"they are).",
                   report.linetypeFile, joined(report.missingLinetypes));
}

void LayerStateCommand::remove() {
    const std::optional<std::wstring> name = askStateName(L"delete");
    if (!name) return;
    m_states->deleteLayerState(name->c_str());
    oxutPrintf(L"\nLayer state \"%ls\" deleted.", *name);
}

void LayerStateCommand::rename() {
    const std::optional<std::wstring> from = askStateName(L"rename");
    if (!from) return;
    for (;;) {
        const std::optional<std::wstring> to = askText(L"\nEnter the new name: ");
        if (!to || to->empty()) return;
        switch (m_states->renameLayerState(from->c_str(), to->c_str())) {
        case Ox::eOk:
            oxutPrintf(L"\nLayer state \"%ls\" renamed to \"%ls\".", *from, *to);
            return;
        case Ox::eDuplicateKey:
            oxutPrintf(L"\nA layer state named \"%ls\" exists already.", *to);
            break;
        default:
            oxutPrintf(L"\n\"%ls\" cannot be a layer state name.", *to);
            break;
        }
    }
}

} // namespace

void registerLayerStateCommands(const AddHostCommand& add) {
    add(L"LAYERSTATE", L"lists, restores, exports and imports layer states", []() -> int {
        OxDbDatabase* db = oxdbHostApplicationServices()->workingDatabase();
        if (!db) {
            oxutPrintf(L"\nNo drawing is open.");
            return STATUS_ERROR;
        }
        return LayerStateCommand(db).run();
    });
}

} // namespace pavo::app
