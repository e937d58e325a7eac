#include "render/PngFile.h"

#include <zlib.h>

#include <algorithm>
#include <cstring>

namespace pavo::render::png {
namespace {

// Rows are stored unfiltered and compressed with zlib's run-length
// strategy at its fastest level: a drawing is runs of paper and of flat
// ink, which this finds as well as the general search does, at half its
// time, and better than the row filters of the format would.
constexpr int kLevel = 1;
// What a flush at the end of a band adds beyond deflateBound's count.
constexpr std::size_t kFlushBytes = 64;

void putBig32(std::string& out, std::uint32_t v) {
    const char bytes[4] = {static_cast<char>(v >> 24), static_cast<char>(v >> 16), static_cast<char>(v >> 8),
                           static_cast<char>(v)};
    out.append(bytes, 4);
}

void chunk(std::string& out, const char* type, const char* data, std::size_t length) {
    putBig32(out, static_cast<std::uint32_t>(length));
    const std::size_t start = out.size();
    out.append(type, 4);
    out.append(data, length);
    const auto* crcFrom = reinterpret_cast<const Bytef*>(out.data() + start);
    putBig32(out, static_cast<std::uint32_t>(crc32(0, crcFrom, static_cast<uInt>(length + 4))));
}

void chunk(std::string& out, const char* type, const std::string& data) { chunk(out, type, data.data(), data.size()); }

// Compressed data in chunks of at most this many bytes.
constexpr std::size_t kMostChunkBytes = 1 << 20;

} // namespace

bool compressRows(const std::uint8_t* rows, int width, int height, std::size_t stride, bool last, Piece& piece) {
    z_stream z{};
    if (deflateInit2(&z, kLevel, Z_DEFLATED, -15, 8, Z_RLE) != Z_OK) return false;
    const std::size_t rowBytes = 1 + 3 * static_cast<std::size_t>(width);
    piece.rawBytes = rowBytes * static_cast<std::size_t>(height);
    piece.adler = static_cast<std::uint32_t>(adler32(0, nullptr, 0));
    // Enough for rows that do not compress at all, and the flush at the end.
    piece.deflated = LargeBuffer(deflateBound(&z, static_cast<uLong>(piece.rawBytes)) + kFlushBytes);
    bool ok = piece.deflated.data() != nullptr;
    z.next_out = piece.deflated.data();
    z.avail_out = static_cast<uInt>(piece.deflated.size());
    std::vector<Bytef> row(rowBytes);
    for (int y = 0; y < height && ok; ++y) {
        const std::uint8_t* from = rows + static_cast<std::size_t>(y) * stride;
        row[0] = 0; // no filter
        for (int x = 0; x < width; ++x) {
            std::uint32_t pixel;
            std::memcpy(&pixel, from + 4 * static_cast<std::size_t>(x), 4);
            Bytef* to = &row[1 + 3 * static_cast<std::size_t>(x)];
            to[0] = static_cast<Bytef>(pixel >> 16);
            to[1] = static_cast<Bytef>(pixel >> 8);
            to[2] = static_cast<Bytef>(pixel);
        }
        piece.adler = static_cast<std::uint32_t>(adler32(piece.adler, row.data(), static_cast<uInt>(rowBytes)));
        z.next_in = row.data();
        z.avail_in = static_cast<uInt>(rowBytes);
        ok = deflate(&z, Z_NO_FLUSH) == Z_OK && z.avail_in == 0;
    }
    // A band other than the last ends on a byte boundary, unfinished, so
    // that the next band's stream carries on from it.
    if (ok) ok = deflate(&z, last ? Z_FINISH : Z_SYNC_FLUSH) == (last ? Z_STREAM_END : Z_OK) && z.avail_out > 0;
    piece.length = piece.deflated.size() - z.avail_out;
    deflateEnd(&z);
    return ok;
}

void file(int width, int height, int dotsPerMetre, const std::vector<Piece>& pieces, std::string& out) {
    out.assign("\x89PNG\r\n\x1a\n", 8);
    std::string header;
    putBig32(header, static_cast<std::uint32_t>(width));
    putBig32(header, static_cast<std::uint32_t>(height));
    header.append("\x08\x02\x00\x00\x00", 5); // 8 bits, RGB, deflate, no filters, not interlaced
    chunk(out, "IHDR", header);
    std::string resolution;
    putBig32(resolution, static_cast<std::uint32_t>(dotsPerMetre));
    putBig32(resolution, static_cast<std::uint32_t>(dotsPerMetre));
    resolution.push_back('\x01'); // per metre
    chunk(out, "pHYs", resolution);
    // The zlib stream: its header (deflate, 32 KiB window, fastest), the
    // bands' deflate data, and the check sum of all the rows.
    std::size_t total = 2;
    for (const Piece& piece : pieces) total += piece.length;
    out.reserve(out.size() + total + 12 * (total / kMostChunkBytes + pieces.size() + 3) + 12);
    chunk(out, "IDAT", "\x78\x01", 2);
    uLong adler = adler32(0, nullptr, 0);
    for (const Piece& piece : pieces) {
        const char* data = reinterpret_cast<const char*>(piece.deflated.data());
        for (std::size_t at = 0; at < piece.length; at += kMostChunkBytes)
            chunk(out, "IDAT", data + at, std::min(kMostChunkBytes, piece.length - at));
        adler = adler32_combine(adler, piece.adler, static_cast<z_off_t>(piece.rawBytes));
    }
    std::string check;
    putBig32(check, static_cast<std::uint32_t>(adler));
    chunk(out, "IDAT", check);
    chunk(out, "IEND", "", 0);
}

} // namespace pavo::render::png
