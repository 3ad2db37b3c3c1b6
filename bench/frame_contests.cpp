#include <algorithm>
#include <memory>
#include <string>
#include <thread>
#include <utility>

#include "bench/contest.h"
#include "bench/painted_work.h"
#include "bench/plain_mapping.h"
#include "bench/rings.h"
#include "zul/scaler/scaler.h"

namespace zulbench {
namespace {

/// Drawn by a thread in one go.
constexpr int kFrames = 8;
constexpr COLORREF kWater = 0xE7E7CE;
constexpr COLORREF kLand = 0xC6E7F7;
constexpr COLORREF kBorder = 0x635242;

using Rings = std::shared_ptr<std::vector<zul::CPoints>>;

zul::TRect BoxOf(const zul::CPoints& ring) {
    zul::TRect box{};
    ring.GetMbr(box);
    return box;
}

bool Misses(const zul::TRect& box, const zul::TLongRect& view) {
    return box.MaxX < view.MinX || box.MinX > view.MaxX || box.MaxY < view.MinY || box.MinY > view.MaxY;
}

/// The world, or a part of it that is smaller by `zoom`.
void SetUp(zul::CScaler& scaler, std::int32_t zoom) {
    const zul::TSize size{kWidth, kHeight};
    scaler.InitScaler({-32767, -24575, 32767, 24575}, size, size, 37.8, 1.0, 0.0);
    // Central Europe: long coasts, many borders.
    const zul::TLongPoint center{zoom > 1 ? 2200 : 0, zoom > 1 ? 8900 : 0};
    scaler.SetVisibleBox(center.X - 32767 / zoom, center.Y - 24575 / zoom, center.X + 32767 / zoom,
                         center.Y + 24575 / zoom, true);
}

/// The points of a ring; `thinned`: without those that fall on the pixel of the one before.
std::vector<zul::TPoint> PointsOf(const zul::CPoints& ring, const PlainMapping& plain, bool thinned) {
    std::vector<zul::TPoint> points;
    for (std::uint32_t i = 0; i < ring.GetCount(); ++i) {
        const zul::TPoint at = ring.GetPoints()[i];
        if (!thinned || points.empty() || plain(points.back()) != plain(at)) points.push_back(at);
    }
    return points;
}

void MapPlain(const PlainMapping& plain, const std::vector<zul::TPoint>& points,
              std::vector<zul::TLongPoint>& out) {
    out.resize(points.size());
    std::transform(points.begin(), points.end(), out.begin(), plain);
}

/// A frame from map units to pixels: the sea, then each ring filled and outlined.
struct FrameBench {
    FrameBench(Rings allRings, std::int32_t zoom) : rings(std::move(allRings)) {
        SetUp(scaler, zoom);
        scaler.GetVisibleBox(view);
        work.shape = Shape::Ring;
        work.color = kBorder;
        for (const zul::CPoints& ring : *rings) {
            if (Misses(BoxOf(ring), view)) continue;
            const PlainMapping plain(scaler);
            thinned.push_back(PointsOf(ring, plain, true));
            Figure figure;
            figure.fill = kLand;
            MapPlain(plain, thinned.back(), figure.device);
            work.figures.push_back(std::move(figure));
        }
    }

    /// Everything goes to the canvas; what is in view is the library's to find out.
    void DrawClasses(Surface& surface) {
        zul::CCanvas& canvas = surface.GetCanvas();
        canvas.SetPretranslation(false);
        canvas.GetBrush().SetColor(static_cast<std::int32_t>(kWater));
        canvas.FillRect(0, 0, kWidth, kHeight, nullptr);
        canvas.SetPretranslation(true);
        canvas.GetBrush().SetColor(static_cast<std::int32_t>(kLand));
        for (zul::CPoints& ring : *rings)
            canvas.Polygon(&ring);
    }

    /// The rings in view, mapped beforehand.
    void DrawMapped(Painter& painter) {
        painter.FillRect(kWholeSurface, kWater);
        Draw(painter, work, work.figures.size());
    }

    /// The rings in view, thinned beforehand, mapped on the way.
    void DrawPeer(Painter& painter) {
        painter.FillRect(kWholeSurface, kWater);
        const PlainMapping plain(scaler);
        scratch.fill = kLand;
        for (const std::vector<zul::TPoint>& points : thinned) {
            MapPlain(plain, points, scratch.device);
            painter.Polygon(scratch);
        }
        painter.Finish();
    }

