#include <array>
#include <deque>
#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "OxCmColor.h"
#include "base/ColorNames.h"

namespace {

using Rgb = std::array<std::uint8_t, 3>;

// The 256-entry colour index palette: 1-9 named colours and greys, 10-249
// 24 hues in steps of 15 degrees, each in five brightnesses, full and half
// saturation, 250-255 a grey ramp.
std::array<Rgb, 256> makePalette() {
    std::array<Rgb, 256> p{};
    p[0] = {0, 0, 0};
    p[1] = {255, 0, 0};
    p[2] = {255, 255, 0};
    p[3] = {0, 255, 0};
    p[4] = {0, 255, 255};
    p[5] = {0, 0, 255};
    p[6] = {255, 0, 255};
    p[7] = {255, 255, 255};
    p[8] = {128, 128, 128};
    p[9] = {192, 192, 192};
    constexpr double kBrightness[5] = {255, 204, 153, 127, 76};
    for (int i = 10; i < 250; ++i) {
        const int hue = (i - 10) / 10, shade = (i - 10) % 10;
        const double v = kBrightness[shade / 2];
        const double h = hue * 15.0 / 60.0; // sextant position 0..6
        const int sector = static_cast<int>(h) % 6;
        const double f = h - static_cast<int>(h);
        double rgb[3];
        switch (sector) {
        case 0:
            rgb[0] = v, rgb[1] = v * f, rgb[2] = 0;
            break;
        case 1:
            rgb[0] = v * (1 - f), rgb[1] = v, rgb[2] = 0;
            break;
        case 2:
            rgb[0] = 0, rgb[1] = v, rgb[2] = v * f;
            break;
        case 3:
            rgb[0] = 0, rgb[1] = v * (1 - f), rgb[2] = v;
            break;
        case 4:
            rgb[0] = v * f, rgb[1] = 0, rgb[2] = v;
            break;
        default:
            rgb[0] = v, rgb[1] = 0, rgb[2] = v * (1 - f);
            break;
        }
        for (int c = 0; c < 3; ++c) {
            const double value = shade % 2 ? (v + rgb[c]) / 2 : rgb[c]; // odd shades: half saturation
            p[static_cast<size_t>(i)][static_cast<size_t>(c)] = static_cast<std::uint8_t>(value);
        }
    }
    constexpr std::uint8_t kGreys[6] = {51, 80, 105, 130, 190, 255};
    for (int i = 0; i < 6; ++i)
        p[static_cast<size_t>(250 + i)] = {kGreys[i], kGreys[i], kGreys[i]};
    return p;
}

const std::array<Rgb, 256>& palette() {
    static const std::array<Rgb, 256> p = makePalette();
    return p;
}

// Book colour names, interned so that a colour stays 8 bytes. Entries are
// never removed; reference 0 means none.
class BookNames {
public:
    std::uint32_t intern(const wchar_t* colorName, const wchar_t* bookName) {
        std::lock_guard lock(m_mutex);
        auto key = std::make_pair(std::wstring(colorName), std::wstring(bookName));
        auto [it, inserted] = m_index.try_emplace(key, 0);
        if (inserted) {
            m_names.push_back(key);
            it->second = static_cast<std::uint32_t>(m_names.size());
        }
        return it->second;
    }
    const std::pair<std::wstring, std::wstring>* at(std::uint32_t ref) {
        std::lock_guard lock(m_mutex);
        return ref == 0 || ref > m_names.size() ? nullptr : &m_names[ref - 1];
    }

private:
    std::mutex m_mutex;
    std::deque<std::pair<std::wstring, std::wstring>> m_names; // stable addresses
    std::map<std::pair<std::wstring, std::wstring>, std::uint32_t> m_index;
};

BookNames& bookNames() {
    static BookNames names;
    return names;
}

} // namespace

void OxCmEntityColor::indexToRgb(int index, std::uint8_t& r, std::uint8_t& g, std::uint8_t& b) {
    const Rgb& c = palette()[static_cast<size_t>(index >= 0 && index < 256 ? index : 7)];
    r = c[0];
    g = c[1];
    b = c[2];
}

