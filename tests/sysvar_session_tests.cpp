// System variables kept for the session, and the table's common rules.
#include <gtest/gtest.h>

#include <sstream>

#include "base/HostAllocations.h"
#include "editor/Editor.h"
#include "editor/SystemVariables.h"
#include "oxed.h"

using pavo::editor::SystemVariables;

namespace {

SystemVariables noDrawing() {
    return SystemVariables([] { return static_cast<OxDbDatabase*>(nullptr); });
}

short shortValue(const SystemVariables& vars, const wchar_t* name) {
    resbuf rb{};
    EXPECT_EQ(vars.get(name, rb), STATUS_NORMAL) << "variable " << name;
    EXPECT_EQ(rb.restype, RTSHORT);
    return rb.resval.rint;
}

TEST(SysVarSession, TableHoldsTheRequiredVariables) {
    const SystemVariables vars = noDrawing();
    for (const wchar_t* name :
         {L"CLAYER", L"CELTYPE", L"CTAB", L"CVPORT", L"ERRNO", L"EXPERT", L"EXTNAMES", L"LWDEFAULT", L"LWUNITS",
          L"MEASUREMENT", L"PICKBOX", L"PICKFIRST", L"PSTYLEMODE", L"SETBYLAYERMODE", L"TILEMODE"}) {
        EXPECT_NE(vars.find(name), nullptr) << "variable " << name;
    }
    EXPECT_EQ(vars.find(L"clayer"), vars.find(L"CLAYER"));
    EXPECT_EQ(vars.find(L"NOSUCHVAR"), nullptr);
    EXPECT_EQ(vars.find(nullptr), nullptr);
    EXPECT_EQ(vars.find(L"CLAYER")->storage, SystemVariables::Storage::Drawing);
    EXPECT_EQ(vars.find(L"EXPERT")->storage, SystemVariables::Storage::Session);
}

TEST(SysVarSession, Defaults) {
    const SystemVariables vars = noDrawing();
    EXPECT_EQ(shortValue(vars, L"EXPERT"), 0);
    EXPECT_EQ(shortValue(vars, L"LWDEFAULT"), 25);
    EXPECT_EQ(shortValue(vars, L"LWUNITS"), 1);
    EXPECT_EQ(shortValue(vars, L"PICKBOX"), 3);
    EXPECT_EQ(shortValue(vars, L"PICKFIRST"), 1);
    EXPECT_EQ(shortValue(vars, L"SETBYLAYERMODE"), 255);
    EXPECT_EQ(shortValue(vars, L"ERRNO"), 0);
    EXPECT_EQ(vars.valueText(L"setbylayermode"), L"255");
}

TEST(SysVarSession, SetWithinRangeAndRefusals) {
    SystemVariables vars = noDrawing();
    std::wstring why;
    EXPECT_EQ(vars.setFromText(L"EXPERT", L" 5 ", &why), STATUS_NORMAL);
    EXPECT_EQ(shortValue(vars, L"EXPERT"), 5);
    const std::tuple<const wchar_t*, const wchar_t*, const wchar_t*> refusals[] = {
        {L"EXPERT", L"6", L"Value must be between 0 and 5."},
        {L"LWUNITS", L"-1", L"Value must be between 0 and 1."},
        {L"PICKBOX", L"2.5", L"Requires an integer value."},
        {L"PICKBOX", L"", L"Requires an integer value."},
        {L"SETBYLAYERMODE", L"256", L"Value must be between 0 and 255."},
        {L"NOSUCHVAR", L"1", L"Unknown variable name."},
        {L"DWGNAME", L"x.pvd", L"DWGNAME is read-only."},
    };
    for (const auto& [name, text, message] : refusals) {
        why.clear();
        EXPECT_EQ(vars.setFromText(name, text, &why), STATUS_ERROR) << name << " = " << text;
        EXPECT_EQ(why, message);
    }
    // Nothing refused changed a value.
    EXPECT_EQ(shortValue(vars, L"EXPERT"), 5);
    EXPECT_EQ(shortValue(vars, L"SETBYLAYERMODE"), 255);
}

TEST(SysVarSession, LineweightDefaultMustBeStandard) {
    SystemVariables vars = noDrawing();
    std::wstring why;
    EXPECT_EQ(vars.setFromText(L"LWDEFAULT", L"26", &why), STATUS_ERROR);
    EXPECT_TRUE(why.starts_with(L"Value must be a standard lineweight")) << why;
    for (const wchar_t* weight : {L"0", L"5", L"53", L"106", L"158", L"211"}) {
        EXPECT_EQ(vars.setFromText(L"LWDEFAULT", weight, &why), STATUS_NORMAL) << weight;
    }
    EXPECT_EQ(vars.setFromText(L"LWDEFAULT", L"212", &why), STATUS_ERROR);
    EXPECT_EQ(shortValue(vars, L"LWDEFAULT"), 211);
}

TEST(SysVarSession, SetFromResultBuffers) {
    SystemVariables vars = noDrawing();
    resbuf rb{};
    rb.restype = RTSHORT;
    rb.resval.rint = 12;
    EXPECT_EQ(vars.set(L"SETBYLAYERMODE", rb), STATUS_NORMAL);
    EXPECT_EQ(shortValue(vars, L"SETBYLAYERMODE"), 12);
    rb.restype = RTLONG;
    rb.resval.rlong = 70000;
    std::wstring why;
    EXPECT_EQ(vars.set(L"PICKBOX", rb, &why), STATUS_ERROR);
    EXPECT_EQ(why, L"Value must be between 0 and 50.");
    rb.restype = RTREAL;
    rb.resval.rreal = 4.0;
    EXPECT_EQ(vars.set(L"PICKBOX", rb), STATUS_NORMAL);
    rb.resval.rreal = 4.5;
    EXPECT_EQ(vars.set(L"PICKBOX", rb, &why), STATUS_ERROR);
    EXPECT_EQ(why, L"Requires an integer value.");
    rb.restype = RTSHORT;
    rb.resval.rint = 1;
    EXPECT_EQ(vars.set(L"CLAYER", rb, &why), STATUS_ERROR);
    EXPECT_EQ(why, L"Requires a text value.");
    EXPECT_EQ(shortValue(vars, L"PICKBOX"), 4);
}

TEST(SysVarSession, DrawingVariablesNeedADrawing) {
    SystemVariables vars = noDrawing();
    resbuf rb{};
    EXPECT_EQ(vars.get(L"CLAYER", rb), STATUS_ERROR);
    EXPECT_EQ(vars.get(L"TILEMODE", rb), STATUS_ERROR);
    std::wstring why;
    EXPECT_EQ(vars.setFromText(L"TILEMODE", L"0", &why), STATUS_ERROR);
    EXPECT_EQ(why, L"No drawing is open.");
    EXPECT_EQ(vars.setFromText(L"TILEMODE", L"2", &why), STATUS_ERROR);
    EXPECT_EQ(why, L"Value must be between 0 and 1.");
    EXPECT_EQ(vars.valueText(L"CLAYER"), L"");
}

TEST(SysVarSession, ThroughTheHostApiAndErrno) {
    std::ostringstream out;
    pavo::editor::Output output(out);
    SystemVariables vars = noDrawing();
    auto input = pavo::editor::makeLinesInput({});
    pavo::editor::Editor editor(*input, output, vars);
    pavo::editor::Editor::setCurrent(&editor);
    editor.setErrorNumber(52);
    resbuf rb{};
    EXPECT_EQ(oxedGetVar(L"ERRNO", &rb), STATUS_NORMAL);
    EXPECT_EQ(rb.resval.rint, 52);
    EXPECT_EQ(editor.errorNumber(), 52);
    rb.restype = RTSHORT;
    rb.resval.rint = 7;
    EXPECT_EQ(oxedSetVar(L"SETBYLAYERMODE", &rb), STATUS_NORMAL);
    EXPECT_EQ(shortValue(vars, L"SETBYLAYERMODE"), 7);
    rb.resval.rint = 300;
    EXPECT_EQ(oxedSetVar(L"SETBYLAYERMODE", &rb), STATUS_ERROR);
    EXPECT_EQ(oxedGetVar(L"NOSUCHVAR", &rb), STATUS_ERROR);
    EXPECT_EQ(oxedGetVar(L"ERRNO", nullptr), STATUS_ERROR);
    pavo::editor::Editor::setCurrent(nullptr);
}

TEST(HostAllocationsCount, StringsAndResultBuffers) {
    const pavo::HostAllocations before = pavo::hostAllocations();
    wchar_t* copy = nullptr;
    EXPECT_EQ(oxutNewString(L"Walls", copy), STATUS_NORMAL);
    EXPECT_STREQ(copy, L"Walls");
    EXPECT_EQ(pavo::hostAllocations().strings, before.strings + 1);
    oxutDelBuffer(copy);
    EXPECT_EQ(copy, nullptr);
    oxutDelBuffer(copy); // a second release of the same pointer is harmless
    EXPECT_EQ(oxutNewString(nullptr, copy), STATUS_ERROR);

    resbuf* list = oxutBuildList(RTDXF0, L"VIEWPORT", RTSHORT, 3, RTREAL, 1.5, 0);
    ASSERT_NE(list, nullptr);
    EXPECT_EQ(list->restype, RTDXF0);
    EXPECT_STREQ(list->resval.rstring, L"VIEWPORT");
    ASSERT_NE(list->rbnext, nullptr);
    EXPECT_EQ(list->rbnext->resval.rint, 3);
    ASSERT_NE(list->rbnext->rbnext, nullptr);
    EXPECT_EQ(list->rbnext->rbnext->resval.rreal, 1.5);
    EXPECT_EQ(list->rbnext->rbnext->rbnext, nullptr);
    EXPECT_EQ(pavo::hostAllocations().resbufs, before.resbufs + 3);
    EXPECT_EQ(pavo::hostAllocations().strings, before.strings + 1);
    oxutRelRb(list);
    EXPECT_EQ(pavo::hostAllocations(), before);

    // A string value from a variable is the caller's to free.
    SystemVariables vars = noDrawing();
    resbuf rb{};
    vars.get(L"EXPERT", rb);
    EXPECT_EQ(pavo::hostAllocations(), before);
}

} // namespace
