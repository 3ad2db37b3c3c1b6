// Holds the pictures of docs/raster-rules.md against what the device draws: this one on the host, the
// system's there.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <initializer_list>
#include <string>

#include "tests/scenes/board.h"

namespace {

using scenes::CBoard;

constexpr COLORREF kMark = 0x0000FF, kFill = 0x00FF00;

/// Leaves the device as it was when it goes.
class CSelected {
public:
    CSelected(HDC dc, HGDIOBJ tool) : m_Context(dc), m_Previous(::SelectObject(dc, tool)) {}
    ~CSelected() { ::DeleteObject(::SelectObject(m_Context, m_Previous)); }
    CSelected(const CSelected&) = delete;
    CSelected& operator=(const CSelected&) = delete;

private:
    HDC m_Context;
    HGDIOBJ m_Previous;
};

using TPoints = std::initializer_list<POINT>;

void Line(HDC dc, TPoints points) {
    ::Polyline(dc, points.begin(), static_cast<int>(points.size()));
}

/// With the corners of the path in another colour.
void WideLine(HDC dc, int width, TPoints points) {
    {
        const CSelected pen(dc, ::CreatePen(PS_SOLID, width, 0));
        Line(dc, points);
    }
    for (const POINT& point : points)
        ::SetPixel(dc, static_cast<int>(point.x), static_cast<int>(point.y), kMark);
}

void Area(HDC dc, COLORREF color, TPoints points) {
    const CSelected pen(dc, ::CreatePen(PS_NULL, 0, 0));
    const CSelected brush(dc, ::CreateSolidBrush(color));
    ::Polygon(dc, points.begin(), static_cast<int>(points.size()));
}

void Outlined(HDC dc, int width, void (*figure)(HDC dc)) {
    const CSelected pen(dc, ::CreatePen(width == 0 ? PS_NULL : PS_SOLID, width, 0));
    const CSelected brush(dc, ::CreateSolidBrush(kFill));
    figure(dc);
}

void ThroughRegions(HDC dc, int left, int mode) {
    const HRGN a = ::CreateRectRgn(left, 0, left + 7, 4), b = ::CreateRectRgn(left + 3, 2, left + 11, 6);
    ::CombineRgn(a, a, b, mode);
    ::SelectClipRgn(dc, a);
    ::PatBlt(dc, 0, 0, CBoard::Width, CBoard::Height, BLACKNESS);
    ::SelectClipRgn(dc, nullptr);
    ::DeleteObject(a);
    ::DeleteObject(b);
}

struct TPicture {
    const char* Name;
    int Width, Height;
    void (*Draw)(HDC dc);
    int Depth = 32;
};

const TPicture kPictures[] = {
    {"ties", 43, 5,
     [](HDC dc) {
         Line(dc, {{0, 0}, {8, 4}});
         Line(dc, {{18, 4}, {10, 0}});
         Line(dc, {{22, 4}, {30, 0}});
         Line(dc, {{42, 0}, {34, 4}});
     }},
    {"ends", 19, 4,
     [](HDC dc) {
         Line(dc, {{0, 0}, {7, 0}, {7, 3}});
         ::SetROP2(dc, R2_NOT);
         Line(dc, {{10, 0}, {18, 2}});
         Line(dc, {{18, 2}, {10, 0}});
     }},
    {"dashes", 34, 18,
     [](HDC dc) {
         const CSelected pen(dc, ::CreatePen(PS_DASH, 1, 0));
         Line(dc, {{0, 0}, {33, 0}, {33, 18}});
     }},
    {"dots", 47, 7,
     [](HDC dc) {
         for (const int width : {2, 3, 4, 5, 6, 7})
             WideLine(dc, width, {{width * 8 - 13, 3}, {width * 8 - 13, 3}});
     }},
    {"wide-lines", 42, 13,
     [](HDC dc) {
         WideLine(dc, 5, {{2, 3}, {16, 8}});
         WideLine(dc, 4, {{24, 3}, {38, 3}, {30, 10}});
     }},
    {"shared-side", 21, 6,
     [](HDC dc) {
         Area(dc, 0, {{0, 0}, {8, 6}, {0, 6}});
         Area(dc, kMark, {{0, 0}, {8, 0}, {8, 6}});
         Area(dc, 0, {{11, 1}, {20, 1}, {20, 5}, {11, 5}});
     }},
    {"alternate", 15, 12,
     [](HDC dc) {
         Area(dc, 0, {{7, 0}, {11, 12}, {0, 4}, {14, 4}, {3, 12}});
     }},
    {"outlines", 38, 13,
     [](HDC dc) {
         static constexpr POINT narrow[] = {{0, 2}, {12, 4}, {4, 9}}, wide[] = {{17, 2}, {36, 4}, {22, 11}};
         Outlined(dc, 1, [](HDC at) { ::Polygon(at, narrow, 3); });
         Outlined(dc, 3, [](HDC at) { ::Polygon(at, wide, 3); });
     }},
    {"rectangles", 34, 9,
     [](HDC dc) {
         Outlined(dc, 1, [](HDC at) { ::Rectangle(at, 0, 1, 8, 6); });
         Outlined(dc, 0, [](HDC at) { ::Rectangle(at, 10, 1, 18, 6); });
         Outlined(dc, 3, [](HDC at) { ::Rectangle(at, 21, 1, 33, 8); });
     }},
    {"ellipses", 62, 8,
     [](HDC dc) {
         Outlined(dc, 1, [](HDC at) { ::Ellipse(at, 0, 0, 11, 7); });
         Outlined(dc, 1, [](HDC at) { ::Ellipse(at, 13, 0, 23, 8); });
         Outlined(dc, 1, [](HDC at) { ::Ellipse(at, 25, 0, 27, 7); });
         Outlined(dc, 1, [](HDC at) { ::Ellipse(at, 29, 0, 32, 7); });
         Outlined(dc, 1, [](HDC at) { ::Ellipse(at, 34, 2, 62, 5); });
     }},
    {"backwards", 9, 5,
     [](HDC dc) {
         ::PatBlt(dc, 7, 4, -5, -4, BLACKNESS);
         ::SetPixel(dc, 7, 4, kMark);
     }},
    {"regions", 50, 6,
     [](HDC dc) {
         ThroughRegions(dc, 0, RGN_AND);
         ThroughRegions(dc, 13, RGN_OR);
         ThroughRegions(dc, 26, RGN_XOR);
         ThroughRegions(dc, 39, RGN_DIFF);
     }},
    {"gradients", 58, 10,
     [](HDC dc) {
         TRIVERTEX corners[] = {{1, 1, 0xFFFF, 0xFFFF, 0xFFFF, 0},
                                {33, 9, 0, 0, 0, 0},
                                {36, 0, 0, 0, 0, 0},
                                {57, 0, 0xFFFF, 0xFFFF, 0xFFFF, 0},
                                {36, 10, 0xFFFF, 0xFFFF, 0xFFFF, 0}};
         ULONG box[] = {0, 1}, triangle[] = {2, 3, 4};
         ::GradientFill(dc, corners, 5, box, 1, GRADIENT_FILL_RECT_H);
         ::GradientFill(dc, corners, 5, triangle, 1, GRADIENT_FILL_TRIANGLE);
     },
     1},
};

/// White is a dot; black, the mark's and the fill's colour have letters of their own.
std::string Drawn(const TPicture& picture) {
    const CBoard board(picture.Depth, true);
    const HDC dc = board.Get();
    ::PatBlt(dc, 0, 0, CBoard::Width, CBoard::Height, WHITENESS);
    picture.Draw(dc);
    std::string text;
    for (int y = 0; y < picture.Height; ++y) {
        for (int x = 0; x < picture.Width; ++x) {
            const COLORREF color = ::GetPixel(dc, x, y);
            text += color == 0xFFFFFF ? '.'
                    : color == 0      ? '#'
                    : color == kMark  ? 'o'
                    : color == kFill  ? '+'
                                      : '?';
        }
        text += '\n';
    }
    return text;
}

/// What happens to a colour at each depth without a table: as a brush, and when its bits are inverted.
std::string Rounded() {
    std::string text;
    for (const int depth : {16, 24, 32}) {
        const CBoard board(depth, true);
        const CSelected brush(board.Get(), ::CreateSolidBrush(0x563412));
        const auto shown = [&board](DWORD rop) {
            ::PatBlt(board.Get(), 0, 0, 1, 1, rop);
            const COLORREF color = ::GetPixel(board.Get(), 0, 0);
            char rgb[8];
            std::snprintf(rgb, sizeof rgb, "%06X",
                          static_cast<unsigned>((color & 0xFF) << 16 | (color & 0xFF00) | color >> 16));
            return std::string(rgb);
        };
        const std::string plain = shown(PATCOPY);
        text += std::to_string(depth) + " bits: 123456 -> " + plain + ", inverted " + shown(DSTINVERT) + '\n';
    }
    return text;
}

/// The block of the page that is marked with a name.
std::string InTheDocument(const std::string& name) {
    std::ifstream page(ZUL_RASTER_RULES);
    std::string line, text;
    while (std::getline(page, line) && line != "```" + name) {
    }
    while (std::getline(page, line) && line != "```")
        text += line + '\n';
    return text;
}

TEST(RasterRules, AreDrawnAsTheDocumentShowsThem) {
    for (const TPicture& picture : kPictures)
        EXPECT_EQ(InTheDocument(picture.Name), Drawn(picture)) << picture.Name << '\n' << Drawn(picture);
    EXPECT_EQ(InTheDocument("rounding"), Rounded());
}

}  // namespace
