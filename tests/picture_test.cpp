// Pictures of the drawing (PLOT, EXPORT, --plot, --export) looked at pixel
// by pixel. tests/data/pictures.pvd has one line a layer across a 100 x 100
// model, and a layout "Sheet" (420 x 297 mm) with two viewports side by side
// that show the same view: A (number 2) freezes FROZEN-IN-A, B (number 3)
// overrides the colour of OVERRIDDEN-IN-B.
#include <gtest/gtest.h>

#include <QColor>
#include <QFile>
#include <QImage>
#include <QXmlStreamReader>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <functional>
#include <regex>
#include <sstream>

#include "OxCmColor.h"
#include "DocExamples.h"
#include "RunPavo.h"
#include "SessionHarness.h"

using pavotest::PavoRun;
using pavotest::runPavoApart;
using pavotest::runShell;
using pavotest::ScriptedSession;
using pavotest::TempFolder;

namespace {

const std::string kDrawing = std::string(PAVO_TEST_DATA_DIR) + "/pictures.pvd";
constexpr double kSheetHeight = 297;
// Where the viewports' view puts the model on the sheet.
constexpr double kScale = 277.0 / 110.0;
struct SheetRect {
    double left, bottom, right, top;
};
constexpr SheetRect kViewportA{10, 10, 200, 287}, kViewportB{220, 10, 410, 287};
double sheetY(double modelY) { return 148.5 + (modelY - 50) * kScale; }

std::string readFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

// The test drawing with `from` replaced by `to`, written to `dir`.
std::string variant(const TempFolder& dir, const std::string& from, const std::string& to) {
    std::string text = readFile(kDrawing);
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) text.replace(at, from.size(), to);
    dir.write("variant.pvd", text);
    return dir.path("variant.pvd");
}

// A plotted picture of a sheet, read back, at `dotsPerInch`.
class Picture {
public:
    Picture(const std::string& file, double dotsPerInch) : m_image(QString::fromStdString(file)) {
        m_dotsPerMm = dotsPerInch / 25.4;
    }
    bool isNull() const { return m_image.isNull(); }
    const QImage& image() const { return m_image; }
    // Pixels inside `rect` (sheet millimetres) that pass `test`.
    int count(const SheetRect& r, const std::function<bool(QColor)>& test) const {
        int found = 0;
        const int x0 = std::max(0, px(r.left)), x1 = std::min(m_image.width() - 1, px(r.right));
        const int y0 = std::max(0, py(r.top)), y1 = std::min(m_image.height() - 1, py(r.bottom));
        for (int y = y0; y <= y1; ++y)
            for (int x = x0; x <= x1; ++x)
                if (test(m_image.pixelColor(x, y))) ++found;
        return found;
    }
    // A band 3 mm high around the sheet height `y`, between `left` and `right`.
    static SheetRect band(double y, const SheetRect& in) { return {in.left, y - 1.5, in.right, y + 1.5}; }
    int px(double x) const { return static_cast<int>(std::lround(x * m_dotsPerMm)); }
    int py(double y) const { return static_cast<int>(std::lround((kSheetHeight - y) * m_dotsPerMm)); }
    double dotsPerMm() const { return m_dotsPerMm; }

private:
    QImage m_image;
    double m_dotsPerMm;
};

// Ink of colour r,g,b, however much of the pixel it covers: a pixel
// partly covered is that colour blended with the paper's white, so its
// distance from white points the same way as the colour's.
std::function<bool(QColor)> likeRgb(int r, int g, int b) {
    return [=](QColor p) {
        const double d[3] = {255.0 - p.red(), 255.0 - p.green(), 255.0 - p.blue()};
        const double e[3] = {255.0 - r, 255.0 - g, 255.0 - b};
        const double dd = d[0] * d[0] + d[1] * d[1] + d[2] * d[2], ee = e[0] * e[0] + e[1] * e[1] + e[2] * e[2];
        if (dd < 40 * 40) return false; // paper
        return (d[0] * e[0] + d[1] * e[1] + d[2] * e[2]) / std::sqrt(dd * ee) > 0.97;
    };
}
// An index colour of the drawing as it plots (colour 7 in black).
std::function<bool(QColor)> like(int index) {
    if (index == 7) return likeRgb(0, 0, 0);
    const OxCmColor c = OxCmColor::fromIndex(static_cast<std::uint16_t>(index));
    return likeRgb(c.red(), c.green(), c.blue());
}
bool inked(QColor p) { return p.red() < 200 || p.green() < 200 || p.blue() < 200; }
bool dark(QColor p) { return p.lightness() < 160; }

