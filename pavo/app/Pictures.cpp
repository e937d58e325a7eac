#include "Pictures.h"

#include <array>
#include <cmath>

#include "DialogAvailability.h"
#include "ModuleLoader.h"
#include "OxDbDatabase.h"
#include "OxDbLayout.h"
#include "OxDbServices.h"
#include "Session.h"
#include "base/CaseFold.h"
#include "base/PathText.h"
#include "base/Utf8.h"
#include "db/PaperSpace.h"
#include "db/SpaceExtents.h"
#include "editor/SystemVariables.h"
#include "files/AtomicFile.h"
#include "files/PlotStyleTable.h"
#include "win32compat.h"

namespace fs = std::filesystem;

namespace pavo::app {
namespace {

constexpr std::array<PaperSize, 5> kPapers = {PaperSize{L"A4", 297, 210}, PaperSize{L"A3", 420, 297},
                                              PaperSize{L"A2", 594, 420}, PaperSize{L"A1", 841, 594},
                                              PaperSize{L"A0", 1189, 841}};
constexpr double kScreenDotsPerInch = 96;
constexpr double kMmPerInch = 25.4;
// Model space plotted keeps this much paper free at each edge.
constexpr double kPlotMarginMm = 10;
// A picture of model space's extents leaves this much of their size free around them.
constexpr double kExtentsMargin = 0.05;

render::Window windowOf(const db::geom::Box& box) { return {box.minX, box.minY, box.maxX, box.maxY}; }

render::Window modelExtents(OxDbDatabase* db, double margin) {
    const std::optional<db::geom::Box> box = db::blockExtents(db->modelSpaceId());
    // An empty model shows 100 units around the origin.
    render::Window w = box ? windowOf(*box) : render::Window{-50, -50, 50, 50};
    const double pad = margin * std::max({w.width(), w.height(), 1e-9});
    return {w.left - pad, w.bottom - pad, w.right + pad, w.top + pad};
}

render::Window sheetWindow(const OxDbObjectId& layoutId) {
    OxDbLayout* layout = nullptr;
    if (oxdbOpenObject(layout, layoutId, OxDb::kForRead) != Ox::eOk) return {0, 0, 420, 297};
    const render::Window w = windowOf(db::sheetBox(*layout));
    layout->close();
    return w;
}

// A window of `page`'s proportions around `w`'s centre, wide enough for it.
render::Window windowOfProportions(const render::Window& w, double pageWidth, double pageHeight) {
    const double scale = std::max(w.width() / pageWidth, w.height() / pageHeight);
    const double cx = (w.left + w.right) / 2, cy = (w.bottom + w.top) / 2;
    const double halfW = pageWidth * scale / 2, halfH = pageHeight * scale / 2;
    return {cx - halfW, cy - halfH, cx + halfW, cy + halfH};
}

render::PictureRequest baseRequest(Session& session, const OxDbObjectId& layout, render::PictureFormat format) {
    render::PictureRequest r;
    r.database = session.database();
    r.layout = layout;
    r.format = format;
    try {
        r.defaultLineweightMm = std::stoi(session.variables().valueText(L"LWDEFAULT")) / 100.0;
    } catch (const std::exception&) {
    }
    // Where no dialog could be shown there is no display for Qt either.
    r.offscreen = !whyNoDialog(session.options()).empty();
    return r;
}

// The layout's plot style table, read from its file; `note` says why none.
std::unique_ptr<PavoPlotStyleTable> plotStylesOf(OxDbDatabase* db, const OxDbObjectId& layoutId,
                                                 std::wstring& note) {
    OxDbObjectId id = layoutId;
    if (id.isNull()) id = oxdbHostApplicationServices()->layoutManager()->findLayoutNamed(L"Model", db);
    OxDbLayout* layout = nullptr;
    OxString sheet;
    if (oxdbOpenObject(layout, id, OxDb::kForRead) == Ox::eOk) {
        layout->getCurrentStyleSheet(sheet);
        layout->close();
    }
    if (sheet.isEmpty()) return nullptr;
    const OxString path = searchPrintstylePath(sheet.kwszPtr(), db);
    if (path.isEmpty()) {
        note = L"Plot style table \"" + sheet.str() + L"\" not found; objects plot as they are drawn.";
        return nullptr;
    }
    std::wstring problem;
    std::unique_ptr<PavoPlotStyleTable> table = files::readPlotStyleTable(pathFromText(path.view()), problem);
    if (!table) note = problem + L"\nObjects plot as they are drawn.";
    return table;
}

} // namespace

const PaperSize* paperSizeNamed(std::wstring_view name) {
    for (const PaperSize& paper : kPapers)
        if (equalNoCase(paper.name, name)) return &paper;
    return nullptr;
}

std::optional<render::PictureFormat> formatOfName(const fs::path& path) {
    const std::wstring extension = foldCase(fromUtf8(path.extension().string()));
    if (extension == L".png") return render::PictureFormat::Png;
    if (extension == L".svg") return render::PictureFormat::Svg;
    if (extension == L".pdf") return render::PictureFormat::Pdf;
    return std::nullopt;
}

std::optional<OxDbObjectId> layoutNamed(OxDbDatabase* db, const std::wstring& name) {
    if (equalNoCase(name, L"Model")) return OxDbObjectId();
    const OxDbObjectId id = oxdbHostApplicationServices()->layoutManager()->findLayoutNamed(name.c_str(), db);
    if (id.isNull()) return std::nullopt;
    return id;
}

std::wstring layoutName(const OxDbObjectId& layoutId) {
    OxDbLayout* layout = nullptr;
    if (layoutId.isNull() || oxdbOpenObject(layout, layoutId, OxDb::kForRead) != Ox::eOk) return L"Model";
    OxString name;
    layout->getLayoutName(name);
    layout->close();
    return name.str();
}

OxDbObjectId currentLayout(OxDbDatabase* db) {
    if (!db || db->tilemode()) return {};
    const OxDbLayout* layout = db::currentPaperLayout(db);
    return layout ? layout->objectId() : OxDbObjectId();
}

PictureJob plotJob(Session& session, const OxDbObjectId& layout, render::PictureFormat format, double dotsPerInch,
                   const PaperSize& paper, bool viewportBorders) {
    PictureJob job;
    render::PictureRequest& r = job.request;
    r = baseRequest(session, layout, format);
    r.plot = true;
    r.dotsPerInch = dotsPerInch;
    r.viewportBorders = viewportBorders;
    if (layout.isNull()) {
        r.pageWidthMm = paper.width;
        r.pageHeightMm = paper.height;
        // The model's extents fill the paper inside its margins.
        const render::Window extents = modelExtents(session.database(), 0);
        const double usableW = paper.width - 2 * kPlotMarginMm, usableH = paper.height - 2 * kPlotMarginMm;
        const render::Window inner = windowOfProportions(extents, usableW, usableH);
        const double unitsPerMm = inner.width() / usableW;
        const double pad = kPlotMarginMm * unitsPerMm;
        r.window = {inner.left - pad, inner.bottom - pad, inner.right + pad, inner.top + pad};
    } else {
        r.window = sheetWindow(layout);
        r.pageWidthMm = r.window.width();
        r.pageHeightMm = r.window.height();
    }
    job.plotStyles = plotStylesOf(session.database(), layout, job.note);
    r.plotStyles = job.plotStyles.get();
    r.colourDependentStyles = session.database()->pstylemode() == 1;
    return job;
}

PictureJob exportJob(Session& session, const OxDbObjectId& layout, const std::optional<render::Window>& window,
                     render::PictureFormat format, int widthPixels, bool viewportBorders) {
    PictureJob job;
    OxDbDatabase* db = session.database();
    render::PictureRequest& r = job.request;
    r = baseRequest(session, layout, format);
    r.viewportBorders = viewportBorders;
    r.window = window ? *window : layout.isNull() ? modelExtents(db, kExtentsMargin) : sheetWindow(layout);
    r.dotsPerInch = kScreenDotsPerInch;
    r.pageWidthMm = widthPixels / kScreenDotsPerInch * kMmPerInch;
    // Whole pixels high, so that the window keeps its proportions exactly.
    const double heightPixels = std::max(1.0, std::round(widthPixels * r.window.height() / r.window.width()));
    r.pageHeightMm = heightPixels / kScreenDotsPerInch * kMmPerInch;
    r.window = windowOfProportions(r.window, r.pageWidthMm, r.pageHeightMm);
    // On a sheet, lineweights are true on the sheet, shown at the picture's size.
    if (!layout.isNull()) r.lineweightScale = r.pageWidthMm / r.window.width();
    return job;
}

bool writePicture(Session& session, const PictureJob& job, const fs::path& path, std::wstring& error) {
    std::string why;
    if (!session.modules().load(render::kPictureLibrary, why)) {
        error = L"pictures cannot be made: " + fromUtf8(why);
        return false;
    }
    const auto entry = reinterpret_cast<render::WritePictureFn>(
        GetProcAddress(session.modules().moduleHandle(render::kPictureLibrary), render::kWritePictureEntry));
    if (!entry) {
        error = L"pictures cannot be made: the picture library has no entry";
        return false;
    }
    std::string bytes;
    if (!entry(job.request, bytes, error)) return false;
    if (!files::replaceFileAtomically(path, bytes, why, files::Backup::None)) {
        error = fromUtf8(why);
        return false;
    }
    return true;
}

bool writeBatchPicture(Session& session, const BatchPicture& batch, std::wstring& done, std::wstring& error) {
    OxDbDatabase* db = session.database();
    const std::optional<render::PictureFormat> format = formatOfName(batch.path);
    if (!format || (batch.plot && *format == render::PictureFormat::Svg)) {
        error = batch.plot ? L"a plot is a PDF or PNG file: end the name in .pdf or .png"
                           : L"a picture is a PNG, SVG or PDF file: end the name in .png, .svg or .pdf";
        return false;
    }
    OxDbObjectId layout = currentLayout(db);
    if (batch.layout) {
        const std::optional<OxDbObjectId> named = layoutNamed(db, *batch.layout);
        if (!named) {
            error = L"the drawing has no layout \"" + *batch.layout + L"\"";
            return false;
        }
        layout = *named;
    }
    const PictureJob job =
        batch.plot ? plotJob(session, layout, *format, batch.dotsPerInch, *paperSizeNamed(kDefaultPaper), false)
                   : exportJob(session, layout, std::nullopt, *format, batch.widthPixels, true);
    if (!writePicture(session, job, batch.path, error)) return false;
    done = job.note.empty() ? L"" : job.note + L"\n";
    done += (batch.plot ? L"Plotted " : L"Exported ") + layoutName(layout) + L" to " + pathText(batch.path) + L" (" +
            pictureSizeText(job) + L").";
    return true;
}

std::wstring pictureSizeText(const PictureJob& job) {
    const render::PictureRequest& r = job.request;
    const auto whole = [](double v) { return std::to_wstring(std::lround(v)); };
    if (r.format == render::PictureFormat::Png) {
        const double dotsPerMm = r.dotsPerInch / kMmPerInch;
        return whole(r.pageWidthMm * dotsPerMm) + L" x " + whole(r.pageHeightMm * dotsPerMm) + L" pixels";
    }
    return whole(r.pageWidthMm) + L" x " + whole(r.pageHeightMm) + L" mm";
}

} // namespace pavo::app
