#include "bench/blocks.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <memory>
#include <random>
#include <utility>

#include "bench/contest.h"
#include "bench/painter.h"

namespace zulbench {
namespace {

constexpr std::int32_t kRectSide = 100;
constexpr std::size_t kPixels = std::size_t{kWidth} * kHeight;

using Memory = std::vector<std::uint32_t>;

// --- fills ---

struct Rects {
    std::vector<RECT> areas;
    std::vector<COLORREF> colors;
};

Rects WholeSurface() {
    return {{kWholeSurface}, {ColorOf(77)}};
}

Rects ManyRects(std::size_t count) {
    std::mt19937 random(8);
    std::uniform_int_distribution<std::int32_t> x(0, kWidth - kRectSide), y(0, kHeight - kRectSide);
    Rects rects;
    while (rects.areas.size() < count) {
        const LONG left = x(random), top = y(random);
        rects.areas.push_back({left, top, left + kRectSide, top + kRectSide});
        rects.colors.push_back(ColorOf(static_cast<std::uint32_t>(random())));
    }
    return rects;
}

Contest FillContest(const std::string& name, const std::string& unit, Rects allRects) {
    const auto rects = std::make_shared<Rects>(std::move(allRects));
    Painters painters = OurPainters();
    const Painters peers = PeerPainters();
    painters.insert(painters.end(), peers.begin(), peers.end());
    std::vector<Way> ways;
    for (const std::shared_ptr<Painter>& painter : painters) {
        painter->Prepare({}, 0, Shape::Polyline);
        ways.push_back(
            {painter->GetSide(), painter->GetName(),
             [painter, rects] {
                 for (std::size_t i = 0; i < rects->areas.size(); ++i)
                     painter->FillRect(rects->areas[i], rects->colors[i]);
             },
             [painter, first = painters[0]] { return Unlike(first->GetPicture(), painter->GetPicture()); }});
    }
    const auto memory = std::make_shared<Memory>(kPixels);
    ways.push_back({Side::Limit, "", [rects, memory] {
                        for (std::size_t i = 0; i < rects->areas.size(); ++i) {
                            const RECT& area = rects->areas[i];
                            for (LONG y = area.top; y < area.bottom; ++y)
                                std::fill_n(memory->data() + std::ptrdiff_t{y} * kWidth + area.left,
                                            area.right - area.left, rects->colors[i]);
                        }
                    }});
    const auto units = static_cast<double>(rects->areas.size());
    return {name, unit, units, 1.0, std::move(ways)};
}

// --- blocks ---

void InvertPlain(const std::uint32_t* from, std::uint32_t* to) {
    for (std::size_t i = 0; i < kPixels; ++i)
        to[i] ^= from[i];
}

void StretchPlain(const std::uint32_t* from, std::uint32_t* to) {
    for (std::int32_t y = 0; y < kHeight; y += 2, from += kWidth, to += 2 * kWidth) {
        for (std::int32_t x = 0; x < kWidth / 2; ++x)
            to[2 * x] = to[2 * x + 1] = from[x];
        std::memcpy(to + kWidth, to, kWidth * sizeof *to);
    }
}

void CopyKeyedPlain(const std::uint32_t* from, std::uint32_t* to) {
    for (std::int32_t y = 0; y < kKeyedSide; ++y, from += kWidth, to += kWidth) {
        for (std::int32_t x = 0; x < kKeyedSide; ++x)
            to[x] = from[x] != 0 ? from[x] : to[x];
    }
}

/// Two surfaces of a depth; the source's pixels are noise in which every fourth pixel is black.
struct BlockBench {
    explicit BlockBench(WORD bits) : source(kWidth, kHeight, bits), target(kWidth, kHeight, bits) {
        const Picture noise = Noise();
        auto pixel = noise.pixels.begin();
        for (std::int32_t y = 0; y < kHeight; ++y)
            for (std::int32_t x = 0; x < kWidth; ++x)
                ::SetPixel(source.GetDevice(), x, y, *pixel++);
        ::SetStretchBltMode(target.GetDevice(), COLORONCOLOR);
    }

    static Picture Noise() {
        std::mt19937 random(9);
        Picture noise{kWidth, kHeight, Memory(kPixels)};
        for (std::uint32_t& pixel : noise.pixels) {
            const auto number = static_cast<std::uint32_t>(random());
            pixel = number % 4 == 0 ? 0 : ColorOf(number / 4);
        }
        return noise;
    }