    Rings rings;
    zul::CScaler scaler;
    zul::TLongRect view{};
    std::vector<std::vector<zul::TPoint>> thinned;  ///< the rings in view, for peers
    Work work;
    Figure scratch;
};

void TakeView(zul::CCanvas& canvas, zul::CScaler& scaler) {
    canvas.SetScaler(&scaler);
    canvas.SetListClipping(false);
    canvas.GetPen().SetColor(static_cast<std::int32_t>(kBorder));
}

Contest FrameContest(const std::string& name, const Rings& rings, std::int32_t zoom, double goal) {
    const auto bench = std::make_shared<FrameBench>(rings, zoom);
    std::vector<Way> ways;
    std::shared_ptr<Surface> first;
    for (const WORD bits : {WORD{32}, WORD{16}}) {
        const auto surface = std::make_shared<Surface>(kWidth, kHeight, bits);
        TakeView(surface->GetCanvas(), bench->scaler);
        if (!first) first = surface;
        ways.push_back({bits == 32 ? Side::Classes : Side::Classes16, "",
                        [bench, surface] { bench->DrawClasses(*surface); },
                        [first, surface] { return Unlike(first->GetPicture(), surface->GetPicture()); }});
    }
    const std::shared_ptr<Painter> device = MakeDevicePainter(std::make_shared<Surface>());
    device->Prepare(bench->work.line, kBorder, Shape::Ring);
    ways.push_back({Side::Device, "", [bench, device] { bench->DrawMapped(*device); },
                    [first, device] { return Unlike(first->GetPicture(), device->GetPicture()); }});
    for (const std::shared_ptr<Painter>& peer : PeerPainters()) {
        if (!peer->Prepare(bench->work.line, kBorder, Shape::Ring)) continue;
        ways.push_back({Side::Peer, peer->GetName(), [bench, peer] { bench->DrawPeer(*peer); },
                        [first, peer] { return Strays(first->GetPicture(), peer->GetPicture()); }, 0.01});
    }
    const auto runs = std::make_shared<PixelRuns>(bench->work);
    const auto pixels = std::make_shared<std::vector<std::uint32_t>>(std::size_t{kWidth} * kHeight);
    ways.push_back({Side::Limit, "", [runs, pixels] {
                        std::fill(pixels->begin(), pixels->end(), kWater);
                        runs->PutDown(pixels->data());
                    }});
    return {name, "frame", 1, goal, std::move(ways)};
}

/// All rings filled only, from pixels; `thinned`: without points that fall on the one before.
Contest FillContest(const std::string& name, const Rings& rings, bool thinned, double goal) {
    zul::CScaler scaler;
    SetUp(scaler, 1);
    const auto work = std::make_shared<Work>();
    work->shape = Shape::Ring;
    work->line.width = 0;
    const PlainMapping plain(scaler);
    for (const zul::CPoints& ring : *rings) {
        Figure figure;
        figure.fill = kLand;
        MapPlain(plain, PointsOf(ring, plain, thinned), figure.device);
        figure.map.Append(figure.device.data(), static_cast<std::uint32_t>(figure.device.size()), true);
        if (figure.device.size() > 2) work->figures.push_back(std::move(figure));
    }
    return {name, "frame", 1, goal, PaintedWays(work, Strays, 0.01)};
}

/// A step to the right or back: what stays is moved, what comes in is drawn; or all is drawn anew.
struct ScrollBench {
    static constexpr std::int32_t kStep = 10;         ///< pixels
    static constexpr std::int32_t kUnitsInPixel = 9;  ///< odd: no point lies halfway between two pixels

    explicit ScrollBench(const Rings& rings)
        : whole(rings, 1), part(rings, 1), scrolled(kWidth, kHeight), strip(kStep, kHeight) {
        const zul::TSize size{kWidth, kHeight};
        whole.scaler.InitScaler({-32767, -32767, 32767, 32767}, size, size, 37.8, 1.0, 0.0);
        const zul::TLongPoint corner{-1400, 6200};  // Europe
        whole.scaler.SetVisibleBox(corner.X, corner.Y, corner.X + kWidth * kUnitsInPixel,
                                   corner.Y + kHeight * kUnitsInPixel, true);
        TakeView(scrolled.GetCanvas(), whole.scaler);
        TakeView(redrawn.GetCanvas(), whole.scaler);
        TakeView(strip.GetCanvas(), part.scaler);
        whole.DrawClasses(scrolled);
    }