PavoRun plot(const std::string& drawing, const std::string& out, const std::string& dpi = "100") {
    return runPavoApart({drawing, "--plot", out, "--layout", "Sheet", "--dpi", dpi});
}

} // namespace

TEST(PicturePlot, ViewportsShowTheirOwnFrozenLayersAndOverridesClippedToTheirRectangles) {
    TempFolder dir;
    const PavoRun run = plot(kDrawing, dir.path("sheet.png"));
    ASSERT_EQ(run.status, 0) << run.output << run.errors;
    EXPECT_NE(run.output.find("Plotted Sheet to"), std::string::npos) << run.output;
    const Picture p(dir.path("sheet.png"), 100);
    ASSERT_FALSE(p.isNull());
    EXPECT_EQ(p.image().width(), 1654);
    EXPECT_EQ(p.image().height(), 1169);

    const double frozenInA = sheetY(20), overridden = sheetY(30);
    EXPECT_EQ(p.count(Picture::band(frozenInA, kViewportA), like(4)), 0) << "frozen in A";
    EXPECT_GT(p.count(Picture::band(frozenInA, kViewportB), like(4)), 100) << "shows in B";
    EXPECT_GT(p.count(Picture::band(overridden, kViewportA), like(5)), 100) << "the layer's own colour in A";
    EXPECT_EQ(p.count(Picture::band(overridden, kViewportA), like(3)), 0);
    EXPECT_GT(p.count(Picture::band(overridden, kViewportB), like(3)), 100) << "the override in B";
    EXPECT_EQ(p.count(Picture::band(overridden, kViewportB), like(5)), 0);
    // The lines run past the viewports' sides in the model; the sheet
    // between and around the viewports stays white.
    EXPECT_GT(p.count(Picture::band(sheetY(10), kViewportA), like(1)), 100);
    EXPECT_EQ(p.count({201.5, 5, 218.5, 292}, inked), 0) << "between the viewports";
    EXPECT_EQ(p.count({0, 0, 8.5, 297}, inked), 0) << "left of viewport A";
    // Off, frozen and not-plotted layers are left out of a plot.
    const SheetRect sheet{0, 0, 420, 297};
    EXPECT_EQ(p.count(sheet, like(6)), 0) << "off and frozen layers";
    EXPECT_EQ(p.count(sheet, like(2)), 0) << "not plotted";
    // The ByBlock line of the block takes the reference's colour 30.
    EXPECT_GT(p.count(Picture::band(sheetY(80), kViewportA), like(30)), 100);
    EXPECT_GT(p.count(Picture::band(sheetY(80), kViewportB), like(30)), 100);
}

TEST(PictureExport, ShowsNotPlottedLayersAndViewportBordersButNeverOffOnes) {
    TempFolder dir;
    const PavoRun run = runPavoApart({kDrawing, "--export", dir.path("sheet.png"), "--layout", "Sheet", "--width",
                                      "1654"});
    ASSERT_EQ(run.status, 0) << run.output << run.errors;
    const Picture p(dir.path("sheet.png"), 1654 / (420 / 25.4));
    ASSERT_FALSE(p.isNull());
    EXPECT_GT(p.count(Picture::band(sheetY(50), kViewportA), like(2)), 100) << "an export is not a plot";
    EXPECT_EQ(p.count({0, 0, 420, 297}, like(6)), 0);
    EXPECT_GT(p.count({199.5, 100, 200.5, 200}, like(7)), 300) << "viewport A's right border";
}

