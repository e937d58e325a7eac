// Plot style tables: the shipped tables, refusals, and the search rule.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <unistd.h>

#include "OxDbDatabase.h"
#include "PavoPlotStyles.h"
#include "SessionHarness.h"
#include "base/Utf8.h"
#include "files/PlotStyleTable.h"

namespace fs = std::filesystem;

namespace {

std::unique_ptr<PavoPlotStyleTable> load(const fs::path& path) {
    PavoPlotStyleTable* table = reinterpret_cast<PavoPlotStyleTable*>(1);
    const bool ok = PavoPlotManager::LoadPlotStyleTable(path.wstring().c_str(), table);
    EXPECT_EQ(ok, table != nullptr);
    return std::unique_ptr<PavoPlotStyleTable>(table);
}

const PavoPlotStyle* styleNamed(const PavoPlotStyleTable& table, const wchar_t* name) {
    for (int i = 0; i < table.count(); ++i)
        if (std::wstring(table.getPlotStyleAt(i)->getName()) == name) return table.getPlotStyleAt(i);
    return nullptr;
}

const fs::path kSupport = fs::path(PAVO_TEST_RESOURCE_DIR) / "support";

TEST(PlotStyleTable, TheSampleDrawingsTable) {
    const auto table = load(kSupport / "pavo-named.pst");
    ASSERT_TRUE(table);
    EXPECT_EQ(table->description(), L"Named plot styles for architectural plans");
    for (const wchar_t* name : {L"Normal", L"Thick", L"Thin", L"Dashed", L"Grey 50%", L"Black", L"Screened 30%"})
        EXPECT_NE(styleNamed(*table, name), nullptr) << pavo::toUtf8(name);
    EXPECT_STREQ(table->getPlotStyleAt(0)->getName(), L"Normal");
    EXPECT_EQ(table->getPlotStyleAt(table->count()), nullptr);
    EXPECT_EQ(table->getPlotStyleAt(-1), nullptr);

    const PavoPlotStyle* normal = styleNamed(*table, L"Normal");
    EXPECT_TRUE(normal->m_color.isByLayer());
    EXPECT_EQ(normal->m_lineWeight, OxDb::kLnWtByLayer);
    EXPECT_TRUE(normal->m_linetype.isEmpty());
    EXPECT_EQ(normal->m_screening, 100);
    EXPECT_EQ(styleNamed(*table, L"Thick")->m_lineWeight, OxDb::kLnWt070);
    EXPECT_EQ(styleNamed(*table, L"Dashed")->m_linetype, L"DASHED");
    EXPECT_EQ(styleNamed(*table, L"Screened 30%")->m_screening, 30);
    EXPECT_EQ(styleNamed(*table, L"Grey 50%")->m_color.colorNameForDisplay(), L"128,128,128");

    const auto mono = load(kSupport / "monochrome-named.pst");
    ASSERT_TRUE(mono);
    for (int i = 0; i < mono->count(); ++i)
        EXPECT_EQ(mono->getPlotStyleAt(i)->m_color, OxCmColor::fromRgb(0, 0, 0));
}

TEST(PlotStyleTable, MalformedTablesAreRefusedWithTheLine) {
    const std::string head = "pavo plot style table 1\nA table\n";
    const std::pair<std::string, std::string> cases[] = {
        {"", "t.pst:1: not a plot style table"},
        {"pavo plot style table 1\n", "t.pst:1: the description line is missing"},
        {head + "Normal\tobject\tobject\tobject\n", "t.pst:3: expected \"name<TAB>colour"},
        {head + "Normal\tpink\tobject\tobject\t100\n", "t.pst:3: colour \"pink\""},
        {head + "Normal\t256\tobject\tobject\t100\n", "t.pst:3: colour \"256\""},
        {head + "Normal\tobject\t0.33\tobject\t100\n", "t.pst:3: lineweight \"0.33\""},
        {head + "Normal\tobject\tobject\t\t100\n", "t.pst:3: the linetype is empty"},
        {head + "Normal\tobject\tobject\tobject\t101\n", "t.pst:3: screening \"101\""},
        {head + "A\t1\t0.25\tobject\t100\n;; x\na\t2\t0.25\tobject\t100\n", "t.pst:5: style \"a\" is listed twice"},
    };
    for (const auto& [text, expected] : cases) {
        std::wstring problem;
        EXPECT_FALSE(pavo::files::parsePlotStyleTable(text, "t.pst", problem)) << text;
        EXPECT_TRUE(pavo::toUtf8(problem).starts_with(expected)) << pavo::toUtf8(problem);
    }
    std::wstring problem;
    const auto table =
        pavo::files::parsePlotStyleTable(head + "Blue\tblue\t0.5\tHIDDEN\t0\tAll blue\n", "t.pst", problem);
    ASSERT_TRUE(table);
    const PavoPlotStyle* blue = table->getPlotStyleAt(0);
    EXPECT_EQ(blue->m_color.colorIndex(), 5);
    EXPECT_EQ(blue->m_lineWeight, OxDb::kLnWt050);
    EXPECT_EQ(blue->m_screening, 0);
    EXPECT_STREQ(blue->getDescription(), L"All blue");

    PavoPlotStyleTable* none = nullptr;
    EXPECT_FALSE(PavoPlotManager::LoadPlotStyleTable(L"/no/such/table.pst", none));
    EXPECT_EQ(none, nullptr);
}

TEST(PlotStyleTable, SearchPathDrawingFolderThenSupportPath) {
    pavotest::ScriptedSession session({}, pavotest::Drawing::New);
    OxDbDatabase* db = session.database();
    const OxString found = searchPrintstylePath(L"pavo-named", db); // ".pst" is added
    EXPECT_EQ(fs::path(found.str()), kSupport / "pavo-named.pst");
    EXPECT_EQ(searchPrintstylePath(L"monochrome-named.pst", nullptr).str(),
              (kSupport / "monochrome-named.pst").wstring());
    EXPECT_TRUE(searchPrintstylePath(L"absent.pst", db).isEmpty());
    EXPECT_TRUE(searchPrintstylePath(L"", db).isEmpty());

    const fs::path folder = fs::temp_directory_path() / ("pavo-pst-" + std::to_string(::getpid()));
    fs::create_directories(folder);
    std::ofstream(folder / "pavo-named.pst") << "pavo plot style table 1\nLocal\n";
    db->setFileName((folder / "plan.pvd").wstring().c_str());
    EXPECT_EQ(fs::path(searchPrintstylePath(L"pavo-named.pst", db).str()), folder / "pavo-named.pst");
    const auto local = load(folder / "pavo-named.pst");
    ASSERT_TRUE(local);
    EXPECT_EQ(local->count(), 0);
    fs::remove_all(folder);
}

} // namespace
