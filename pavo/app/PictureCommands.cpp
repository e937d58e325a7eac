// PLOT and EXPORT: pictures of the drawing as it plots (a layout's sheet at
// its paper size, or model space on a paper size) and as it shows (the
// current space, or a window of it), as PNG, SVG or PDF files.
#include <optional>

#include "HostCommandSets.h"
#include "HostCommands.h"
#include "OxDbDatabase.h"
#include "OxDbLayout.h"
#include "Pictures.h"
#include "Session.h"
#include "base/PathText.h"
#include "db/PaperSpace.h"
#include "editor/Editor.h"
#include "editor/PointInput.h"
#include "files/UserPath.h"
#include "oxed.h"

namespace fs = std::filesystem;

namespace pavo::app {
namespace {

using render::PictureFormat;

constexpr int kDefaultDotsPerInch = 150, kDefaultWidthPixels = 1600;

// A whole number from `low` to `high`; Enter gives `fallback`; nothing when
// cancelled.
std::optional<int> askWhole(const std::wstring& prompt, int fallback, int low, int high) {
    for (;;) {
        int value = 0;
        const int status = oxedGetInt(prompt.c_str(), &value);
        if (status == STATUS_NONE) return fallback;
        if (status != STATUS_NORMAL) return std::nullopt;
        if (value >= low && value <= high) return value;
        oxutPrintf(L"\nRequires an integer between %d and %d.", low, high);
    }
}

// A keyword of `keywords` (Enter: `fallback`); nothing when cancelled.
std::optional<std::wstring> askKeyword(const std::wstring& prompt, const wchar_t* keywords,
                                       const std::wstring& fallback) {
    oxedInitGet(0, keywords);
    OxString answer;
    const int status = oxedGetKword(prompt.c_str(), answer);
    if (status == STATUS_NONE) return fallback;
    if (status != STATUS_NORMAL) return std::nullopt;
    return answer.str();
}

// The drawing's file name without folder and extension ("drawing" when it
// has none), for the default names of pictures.
std::wstring drawingStem(OxDbDatabase* db) {
    if (db->fileName().isEmpty()) return L"drawing";
    return fileNameText(pathFromText(db->fileName().view()).stem());
}

// Where a picture goes: typed, or `fallback` on Enter; a name without an
// extension gets `extension`. Nothing when cancelled.
std::optional<fs::path> askPictureFile(const std::wstring& prompt, const fs::path& fallback,
                                       std::string_view extension) {
    OxString typed;
    if (oxedGetString(1, prompt.c_str(), typed) != STATUS_NORMAL) return std::nullopt;
    typed.trim();
    std::optional<fs::path> path = typed.isEmpty() ? fallback : files::userPath(typed.view());
    if (!path) return std::nullopt;
    return files::withDefaultExtension(*path, extension);
}

int finish(Session& session, const PictureJob& job, const fs::path& path, const std::wstring& done) {
    if (!job.note.empty()) oxutPrintf(L"\n%ls", job.note);
    std::wstring error;
    if (!writePicture(session, job, path, error)) {
        oxutPrintf(L"\n%ls was not written: %ls", pathText(path), error);
        return STATUS_ERROR;
    }
    oxutPrintf(L"\n%ls %ls (%ls).", done, pathText(path), pictureSizeText(job));
    return STATUS_NORMAL;
}

// "Model" or a layout of the drawing; `?` lists them. Nothing when cancelled.
std::optional<OxDbObjectId> askLayout(OxDbDatabase* db) {
    const std::wstring current = layoutName(currentLayout(db));
    for (;;) {
        OxString typed;
        if (oxedGetString(1, (L"\nLayout to plot or [?] <" + current + L">: ").c_str(), typed) != STATUS_NORMAL)
            return std::nullopt;
        typed.trim();
        const std::wstring name = typed.isEmpty() ? current : typed.str();
        if (name == L"?") {
            std::wstring list = L"Model";
            for (const OxDbLayout* layout : db::paperLayouts(db)) list += L", " + layoutName(layout->objectId());
            oxutPrintf(L"\nLayouts: %ls", list);
            continue;
        }
        if (const std::optional<OxDbObjectId> layout = layoutNamed(db, name)) return layout;
        oxutPrintf(L"\nLayout \"%ls\" not found.", name);
    }
}

int plot(Session& session) {
    OxDbDatabase* db = session.database();
    if (!db) return STATUS_ERROR;
    const std::optional<OxDbObjectId> layout = askLayout(db);
    if (!layout) return STATUS_CANCEL;
    const std::optional<std::wstring> type = askKeyword(L"\nOutput [PDF/PNG] <PDF>: ", L"PDF PNG _PDF PNG", L"PDF");
    if (!type) return STATUS_CANCEL;
    const PictureFormat format = *type == L"PNG" ? PictureFormat::Png : PictureFormat::Pdf;
    int dotsPerInch = kDefaultDotsPerInch;
    if (format == PictureFormat::Png) {
        const std::optional<int> dpi = askWhole(L"\nResolution in dots per inch <150>: ", kDefaultDotsPerInch, 10, 2400);
        if (!dpi) return STATUS_CANCEL;
        dotsPerInch = *dpi;
    }
    const PaperSize* paper = paperSizeNamed(kDefaultPaper);
    bool borders = false;
    if (layout->isNull()) {
        const std::optional<std::wstring> size =
            askKeyword(L"\nPaper size [A4/A3/A2/A1/A0] <A3>: ", L"A4 A3 A2 A1 A0 _A4 A3 A2 A1 A0", L"A3");
        if (!size) return STATUS_CANCEL;
        paper = paperSizeNamed(*size);
    } else {
        const std::optional<bool> frames = askYesNo(L"\nPlot viewport borders? [Yes/No] <No>: ", false);
        if (!frames) return STATUS_CANCEL;
        borders = *frames;
    }
    const std::wstring name = layoutName(*layout);
    const std::string_view extension = format == PictureFormat::Png ? ".png" : ".pdf";
    const fs::path fallback =
        pathFromText(drawingStem(db) + L"-" + name + (format == PictureFormat::Png ? L".png" : L".pdf"));
    const std::optional<fs::path> path =
        askPictureFile(L"\nPlot file name <" + pathText(fallback) + L">: ", fallback, extension);
    if (!path || !mayReplace(*path)) return STATUS_CANCEL;
    const PictureJob job = plotJob(session, *layout, format, dotsPerInch, *paper, borders);
    return finish(session, job, *path, L"Plotted " + name + L" to");
}

int exportPicture(Session& session) {
    OxDbDatabase* db = session.database();
    if (!db) return STATUS_ERROR;
    const fs::path fallback = pathFromText(drawingStem(db) + L".png");
    std::optional<fs::path> path;
    std::optional<PictureFormat> format;
    while (!format) {
        path = askPictureFile(L"\nExport file name <" + pathText(fallback) + L">: ", fallback, ".png");
        if (!path) return STATUS_CANCEL;
        format = formatOfName(*path);
        if (!format) oxutPrintf(L"\nPictures are PNG, SVG or PDF files: end the name in .png, .svg or .pdf.");
    }
    if (!mayReplace(*path)) return STATUS_CANCEL;
    const std::optional<std::wstring> shown =
        askKeyword(L"\nWindow to show [Extents/Window] <Extents>: ", L"Extents Window _Extents Window", L"Extents");
    if (!shown) return STATUS_CANCEL;
    std::optional<render::Window> window;
    if (*shown == L"Window") {
        editor::Editor& editor = *editor::Editor::current();
        const editor::PointAnswer a = editor::askPoint(editor, L"\nSpecify first corner: ");
        if (a.kind != editor::PointAnswer::Point) return STATUS_CANCEL;
        const editor::PointAnswer b = editor::askPoint(editor, L"\nSpecify opposite corner: ");
        if (b.kind != editor::PointAnswer::Point) return STATUS_CANCEL;
        window = render::Window{std::min(a.point.x, b.point.x), std::min(a.point.y, b.point.y),
                                std::max(a.point.x, b.point.x), std::max(a.point.y, b.point.y)};
        if (!(window->width() > 0) || !(window->height() > 0)) {
            oxutPrintf(L"\nA window needs a width and a height: the corners must differ in X and in Y.");
            return STATUS_ERROR;
        }
    }
    const std::optional<int> width = askWhole(L"\nWidth in pixels <1600>: ", kDefaultWidthPixels, 16, 20000);
    if (!width) return STATUS_CANCEL;
    bool borders = true;
    if (!currentLayout(db).isNull()) {
        const std::optional<bool> frames = askYesNo(L"\nShow viewport borders? [Yes/No] <Yes>: ", true);
        if (!frames) return STATUS_CANCEL;
        borders = *frames;
    }
    return finish(session, exportJob(session, currentLayout(db), window, *format, *width, borders), *path, L"Exported");
}

} // namespace

void registerPictureCommands(const AddHostCommand& add) {
    add(L"PLOT", L"plots a layout or model space to a PDF or PNG file", [] { return plot(*Session::current()); });
    add(L"EXPORT", L"writes a picture of the current space to a PNG, SVG or PDF file",
        [] { return exportPicture(*Session::current()); });
}

} // namespace pavo::app
