// The work of "SETBYLAYER": the settings mask, the selection with its
// "Settings" keyword, the two questions, and the reset of the chosen
// properties to ByLayer on the selected objects and inside blocks.
#pragma once

#include <cstdint>

#include "OxArray.h"
#include "OxDbObjectId.h"
#include "resbuf.h"

class OxDbEntity;
class OxDbBlockReference;

class PavoSetByLayerCmdProcess {
public:
    PavoSetByLayerCmdProcess() = default;
    ~PavoSetByLayerCmdProcess() = default;

    int ExecuteCommand();
    // Resets the chosen properties of `entity` (open for read); true when
    // one changed. The entity is left open for read.
    bool ChangeEntityProps(OxDbEntity* entity);
    // Resets the reference itself, its attributes and the contents of its
    // block definition, nested references included; the ids of every
    // reference to each visited definition are appended to `regen`.
    bool ChangeBlockRefProps(OxDbBlockReference* reference, OxArray<OxDbObjectId>& regen);
    void ChangeEntitySetProps(const OxArray<OxDbObjectId>& ids);

    static void PrintCurrentProps();
    // The selection prompt's keyword callback: "Settings" opens the dialog.
    static resbuf* KWordsCallBack(const wchar_t* keyword);

    // Kept while the module is loaded; SETBYLAYERMODE is read at the start
    // of each run and written at the end of each completed one.
    static std::uint16_t m_iSetByLayerMode;
    static bool m_bColorPStyleMode;
};
