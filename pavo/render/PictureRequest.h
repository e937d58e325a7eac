// What the host asks the picture library (PavoRender.pvx) for: a picture of
// model space or of a layout's sheet, as bytes of a PNG, SVG or PDF file.
// The host writes the bytes (atomically, like drawings); the library only
// draws. This header has no Qt in it: the host includes it without loading
// Qt, and loads the library the first time a picture is made.
#pragma once

#include <string>

#include "OxDbObjectId.h"

class OxDbDatabase;
class PavoPlotStyleTable;

namespace pavo::render {

enum class PictureFormat { Png, Svg, Pdf };

// A rectangle in a space's units: model units, or sheet millimetres.
struct Window {
    double left = 0, bottom = 0, right = 0, top = 0;
    double width() const { return right - left; }
    double height() const { return top - bottom; }
};

struct PictureRequest {
    OxDbDatabase* database = nullptr;
    // A paper-space layout whose sheet is drawn; null: model space.
    OxDbObjectId layout;
    // What is shown; it fills the page (the page has its proportions).
    Window window;
    PictureFormat format = PictureFormat::Png;
    // The picture's size on paper, and for PNG its resolution.
    double pageWidthMm = 0, pageHeightMm = 0;
    double dotsPerInch = 96;
    // Page millimetres for one millimetre of lineweight: 1 draws
    // lineweights at their true width on the page.
    double lineweightScale = 1;
    // What the default lineweight (LWDEFAULT) is, in millimetres.
    double defaultLineweightMm = 0.25;
    // A plot leaves out layers that are not plotted and applies the plot
    // style table; other pictures show what the screen would.
    bool plot = false;
    const PavoPlotStyleTable* plotStyles = nullptr; // null: objects plot as drawn
    bool colourDependentStyles = false;             // PSTYLEMODE 1
    bool viewportBorders = true;
    // Qt's platform when Qt is not started yet: "offscreen" where no
    // display can be used, else the display's own.
    bool offscreen = true;
};

// The library's entry, found with dlsym under kWritePictureEntry: true with
// the file's bytes, false with what went wrong.
using WritePictureFn = bool (*)(const PictureRequest& request, std::string& bytes, std::wstring& error);
inline constexpr const char* kWritePictureEntry = "pavoWritePicture";
inline constexpr const wchar_t* kPictureLibrary = L"PavoRender";

} // namespace pavo::render