TEST(PicturePlot, DashesAndGapsAtThePatternsLengthsTimesLtscale) {
    for (const double ltscale : {1.0, 0.5}) {
        TempFolder dir;
        const std::string drawing =
            variant(dir, "\"ltscale\": 1", "\"ltscale\": " + std::to_string(ltscale));
        ASSERT_EQ(plot(drawing, dir.path("sheet.png"), "200").status, 0);
        const Picture p(dir.path("sheet.png"), 200);
        ASSERT_FALSE(p.isNull());
        // Runs of ink and of paper along the dashed line inside viewport A.
        const int row = p.py(sheetY(60));
        std::vector<int> dashes, gaps;
        bool inDash = false;
        int run = 0;
        for (int x = p.px(kViewportA.left) + 2; x < p.px(kViewportA.right) - 2; ++x) {
            const bool ink = dark(p.image().pixelColor(x, row));
            if (ink == inDash) {
                ++run;
                continue;
            }
            if (run > 0) (inDash ? dashes : gaps).push_back(run);
            inDash = ink;
            run = 1;
        }
        // The first and last runs are cut by the viewport.
        ASSERT_GT(dashes.size(), 4u) << ltscale;
        ASSERT_GT(gaps.size(), 4u) << ltscale;
        for (std::size_t i = 1; i + 1 < dashes.size(); ++i)
            EXPECT_NEAR(dashes[i] / p.dotsPerMm(), 10 * ltscale, 0.3) << "dash " << i << " at LTSCALE " << ltscale;
        for (std::size_t i = 1; i + 1 < gaps.size(); ++i)
            EXPECT_NEAR(gaps[i] / p.dotsPerMm(), 5 * ltscale, 0.3) << "gap " << i << " at LTSCALE " << ltscale;
    }
}

TEST(PicturePlot, LineweightsAtTheirWidthOnPaper) {
    TempFolder dir;
    ASSERT_EQ(plot(kDrawing, dir.path("sheet.png"), "300").status, 0);
    const Picture p(dir.path("sheet.png"), 300);
    ASSERT_FALSE(p.isNull());
    // Ink across a line, in millimetres: a partly covered edge counts by its share.
    const auto width = [&](double y, const std::function<double(QColor)>& share) {
        double ink = 0;
        for (int row = p.py(y + 2); row <= p.py(y - 2); ++row) ink += share(p.image().pixelColor(p.px(105), row));
        return ink / p.dotsPerMm();
    };
    const auto black = [](QColor c) { return 1 - c.lightnessF(); };
    const auto red = [](QColor c) { return 1 - c.greenF(); };
    EXPECT_NEAR(width(sheetY(70), black), 0.70, 0.08) << "WIDE: 0.70 mm";
    EXPECT_NEAR(width(sheetY(10), red), 0.25, 0.08) << "RED: the default lineweight, 0.25 mm";
}

TEST(PicturePlot, TransparentLayersLetHalfThePaperThrough) {
    TempFolder dir;
    ASSERT_EQ(plot(kDrawing, dir.path("sheet.png")).status, 0);
    const Picture p(dir.path("sheet.png"), 100);
    // HALF: blue, 1 mm wide, alpha 127 of 255; its middle rows are wholly covered.
    int palest = 255;
    for (int row = p.py(sheetY(95) + 1.5); row <= p.py(sheetY(95) - 1.5); ++row)
        palest = std::min(palest, p.image().pixelColor(p.px(105 + 30 * kScale), row).red());
    EXPECT_NEAR(palest, 128, 8);
}

TEST(PicturePlot, PlotStyleTablesNamedAndColourDependent) {
    TempFolder dir;
    // Named: every style of the monochrome table plots black.
    std::string drawing = variant(dir, "\"block\": \"31\"", "\"block\": \"31\", \"styleSheet\": \"monochrome-named.pst\"");
    ASSERT_EQ(plot(drawing, dir.path("mono.png")).status, 0);
    const Picture mono(dir.path("mono.png"), 100);
    EXPECT_EQ(mono.count(Picture::band(sheetY(10), kViewportA), like(1)), 0);
    EXPECT_GT(mono.count(Picture::band(sheetY(10), kViewportA), like(7)), 100);

    // Colour-dependent: the style named after colour 1 gives blue ink 1 mm
    // wide at 50 % screening; other colours plot as drawn.
    dir.write("pens.pst", "pavo plot style table 1\nPens\n1\t0,0,255\t1.00\tobject\t50\tred plots blue\n");
    drawing = readFile(variant(dir, "\"block\": \"31\"", "\"block\": \"31\", \"styleSheet\": \"pens.pst\""));
    drawing.replace(drawing.find("\"pstylemode\": 0"), 15, "\"pstylemode\": 1");
    dir.write("pens.pvd", drawing);
    ASSERT_EQ(plot(dir.path("pens.pvd"), dir.path("pens.png")).status, 0);
    const Picture pens(dir.path("pens.png"), 100);
    // Across the 1 mm line the middle rows are wholly covered: half ink.
    const int column = pens.px(100);
    int palest = 255;
    for (int row = pens.py(sheetY(10) + 1.5); row <= pens.py(sheetY(10) - 1.5); ++row)
        palest = std::min(palest, pens.image().pixelColor(column, row).red());
    EXPECT_NEAR(palest, 128, 8) << "screened to half";
    EXPECT_GT(pens.count(Picture::band(sheetY(10), kViewportA), like(5)), 1000);
    EXPECT_EQ(pens.count(Picture::band(sheetY(10), kViewportA), like(1)), 0);
    EXPECT_GT(pens.count(Picture::band(sheetY(30), kViewportA), like(5)), 100) << "colour 5 has no style";
}