    void Scroll() {
        zul::CCanvas& canvas = scrolled.GetCanvas();
        std::int32_t dx = step, dy = 0;
        whole.scaler.Scroll(&canvas, dx, dy);
        canvas.Scroll(-dx, 0, {0, 0, kWidth, kHeight});
        zul::TLongRect box{};
        whole.scaler.GetVisibleBox(box);
        const std::int32_t left = step > 0 ? kWidth - kStep : 0;
        box.MinX += left * kUnitsInPixel;
        box.MaxX = box.MinX + kStep * kUnitsInPixel;
        part.scaler.InitScaler(box, {kStep, kHeight}, {kStep, kHeight}, 37.8, 1.0, 0.0);
        part.DrawClasses(strip);
        canvas.BitBlt(left, 0, kStep, kHeight, &strip.GetCanvas(), 0, 0, zul::CBitmap::RopSourceCopy);
        step = -step;
    }

    FrameBench whole, part;
    Surface scrolled, strip, redrawn;
    std::int32_t step = kStep;
};

Contest ScrollContest(const Rings& rings) {
    const auto bench = std::make_shared<ScrollBench>(rings);
    return {"scroll by 10 pixels",
            "frame",
            1,
            0.0,
            {{Side::Classes, "", [bench] { bench->Scroll(); }},
             {Side::Peer, "drawn anew", [bench] { bench->whole.DrawClasses(bench->redrawn); },
              [bench] { return Unlike(bench->scrolled.GetPicture(), bench->redrawn.GetPicture()); }}}};
}

/// Threads that draw the world at once, a canvas each. The clock adds up what all processors do, so that a
/// frame of many threads that costs more than one thread's shows what they lose to one another.
Contest ThreadsContest(const Rings& rings, std::size_t count) {
    struct Painting {
        explicit Painting(const Rings& all) : bench(std::make_shared<std::vector<zul::CPoints>>(*all), 1) {
            TakeView(surface.GetCanvas(), bench.scaler);
        }
        void Draw() {
            for (int frame = 0; frame < kFrames; ++frame)
                bench.DrawClasses(surface);
        }
        FrameBench bench;
        Surface surface;
    };
    const auto paintings = std::make_shared<std::vector<std::unique_ptr<Painting>>>();
    for (std::size_t i = 0; i < count; ++i)
        paintings->push_back(std::make_unique<Painting>(rings));
    const auto together = [paintings] {
        std::vector<std::thread> threads;
        for (const auto& painting : *paintings)
            threads.emplace_back([&painting] { painting->Draw(); });
        for (std::thread& thread : threads)
            thread.join();
    };
    const auto inTurn = [paintings] {
        for (const auto& painting : *paintings)
            painting->Draw();
    };
    const std::string name = "whole frame, world, " + std::to_string(count) + " threads at once";
    return {name,
            "frame",
            static_cast<double>(count) * kFrames,
            1.1,
            {{Side::Classes, "", together}, {Side::Peer, "one thread", inTurn}}};
}

}  // namespace

std::vector<Contest> ThreadContests() {
    const auto rings = std::make_shared<std::vector<zul::CPoints>>(WorldRings());
    std::vector<Contest> contests;
    for (const std::size_t count : {2, 4, 8})
        contests.push_back(ThreadsContest(rings, count));
    return contests;
}

std::vector<Contest> FrameContests() {
    const auto rings = std::make_shared<std::vector<zul::CPoints>>(WorldRings());
    return {
        FillContest("all rings of the world filled", rings, false, 1.5 / 7.4),
        FillContest("all rings filled, without repeated points", rings, true, 0.0),
        FrameContest("whole frame, world", rings, 1, 2.5 / 4.0),
        FrameContest("whole frame, 20 times zoom", rings, 20, 1.1 / 1.76),
        ScrollContest(rings),
    };
}

}  // namespace zulbench
