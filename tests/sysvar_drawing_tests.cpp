// System variables kept in the drawing: they read and write the working
// database.
#include <gtest/gtest.h>

#include "OxDbDatabase.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "OxDbSymbolTable.h"
#include "base/CaseFold.h"
#include "base/HostAllocations.h"
#include "editor/SystemVariables.h"

using pavo::editor::SystemVariables;

namespace {

class SysVarDrawing : public ::testing::Test {
protected:
    void SetUp() override {
        m_services = oxdbHostApplicationServices();
        ASSERT_NE(m_services, nullptr);
        m_previous = m_services->workingDatabase();
        m_services->setWorkingDatabase(&m_db);
        addLayer(L"Walls", false);
        addLayer(L"Frozen", true);
    }
    void TearDown() override {
        if (m_services) m_services->setWorkingDatabase(m_previous);
    }

    void addLayer(const wchar_t* name, bool frozen) {
        OxDbLayerTable* table = nullptr;
        ASSERT_EQ(m_db.getLayerTable(table, OxDb::kForWrite), Ox::eOk);
        auto* layer = new OxDbLayerTableRecord();
        layer->setName(name);
        layer->setIsFrozen(frozen);
        ASSERT_EQ(table->add(layer), Ox::eOk);
        layer->close();
        table->close();
    }

    std::wstring currentLayerName() {
        OxDbLayerTableRecord* layer = nullptr;
        if (oxdbOpenObject(layer, m_db.clayer(), OxDb::kForRead) != Ox::eOk) return L"?";
        std::wstring name = layer->getName();
        layer->close();
        return name;
    }

    // Sets from typed text; the refusal message, or "" when accepted.
    std::wstring typed(const wchar_t* name, const wchar_t* text) {
        std::wstring why;
        const int status = m_vars.setFromText(name, text, &why);
        EXPECT_EQ(status == STATUS_NORMAL, why.empty()) << name << " = " << text;
        return why;
    }

    OxDbDatabase m_db{true};
    SystemVariables m_vars{pavo::editor::workingDatabaseSource()};
    OxDbHostApplicationServices* m_services = nullptr;
    OxDbDatabase* m_previous = nullptr;
};

TEST_F(SysVarDrawing, CurrentLayerAsAHostString) {
    const pavo::HostAllocations before = pavo::hostAllocations();
    resbuf rb{};
    ASSERT_EQ(m_vars.get(L"CLAYER", rb), STATUS_NORMAL);
    ASSERT_EQ(rb.restype, RTSTR);
    EXPECT_STREQ(rb.resval.rstring, L"0");
    EXPECT_EQ(pavo::hostAllocations().strings, before.strings + 1);
    oxutDelBuffer(rb.resval.rstring);
    EXPECT_EQ(pavo::hostAllocations(), before);
}

TEST_F(SysVarDrawing, SettingTheCurrentLayer) {
    EXPECT_EQ(typed(L"CLAYER", L"walls"), L"");
    EXPECT_EQ(currentLayerName(), L"Walls");
    EXPECT_EQ(m_vars.valueText(L"CLAYER"), L"Walls");
    EXPECT_EQ(typed(L"CLAYER", L"Nope"), L"Layer \"Nope\" not found.");
    EXPECT_EQ(typed(L"CLAYER", L"Frozen"), L"Layer \"Frozen\" is frozen and cannot be made current.");
    EXPECT_EQ(currentLayerName(), L"Walls");
}

TEST_F(SysVarDrawing, CurrentLinetype) {
    EXPECT_TRUE(pavo::equalNoCase(m_vars.valueText(L"CELTYPE"), L"ByLayer")) << m_vars.valueText(L"CELTYPE");
    EXPECT_EQ(typed(L"CELTYPE", L"continuous"), L"");
    EXPECT_TRUE(pavo::equalNoCase(m_vars.valueText(L"CELTYPE"), L"Continuous"));
    EXPECT_EQ(typed(L"CELTYPE", L"DASHED"), L"Linetype \"DASHED\" is not loaded.");
}

TEST_F(SysVarDrawing, TilemodeAndCtabSwitchLayouts) {
    EXPECT_EQ(m_vars.valueText(L"TILEMODE"), L"1");
    EXPECT_EQ(m_vars.valueText(L"CTAB"), L"Model");
    EXPECT_EQ(typed(L"TILEMODE", L"0"), L"");
    EXPECT_FALSE(m_db.tilemode());
    EXPECT_EQ(m_vars.valueText(L"CTAB"), L"Layout1");
    EXPECT_EQ(typed(L"CTAB", L"Model"), L"");
    EXPECT_TRUE(m_db.tilemode());
    EXPECT_EQ(typed(L"CTAB", L"layout1"), L"");
    EXPECT_FALSE(m_db.tilemode());
    EXPECT_EQ(typed(L"CTAB", L"Sheet 9"), L"Layout \"Sheet 9\" not found.");
    EXPECT_EQ(m_vars.valueText(L"CTAB"), L"Layout1");
}

TEST_F(SysVarDrawing, HeaderIntegers) {
    resbuf rb{};
    ASSERT_EQ(m_vars.get(L"CVPORT", rb), STATUS_NORMAL);
    EXPECT_EQ(rb.restype, RTSHORT);
    EXPECT_EQ(rb.resval.rint, m_db.cvport());
    EXPECT_EQ(typed(L"MEASUREMENT", L"1"), L"");
    EXPECT_EQ(m_db.measurement(), 1);
    EXPECT_EQ(typed(L"EXTNAMES", L"0"), L"");
    EXPECT_EQ(m_db.extnames(), 0);
    EXPECT_EQ(typed(L"PSTYLEMODE", L"0"), L"");
    EXPECT_EQ(m_db.pstylemode(), 0);
    EXPECT_EQ(typed(L"PSTYLEMODE", L"2"), L"Value must be between 0 and 1.");
    EXPECT_EQ(typed(L"MEASUREMENT", L"metric"), L"Requires an integer value.");
    EXPECT_EQ(m_db.pstylemode(), 0);
}

TEST_F(SysVarDrawing, RealsAndReadOnly) {
    EXPECT_EQ(typed(L"LTSCALE", L"2.5"), L"");
    EXPECT_DOUBLE_EQ(m_db.ltscale(), 2.5);
    EXPECT_EQ(typed(L"LTSCALE", L"0"), L"Value must be positive.");
    EXPECT_EQ(typed(L"DWGNAME", L"other.pvd"), L"DWGNAME is read-only.");
    EXPECT_DOUBLE_EQ(m_db.ltscale(), 2.5);
}

} // namespace
