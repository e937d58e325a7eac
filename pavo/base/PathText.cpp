#include "base/PathText.h"

#include "base/Utf8.h"

namespace pavo {

namespace {

constexpr wchar_t kRawByteBase = 0xDC00; // U+DC80..U+DCFF: the bytes 0x80..0xFF

// The length of the valid UTF-8 sequence at the start of `s`, 0 if none.
std::size_t sequenceLength(std::string_view s) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(s[i]); };
    const unsigned char lead = byte(0);
    std::size_t length = 0;
    std::uint32_t cp = 0, min = 0;
    if (lead < 0x80) return 1;
    if ((lead & 0xE0) == 0xC0)
        length = 2, cp = lead & 0x1F, min = 0x80;
    else if ((lead & 0xF0) == 0xE0)
        length = 3, cp = lead & 0x0F, min = 0x800;
    else if ((lead & 0xF8) == 0xF0)
        length = 4, cp = lead & 0x07, min = 0x10000;
    else
        return 0;
    if (s.size() < length) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(i) & 0xC0) != 0x80) return 0;
        cp = (cp << 6) | (byte(i) & 0x3F);
    }
    const bool scalar = cp >= min && cp <= 0x10FFFF && (cp < 0xD800 || cp > 0xDFFF);
    return scalar ? length : 0;
}

} // namespace

std::filesystem::path pathFromText(std::wstring_view text) {
    std::string bytes;
    bytes.reserve(text.size());
    std::size_t plain = 0; // start of the run of characters not yet converted
    for (std::size_t i = 0; i <= text.size(); ++i) {
        const bool raw = i < text.size() && text[i] >= kRawByteBase + 0x80 && text[i] <= kRawByteBase + 0xFF;
        if (!raw && i < text.size()) continue;
        bytes += toUtf8(text.substr(plain, i - plain));
        if (raw) bytes += static_cast<char>(text[i] - kRawByteBase);
        plain = i + 1;
    }
    return std::filesystem::path(std::move(bytes));
}

std::wstring pathText(const std::filesystem::path& path) {
    const std::string& bytes = path.native();
    std::wstring text;
    std::size_t i = 0, plain = 0;
    while (i < bytes.size()) {
        const std::size_t length = sequenceLength(std::string_view(bytes).substr(i));
        if (length) {
            i += length;
            continue;
        }
        text += fromUtf8(std::string_view(bytes).substr(plain, i - plain));
        text += static_cast<wchar_t>(kRawByteBase + static_cast<unsigned char>(bytes[i]));
        plain = ++i;
    }
    text += fromUtf8(std::string_view(bytes).substr(plain));
    return text;
}

std::wstring fileNameText(const std::filesystem::path& path) { return pathText(path.filename()); }

} // namespace pavo
