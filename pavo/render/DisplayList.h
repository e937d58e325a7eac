// A canvas that keeps what is drawn on it, in order, to draw it again on
// other canvases: the drawing is walked once and its picture painted in
// bands of the page at the same time, each band drawing only what reaches
// into it.
#pragma once

#include <cstdint>

#include "render/BlockStore.h"
#include "render/Canvas.h"

namespace pavo::render {

class DisplayList final : public Canvas {
public:
    void setClip(const PageRect* rect) override;
    void polyline(const Stroke& stroke, const PagePoint* points, std::size_t count, bool closed,
                  bool flatEnds) override;
    void dot(const Stroke& stroke, PagePoint at) override;
    void text(const Stroke& stroke, PagePoint at, double height, double angle, std::wstring_view text) override;

    // Draws on `canvas` what reaches between page heights `bottom` and
    // `top` (millimetres), and the clips, in the order it was drawn here.
    void replay(Canvas& canvas, double bottom, double top) const;
    // How many strokes, dots, texts and clips it holds.
    std::size_t size() const { return m_items.size(); }
    // Something drawn could not be kept: the system had no memory for it.
    bool incomplete() const { return m_incomplete; }

private:
    enum class Kind : std::uint8_t { Clip, NoClip, Polyline, ClosedPolyline, Dot, Text };
    struct Item {
        Kind kind = Kind::NoClip;
        bool flatEnds = false;
        // Points of a polyline; a dot's one point; a text's start and (its
        // height, its angle); a clip's lower left and upper right corners.
        std::uint32_t pointCount = 0;
        const PagePoint* points = nullptr;
        const wchar_t* characters = nullptr; // of a text
        std::uint32_t characterCount = 0;
        // What the item reaches on the page, bottom to top.
        float low = 0, high = 0;
        Stroke stroke;
    };

    static Item drawn(Kind kind, const Stroke& stroke);
    void add(Item item, const PagePoint* points, std::size_t count, double low, double high);

    BlockStore<Item> m_items;
    BlockStore<PagePoint> m_points;
    BlockStore<wchar_t> m_characters;
    bool m_incomplete = false;
};

} // namespace pavo::render
