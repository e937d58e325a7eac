// PNG files of 32-bit RGB pictures (rows of 0xffRRGGBB words, as Qt's
// Format_RGB32 keeps them), written in pieces: each band of rows is
// compressed on its own, so bands can be compressed on different cores,
// and the pieces are joined into the file's one zlib stream.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "render/LargeBuffer.h"

namespace pavo::render::png {

// A band of rows, compressed.
struct Piece {
    LargeBuffer deflated;
    std::size_t length = 0; // of the deflated data
    std::uint32_t adler = 1; // of the band's filtered rows
    std::size_t rawBytes = 0;
};

// Compresses `height` rows of `width` pixels that start `stride` bytes
// apart; `last` for the picture's last band. False when zlib fails.
bool compressRows(const std::uint8_t* rows, int width, int height, std::size_t stride, bool last, Piece& piece);

// The file of a picture whose bands, top to bottom, are `pieces`, in `out`.
void file(int width, int height, int dotsPerMetre, const std::vector<Piece>& pieces, std::string& out);

} // namespace pavo::render::png