TEST(PictureFiles, SvgParsesAndPdfHasOnePageOfTheSheetsSize) {
    TempFolder dir;
    ASSERT_EQ(runPavoApart({kDrawing, "--export", dir.path("model.svg")}).status, 0);
    QFile svg(QString::fromStdString(dir.path("model.svg")));
    ASSERT_TRUE(svg.open(QIODevice::ReadOnly));
    QXmlStreamReader xml(&svg);
    int elements = 0;
    QString root;
    while (!xml.atEnd())
        if (xml.readNext() == QXmlStreamReader::StartElement && elements++ == 0) root = xml.name().toString();
    EXPECT_FALSE(xml.hasError()) << xml.errorString().toStdString();
    EXPECT_EQ(root.toStdString(), "svg");
    EXPECT_GT(elements, 10);

    const PavoRun pdf = runPavoApart({kDrawing, "--plot", dir.path("sheet.pdf"), "--layout", "Sheet"});
    ASSERT_EQ(pdf.status, 0) << pdf.errors;
    const PavoRun info = runShell("pdfinfo '" + dir.path("sheet.pdf") + "'");
    ASSERT_EQ(info.status, 0) << info.output;
    EXPECT_TRUE(std::regex_search(info.output, std::regex("Pages: +1\n"))) << info.output;
    // 420 x 297 mm in points.
    EXPECT_TRUE(std::regex_search(info.output, std::regex("Page size: +1191 x 842 pts"))) << info.output;
}

TEST(PictureFiles, ExitStatusZeroOnlyWhenThePictureWasWritten) {
    TempFolder dir;
    dir.write("file", "not a folder");
    const struct {
        std::vector<std::string> args;
        int status;
        std::string said;
    } cases[] = {
        {{kDrawing, "--plot", dir.path("file/sheet.pdf")}, 7, "sheet.pdf was not written:"},
        {{kDrawing, "--plot", dir.path("sheet.svg")}, 7, "a plot is a PDF or PNG file"},
        {{kDrawing, "--export", dir.path("sheet.jpg")}, 7, "a picture is a PNG, SVG or PDF file"},
        {{kDrawing, "--plot", dir.path("sheet.pdf"), "--layout", "Nowhere"}, 7, "the drawing has no layout \"Nowhere\""},
        {{kDrawing, "--layout", "Sheet"}, 1, "--layout goes with --plot or --export"},
        {{kDrawing, "--plot", dir.path("a.pdf"), "--export", dir.path("b.png")}, 1, "excludes"},
        {{dir.path("missing.pvd"), "--plot", dir.path("sheet.pdf")}, 2, "No such file"},
    };
    for (const auto& c : cases) {
        const PavoRun run = runPavoApart(c.args);
        EXPECT_EQ(run.status, c.status) << c.args[1] << " " << c.args[2] << "\n" << run.errors;
        EXPECT_NE(run.errors.find(c.said), std::string::npos) << run.errors;
    }
    // Nothing was left behind, not even a temporary file.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(dir.path("")), {}), 1);
    EXPECT_FALSE(std::filesystem::exists(dir.path("file/sheet.pdf")));
}