OxCmColor OxCmColor::byLayer() { return OxCmColor(); }

OxCmColor OxCmColor::byBlock() {
    OxCmColor c;
    c.setColorMethod(OxCmEntityColor::kByBlock);
    return c;
}

OxCmColor OxCmColor::fromIndex(std::uint16_t index) {
    OxCmColor c;
    c.setColorIndex(index);
    return c;
}

OxCmColor OxCmColor::fromRgb(std::uint8_t r, std::uint8_t g, std::uint8_t b) {
    OxCmColor c;
    c.setRGB(r, g, b);
    return c;
}

void OxCmColor::setColorMethod(OxCmEntityColor::ColorMethod method) {
    m_method = method;
    m_bookRef = 0;
    if (method == OxCmEntityColor::kByLayer) m_index = 256;
    if (method == OxCmEntityColor::kByBlock) m_index = 0;
}

// Index 0 is by block and 256 by layer, as in the palette's numbering.
void OxCmColor::setColorIndex(std::uint16_t index) {
    m_bookRef = 0;
    m_r = m_g = m_b = 0;
    m_index = index;
    if (index == 0)
        m_method = OxCmEntityColor::kByBlock;
    else if (index == 256)
        m_method = OxCmEntityColor::kByLayer;
    else
        m_method = OxCmEntityColor::kByACI;
}

void OxCmColor::setRGB(std::uint8_t r, std::uint8_t g, std::uint8_t b) {
    m_method = OxCmEntityColor::kByColor;
    m_r = r;
    m_g = g;
    m_b = b;
    m_index = 0;
    m_bookRef = 0;
}

namespace {
Rgb rgbOf(const OxCmColor& c, std::uint8_t r, std::uint8_t g, std::uint8_t b) {
    if (c.isByACI() && c.colorIndex() < 256) {
        Rgb out;
        OxCmEntityColor::indexToRgb(c.colorIndex(), out[0], out[1], out[2]);
        return out;
    }
    return {r, g, b};
}
} // namespace

std::uint8_t OxCmColor::red() const { return rgbOf(*this, m_r, m_g, m_b)[0]; }
std::uint8_t OxCmColor::green() const { return rgbOf(*this, m_r, m_g, m_b)[1]; }
std::uint8_t OxCmColor::blue() const { return rgbOf(*this, m_r, m_g, m_b)[2]; }

bool OxCmColor::setNames(const wchar_t* colorName, const wchar_t* bookName) {
    if (!bookName || !*bookName) {
        m_bookRef = 0;
        return colorName == nullptr || *colorName == L'\0';
    }
    if (!colorName || !*colorName) return false;
    if (m_method != OxCmEntityColor::kByColor) {
        // A book colour is a true colour: keep what the colour looks like.
        const std::uint8_t r = red(), g = green(), b = blue();
        setRGB(r, g, b);
    }
    m_bookRef = bookNames().intern(colorName, bookName);
    return true;
}

const wchar_t* OxCmColor::colorName() const {
    const auto* names = bookNames().at(m_bookRef);
    return names ? names->first.c_str() : nullptr;
}

const wchar_t* OxCmColor::bookName() const {
    const auto* names = bookNames().at(m_bookRef);
    return names ? names->second.c_str() : nullptr;
}

OxString OxCmColor::colorNameForDisplay() const {
    if (hasBookName()) return OxString(colorName());
    switch (m_method) {
    case OxCmEntityColor::kByLayer:
        return OxString(L"ByLayer");
    case OxCmEntityColor::kByBlock:
        return OxString(L"ByBlock");
    case OxCmEntityColor::kByColor:
        return OxString(std::to_wstring(m_r) + L"," + std::to_wstring(m_g) + L"," + std::to_wstring(m_b));
    default:
        break;
    }
    if (const wchar_t* name = pavo::standardColorName(m_index)) return OxString(name);
    return OxString(std::to_wstring(static_cast<std::int16_t>(m_index))); // a typed negative index shows its sign
}
