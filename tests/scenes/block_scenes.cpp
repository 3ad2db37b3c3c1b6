#include <algorithm>
#include <cstdint>
#include <limits>
#include <memory>

#include "tests/scenes/kinds.h"
#include "tests/scenes/tools.h"

namespace scenes {
namespace {

constexpr TToolLot kSolid{};
constexpr TToolLot kPattern{1, 1, false, true, false};

/// A place and an extent, which may be negative.
struct TBlock {
    int X, Y, Width, Height;
};

TBlock SomeBlock(CRandom& random, bool mirrored) {
    const POINT corner = SomePoint(random, random.OneIn(8) ? 3000 : 60);
    const int reach = random.OneIn(8) ? 3000 : 70;
    int width = random.In(1, reach);
    int height = random.In(1, reach);
    const bool flipX = random.OneIn(3), flipY = random.OneIn(3);
    if (mirrored && flipX) width = -width;
    if (mirrored && flipY) height = -height;
    return {static_cast<int>(corner.x), static_cast<int>(corner.y), width, height};
}

/// The nearest coordinate of 32 bits.
int Saturated(std::int64_t value) {
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<int>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
}

/// \p extent, cut where a block from \p start would leave 32 bits.
int FittingExtent(int start, int extent) {
    return Saturated(Saturated(std::int64_t{start} + extent) - std::int64_t{start});
}

/// An extent of a block that starts at \p start: it ends near the surface or far out, but not beyond 32 bits.
int FarExtent(CRandom& random, int start, bool mirrored) {
    const bool endsNear = random.OneIn(2);
    const int extent = endsNear ? Saturated(random.In(0, 100) - std::int64_t{start})
                                : FittingExtent(start, FarCoordinate(random, 31));
    return mirrored || extent > 0 ? extent : random.In(0, 3);
}

/// Like SomeBlock, and at times far out in place and extent.
TBlock SomeFarBlock(CRandom& random, bool mirrored) {
    TBlock block = SomeBlock(random, mirrored);
    if (!random.OneIn(8)) return block;
    if (random.OneIn(2)) block.X = FarCoordinate(random, 31);
    if (random.OneIn(2)) block.Y = FarCoordinate(random, 31);
    block.Width = FarExtent(random, block.X, mirrored);
    block.Height = FarExtent(random, block.Y, mirrored);
    // Backwards from the last coordinate the system's own count leaves 32 bits.
    constexpr int last = std::numeric_limits<std::int32_t>::max();
    if (block.Width < 0 && block.X == last) --block.X;
    if (block.Height < 0 && block.Y == last) --block.Y;
    return block;
}

RECT RectOf(const TBlock& block) {
    return {block.X, block.Y, Saturated(std::int64_t{block.X} + block.Width),
            Saturated(std::int64_t{block.Y} + block.Height)};
}

/// The same with some room to the ends of 32 bits, at which the system's own sums do not look.
RECT OffTheEnds(const RECT& area) {
    const auto inset = [](LONG place) { return std::clamp<LONG>(place, -0x7FFFFF00, 0x7FFFFF00); };
    return {inset(area.left), inset(area.top), inset(area.right), inset(area.bottom)};
}

bool IsEmpty(const RECT& area) {
    return area.left >= area.right || area.top >= area.bottom;
}
RECT Meeting(const RECT& a, const RECT& b) {
    return {std::max(a.left, b.left), std::max(a.top, b.top), std::min(a.right, b.right),
            std::min(a.bottom, b.bottom)};
}

/// A scattered surface to copy from.
std::unique_ptr<CBoard> SomeSource(CRandom& random, int depth) {
    auto source = std::make_unique<CBoard>(depth, random.OneIn(2));
    source->Scatter(random);
    ::SetBkColor(source->Get(), random.Color());
    ::SetTextColor(source->Get(), random.Color());
    return source;
}

/// A target of one pixel in place of a source of two: where anything else of the block is cut off, the
/// system then copies without stretching, from and to other pixels than asked for.
void AvoidHalving(TBlock& to, const TBlock& from) {
    if (to.Width == 1 && from.Width == 2) to.Width = 2;
    if (to.Height == 1 && from.Height == 2) to.Height = 2;
}

/// Where a block goes and where it comes from.
struct TCopy {
    TBlock To;
    int SourceX, SourceY;
};

TCopy SomeCopy(CRandom& random) {
    const TBlock to = SomeFarBlock(random, false);
    const POINT from = SomePoint(random, 60);
    // What starts far out on one side must start far out on the other for anything to be seen.
    const auto wayOut = [](std::int64_t place) { return std::abs(place) > 10000 ? place : 0; };
    TCopy copy{to, Saturated(from.x - 40 + wayOut(to.X)), Saturated(from.y - 40 + wayOut(to.Y))};
    copy.To.Width = FittingExtent(copy.SourceX, to.Width);
    copy.To.Height = FittingExtent(copy.SourceY, to.Height);
    return copy;
}

void Copy(CBoard& board, const CBoard& source, const TCopy& copy, DWORD rop) {
    ::BitBlt(board.Get(), copy.To.X, copy.To.Y, copy.To.Width, copy.To.Height, source.Get(), copy.SourceX,
             copy.SourceY, rop);
}

/// An operation that does not look at the brush.
DWORD SomeCopyRop(CRandom& random) {
    for (;;) {
        const DWORD rop = SomeRop3(random, true);
        if ((rop >> 20 & 15) == (rop >> 16 & 15)) return rop;
    }
}

}  // namespace

void DrawFills(CBoard& board, CRandom& random) {
    for (int rest = random.In(1, 4); rest != 0; --rest) {
        const CTools tools(board.Get(), random, kSolid);
        const TBlock block = SomeFarBlock(random, true);
        if (random.OneIn(2)) {
            ::PatBlt(board.Get(), block.X, block.Y, block.Width, block.Height, SomeRop3(random, false));
        } else {
            const RECT area = RectOf(block);
            const HBRUSH brush = ::CreateSolidBrush(random.Color());
            ::FillRect(board.Get(), &area, brush);
            ::DeleteObject(brush);
        }
    }
}

void DrawPatterns(CBoard& board, CRandom& random) {
    for (int rest = random.In(1, 3); rest != 0; --rest) {
        const CTools tools(board.Get(), random, kPattern);
        const TBlock block = SomeFarBlock(random, true);
        ::PatBlt(board.Get(), block.X, block.Y, block.Width, block.Height, SomeRop3(random, false));
    }
}

void DrawCopies(CBoard& board, CRandom& random) {
    const auto source = SomeSource(random, SomeDepth(random));
    const CTools tools(board.Get(), random, kSolid);
    const TCopy copy = SomeCopy(random);
    Copy(board, *source, copy, SomeCopyRop(random));
}

void DrawCopiesWithPattern(CBoard& board, CRandom& random) {
    const auto source = SomeSource(random, SomeDepth(random));
    const CTools tools(board.Get(), random, kPattern);
    TCopy copy = SomeCopy(random);
    // Under some of these operations the system moves the pattern by twice the way that the block travels
    // (down: by twice its row). On a grid of four pixels that is no move of an 8 x 8 pattern.
    for (int* const place : {&copy.To.X, &copy.To.Y, &copy.SourceX, &copy.SourceY})
        *place -= *place % 4;
    Copy(board, *source, copy, SomeRop3(random, true));
}

void DrawOverlaps(CBoard& board, CRandom& random) {
    const CTools tools(board.Get(), random, kSolid);
    TCopy copy = SomeCopy(random);
    // Of one-bit pixels that overlap to the right the system paints others too, outside the block.
    const std::int64_t way = std::int64_t{copy.To.X} - copy.SourceX;
    if (board.GetDepth() == 1 && way > 0) {
        copy.SourceX = Saturated(copy.To.X + way);
        copy.To.Width = FittingExtent(copy.SourceX, copy.To.Width);
    }
    Copy(board, board, copy, SomeCopyRop(random));
}

void DrawStretched(CBoard& board, CRandom& random) {
    const auto source = SomeSource(random, SomeDepth(random));
    const CTools tools(board.Get(), random, kSolid);
    TBlock to = SomeBlock(random, true);
    TBlock from = SomeBlock(random, true);
    from.X -= 40;
    from.Y -= 40;
    AvoidHalving(to, from);
    ::SetStretchBltMode(board.Get(), random.In(BLACKONWHITE, COLORONCOLOR));
    ::StretchBlt(board.Get(), to.X, to.Y, to.Width, to.Height, source->Get(), from.X, from.Y, from.Width,
                 from.Height, random.OneIn(2) ? SRCCOPY : SomeCopyRop(random));
}

void DrawTransparent(CBoard& board, CRandom& random) {
    const auto source = SomeSource(random, SomeDepth(random));
    const COLORREF key = ::GetPixel(source->Get(), random.In(0, CBoard::Width - 1), 5);
    TBlock to = SomeBlock(random, false);
    const bool stretched = random.OneIn(2);
    TBlock from = SomeBlock(random, false);
    from.X -= 40;
    from.Y -= 40;
    if (!stretched) {
        from.Width = to.Width;
        from.Height = to.Height;
    }
    AvoidHalving(to, from);
    ::TransparentImage(board.Get(), to.X, to.Y, to.Width, to.Height, source->Get(), from.X, from.Y,
                       from.Width, from.Height, key);
}

void DrawMono(CBoard& board, CRandom& random) {
    // A bitmap without colours of its own, filled from one surface and copied to the other.
    const auto source = SomeSource(random, SomeDepth(random));
    const HDC mono = ::CreateCompatibleDC(nullptr);
    const HBITMAP bitmap = ::CreateBitmap(CBoard::Width, CBoard::Height, 1, 1, nullptr);
    const HGDIOBJ previous = ::SelectObject(mono, bitmap);
    ::SetBkColor(source->Get(), ::GetPixel(source->Get(), 7, 7));
    ::BitBlt(mono, 0, 0, CBoard::Width, CBoard::Height, source->Get(), 0, 0, SRCCOPY);
    {
        const CTools tools(board.Get(), random, kSolid);
        const TBlock to = SomeFarBlock(random, false);
        ::BitBlt(board.Get(), to.X, to.Y, to.Width, to.Height, mono, 0, 0, SomeCopyRop(random));
    }
    ::SelectObject(mono, previous);
    ::DeleteObject(bitmap);
    ::DeleteDC(mono);
}

namespace {

RECT SomeEdgeArea(CRandom& random) {
    if (random.OneIn(8)) return OffTheEnds(RectOf(SomeFarBlock(random, true)));
    const POINT corner = SomePoint(random, 50);
    const LONG right = corner.x + random.In(-5, 50);
    return {corner.x, corner.y, right, corner.y + random.In(-5, 50)};
}

}  // namespace

void DrawEdges(CBoard& board, CRandom& random) {
    for (int rest = random.In(1, 4); rest != 0; --rest) {
        RECT area = SomeEdgeArea(random);
        const UINT edge = static_cast<UINT>(random.In(0, 15));
        ::DrawEdge(board.Get(), &area, edge, static_cast<UINT>(random.In(0, 15)));
    }
}

void DrawScrolled(CBoard& board, CRandom& random) {
    const RECT scroll = OffTheEnds(RectOf(SomeFarBlock(random, false)));
    const RECT clip = OffTheEnds(RectOf(SomeFarBlock(random, false)));
    int dx = random.In(-40, 40);
    const int dy = random.In(-40, 40);
    if (board.GetDepth() == 1 && dx > 0) dx = -dx;  // as where blocks overlap
    const RECT limit = random.OneIn(2) ? scroll : clip;
    // Where nothing is moved, or nothing arrives, some systems paint outside the clip.
    const RECT moved = Meeting(Meeting(scroll, limit), {0, 0, CBoard::Width, CBoard::Height});
    const RECT arrived{moved.left + dx, moved.top + dy, moved.right + dx, moved.bottom + dy};
    if (IsEmpty(moved) || IsEmpty(Meeting(Meeting(arrived, limit), {0, 0, CBoard::Width, CBoard::Height})))
        return;
    ::ScrollDC(board.Get(), dx, dy, &scroll, &limit, nullptr, nullptr);
}

void DrawPixels(CBoard& board, CRandom& random) {
    ::SetROP2(board.Get(), random.In(R2_BLACK, R2_WHITE));
    for (int rest = random.In(1, 60); rest != 0; --rest) {
        POINT place = SomePoint(random, 60);
        if (random.OneIn(12)) place.x = FarCoordinate(random, 31);
        const COLORREF color =
            ::SetPixel(board.Get(), static_cast<int>(place.x), static_cast<int>(place.y), random.Color());
        // What a call answers shows in the picture too.
        ::SetPixel(board.Get(), static_cast<int>(place.y), static_cast<int>(place.x), color & 0xFFFFFF);
    }
}

}  // namespace scenes
