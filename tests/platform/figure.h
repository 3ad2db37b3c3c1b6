/// \file
/// Figures to draw in tests, made up at random or stated, and the pictures they leave.
#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "platform/software/context.h"
#include "tests/platform/board.h"

/// What to draw, and with which tools.
struct Figure {
    enum Kind { kLine, kPolyline, kPolygon, kRectangle, kEllipse };

    Kind kind = kPolyline;
    std::vector<POINT> points;  ///< two corners of a rectangle or an ellipse
    int penStyle = PS_SOLID;
    int penWidth = 1;
    bool filled = false;
    int rop = R2_WHITE;  ///< covers whatever is there, at every depth
    int background = TRANSPARENT;

    BOOL Draw(HDC dc) const {
        const HPEN pen = CreatePen(penStyle, penWidth, RGB(200, 120, 40));
        const HBRUSH brush = CreateSolidBrush(RGB(30, 90, 250));
        const HGDIOBJ oldPen = SelectObject(dc, pen);
        const HGDIOBJ oldBrush = SelectObject(dc, filled ? brush : GetStockObject(NULL_BRUSH));
        SetROP2(dc, rop);
        SetBkMode(dc, background);
        SetBkColor(dc, RGB(10, 220, 60));
        const BOOL result = Put(dc);
        SelectObject(dc, oldPen);
        SelectObject(dc, oldBrush);
        DeleteObject(pen);
        DeleteObject(brush);
        return result;
    }

    Figure Moved(int dx, int dy) const {
        Figure moved = *this;
        for (POINT& point : moved.points) {
            point.x += dx;
            point.y += dy;
        }
        return moved;
    }

private:
    BOOL Put(HDC dc) const {
        const auto count = static_cast<int>(points.size());
        const POINT a = points[0], b = points[1];
        switch (kind) {
            case kLine:
                return MoveToEx(dc, a.x, a.y, nullptr) != FALSE && LineTo(dc, b.x, b.y) != FALSE;
            case kPolyline:
                return Polyline(dc, points.data(), count);
            case kPolygon:
                return Polygon(dc, points.data(), count);
            case kRectangle:
                return Rectangle(dc, a.x, a.y, b.x, b.y);
            case kEllipse:
                return Ellipse(dc, a.x, a.y, b.x, b.y);
        }
        return FALSE;
    }
};

inline std::ostream& operator<<(std::ostream& out, const Figure& figure) {
    out << "kind " << figure.kind << " pen " << figure.penStyle << '/' << figure.penWidth
        << (figure.filled ? " filled" : "") << " rop " << figure.rop << " background " << figure.background;
    for (const POINT& point : figure.points)
        out << " (" << point.x << ',' << point.y << ')';
    return out;
}

/// Any figure with any tools, its points within \p margin of a board of \p width x \p height.
inline Figure AnyFigure(std::mt19937& random, int width, int height, int margin) {
    Figure figure;
    figure.kind = static_cast<Figure::Kind>(Between(random, 0, 4));
    const bool listed = figure.kind == Figure::kPolyline || figure.kind == Figure::kPolygon;
    for (int i = listed ? Between(random, 2, 9) : 2; i > 0; --i) {
        figure.points.push_back(
            {Between(random, -margin, width + margin), Between(random, -margin, height + margin)});
    }
    figure.penStyle = std::vector<int>{PS_SOLID, PS_SOLID, PS_DASH, PS_NULL}[random() % 4];
    figure.penWidth = Between(random, 0, 1) != 0 ? 1 : Between(random, 2, 14);
    figure.filled = Between(random, 0, 2) != 0;
    figure.rop = Between(random, R2_BLACK, R2_WHITE);
    figure.background = Between(random, TRANSPARENT, OPAQUE);
    return figure;
}

/// One string a row: '#' where a pixel is not zero.
inline std::vector<std::string> Marked(const Board& board) {
    std::vector<std::string> rows;
    for (int y = 0; y < board.Height(); ++y) {
        std::string row;
        for (int x = 0; x < board.Width(); ++x)
            row += board.Raw(x, y) != 0 ? '#' : '.';
        rows.push_back(row);
    }
    return rows;
}

/// What a figure marks on an empty 32-bit board.
inline std::vector<std::string> MarkedBy(const Figure& figure, int width, int height) {
    Board board(kLayouts[7], width, height);
    figure.Draw(board.Dc());
    return Marked(board);
}
