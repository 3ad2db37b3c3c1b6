/// \file
/// Regions by lot, combined, moved, read out and set as the clip; then figures and blocks of every kind drawn
/// through what is left.
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <vector>

#include "tests/scenes/kinds.h"

namespace scenes {
namespace {

constexpr int kRegions = 4;

/// What the calls of a scene answer, folded into one number.
class CAnswers {
public:
    void Add(std::int64_t answer) {
        const auto value = static_cast<std::uint64_t>(answer);
        for (int shift = 0; shift < 64; shift += 8)
            m_Hash = (m_Hash ^ (value >> shift & 0xFF)) * 0x100000001B3u;  // FNV-1a
    }
    void Add(const RECT& rect) {
        for (const LONG side : {rect.left, rect.top, rect.right, rect.bottom})
            Add(side);
    }
    /// Draws the number, a pixel a bit, into the picture's first row.
    void Draw(HDC dc) const {
        for (int bit = 0; bit < 64; ++bit)
            ::SetPixel(dc, bit, 0, (m_Hash >> bit & 1) != 0 ? RGB(255, 255, 255) : RGB(0, 0, 0));
    }

private:
    std::uint64_t m_Hash = 0xCBF29CE484222325u;
};

struct TStage {
    HDC Context;
    bool IsMono;
    CRandom& Random;
    CAnswers& Answers;
    HRGN Regions[kRegions];
    HRGN Saved = nullptr;  ///< the clip of an earlier step, where one was saved

