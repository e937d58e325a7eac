// The picture library's entry: makes the output device for the format, lets
// the drawing's walk paint on it, and hands the file's bytes back.
#include <QBuffer>
#include <QPageSize>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <cmath>

#include "PavoExport.h"
#include "render/DisplayList.h"
#include "render/DrawingWalk.h"
#include "render/PngBands.h"
#include "render/QtCanvas.h"
#include "ui/UiApplication.h"

namespace pavo::render {
namespace {

constexpr double kMmPerInch = 25.4;
// The largest PNG made: 30,000 pixels a side, 400 million in all (1.6 GB).
constexpr double kMostPixelsASide = 30000, kMostPixels = 4e8;
// SVG coordinates count in hundredths of a millimetre; PDFs at 1200 dots
// an inch are as fine as any plotter.
constexpr double kSvgUnitsPerMm = 100;
constexpr int kPdfDotsPerInch = 1200;

bool walk(const PictureRequest& request, Canvas& canvas, double finest, std::wstring& error) {
    DrawingWalk walk(request, canvas, finest);
    if (walk.run()) return true;
    error = L"the space to draw could not be read";
    return false;
}

bool paint(const PictureRequest& request, QPaintDevice& device, double dotsPerMm, double finest, bool fillWhite,
           std::wstring& error) {
    QPainter painter(&device);
    if (!painter.isActive()) {
        error = L"the picture could not be started";
        return false;
    }
    if (fillWhite)
        painter.fillRect(QRectF(0, 0, request.pageWidthMm * dotsPerMm, request.pageHeightMm * dotsPerMm), Qt::white);
    QtCanvas canvas(painter, dotsPerMm, request.pageHeightMm);
    if (!walk(request, canvas, finest, error)) return false;
    canvas.flush();
    return painter.end();
}

// The drawing is walked once into a display list, which the cores then
// paint and compress in bands.
bool writePng(const PictureRequest& request, std::string& bytes, std::wstring& error) {
    const double dotsPerMm = request.dotsPerInch / kMmPerInch;
    const double width = std::round(request.pageWidthMm * dotsPerMm), height = std::round(request.pageHeightMm * dotsPerMm);
    if (!(width >= 1 && height >= 1) || width > kMostPixelsASide || height > kMostPixelsASide ||
        width * height > kMostPixels) {
        error = L"a picture of " + std::to_wstring(static_cast<long long>(width)) + L" x " +
                std::to_wstring(static_cast<long long>(height)) +
                L" pixels cannot be made (1 to 30000 a side, 400 million in all)";
        return false;
    }
    DisplayList list;
    if (!walk(request, list, 1 / dotsPerMm, error)) return false;
    if (list.incomplete()) {
        error = L"there is not enough memory for a picture of that size";
        return false;
    }
    const PngPage page{static_cast<int>(width), static_cast<int>(height), dotsPerMm, request.pageHeightMm};
    std::vector<png::Piece> pieces;
    if (!paintPngBands(list, page, bandsFor(page), pieces, error)) return false;
    png::file(page.width, page.height, static_cast<int>(std::lround(dotsPerMm * 1000)), pieces, bytes);
    return true;
}

bool writeSvg(const PictureRequest& request, QBuffer& out, std::wstring& error) {
    QSvgGenerator svg;
    svg.setOutputDevice(&out);
    const QSizeF size(request.pageWidthMm * kSvgUnitsPerMm, request.pageHeightMm * kSvgUnitsPerMm);
    svg.setSize(size.toSize());
    svg.setViewBox(QRectF(QPointF(0, 0), size));
    // So that the file's width and height come out in millimetres.
    svg.setResolution(static_cast<int>(std::lround(kSvgUnitsPerMm * kMmPerInch)));
    svg.setTitle(QStringLiteral("pavo"));
    return paint(request, svg, kSvgUnitsPerMm, 0.02, true, error);
}

bool writePdf(const PictureRequest& request, QBuffer& out, std::wstring& error) {
    QPdfWriter pdf(&out);
    pdf.setCreator(QStringLiteral("pavo"));
    pdf.setResolution(kPdfDotsPerInch);
    pdf.setPageSize(QPageSize(QSizeF(request.pageWidthMm, request.pageHeightMm), QPageSize::Millimeter));
    pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
    return paint(request, pdf, kPdfDotsPerInch / kMmPerInch, 0.02, false, error);
}

} // namespace
} // namespace pavo::render

PAVO_MODULE_EXPORT bool pavoWritePicture(const pavo::render::PictureRequest& request, std::string& bytes,
                                         std::wstring& error) {
    using pavo::render::PictureFormat;
    if (!(request.pageWidthMm > 0) || !(request.pageHeightMm > 0)) {
        error = L"the picture has no size";
        return false;
    }
    // Text is laid out by Qt's font machinery, which needs its application.
    pavo::ui::ensureApplication(request.offscreen);
    if (request.format == PictureFormat::Png) return pavo::render::writePng(request, bytes, error);
    QBuffer out;
    out.open(QIODevice::WriteOnly);
    const bool ok = request.format == PictureFormat::Svg ? pavo::render::writeSvg(request, out, error)
                                                         : pavo::render::writePdf(request, out, error);
    out.close();
    if (ok) bytes.assign(out.data().constData(), static_cast<std::size_t>(out.data().size()));
    return ok;
}
