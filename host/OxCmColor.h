// Colours and transparency.
#pragma once

#include <cstdint>

#include "OxString.h"
#include "PavoExport.h"

class PAVO_HOST_API OxCmEntityColor {
public:
    enum ColorMethod : std::uint8_t {
        kByLayer = 0xC0,
        kByBlock = 0xC1,
        kByColor = 0xC2, // true colour
        kByACI = 0xC3,   // colour index
        kByPen = 0xC4,
        kForeground = 0xC5,
        kByDgnIndex = 0xC7,
        kNone = 0xC8,
    };
    // Red, green, blue of an index of the 256-entry colour index palette.
    static void indexToRgb(int index, std::uint8_t& r, std::uint8_t& g, std::uint8_t& b);
};

// A colour: by layer, by block, an index (16 bits, so that a negative index
// typed by a user survives until the caller removes its sign), a true colour
// or a colour of a colour book.
class PAVO_HOST_API OxCmColor {
public:
    OxCmColor() = default; // by layer
    static OxCmColor byLayer();
    static OxCmColor byBlock();
    static OxCmColor fromIndex(std::uint16_t index);
    static OxCmColor fromRgb(std::uint8_t r, std::uint8_t g, std::uint8_t b);

    OxCmEntityColor::ColorMethod colorMethod() const { return static_cast<OxCmEntityColor::ColorMethod>(m_method); }
    void setColorMethod(OxCmEntityColor::ColorMethod method);

    std::uint16_t colorIndex() const { return m_index; }
    void setColorIndex(std::uint16_t index);
    void setRGB(std::uint8_t r, std::uint8_t g, std::uint8_t b);
    std::uint8_t red() const;
    std::uint8_t green() const;
    std::uint8_t blue() const;

    bool isByLayer() const { return m_method == OxCmEntityColor::kByLayer; }
    bool isByBlock() const { return m_method == OxCmEntityColor::kByBlock; }
    bool isByACI() const { return m_method == OxCmEntityColor::kByACI; }
    bool isByColor() const { return m_method == OxCmEntityColor::kByColor; }
    bool isNone() const { return m_method == OxCmEntityColor::kNone; }

    // Book colours: a true colour with the book's and the colour's names.
    // bookName() is null when the colour is not from a colour book.
    bool setNames(const wchar_t* colorName, const wchar_t* bookName);
    const wchar_t* colorName() const;
    const wchar_t* bookName() const;
    bool hasBookName() const { return m_bookRef != 0; }

    // "red".."white" for indices 1 to 7, other indices their number,
    // "ByLayer", "ByBlock", "r,g,b" for true colours, the colour's name in
    // its book for book colours.
    OxString colorNameForDisplay() const;

    bool operator==(const OxCmColor& o) const {
        return m_method == o.m_method && m_index == o.m_index && m_r == o.m_r && m_g == o.m_g && m_b == o.m_b &&
               m_bookRef == o.m_bookRef;
    }
    bool operator!=(const OxCmColor& o) const { return !(*this == o); }

private:
    std::uint8_t m_method = OxCmEntityColor::kByLayer;
    std::uint8_t m_r = 0, m_g = 0, m_b = 0;
    std::uint16_t m_index = 256;
    std::uint32_t m_bookRef = 0; // interned (book, colour) pair; 0 for none
};

class PAVO_HOST_API OxCmTransparency {
public:
    enum transparencyMethod : std::uint8_t { kByLayer = 0, kByBlock = 1, kByAlpha = 2, kErrorValue = 3 };

    OxCmTransparency() = default; // by layer
    explicit OxCmTransparency(std::uint8_t alpha) : m_method(kByAlpha), m_alpha(alpha) {}

    transparencyMethod method() const { return static_cast<transparencyMethod>(m_method); }
    void setMethod(transparencyMethod m) { m_method = m; }
    std::uint8_t alpha() const { return m_alpha; }
    // Sets an alpha (255 fully opaque) and the by-alpha method.
    void setAlpha(std::uint8_t alpha) {
        m_alpha = alpha;
        m_method = kByAlpha;
    }
    bool isByLayer() const { return m_method == kByLayer; }
    bool isByBlock() const { return m_method == kByBlock; }
    bool isByAlpha() const { return m_method == kByAlpha; }
    bool isClear() const { return m_method == kByAlpha && m_alpha == 0; }
    bool isSolid() const { return m_method == kByAlpha && m_alpha == 255; }
    // Transparency percentage of a by-alpha value (0 opaque).
    double alphaPercent() const { return m_method == kByAlpha ? (255 - m_alpha) * 100.0 / 255.0 : 0.0; }

    bool operator==(const OxCmTransparency& o) const { return m_method == o.m_method && m_alpha == o.m_alpha; }
    bool operator!=(const OxCmTransparency& o) const { return !(*this == o); }

private:
    std::uint8_t m_method = kByLayer;
    std::uint8_t m_alpha = 255;
};
