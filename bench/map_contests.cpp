#include <memory>
#include <optional>

#include "apps/zulmap/map_reader.h"
#include "apps/zulmap/map_space.h"
#include "bench/contest.h"
#include "bench/pictures.h"
#include "zul/geometry/points.h"
#include "zul/scaler/scaler.h"

namespace zulbench {
namespace {

constexpr std::int32_t kWidth = 800;
constexpr std::int32_t kHeight = 600;
constexpr std::int32_t kWater = 0xECE2CD;
constexpr std::int32_t kLand = 0xC6E6F3;
constexpr std::int32_t kBorder = 0x605040;

/// All rings of a map in map units.
std::vector<zul::CPoints> ReadRings(const std::string& path) {
    const zulmap::MapData map = zulmap::ReadMaps({path}, [](const std::string&, std::size_t) {});
    const zulmap::MapSpace space(map.extent, std::nullopt, kWidth, kHeight, 0.0);
    std::vector<zul::CPoints> rings;
    for (const zulmap::Feature& feature : map.features) {
        for (const zulmap::Area& area : feature.areas) {
            for (const zulmap::Path& ring : area.rings) {
                const std::vector<zul::TPoint> placed = space.PlaceRing(ring);
                if (placed.size() < 3) continue;
                rings.emplace_back(false);
                rings.back().SetPoints(placed.data(), static_cast<std::uint32_t>(placed.size()));
            }
        }
    }
    return rings;
}

void DrawRings(zul::CCanvas& canvas, std::vector<zul::CPoints>& rings, std::int32_t width) {
    canvas.SetPretranslation(false);
    canvas.GetBrush().SetColor(kWater);
    canvas.FillRect(0, 0, width, kHeight, nullptr);
    canvas.SetPretranslation(true);
    canvas.GetBrush().SetColor(kLand);
    for (zul::CPoints& ring : rings) {
        canvas.Polygon(&ring);
    }
}

void SetUp(zul::CCanvas& canvas, zul::CScaler& scaler) {
    canvas.SetScaler(&scaler);
    canvas.SetListClipping(false);
    canvas.GetPen().SetColor(kBorder);
}

/// Both ways begin with map units: the mapping belongs to the work.
struct RingBench {
    RingBench(std::shared_ptr<std::vector<zul::CPoints>> allRings, std::int32_t zoom)
        : pictures(kWidth, kHeight), rings(std::move(allRings)) {
        const zul::TSize size{kWidth, kHeight};
        scaler.InitScaler({-32767, -24575, 32767, 24575}, size, size, 37.8, 1.0, 0.0);
        // Central Europe: long coasts, many borders.
        const zul::TLongPoint center{zoom > 1 ? 2200 : 0, zoom > 1 ? 8900 : 0};
        scaler.SetVisibleBox(center.X - 32767 / zoom, center.Y - 24575 / zoom, center.X + 32767 / zoom,
                             center.Y + 24575 / zoom, true);
        SetUp(pictures.ours.GetCanvas(), scaler);
    }

    void DrawOurs() { DrawRings(pictures.ours.GetCanvas(), *rings, kWidth); }

    void DrawPeer() {
        cairo_t* cairo = pictures.peer.Get();
        pictures.peer.SetColor(kWater);
        cairo_paint(cairo);
        const double scale = scaler.GetScreenToVisible();
        zul::TLongRect view{};
        scaler.GetVisibleBox(view);
        for (const zul::CPoints& ring : *rings) {
            zul::TRect box{};
            ring.GetMbr(box);
            if (box.MaxX < view.MinX || box.MinX > view.MaxX || box.MaxY < view.MinY ||
                box.MinY > view.MaxY) {
                continue;
            }
            const zul::TPoint* points = ring.GetPoints();
            for (std::uint32_t i = 0; i < ring.GetCount(); ++i) {
                cairo_line_to(cairo, (points[i].X - view.MinX) * scale + 0.5,
                              (view.MaxY - points[i].Y) * scale + 0.5);
            }
            cairo_close_path(cairo);
            pictures.peer.SetColor(kLand);
            cairo_fill_preserve(cairo);
            pictures.peer.SetColor(kBorder);
            cairo_stroke(cairo);
        }
    }

