// PNG pictures on their own: the file writer read back by Qt's reader pixel
// for pixel, the display list replaying what reaches a band in its order,
// and pictures painted in bands that come out as painted whole.
#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "render/DisplayList.h"
#include "render/PngBands.h"
#include "render/PngFile.h"

namespace {

using namespace pavo::render;

// The file of `image` compressed in `bands` bands of rows.
std::string pngOf(const QImage& image, int bands) {
    std::vector<png::Piece> pieces(static_cast<std::size_t>(bands));
    for (int i = 0; i < bands; ++i) {
        const int first = image.height() * i / bands, end = image.height() * (i + 1) / bands;
        EXPECT_TRUE(png::compressRows(image.constScanLine(first), image.width(), end - first,
                                      static_cast<std::size_t>(image.bytesPerLine()), i + 1 == bands,
                                      pieces[static_cast<std::size_t>(i)]));
    }
    std::string file;
    png::file(image.width(), image.height(), 5906, pieces, file);
    return file;
}

// How far apart two pictures of one size are: the largest difference of a
// channel, over every pixel.
int farthest(const QImage& a, const QImage& b) {
    int most = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            most = std::max({most, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                             std::abs(qBlue(p) - qBlue(q))});
        }
    return most;
}

QImage readBack(const std::string& file) {
    return QImage::fromData(reinterpret_cast<const uchar*>(file.data()), static_cast<int>(file.size()), "PNG")
        .convertToFormat(QImage::Format_RGB32);
}

TEST(PngFile, RowsComeBackPixelForPixelInAnyNumberOfBands) {
    // Flat runs, as drawings have, and noise that does not compress.
    QImage image(123, 67, QImage::Format_RGB32);
    std::uint32_t seed = 12345;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            seed = seed * 1103515245 + 12345;
            image.setPixel(x, y, y < 30 ? (x < 60 ? 0xffffffff : 0xff2040c0) : (0xff000000 | (seed >> 8)));
        }
    for (const int bands : {1, 2, 5, 67}) {
        const QImage back = readBack(pngOf(image, bands));
        ASSERT_FALSE(back.isNull()) << bands << " bands";
        EXPECT_EQ(back, image) << bands << " bands";
        EXPECT_EQ(back.dotsPerMeterX(), 5906);
        EXPECT_EQ(back.dotsPerMeterY(), 5906);
    }
    QImage dot(1, 1, QImage::Format_RGB32);
    dot.fill(0xff102030);
    EXPECT_EQ(readBack(pngOf(dot, 1)), dot);
}

// What a canvas was asked to draw, one line a call.
class CallLog final : public Canvas {
public:
    std::vector<std::string> calls;
    void setClip(const PageRect* r) override {
        calls.push_back(r ? "clip " + std::to_string(int(r->left)) + " " + std::to_string(int(r->top)) : "no clip");
    }
    void polyline(const Stroke& s, const PagePoint* p, std::size_t n, bool closed, bool flatEnds) override {
        calls.push_back("polyline " + std::to_string(int(p[0].y)) + " " + std::to_string(n) + (closed ? " closed" : "") +
                        (flatEnds ? " flat" : "") + " w" + std::to_string(int(s.width * 10)));
    }
    void dot(const Stroke&, PagePoint at) override { calls.push_back("dot " + std::to_string(int(at.y))); }
    void text(const Stroke&, PagePoint at, double h, double, std::wstring_view t) override {
        calls.push_back("text " + std::to_string(int(at.y)) + " " + std::to_string(int(h)) + " " +
                        std::string(t.begin(), t.end()));
    }
};

