// Pictures of the drawing (PLOT, EXPORT, --plot, --export): what a picture
// shows, and making it with the picture library (pavo/render, loaded the
// first time a picture is made), written like drawings are (atomically).
#pragma once

#include <filesystem>
#include <memory>
#include <optional>
#include <string>

#include "PavoPlotStyles.h"
#include "render/PictureRequest.h"

class OxDbDatabase;

namespace pavo::app {

class Session;

struct PaperSize {
    const wchar_t* name;
    double width, height; // millimetres, landscape
};
// A4 to A0: what model space is plotted on.
const PaperSize* paperSizeNamed(std::wstring_view name);
inline constexpr std::wstring_view kDefaultPaper = L"A3";

struct PictureJob {
    render::PictureRequest request;
    std::unique_ptr<PavoPlotStyleTable> plotStyles;
    // Said before the picture is made (a plot style table that is missing).
    std::wstring note;
};

// The file type a picture's name asks for (.png, .svg, .pdf, any letter
// case); nothing for another extension.
std::optional<render::PictureFormat> formatOfName(const std::filesystem::path& path);

// A paper-space layout by name, null for "Model"; nothing when there is no
// layout of that name.
std::optional<OxDbObjectId> layoutNamed(OxDbDatabase* db, const std::wstring& name);
// "Model" or the layout's name.
std::wstring layoutName(const OxDbObjectId& layout);
// The layout shown now: null in model space.
OxDbObjectId currentLayout(OxDbDatabase* db);

// A plot of a layout's sheet at its size (or of model space's extents on
// `paper`), with the layout's plot style table; PNG at `dotsPerInch`.
PictureJob plotJob(Session& session, const OxDbObjectId& layout, render::PictureFormat format, double dotsPerInch,
                   const PaperSize& paper, bool viewportBorders);
// A picture of `layout` (null: model space) as it shows, `widthPixels` wide
// at 96 dots an inch: `window` (in the space's units) or everything (model
// space's extents, a layout's sheet).
PictureJob exportJob(Session& session, const OxDbObjectId& layout, const std::optional<render::Window>& window,
                     render::PictureFormat format, int widthPixels, bool viewportBorders);

// Makes the picture and writes it to `path`; false with `error`.
bool writePicture(Session& session, const PictureJob& job, const std::filesystem::path& path, std::wstring& error);

// The shell's --plot and --export: a plot or a picture of the layout named
// `layout` (nothing: the drawing's current space) written to `path`, its
// type chosen by the name's extension. False with `error`; `done` says what
// was written.
struct BatchPicture {
    bool plot = true;
    std::filesystem::path path;
    std::optional<std::wstring> layout;
    int dotsPerInch = 150;   // a plot to PNG
    int widthPixels = 1600;  // an exported picture
};
bool writeBatchPicture(Session& session, const BatchPicture& batch, std::wstring& done, std::wstring& error);

// The size of a written picture: "841 x 594 mm" or "1600 x 1131 pixels".
std::wstring pictureSizeText(const PictureJob& job);

} // namespace pavo::app
