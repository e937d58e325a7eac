// The host's layout manager; the application services hand it out.
#pragma once

#include "OxDbLayout.h"

class PavoLayoutManager final : public OxDbLayoutManager {
public:
    Ox::ErrorStatus getActiveLayoutName(OxString& name, bool allowModel, const OxDbDatabase* db = nullptr) override;
    OxDbObjectId getActiveLayoutBTRId(const OxDbDatabase* db = nullptr) override;
    Ox::ErrorStatus setCurrentLayout(const wchar_t* name, OxDbDatabase* db = nullptr) override;
    OxDbObjectId findLayoutNamed(const wchar_t* name, const OxDbDatabase* db = nullptr) override;
    bool layoutExists(const wchar_t* name, const OxDbDatabase* db = nullptr) override;
    int countLayouts(const OxDbDatabase* db = nullptr) override;
    Ox::ErrorStatus createLayout(const wchar_t* name, OxDbObjectId& layoutId, OxDbObjectId& blockId,
                                 OxDbDatabase* db = nullptr) override;
    Ox::ErrorStatus renameLayout(const wchar_t* oldName, const wchar_t* newName, OxDbDatabase* db = nullptr) override;
    Ox::ErrorStatus deleteLayout(const wchar_t* name, OxDbDatabase* db = nullptr) override;

private:
    // `db`, or the working database when null.
    OxDbDatabase* resolve(const OxDbDatabase* db) const;
};