    void RunClasses(Block block) {
        zul::CCanvas &to = target.GetCanvas(), &from = source.GetCanvas();
        switch (block) {
            case Block::Copy:
                return to.BitBlt(0, 0, kWidth, kHeight, &from, 0, 0, zul::CBitmap::RopSourceCopy);
            case Block::Invert:
                return to.BitBlt(0, 0, kWidth, kHeight, &from, 0, 0, zul::CBitmap::RopSourceInvert);
            case Block::Stretch:
                return to.StretchBlt(0, 0, kWidth, kHeight, &from, 0, 0, kWidth / 2, kHeight / 2,
                                     zul::CBitmap::RopSourceCopy);
            case Block::Keyed:
                return to.Transparent(0, 0, kKeyedSide, kKeyedSide, &from, 0, 0, kKeyedSide, kKeyedSide, 0);
        }
    }
    void RunDevice(Block block) {
        const HDC to = target.GetDevice(), from = source.GetDevice();
        switch (block) {
            case Block::Copy:
                ::BitBlt(to, 0, 0, kWidth, kHeight, from, 0, 0, SRCCOPY);
                return;
            case Block::Invert:
                ::BitBlt(to, 0, 0, kWidth, kHeight, from, 0, 0, SRCINVERT);
                return;
            case Block::Stretch:
                ::StretchBlt(to, 0, 0, kWidth, kHeight, from, 0, 0, kWidth / 2, kHeight / 2, SRCCOPY);
                return;
            case Block::Keyed:
                ::TransparentImage(to, 0, 0, kKeyedSide, kKeyedSide, from, 0, 0, kKeyedSide, kKeyedSide, 0);
                return;
        }
    }

    /// The target after one run on a white surface.
    template <typename Run>
    Picture Result(const Run& run) {
        ::PatBlt(target.GetDevice(), 0, 0, kWidth, kHeight, WHITENESS);
        run();
        return target.GetPicture();
    }

    Surface source, target;
};

struct PeerMemory {
    PeerMemory() : source(BlockBench(32).source.GetPicture().pixels), target(kPixels) {}

    template <typename Run>
    Picture Result(const Run& run) {
        std::fill(target.begin(), target.end(), 0xFFFFFFu);
        run();
        Picture picture{kWidth, kHeight, target};
        for (std::uint32_t& pixel : picture.pixels)
            pixel &= 0xFFFFFFu;
        return picture;
    }

    Memory source, target;
};

struct BlockRow {
    const char* name;
    Block block;
    double goal;
    Side plainSide;
    void (*plain)(const std::uint32_t*, std::uint32_t*);
};

Contest BlockContest(const BlockRow& row) {
    const Block block = row.block;
    const auto bench = std::make_shared<BlockBench>(WORD{32}),
               bench16 = std::make_shared<BlockBench>(WORD{16});
    const auto memory = std::make_shared<PeerMemory>();
    const auto first = std::make_shared<Picture>(bench->Result([&] { bench->RunClasses(block); }));
    std::vector<Way> ways;
    const auto add = [&](Side side, const std::string& name, std::function<void()> run, auto owner) {
        ways.push_back({side, name, run, [=] { return Unlike(*first, owner->Result(run)); }});
    };
    add(
        Side::Classes, "", [bench, block] { bench->RunClasses(block); }, bench);
    add(
        Side::Device, "", [bench, block] { bench->RunDevice(block); }, bench);
    add(
        Side::Classes16, "", [bench16, block] { bench16->RunClasses(block); }, bench16);
    for (BlockPeer& peer : BlockPeers(block, memory->source.data(), memory->target.data()))
        add(Side::Peer, peer.name, std::move(peer.run), memory);
    add(
        row.plainSide, "plain loop",
        [memory, plain = row.plain] { plain(memory->source.data(), memory->target.data()); }, memory);
    return {row.name, "call", 1, row.goal, std::move(ways)};
}

}  // namespace

std::vector<Contest> BlockContests() {
    static const BlockRow kRows[] = {
        {"copy the surface", Block::Copy, 1.0, Side::Limit,
         [](const std::uint32_t* from, std::uint32_t* to) { std::memcpy(to, from, kPixels * sizeof *to); }},
        {"exclusive-or copy of the surface", Block::Invert, 1.0, Side::Peer, InvertPlain},
        {"stretch 400 x 300 to 800 x 600", Block::Stretch, 80.0 / 210.0, Side::Limit, StretchPlain},
        {"colour-keyed copy 256 x 256", Block::Keyed, 10.0 / 9.1, Side::Limit, CopyKeyedPlain},
    };
    std::vector<Contest> contests;
    contests.push_back(FillContest("fill the surface", "call", WholeSurface()));
    contests.push_back(FillContest("1000 rectangles of 100 x 100", "rect", ManyRects(1000)));
    for (const BlockRow& row : kRows)
        contests.push_back(BlockContest(row));
    return contests;
}

}  // namespace zulbench
