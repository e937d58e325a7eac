// Plot settings, layouts and the layout manager.
#pragma once

#include "OxDbObject.h"
#include "OxString.h"

class PAVO_HOST_API OxDbPlotSettings : public OxDbObject {
    OX_RX_DECLARE_MEMBERS(OxDbPlotSettings)
public:
    OxDbObject* cloneState() const override;
    Ox::ErrorStatus getPlotSettingsName(OxString& name) const;
    Ox::ErrorStatus setPlotSettingsName(const wchar_t* name);
    // The plot style table file name (for example "monochrome.pst").
    Ox::ErrorStatus getCurrentStyleSheet(OxString& name) const;
    Ox::ErrorStatus getCurrentStyleSheet(const wchar_t*& name) const;
    Ox::ErrorStatus setCurrentStyleSheet(const wchar_t* name);
    bool plotViewportBorders() const { return m_plotViewportBorders; }
    Ox::ErrorStatus setPlotViewportBorders(bool v);

protected:
    void copyPlotSettings(const OxDbPlotSettings& from);

private:
    OxString m_name;
    OxString m_styleSheet;
    bool m_plotViewportBorders = false;
};

class PAVO_HOST_API OxDbLayout : public OxDbPlotSettings {
    OX_RX_DECLARE_MEMBERS(OxDbLayout)
public:
    OxDbObject* cloneState() const override;
    Ox::ErrorStatus getLayoutName(OxString& name) const;
    Ox::ErrorStatus getLayoutName(const wchar_t*& name) const;
    Ox::ErrorStatus setLayoutName(const wchar_t* name);
    int getTabOrder() const { return m_tabOrder; }
    Ox::ErrorStatus setTabOrder(int order);
    OxDbObjectId getBlockTableRecordId() const { return m_block; }
    Ox::ErrorStatus setBlockTableRecordId(const OxDbObjectId& id);
    bool isModelLayout() const;
    // The layout's viewports in creation order; the first (number 1) is the
    // layout's own paper-space viewport. Empty for "Model".
    OxDbObjectIdArray getViewportArray() const;
    // The viewport the user works in while this layout is current: its sheet
    // (viewport 1) in paper space, or a model viewport. Null means the sheet.
    OxDbObjectId activeViewportId() const { return m_activeViewport; }
    Ox::ErrorStatus setActiveViewportId(const OxDbObjectId& id);
    // Host internals: the model viewport the user last worked in, where
    // MSPACE goes back to (kept for the session only).
    OxDbObjectId lastModelViewportId() const { return m_lastModelViewport; }
    void setLastModelViewportId(const OxDbObjectId& id) { m_lastModelViewport = id; }

private:
    OxString m_layoutName;
    int m_tabOrder = 0;
    OxDbObjectId m_block;
    OxDbObjectId m_activeViewport;
    OxDbObjectId m_lastModelViewport;
};

class OxDbDatabase;

class PAVO_HOST_API OxDbLayoutManager {
public:
    virtual ~OxDbLayoutManager();
    // Writes the active layout's name ("Model" only when allowModel).
    virtual Ox::ErrorStatus getActiveLayoutName(OxString& name, bool allowModel, const OxDbDatabase* db = nullptr) = 0;
    virtual OxDbObjectId getActiveLayoutBTRId(const OxDbDatabase* db = nullptr) = 0;
    virtual Ox::ErrorStatus setCurrentLayout(const wchar_t* name, OxDbDatabase* db = nullptr) = 0;
    virtual OxDbObjectId findLayoutNamed(const wchar_t* name, const OxDbDatabase* db = nullptr) = 0;
    virtual bool layoutExists(const wchar_t* name, const OxDbDatabase* db = nullptr) = 0;
    virtual int countLayouts(const OxDbDatabase* db = nullptr) = 0;
    // Makes a paper-space layout with its block and paper-space viewport.
    virtual Ox::ErrorStatus createLayout(const wchar_t* name, OxDbObjectId& layoutId, OxDbObjectId& blockId,
                                         OxDbDatabase* db = nullptr) = 0;
    virtual Ox::ErrorStatus renameLayout(const wchar_t* oldName, const wchar_t* newName,
                                         OxDbDatabase* db = nullptr) = 0;
    virtual Ox::ErrorStatus deleteLayout(const wchar_t* name, OxDbDatabase* db = nullptr) = 0;

    // The active layout's name; valid until the next call.
    const wchar_t* findActiveLayout(bool allowModel, const OxDbDatabase* db = nullptr) {
        static OxString name; // created on first use, released at exit
        getActiveLayoutName(name, allowModel, db);
        return name.kwszPtr();
    }
};
