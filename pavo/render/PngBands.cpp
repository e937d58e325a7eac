#include "render/PngBands.h"

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <system_error>
#include <thread>

#include "render/LargeBuffer.h"
#include "render/QtCanvas.h"

namespace pavo::render {
namespace {

constexpr unsigned kMostBands = 8;
// A band is not worth a thread below this many rows.
constexpr int kFewestRowsABand = 64;
// What an antialiased edge may spill beyond its shape, in dots.
constexpr double kSpill = 2;
// A picture with more objects than one for this many pixels is crowded:
// its hairlines are drawn without antialiasing.
constexpr double kPixelsAnObjectWhenCrowded = 50;

struct Band {
    int firstRow = 0, rows = 0;
    bool last = false;
    png::Piece piece;
    std::wstring error;
};

void paintBand(const DisplayList& list, const PngPage& page, Band& band) {
    const std::size_t rowBytes = 4 * static_cast<std::size_t>(page.width);
    const LargeBuffer pixels(rowBytes * static_cast<std::size_t>(band.rows));
    QImage image(pixels.data(), page.width, band.rows, static_cast<qsizetype>(rowBytes), QImage::Format_RGB32);
    if (!pixels.data() || image.isNull()) {
        band.error = L"there is not enough memory for a picture of that size";
        return;
    }
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        if (!painter.isActive()) {
            band.error = L"the picture could not be started";
            return;
        }
        painter.translate(0, -band.firstRow);
        QtCanvas canvas(painter, page.dotsPerMm, page.pageHeightMm);
        if (static_cast<double>(list.size()) * kPixelsAnObjectWhenCrowded > double(page.width) * page.height)
            canvas.aliasHairlines();
        const double dot = 1 / page.dotsPerMm;
        const double top = page.pageHeightMm - (band.firstRow - kSpill) * dot;
        const double bottom = page.pageHeightMm - (band.firstRow + band.rows + kSpill) * dot;
        list.replay(canvas, bottom, top);
    }
    if (!png::compressRows(image.constBits(), image.width(), band.rows, static_cast<std::size_t>(image.bytesPerLine()),
                           band.last, band.piece))
        band.error = L"the PNG could not be compressed";
}

} // namespace

int bandsFor(const PngPage& page) {
    const int cores = static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1u, kMostBands));
    return std::max(1, std::min(cores, page.height / kFewestRowsABand));
}

bool paintPngBands(const DisplayList& list, const PngPage& page, int bands, std::vector<png::Piece>& pieces,
                   std::wstring& error) {
    const int count = std::clamp(bands, 1, std::max(1, page.height));
    std::vector<Band> parts(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        Band& band = parts[static_cast<std::size_t>(i)];
        band.firstRow = page.height * i / count;
        band.rows = page.height * (i + 1) / count - band.firstRow;
        band.last = i + 1 == count;
    }
    std::vector<std::thread> helpers;
    for (std::size_t i = 1; i < parts.size(); ++i) {
        try {
            helpers.emplace_back(paintBand, std::cref(list), std::cref(page), std::ref(parts[i]));
        } catch (const std::system_error&) {
            paintBand(list, page, parts[i]); // no thread to be had: this one does it
        }
    }
    paintBand(list, page, parts[0]);
    for (std::thread& helper : helpers) helper.join();
    pieces.clear();
    for (Band& band : parts) {
        if (!band.error.empty()) {
            error = band.error;
            return false;
        }
        pieces.push_back(std::move(band.piece));
    }
    return true;
}

} // namespace pavo::render