    PicturePair pictures;
    zul::CScaler scaler;
    std::shared_ptr<std::vector<zul::CPoints>> rings;
};

/// A step to the right or back: what stays is moved, what comes in is drawn; or all is drawn anew.
struct ScrollBench {
    static constexpr std::int32_t kStep = 10;         ///< pixels
    static constexpr std::int32_t kUnitsInPixel = 9;  ///< odd: no point lies halfway between two pixels

    explicit ScrollBench(std::shared_ptr<std::vector<zul::CPoints>> allRings)
        : scrolled(kWidth, kHeight),
          strip(kStep, kHeight),
          redrawn(kWidth, kHeight),
          rings(std::move(allRings)) {
        const zul::TSize size{kWidth, kHeight};
        scaler.InitScaler({-32767, -32767, 32767, 32767}, size, size, 37.8, 1.0, 0.0);
        const zul::TLongPoint corner{-1400, 6200};  // Europe
        scaler.SetVisibleBox(corner.X, corner.Y, corner.X + kWidth * kUnitsInPixel,
                             corner.Y + kHeight * kUnitsInPixel, true);
        SetUp(scrolled.GetCanvas(), scaler);
        SetUp(redrawn.GetCanvas(), scaler);
        SetUp(strip.GetCanvas(), stripScaler);
        DrawRings(scrolled.GetCanvas(), *rings, kWidth);
    }

    void Scroll() {
        zul::CCanvas& canvas = scrolled.GetCanvas();
        std::int32_t dx = step, dy = 0;
        scaler.Scroll(&canvas, dx, dy);
        canvas.Scroll(-dx, 0, {0, 0, kWidth, kHeight});
        zul::TLongRect box{};
        scaler.GetVisibleBox(box);
        const std::int32_t left = step > 0 ? kWidth - kStep : 0;
        box.MinX += left * kUnitsInPixel;
        box.MaxX = box.MinX + kStep * kUnitsInPixel;
        stripScaler.InitScaler(box, {kStep, kHeight}, {kStep, kHeight}, 37.8, 1.0, 0.0);
        DrawRings(strip.GetCanvas(), *rings, kStep);
        canvas.BitBlt(left, 0, kStep, kHeight, &strip.GetCanvas(), 0, 0, zul::CBitmap::RopSourceCopy);
        step = -step;
    }

    void Redraw() { DrawRings(redrawn.GetCanvas(), *rings, kWidth); }

    double Difference() const {
        std::size_t unlike = 0;
        for (std::size_t i = 0; i < std::size_t{kWidth} * kHeight; ++i) {
            unlike += scrolled.GetView().pixels[i] != redrawn.GetView().pixels[i];
        }
        return static_cast<double>(unlike) / (kWidth * kHeight);
    }

    zul::CScaler scaler;
    zul::CScaler stripScaler;
    zulmap::MemoryPicture scrolled;
    zulmap::MemoryPicture strip;
    zulmap::MemoryPicture redrawn;
    std::shared_ptr<std::vector<zul::CPoints>> rings;
    std::int32_t step = kStep;
};

Contest ContestOf(const std::string& name, std::shared_ptr<std::vector<zul::CPoints>> rings,
                  std::int32_t zoom) {
    const auto bench = std::make_shared<RingBench>(std::move(rings), zoom);
    return {name, [bench] { bench->DrawOurs(); }, [bench] { bench->DrawPeer(); },
            [bench] { return bench->pictures.Difference(); }, 0.01};
}

}  // namespace

std::vector<Contest> MapContests(const std::string& path) {
    const auto rings = std::make_shared<std::vector<zul::CPoints>>(ReadRings(path));
    const auto scroll = std::make_shared<ScrollBench>(rings);
    return {
        ContestOf("countries, whole", rings, 1),
        ContestOf("countries, 20 times", rings, 20),
        {"scroll by 10 pixels (draw anew)", [scroll] { scroll->Scroll(); }, [scroll] { scroll->Redraw(); },
         [scroll] { return scroll->Difference(); }, 0.0},
    };
}

}  // namespace zulbench