TEST(PlotCommand, AsksForTheLayoutOutputAndFileWithDefaults) {
    TempFolder dir;
    const std::string pdf = dir.path("plan.pdf"), png = dir.path("model.png");
    ScriptedSession s({"PLOT", "?", "Nowhere", "A3 Detail", "", "", pdf, "PLOT", "Model", "PNG", "5", "50", "A4", png,
                       "PLOT", "", "^C"});
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Layout to plot or [?] <Model>: ?\nLayouts: Model, A1 Plan, A3 Detail\n"
                     "Layout to plot or [?] <Model>: Nowhere\nLayout \"Nowhere\" not found.\n"
                     "Layout to plot or [?] <Model>: A3 Detail\nOutput [PDF/PNG] <PDF>: \n"
                     "Plot viewport borders? [Yes/No] <No>: \nPlot file name <drawing-A3 Detail.pdf>: " +
                         pdf + "\nPlotted A3 Detail to " + pdf + " (420 x 297 mm)."),
              std::string::npos)
        << t;
    EXPECT_NE(t.find("Resolution in dots per inch <150>: 5\nRequires an integer between 10 and 2400.\n"
                     "Resolution in dots per inch <150>: 50\nPaper size [A4/A3/A2/A1/A0] <A3>: A4\n"
                     "Plot file name <drawing-Model.png>: " +
                         png + "\nPlotted Model to " + png + " (585 x 413 pixels)."),
              std::string::npos)
        << t;
    EXPECT_TRUE(std::filesystem::exists(pdf));
    EXPECT_EQ(QImage(QString::fromStdString(png)).width(), 585);
}

TEST(ExportCommand, AWindowOfTheCurrentSpaceAtAWidth) {
    TempFolder dir;
    const std::string png = dir.path("corner.png");
    ScriptedSession s({"EXPORT", dir.path("corner.gif"), png, "Window", "0,0", "8000,6000", "400", "EXPORT", png,
                       ""});
    EXPECT_EQ(s.run(), 0);
    const std::string t = s.transcript();
    EXPECT_NE(t.find("Export file name <drawing.png>: " + dir.path("corner.gif") +
                     "\nPictures are PNG, SVG or PDF files: end the name in .png, .svg or .pdf.\n"
                     "Export file name <drawing.png>: " + png +
                     "\nWindow to show [Extents/Window] <Extents>: Window\nSpecify first corner: 0,0\n"
                     "Specify opposite corner: 8000,6000\nWidth in pixels <1600>: 400\nExported " + png +
                     " (400 x 300 pixels)."),
              std::string::npos)
        << t;
    EXPECT_NE(t.find(png + " already exists. Replace it? [Yes/No] <No>: \n"), std::string::npos) << t;
    const QImage image(QString::fromStdString(png));
    EXPECT_EQ(image.size(), QSize(400, 300));
}

// The PLOT and EXPORT examples of docs/pictures.md on the sample drawing,
// answered as they show, in a folder of their own.
TEST(PictureDocs, ExamplesRunAsWritten) {
    TempFolder dir;
    const std::filesystem::path was = std::filesystem::current_path();
    std::filesystem::current_path(dir.path(""));
    const std::string doc = pavotest::repositoryFile("docs/pictures.md");
    for (const char* first : {"Command: PLOT", "Command: EXPORT"}) {
        const std::string block = pavotest::textBlockStartingWith(doc, first);
        ASSERT_FALSE(block.empty()) << first;
        std::vector<std::string> answers = {std::string(first).substr(9)};
        std::istringstream lines(block);
        std::string line;
        while (std::getline(lines, line)) {
            const std::size_t prompt = line.rfind(": ");
            if (line.rfind("Command:", 0) != 0 && prompt != std::string::npos &&
                line.find("Exported") == std::string::npos && line.find("Plotted") == std::string::npos)
                answers.push_back(line.substr(prompt + 2));
        }
        ScriptedSession s(answers);
        EXPECT_EQ(s.run(), 0);
        EXPECT_NE(s.transcript().find(block), std::string::npos) << block << "\n---\n" << s.transcript();
    }
    EXPECT_TRUE(std::filesystem::exists("drawing-A1 Plan.pdf"));
    EXPECT_TRUE(std::filesystem::exists("plan.svg"));
    std::filesystem::current_path(was);
}
