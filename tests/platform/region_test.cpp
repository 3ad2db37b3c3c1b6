#include <array>
#include <cstring>
#include <tuple>
#include <vector>

#include "tests/platform/board.h"

bool operator==(const RECT& a, const RECT& b) {
    return std::tie(a.left, a.top, a.right, a.bottom) == std::tie(b.left, b.top, b.right, b.bottom);
}

namespace {

using Rects = std::vector<RECT>;
constexpr int kSize = 16;

HRGN RegionOf(const Rects& rects) {
    const auto size = static_cast<DWORD>(rects.size() * sizeof(RECT));
    std::vector<char> data(sizeof(RGNDATAHEADER) + size);
    const RGNDATAHEADER header{sizeof header, RDH_RECTANGLES, static_cast<DWORD>(rects.size()), size, {}};
    std::memcpy(data.data(), &header, sizeof header);
    std::copy(rects.begin(), rects.end(), reinterpret_cast<RECT*>(data.data() + sizeof header));
    return ExtCreateRegion(nullptr, static_cast<DWORD>(data.size()),
                           reinterpret_cast<const RGNDATA*>(data.data()));
}

Rects RectsOf(HRGN region) {
    std::vector<char> data(GetRegionData(region, 0, nullptr));
    if (data.empty()) return {};
    GetRegionData(region, static_cast<DWORD>(data.size()), reinterpret_cast<RGNDATA*>(data.data()));
    const auto* const first = reinterpret_cast<const RECT*>(data.data() + sizeof(RGNDATAHEADER));
    return Rects(first, first + reinterpret_cast<const RGNDATA*>(data.data())->rdh.nCount);
}

int KindOf(const Rects& rects) {
    return rects.empty() ? NULLREGION : rects.size() == 1 ? SIMPLEREGION : COMPLEXREGION;
}

RECT BoundsOf(const Rects& rects) {
    RECT bounds = rects.empty() ? RECT{} : rects[0];
    for (const RECT& rect : rects) {
        bounds = {std::min(bounds.left, rect.left), std::min(bounds.top, rect.top),
                  std::max(bounds.right, rect.right), std::max(bounds.bottom, rect.bottom)};
    }
    return bounds;
}

/// Sorted bands of boxes that neither overlap nor touch: what drawing through a clip relies on.
bool AreBanded(const Rects& rects) {
    return std::adjacent_find(rects.begin(), rects.end(), [](const RECT& a, const RECT& b) {
               const bool sameBand = a.top == b.top && a.bottom == b.bottom && a.right < b.left;
               return !sameBand && a.bottom > b.top;
           }) == rects.end();
}

/// The oracle: a bitmap of a small board, a row each.
using Mask = std::array<std::uint32_t, kSize>;

Mask MaskOf(const Rects& rects) {
    Mask mask{};
    for (const RECT& rect : rects) {
        for (int y = rect.top; y < rect.bottom; ++y)
            for (int x = rect.left; x < rect.right; ++x)
                mask[static_cast<std::size_t>(y)] |= 1u << x;
    }
    return mask;
}

Mask Combined(const Mask& a, const Mask& b, int mode) {
    Mask result = a;
    for (std::size_t y = 0; y < a.size(); ++y) {
        const std::uint32_t table[] = {a[y] & b[y], a[y] | b[y], a[y] ^ b[y], a[y] & ~b[y], a[y]};
        result[y] = table[mode - RGN_AND];
    }
    return result;
}

Mask Moved(const Mask& mask, int dx, int dy) {
    Mask result{};
    for (int y = std::max(0, dy); y < std::min(kSize, kSize + dy); ++y) {
        const std::uint32_t row = mask[static_cast<std::size_t>(y - dy)];
        result[static_cast<std::size_t>(y)] = (dx >= 0 ? row << dx : row >> -dx) & ((1u << kSize) - 1);
    }
    return result;
}

TEST(Region, AMillionOperationsKeepToTheirBitmaps) {
    Board board(kLayouts[7], kSize, kSize);
    const HDC dc = board.Dc();
    const Mask full = MaskOf({{0, 0, kSize, kSize}});
    const HRGN whole = CreateRectRgn(0, 0, kSize, kSize);
    HRGN regions[4] = {RegionOf({}), RegionOf({}), RegionOf({}), RegionOf({})};
    Mask masks[4] = {}, clip = full;
    bool clipped = false;
    std::mt19937 random(2101);
    const auto anyRect = [&random] {
        const int left = Between(random, 0, kSize), top = Between(random, 0, kSize);
        const int right = Between(random, 0, kSize);
        return RECT{left, top, right, Between(random, 0, kSize)};
    };
    for (int i = 0; i < 1000000 && !testing::Test::HasFailure(); ++i) {
        SCOPED_TRACE(i);
        const int a = Between(random, 0, 3), b = Between(random, 0, 3), to = Between(random, 0, 3);
        const RECT rect = anyRect();
        const RECT ordered{std::min(rect.left, rect.right), std::min(rect.top, rect.bottom),
                           std::max(rect.left, rect.right), std::max(rect.top, rect.bottom)};
        const int dx = Between(random, -6, 6), dy = Between(random, -6, 6);
        switch (const int step = Between(random, 0, 11)) {
            case 0:
                DeleteObject(regions[to]);
                regions[to] = CreateRectRgn(rect.left, rect.top, rect.right, rect.bottom);
                masks[to] = MaskOf({ordered});
                break;
            case 1: {
                const Rects many{rect, ordered, anyRect(), anyRect(), anyRect(), anyRect(), anyRect()};
                DeleteObject(regions[to]);
                regions[to] = RegionOf(many);
                masks[to] = MaskOf(many);
                break;
            }
            case 2:
                OffsetRgn(regions[to], dx, dy);
                CombineRgn(regions[to], regions[to], whole, RGN_AND);
                masks[to] = Moved(masks[to], dx, dy);
                break;
            case 3:
                clipped = rect.left != 0;
                SelectClipRgn(dc, clipped ? regions[a] : nullptr);
                clip = clipped ? masks[a] : full;
                break;
            case 4:
                ExcludeClipRect(dc, rect.left, rect.top, rect.right, rect.bottom);
                clip = Combined(clip, MaskOf({ordered}), RGN_DIFF);
                clipped = true;
                break;
            case 5:
                ASSERT_EQ(GetClipRgn(dc, regions[to]), clipped ? 1 : 0);
                if (clipped) masks[to] = clip;
                break;
            default:
                CombineRgn(regions[to], regions[a], regions[b], std::min(step - 5, RGN_COPY));
                masks[to] = Combined(masks[a], masks[b], std::min(step - 5, RGN_COPY));
        }
        const Rects rects = RectsOf(regions[to]);
        RECT box{9, 9, 9, 9};
        ASSERT_EQ(MaskOf(rects), masks[to]);
        ASSERT_TRUE(AreBanded(rects));
        ASSERT_EQ(GetRgnBox(regions[to], &box), KindOf(rects));
        ASSERT_TRUE(box == BoundsOf(rects));
        if (i % 100 != 0) continue;
        board.Wipe();
        PatBlt(dc, -5, -5, 100, 100, WHITENESS);
        GetClipBox(dc, &box);
        Mask inside{}, seen{};
        for (int at = 0; at < kSize * kSize; ++at) {
            const int x = at % kSize, y = at / kSize;
            if (PtInRegion(regions[to], x, y)) inside[static_cast<std::size_t>(y)] |= 1u << x;
            if (board.Raw(x, y) != 0) seen[static_cast<std::size_t>(y)] |= 1u << x;
        }
        ASSERT_EQ(inside, masks[to]);
        ASSERT_EQ(seen, clip);
        const HRGN visible = CreateRectRgn(0, 0, 1, 1);
        if (GetClipRgn(dc, visible) == 0) CombineRgn(visible, whole, nullptr, RGN_COPY);
        ASSERT_TRUE(box == BoundsOf(RectsOf(visible)));
        DeleteObject(visible);
    }
    for (const HRGN region : {whole, regions[0], regions[1], regions[2], regions[3]})
        DeleteObject(region);
}

TEST(Region, MovingBeyond32BitsLosesWhatLeavesThem) {
    struct Row {
        Rects rects;
        int dx, dy;
        Rects moved;
    };
    const Row rows[] = {
        {{{kMin, kMin, kMax, kMax}}, 1, -1, {{kMin + 1, kMin, kMax, kMax - 1}}},
        {{{kMin, kMin, kMax, kMax}}, kMax, kMin, {{-1, kMin, kMax, -1}}},
        {{{kMax - 9, 0, kMax, 5}}, kMin, 0, {{-10, 0, -1, 5}}},
        {{{kMax - 9, 0, kMax, 5}}, 9, 0, {}},
        {{{0, kMin, 5, kMin + 9}}, 0, -4, {{0, kMin, 5, kMin + 5}}},
        {{{0, 0, 9, 1}, {0, 1, 4, 2}}, kMax - 6, 0, {{kMax - 6, 0, kMax, 1}, {kMax - 6, 1, kMax - 2, 2}}},
    };
    for (const Row& row : rows) {
        const HRGN region = RegionOf(row.rects);
        EXPECT_EQ(OffsetRgn(region, row.dx, row.dy), KindOf(row.moved));
        EXPECT_TRUE(RectsOf(region) == row.moved) << row.rects[0].left << " moved by " << row.dx;
        DeleteObject(region);
    }
}

TEST(Region, UnknownModesFailAndChangeNothing) {
    const HRGN good = CreateRectRgn(1, 1, 3, 3);
    for (const int mode : {kMin, -1, 0, 6, kMax})
        EXPECT_EQ(CombineRgn(good, good, good, mode), ERROR);
    EXPECT_EQ(CombineRgn(good, good, nullptr, RGN_COPY), SIMPLEREGION);
    EXPECT_EQ(GetRgnBox(good, nullptr), ERROR);
    EXPECT_TRUE(RectsOf(good) == (Rects{{1, 1, 3, 3}}));
    DeleteObject(good);
}

TEST(Region, DataThatIsCutShortIsRefused) {
    struct {
        RGNDATAHEADER header;
        RECT rects[2];
    } data{{}, {{0, 0, 2, 2}, {4, 4, 6, 6}}};
    struct Row {
        DWORD bytes, headerSize, type, count;
        bool made;
    };
    const Row rows[] = {{64, 32, RDH_RECTANGLES, 2, true},           {63, 32, RDH_RECTANGLES, 2, false},
                        {64, 32, RDH_RECTANGLES, 0x10000002, false}, {31, 32, RDH_RECTANGLES, 0, false},
                        {64, 31, RDH_RECTANGLES, 2, false},          {64, 48, RDH_RECTANGLES, 2, false},
                        {64, 0xFFFFFFFF, RDH_RECTANGLES, 0, false},  {64, 32, 0, 2, false}};
    for (const Row& row : rows) {
        data.header = {row.headerSize, row.type, row.count, 32, {}};
        const HRGN region = ExtCreateRegion(nullptr, row.bytes, reinterpret_cast<const RGNDATA*>(&data));
        EXPECT_EQ(region != nullptr, row.made) << row.bytes << ' ' << row.headerSize << ' ' << row.count;
        DeleteObject(region);
    }
    EXPECT_EQ(ExtCreateRegion(nullptr, 100, nullptr), nullptr);
    const HRGN region = CreateRectRgn(1, 2, 3, 4);
    EXPECT_EQ(GetRegionData(region, 47, reinterpret_cast<RGNDATA*>(&data)), 0u);
    EXPECT_EQ(GetRegionData(region, 64, reinterpret_cast<RGNDATA*>(&data)), 48u);
    DeleteObject(region);
}

TEST(Clip, OutlastsRegionAndBitmap) {
    Board board(kLayouts[7], 8, 8);
    const HRGN region = CreateRectRgn(-50, 2, 500, 500), read = CreateRectRgn(0, 0, 1, 1);
    EXPECT_EQ(SelectClipRgn(board.Dc(), region), SIMPLEREGION);
    OffsetRgn(region, 100, 100);
    DeleteObject(region);
    struct Row {
        HBITMAP bitmap;
        RECT visible;
    };
    for (const Row& row : {Row{CreateBitmap(3, 12, 1, 32, nullptr), {0, 2, 3, 12}},
                           Row{CreateBitmap(20, 1, 1, 1, nullptr), {}}, Row{board.Handle(), {0, 2, 8, 8}}}) {
        SelectObject(board.Dc(), row.bitmap);
        RECT box{};
        EXPECT_EQ(GetClipBox(board.Dc(), &box), row.visible.right == 0 ? NULLREGION : SIMPLEREGION);
        EXPECT_TRUE(box == row.visible);
        EXPECT_EQ(GetClipRgn(board.Dc(), read), 1);
        EXPECT_TRUE(RectsOf(read) == (Rects{{-50, 2, 500, 500}}));
        SelectObject(board.Dc(), board.Handle());
        if (row.bitmap != board.Handle()) DeleteObject(row.bitmap);
    }
    DeleteObject(read);
}

}  // namespace