    HRGN& Some() { return Regions[Random.In(0, kRegions - 1)]; }
};

int SomeCoordinate(CRandom& random, int size) {
    const int limit = random.OneIn(2) ? std::numeric_limits<int>::max() : std::numeric_limits<int>::min();
    const int kind = random.In(0, 15);
    if (kind == 0) return limit;
    const int reach = kind < 4 ? 1000 : 12;
    return random.In(-reach, size + reach);
}

RECT SomeRect(CRandom& random) {
    RECT rect;
    rect.left = SomeCoordinate(random, CBoard::Width);
    rect.top = SomeCoordinate(random, CBoard::Height);
    rect.right = SomeCoordinate(random, CBoard::Width);
    rect.bottom = SomeCoordinate(random, CBoard::Height);
    return rect;
}

bool IsOnSurface(const RECT& rect) {
    return rect.left >= 0 && rect.top >= 0 && rect.right <= CBoard::Width && rect.bottom <= CBoard::Height;
}
bool MeetsSurface(const RECT& rect) {
    return rect.left < CBoard::Width && rect.top < CBoard::Height && rect.right > 0 && rect.bottom > 0;
}

// --- steps ---

void MakeRegion(TStage& stage) {
    HRGN& region = stage.Some();
    const RECT rect = SomeRect(stage.Random);
    ::DeleteObject(region);
    region = ::CreateRectRgn(rect.left, rect.top, rect.right, rect.bottom);
}

/// Sums that leave 32 bits come back at the other end, on either host.
LONG Wrapped(std::int64_t value) {
    return static_cast<LONG>(static_cast<std::uint32_t>(value));
}

void MakeRegionOfMany(TStage& stage) {
    std::vector<RECT> rects;
    for (int i = stage.Random.In(0, 30); i > 0; --i) {
        RECT rect = SomeRect(stage.Random);
        if (stage.Random.OneIn(2)) {
            rect.right = Wrapped(std::int64_t{rect.left} + stage.Random.In(-1, 9));
            rect.bottom = Wrapped(std::int64_t{rect.top} + stage.Random.In(-1, 9));
        }
        const bool overflows =
            rect.right < std::int64_t{rect.left} - 1 || rect.bottom < std::int64_t{rect.top} - 1;
        if (!overflows || !stage.Random.OneIn(2)) rects.push_back(rect);
    }
    const auto size = static_cast<DWORD>(rects.size() * sizeof(RECT));
    std::vector<char> data(sizeof(RGNDATAHEADER) + size);
    const RGNDATAHEADER header{sizeof header, RDH_RECTANGLES, static_cast<DWORD>(rects.size()), size, {}};
    std::memcpy(data.data(), &header, sizeof header);
    if (size != 0) std::memcpy(data.data() + sizeof header, rects.data(), size);
    HRGN& region = stage.Some();
    ::DeleteObject(region);
    region = ::ExtCreateRegion(nullptr, static_cast<DWORD>(data.size()),
                               reinterpret_cast<const RGNDATA*>(data.data()));
    stage.Answers.Add(region != nullptr);
}

void Combine(TStage& stage) {
    const HRGN target = stage.Some(), first = stage.Some(), second = stage.Some();
    stage.Answers.Add(::CombineRgn(target, first, second, stage.Random.In(0, 6)));
}

void Move(TStage& stage) {
    const HRGN region = stage.Some();
    const int dx = SomeCoordinate(stage.Random, 0);
    stage.Answers.Add(::OffsetRgn(region, dx, SomeCoordinate(stage.Random, 0)));
}

void Ask(TStage& stage) {
    const HRGN region = stage.Some();
    RECT box{};
    stage.Answers.Add(::GetRgnBox(region, &box));
    stage.Answers.Add(box);
    for (int i = 0; i < 8; ++i) {
        const int x = SomeCoordinate(stage.Random, CBoard::Width);
        stage.Answers.Add(::PtInRegion(region, x, SomeCoordinate(stage.Random, CBoard::Height)));
    }
    std::vector<char> data(::GetRegionData(region, 0, nullptr));
    stage.Answers.Add(static_cast<std::int64_t>(data.size()));
    ::GetRegionData(region, static_cast<DWORD>(data.size()), reinterpret_cast<RGNDATA*>(data.data()));
    for (std::size_t at = sizeof(RGNDATAHEADER); at < data.size(); at += sizeof(RECT)) {
        RECT rect;
        std::memcpy(&rect, data.data() + at, sizeof rect);
        stage.Answers.Add(rect);
    }
}

void SetClip(TStage& stage) {
    stage.Answers.Add(::SelectClipRgn(stage.Context, stage.Some()));
}

void TakeClipAway(TStage& stage) {
    stage.Answers.Add(::SelectClipRgn(stage.Context, nullptr));
}

void Exclude(TStage& stage) {
    const RECT rect = SomeRect(stage.Random);
    stage.Answers.Add(::ExcludeClipRect(stage.Context, rect.left, rect.top, rect.right, rect.bottom));
}

void SaveClip(TStage& stage) {
    if (stage.Saved == nullptr) stage.Saved = ::CreateRectRgn(0, 0, 1, 1);
    const int answer = ::GetClipRgn(stage.Context, stage.Saved);
    stage.Answers.Add(answer);
    if (answer == 1) return;
    ::DeleteObject(stage.Saved);
    stage.Saved = nullptr;
}

void RestoreClip(TStage& stage) {
    stage.Answers.Add(::SelectClipRgn(stage.Context, stage.Saved));
    if (stage.Saved != nullptr) ::DeleteObject(stage.Saved);
    stage.Saved = nullptr;
}

void AskClip(TStage& stage) {
    const HRGN clip = ::CreateRectRgn(0, 0, 1, 1);
    RECT box{};
    const bool clipped = ::GetClipRgn(stage.Context, clip) == 1;
    const int kind = clipped ? ::GetRgnBox(clip, &box) : SIMPLEREGION;
    ::DeleteObject(clip);
    // Of several rectangles the system does not look which ones lie on the surface.
    if (clipped && (kind == COMPLEXREGION ? !IsOnSurface(box) : !MeetsSurface(box))) return;
    RECT seen{};
    stage.Answers.Add(::GetClipBox(stage.Context, &seen));
    stage.Answers.Add(seen);
}

void Scroll(TStage& stage) {
    // Both hold the middle: where nothing is moved, or nothing arrives, some systems paint outside the clip.
    RECT rects[2];
    for (RECT& rect : rects) {
        rect.left = stage.Random.In(-10, 30);
        rect.top = stage.Random.In(-10, 25);
        rect.right = stage.Random.In(60, CBoard::Width + 10);
        rect.bottom = stage.Random.In(55, CBoard::Height + 10);
    }
    if (stage.Random.OneIn(2)) rects[1] = rects[0];
    int dx = stage.Random.In(-6, 6);
    const int dy = stage.Random.In(-6, 6);
    // Some systems move one-bit pixels to the right otherwise than they do all others.
    if (stage.IsMono && dx > 0) dx = -dx;
    const HRGN update = stage.Some();
    RECT seen{};
    stage.Answers.Add(::ScrollDC(stage.Context, dx, dy, &rects[0], &rects[1], update, &seen));
    stage.Answers.Add(seen);
}

void DrawThrough(CBoard& board, CRandom& random) {
    using TDraw = void (*)(CBoard&, CRandom&);
    static constexpr TDraw kinds[] = {
        DrawLines,     DrawPolylines, DrawWideLines, DrawDashes,   DrawPolygons, DrawRectangles,
        DrawEllipses,  DrawEveryRop,  DrawFills,     DrawPatterns, DrawCopies,   DrawTransparent,
        DrawStretched, DrawOverlaps,  DrawMono,      DrawEdges,    DrawPixels,   DrawCanvas,
    };
    kinds[random.In(0, static_cast<int>(sizeof kinds / sizeof kinds[0]) - 1)](board, random);
}

}  // namespace

void DrawRegions(CBoard& board, CRandom& random) {
    using TStep = void (*)(TStage&);
    static constexpr TStep steps[] = {MakeRegion, MakeRegionOfMany, Combine, Combine, Combine,  Move,
                                      Ask,        SetClip,          SetClip, Exclude, SaveClip, RestoreClip,
                                      AskClip,    TakeClipAway,     Scroll};
    CAnswers answers;
    TStage stage{board.Get(), board.GetDepth() == 1, random, answers, {}};
    for (HRGN& region : stage.Regions)
        region = ::CreateRectRgn(0, 0, 0, 0);
    for (int i = 0; i < kRegions; ++i)
        (random.OneIn(3) ? MakeRegion : MakeRegionOfMany)(stage);
    for (int round = 0; round < 3; ++round) {
        for (int i = random.In(1, 12); i > 0; --i)
            steps[random.In(0, static_cast<int>(sizeof steps / sizeof steps[0]) - 1)](stage);
        DrawThrough(board, random);
    }
    ::SelectClipRgn(board.Get(), nullptr);
    for (const HRGN region : stage.Regions)
        ::DeleteObject(region);
    if (stage.Saved != nullptr) ::DeleteObject(stage.Saved);
    answers.Draw(board.Get());
}

}  // namespace scenes
