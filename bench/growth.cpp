#include "bench/growth.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <memory>
#include <random>
#include <utility>
#include <vector>

#include "bench/painted_work.h"
#include "bench/plot.h"
#include "bench/rings.h"
#include "bench/runner.h"
#include "zul/scaler/scaler.h"

namespace zulbench {
namespace {

constexpr double kSeconds = 0.1;  ///< for the rounds of a sample
constexpr double kSlowest = 1.0;  ///< seconds: who would take longer for one run is left out
constexpr COLORREF kInk = 0x633110;

/// Does the work of a given amount; what it takes to prepare that is not timed.
using Step = std::function<std::function<void()>(double amount)>;

std::vector<double> HalfDecades(double from, double to) {
    std::vector<double> amounts;
    for (double amount = from; amount <= to * 1.01; amount *= std::sqrt(10.0))
        amounts.push_back(std::round(amount));
    return amounts;
}

Series Grow(const std::string& name, const std::vector<double>& amounts, const Step& step) {
    Series series{name, {}};
    for (const double amount : amounts) {
        if (!series.samples.empty()) {
            const Sample& last = series.samples.back();
            if (last.seconds * amount / last.amount > kSlowest) break;
        }
        Contest contest;
        contest.ways.push_back({Side::Classes, "", step(amount)});
        series.samples.push_back({amount, Measure(contest, kSeconds).times[0] * 1e-9});
    }
    return series;
}

void Report(const Plot& plot, const std::string& path) {
    std::printf("%s\n%-28s", plot.title.c_str(), plot.amount.c_str());
    for (const Sample& sample : plot.series[0].samples)
        std::printf(" %9.3g", sample.amount);
    std::printf("  steepest\n");
    for (const Series& series : plot.series) {
        std::printf("%-28s", (series.name + ", ns each").c_str());
        for (const Sample& sample : series.samples)
            std::printf(" %9.3g", sample.seconds * 1e9 / sample.amount);
        std::printf("  %8.2f\n", series.Steepest());
    }
    std::printf("\n");
    std::fflush(stdout);
    WritePlot(path, plot);
}

// --- points ---

/// A line of this many points in short steps all over the surface.
std::vector<zul::TLongPoint> Wander(std::size_t count) {
    std::mt19937 random(2);
    std::uniform_int_distribution<std::int32_t> step(-6, 6);
    zul::TLongPoint at{kWidth / 2, kHeight / 2};
    std::vector<zul::TLongPoint> points(count);
    for (zul::TLongPoint& point : points) {
        point = at;
        at.X = std::clamp(at.X + step(random), 0, kWidth - 1);
        at.Y = std::clamp(at.Y + step(random), 0, kHeight - 1);
    }
    return points;
}

Plot GrowPoints() {
    const std::vector<double> amounts = HalfDecades(1e3, 1e7);
    const std::vector<zul::TLongPoint> points = Wander(static_cast<std::size_t>(amounts.back()));
    Plot plot{"One polyline", "points", {}};
    Painters painters = OurPainters();
    painters.pop_back();  // without 16 bits
    const Painters peers = PeerPainters();
    painters.insert(painters.end(), peers.begin(), peers.end());
    for (const std::shared_ptr<Painter>& painter : painters) {
        painter->Prepare({}, kInk, Shape::Polyline);
        const char* name =
            painter->GetSide() == Side::Peer ? painter->GetName() : SideName(painter->GetSide());
        plot.series.push_back(Grow(name, amounts, [&](double amount) {
            const auto figure = std::make_shared<Figure>();
            figure->device.assign(points.begin(), points.begin() + static_cast<std::ptrdiff_t>(amount));
            figure->map.Append(points.data(), static_cast<std::uint32_t>(amount), true);
            return [painter, figure] {
                painter->Polyline(*figure);
                painter->Finish();
            };
        }));
    }
    return plot;
}

// --- surface ---

Plot GrowSurface() {
    const auto rings = std::make_shared<std::vector<zul::CPoints>>(WorldRings());
    const std::vector<double> amounts{1e5, 3e5, 1e6, 2e6, 4e6, 8e6, 1.6e7};
    const auto surfaceOf = [](double pixels) {
        const std::int32_t height = static_cast<std::int32_t>(std::sqrt(pixels * 0.75));
        return std::make_shared<Surface>(height * 4 / 3, height);
    };
    Plot plot{"A surface of growing size", "pixels", {}};
    plot.series.push_back(Grow("copy", amounts, [&](double amount) {
        const auto from = surfaceOf(amount), to = surfaceOf(amount);
        return [from, to] {
            to->GetCanvas().BitBlt(0, 0, to->GetWidth(), to->GetHeight(), &from->GetCanvas(), 0, 0,
                                   zul::CBitmap::RopSourceCopy);
        };
    }));
    plot.series.push_back(Grow("memcpy", amounts, [&](double amount) {
        const auto from = surfaceOf(amount), to = surfaceOf(amount);
        const std::size_t size = std::size_t{4} * static_cast<std::size_t>(to->GetWidth() * to->GetHeight());
        return [from, to, size] { std::memcpy(to->GetPixels(), from->GetPixels(), size); };
    }));
    plot.series.push_back(Grow("fill", amounts, [&](double amount) {
        const auto surface = surfaceOf(amount);
        return [surface] {
            surface->GetCanvas().FillRect(0, 0, surface->GetWidth(), surface->GetHeight(), nullptr);
        };
    }));
    plot.series.push_back(Grow("whole frame, world", amounts, [&](double amount) {
        const auto surface = surfaceOf(amount);
        const auto scaler = std::make_shared<zul::CScaler>();
        const zul::TSize size{surface->GetWidth(), surface->GetHeight()};
        scaler->InitScaler({-32767, -24575, 32767, 24575}, size, size, 37.8, 1.0, 0.0);
        return [surface, scaler, rings] {
            zul::CCanvas& canvas = surface->GetCanvas();
            canvas.SetScaler(scaler.get());
            for (zul::CPoints& ring : *rings)
                canvas.Polygon(&ring);
        };
    }));
    return plot;
}

// --- clip ---

/// Clips to about this many rectangles, a pixel apart, all over the surface.
void ClipToCells(HDC device, double amount) {
    const auto across = static_cast<LONG>(std::lround(std::sqrt(amount * 4.0 / 3.0)));
    const auto down = static_cast<LONG>(std::lround(amount / static_cast<double>(across)));
    std::vector<RECT> cells;
    for (LONG j = 0; j < down; ++j)
        for (LONG i = 0; i < across; ++i)
            cells.push_back({i * kWidth / across, j * kHeight / down, (i + 1) * kWidth / across - 1,
                             (j + 1) * kHeight / down - 1});
    const std::size_t bytes = cells.size() * sizeof(RECT);
    std::vector<char> data(sizeof(RGNDATAHEADER) + bytes);
    const RGNDATAHEADER header{sizeof header, RDH_RECTANGLES, static_cast<DWORD>(cells.size()),
                               static_cast<DWORD>(bytes), kWholeSurface};
    std::memcpy(data.data(), &header, sizeof header);
    std::memcpy(data.data() + sizeof header, cells.data(), bytes);
    const HRGN region = ::ExtCreateRegion(nullptr, static_cast<DWORD>(data.size()),
                                          reinterpret_cast<const RGNDATA*>(data.data()));
    ::SelectClipRgn(device, region);
    ::DeleteObject(region);
}

struct Triangle {
    zul::TLongPoint corners[3];
};

std::vector<Triangle> Triangles(std::size_t count, std::int32_t reach) {
    std::mt19937 random(4);
    std::uniform_int_distribution<std::int32_t> x(0, kWidth), y(0, kHeight), offset(-reach, reach);
    std::vector<Triangle> triangles(count);
    for (Triangle& triangle : triangles) {
        const zul::TLongPoint at{x(random), y(random)};
        for (zul::TLongPoint& corner : triangle.corners)
            corner = {at.X + offset(random), at.Y + offset(random)};
    }
    return triangles;
}

Plot GrowClip() {
    Plot plot{"Through a clip of growing detail", "clip rectangles", {}};
    const std::pair<const char*, std::vector<Triangle>> works[] = {
        {"10,000 triangles", Triangles(10'000, 40)}, {"500 large triangles", Triangles(500, 400)}};
    for (const auto& work : works) {
        plot.series.push_back(Grow(work.first, HalfDecades(1, 1e5), [&](double amount) {
            const auto surface = std::make_shared<Surface>();
            surface->GetCanvas().GetPen().SetType(zul::CPen::PenNone);
            ClipToCells(surface->GetDevice(), amount);
            return [surface, &work] {
                for (const Triangle& triangle : work.second)
                    surface->GetCanvas().Polygon(triangle.corners, 3);
            };
        }));
    }
    return plot;
}

// --- figures ---

Plot GrowFigures() {
    const std::vector<double> amounts = HalfDecades(1, 1e6);
    const std::vector<Triangle> triangles = Triangles(static_cast<std::size_t>(amounts.back()), 8);
    using Draw = void (*)(zul::CCanvas&, const Triangle&);
    static const zul::CString kLabel(u"Label");
    const std::pair<const char*, Draw> works[] = {
        {"triangles",
         [](zul::CCanvas& canvas, const Triangle& triangle) { canvas.Polygon(triangle.corners, 3); }},
        {"rectangles",
         [](zul::CCanvas& canvas, const Triangle& triangle) {
             const zul::TLongPoint at = triangle.corners[0];
             canvas.FillRect(at.X, at.Y, at.X + 8, at.Y + 8, nullptr);
         }},
        {"lines",
         [](zul::CCanvas& canvas, const Triangle& triangle) {
             canvas.Line(triangle.corners[0].X, triangle.corners[0].Y, triangle.corners[1].X,
                         triangle.corners[1].Y);
         }},
        {"labels",
         [](zul::CCanvas& canvas, const Triangle& triangle) {
             canvas.OutText(&kLabel, triangle.corners[0].X, triangle.corners[0].Y);
         }},
    };
    Plot plot{"A frame of growing content", "figures", {}};
    for (const auto& work : works) {
        plot.series.push_back(Grow(work.first, amounts, [&](double amount) {
            const auto surface = std::make_shared<Surface>();
            const auto count = static_cast<std::size_t>(amount);
            return [surface, count, &triangles, draw = work.second] {
                for (std::size_t i = 0; i < count; ++i)
                    draw(surface->GetCanvas(), triangles[i]);
            };
        }));
    }
    return plot;
}

}  // namespace

void MeasureGrowth(const std::string& folder) {
    Report(GrowPoints(), folder + "/growth_points.png");
    Report(GrowSurface(), folder + "/growth_surface.png");
    Report(GrowClip(), folder + "/growth_clip.png");
    Report(GrowFigures(), folder + "/growth_figures.png");
}

}  // namespace zulbench