TEST(DisplayList, ReplaysInOrderWhatReachesTheBandAndEveryClip) {
    DisplayList list;
    const PageRect clip{5, 0, 95, 90};
    const PagePoint low[3] = {{0, 10}, {50, 12}, {100, 10}}, high[2] = {{0, 80}, {100, 80}};
    const Stroke thin{{0, 0, 0, 255}, 0.5}, wide{{255, 0, 0, 255}, 4};
    list.setClip(&clip);
    list.polyline(thin, low, 3, true, false);
    list.polyline(wide, high, 2, false, true);
    list.dot(thin, {40, 50});
    list.text(thin, {20, 45}, 3, 0, L"ROOM");
    list.setClip(nullptr);
    list.polyline(wide, high, 2, false, false);

    CallLog all;
    list.replay(all, -1000, 1000);
    EXPECT_EQ(all.calls, (std::vector<std::string>{"clip 5 90", "polyline 10 3 closed w5", "polyline 80 2 flat w40",
                                                   "dot 50", "text 45 3 ROOM", "no clip", "polyline 80 2 w40"}));
    // A band from 40 to 60 mm: the text reaches into it from below, the
    // lines do not; a wide line reaches by its width.
    CallLog middle;
    list.replay(middle, 40, 60);
    EXPECT_EQ(middle.calls, (std::vector<std::string>{"clip 5 90", "dot 50", "text 45 3 ROOM", "no clip"}));
    CallLog top;
    list.replay(top, 83, 100);
    EXPECT_EQ(top.calls, (std::vector<std::string>{"clip 5 90", "polyline 80 2 flat w40", "no clip",
                                                   "polyline 80 2 w40"}));
    EXPECT_FALSE(list.incomplete());
}

TEST(PngBands, APicturePaintedInBandsIsThePicturePaintedWhole) {
    // Antialiased strokes across the bands' edges, thin and wide, a clip,
    // and dots.
    DisplayList list;
    const PageRect clip{10, 10, 190, 140};
    list.setClip(&clip);
    const PagePoint diagonal[2] = {{0, 0}, {200, 150}}, zigzag[5] = {{20, 20}, {60, 130}, {100, 25}, {140, 128}, {180, 30}};
    list.polyline({{200, 30, 30, 255}, 3}, diagonal, 2, false, false);
    list.polyline({{20, 20, 200, 255}, 0.3}, zigzag, 5, false, false);
    list.polyline({{20, 150, 20, 128}, 1.2}, zigzag, 5, true, false);
    list.dot({{0, 0, 0, 255}, 2}, {100, 75});
    const PngPage page{400, 300, 2, 150};
    const auto paint = [&](int bands) {
        std::vector<png::Piece> pieces;
        std::wstring error;
        EXPECT_TRUE(paintPngBands(list, page, bands, pieces, error));
        EXPECT_EQ(pieces.size(), static_cast<std::size_t>(bands));
        std::string file;
        png::file(page.width, page.height, 2000, pieces, file);
        return readBack(file);
    };
    const QImage whole = paint(1);
    ASSERT_EQ(whole.size(), QSize(400, 300));
    EXPECT_EQ(whole.pixel(200, 150), 0xff000000u) << "the dot, on the line's middle";
    EXPECT_EQ(whole.pixel(5, 150), 0xffffffffu) << "outside the clip";
    // The rasterizer's coverage of an edge may round one level apart at
    // another offset; a band that left something out, or drew it twice or
    // out of place, is far more apart than that.
    for (const int bands : {2, 3, 7}) EXPECT_LE(farthest(paint(bands), whole), 2) << bands << " bands";
}

TEST(PngBands, HairlinesOfACrowdedPictureAreNotAntialiased) {
    // Diagonal hairlines on a page of 100 x 100 dots: greys along their
    // edges, unless there are more than one for 50 pixels.
    const auto greys = [](int lines) {
        DisplayList list;
        for (int i = 0; i < lines; ++i) {
            const double x = (i % 10) * 10 + 1;
            const PagePoint ends[2] = {{x, 10}, {x + 7, 90}};
            list.polyline({{0, 0, 0, 255}, 0}, ends, 2, false, false);
        }
        std::vector<png::Piece> pieces;
        std::wstring error;
        EXPECT_TRUE(paintPngBands(list, {100, 100, 1, 100}, 2, pieces, error));
        std::string file;
        png::file(100, 100, 1000, pieces, file);
        const QImage image = readBack(file);
        int count = 0;
        for (int y = 0; y < 100; ++y)
            for (int x = 0; x < 100; ++x)
                if (const int level = qRed(image.pixel(x, y)); level > 0 && level < 255) ++count;
        return count;
    };
    EXPECT_GT(greys(10), 100);
    EXPECT_EQ(greys(300), 0);
}

} // namespace
