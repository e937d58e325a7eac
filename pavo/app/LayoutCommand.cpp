// LAYOUT: lists the layouts, makes one current, and makes, renames and
// deletes paper-space layouts.
#include <string>

#include "HostCommandSets.h"
#include "OxDbDatabase.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "db/PaperSpace.h"
#include "oxed.h"

namespace pavo::app {
namespace {

OxDbLayoutManager* layoutManager() { return oxdbHostApplicationServices()->layoutManager(); }
OxDbDatabase* workingDatabase() { return oxdbHostApplicationServices()->workingDatabase(); }

// The current layout's name ("Model" in model space).
std::wstring currentLayoutName(OxDbDatabase* db) {
    OxString name;
    layoutManager()->getActiveLayoutName(name, true, db);
    return name.str();
}

// Asks for a name (Enter: `fallback`); empty when cancelled.
std::wstring askName(const std::wstring& prompt, const std::wstring& fallback) {
    OxString name;
    if (oxedGetString(1, prompt.c_str(), name) != STATUS_NORMAL) return L"";
    name.trim();
    return name.isEmpty() ? fallback : name.str();
}

// The stored spelling of layout `name`; empty when there is none.
std::wstring storedName(OxDbDatabase* db, const std::wstring& name) {
    OxDbLayout* layout = nullptr;
    if (oxdbOpenObject(layout, layoutManager()->findLayoutNamed(name.c_str(), db), OxDb::kForRead) != Ox::eOk)
        return L"";
    OxString stored;
    layout->getLayoutName(stored);
    layout->close();
    return stored.str();
}

// Says what became of giving a layout the name `name`: `done` when it was
// given, else why not.
int reportNaming(OxDbDatabase* db, Ox::ErrorStatus es, const std::wstring& name, const std::wstring& done) {
    if (es == Ox::eOk) {
        oxutPrintText(done.c_str());
        return STATUS_NORMAL;
    }
    if (es == Ox::eDuplicateKey)
        oxutPrintf(L"\nLayout \"%ls\" already exists.", storedName(db, name));
    else
        oxutPrintf(L"\n\"%ls\" is not a valid layout name.", name);
    return STATUS_ERROR;
}

bool isModel(const std::wstring& name) { return OxString(name.c_str()).isEqualNoCase(L"Model"); }

void listLayouts(OxDbDatabase* db) {
    const std::wstring current = currentLayoutName(db);
    oxutPrintf(L"\nLayouts:");
    oxutPrintf(L"\n  Model%ls", db->tilemode() ? L"  (current)" : L"");
    for (const OxDbLayout* layout : db::paperLayouts(db)) {
        OxString name;
        layout->getLayoutName(name);
        const bool isCurrent = !db->tilemode() && name.isEqualNoCase(current.c_str());
        oxutPrintf(L"\n  %ls%ls", name, isCurrent ? L"  (current)" : L"");
    }
}

int setLayout(OxDbDatabase* db) {
    const std::wstring name = askName(L"\nEnter layout to make current <" + currentLayoutName(db) + L">: ",
                                      currentLayoutName(db));
    if (name.empty()) return STATUS_CANCEL;
    if (layoutManager()->setCurrentLayout(name.c_str(), db) != Ox::eOk) {
        oxutPrintf(L"\nLayout \"%ls\" not found.", name);
        return STATUS_ERROR;
    }
    return STATUS_NORMAL;
}

// "Layout1", "Layout2" ...: the first that is free.
std::wstring freeLayoutName(OxDbDatabase* db) {
    for (int n = 1;; ++n) {
        const std::wstring name = L"Layout" + std::to_wstring(n);
        if (!layoutManager()->layoutExists(name.c_str(), db)) return name;
    }
}

int newLayout(OxDbDatabase* db) {
    const std::wstring fallback = freeLayoutName(db);
    const std::wstring name = askName(L"\nEnter name of new layout <" + fallback + L">: ", fallback);
    if (name.empty()) return STATUS_CANCEL;
    OxDbObjectId layoutId, blockId;
    const Ox::ErrorStatus es = layoutManager()->createLayout(name.c_str(), layoutId, blockId, db);
    return reportNaming(db, es, name, L"\nLayout \"" + name + L"\" created.");
}

int renameLayout(OxDbDatabase* db) {
    const std::wstring current = currentLayoutName(db);
    const std::wstring oldName = askName(L"\nEnter layout to rename <" + current + L">: ", current);
    if (oldName.empty()) return STATUS_CANCEL;
    const std::wstring stored = storedName(db, oldName);
    if (stored.empty()) {
        oxutPrintf(L"\nLayout \"%ls\" not found.", oldName);
        return STATUS_ERROR;
    }
    if (isModel(stored)) {
        oxutPrintf(L"\nThe Model layout cannot be renamed.");
        return STATUS_ERROR;
    }
    const std::wstring newName = askName(L"\nEnter new layout name <" + stored + L">: ", stored);
    if (newName.empty()) return STATUS_CANCEL;
    const Ox::ErrorStatus es = layoutManager()->renameLayout(stored.c_str(), newName.c_str(), db);
    return reportNaming(db, es, newName, L"\nLayout \"" + stored + L"\" renamed to \"" + newName + L"\".");
}

int deleteLayout(OxDbDatabase* db) {
    const std::wstring current = currentLayoutName(db);
    const std::wstring name = askName(L"\nEnter name of layout to delete <" + current + L">: ", current);
    if (name.empty()) return STATUS_CANCEL;
    const std::wstring stored = storedName(db, name);
    if (stored.empty()) {
        oxutPrintf(L"\nLayout \"%ls\" not found.", name);
        return STATUS_ERROR;
    }
    if (isModel(stored)) {
        oxutPrintf(L"\nThe Model layout cannot be deleted.");
        return STATUS_ERROR;
    }
    if (layoutManager()->deleteLayout(stored.c_str(), db) != Ox::eOk) {
        oxutPrintf(L"\nLayout \"%ls\" is the only paper-space layout and cannot be deleted.", stored);
        return STATUS_ERROR;
    }
    oxutPrintf(L"\nLayout \"%ls\" deleted.", stored);
    return STATUS_NORMAL;
}

int layout() {
    OxDbDatabase* db = workingDatabase();
    if (!db || !layoutManager()) return STATUS_ERROR;
    oxedInitGet(0, L"? Delete New Rename Set _? Delete New Rename Set");
    OxString option;
    const int status = oxedGetKword(L"\nEnter layout option [?/Delete/New/Rename/Set] <Set>: ", option);
    if (status == STATUS_NONE) return setLayout(db);
    if (status != STATUS_NORMAL) return status;
    if (option == L"?") {
        listLayouts(db);
        return STATUS_NORMAL;
    }
    if (option.isEqualNoCase(L"Delete")) return deleteLayout(db);
    if (option.isEqualNoCase(L"New")) return newLayout(db);
    if (option.isEqualNoCase(L"Rename")) return renameLayout(db);
    return setLayout(db);
}

} // namespace

void registerLayoutCommand(const AddHostCommand& add) {
    add(L"LAYOUT", L"lists, makes current, makes, renames and deletes layouts", [] { return layout(); });
}

} // namespace pavo::app
