#include "bench/painted_work.h"

#include <algorithm>

namespace zulbench {
namespace {

/// What a figure can reach of the surface with a line of one pixel.
RECT VisibleBox(const Figure& figure) {
    zul::TLongRect box{kWidth, kHeight, 0, 0};
    for (const zul::TLongPoint at : figure.device) {
        box = {std::min(box.MinX, at.X), std::min(box.MinY, at.Y), std::max(box.MaxX, at.X + 1),
               std::max(box.MaxY, at.Y + 1)};
    }
    return {std::max(box.MinX, 0), std::max(box.MinY, 0), std::min(box.MaxX, kWidth),
            std::min(box.MaxY, kHeight)};
}

std::size_t SampleOf(const Work& work) {
    return work.sample > 0 ? work.sample : work.figures.size();
}

void DrawFigure(Painter& painter, const Work& work, Figure& figure) {
    if (work.shape == Shape::Polyline) {
        painter.Polyline(figure);
    } else {
        painter.Polygon(figure);
    }
}

Picture Sample(Painter& painter, Work& work) {
    painter.FillRect(kWholeSurface, 0);
    Draw(painter, work, SampleOf(work));
    return painter.GetPicture();
}

}  // namespace

void Draw(Painter& painter, Work& work, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i)
        DrawFigure(painter, work, work.figures[i]);
    painter.Finish();
}

std::vector<Way> PaintedWays(const std::shared_ptr<Work>& work,
                             double (*compare)(const Picture&, const Picture&), double allowed) {
    Painters painters = OurPainters();
    const Painters peers = PeerPainters();
    painters.insert(painters.end(), peers.begin(), peers.end());
    const auto first = std::make_shared<Picture>();
    std::vector<Way> ways;
    for (const std::shared_ptr<Painter>& painter : painters) {
        if (!painter->Prepare(work->line, work->color, work->shape)) continue;
        const bool isFirst = ways.empty();
        ways.push_back({painter->GetSide(), painter->GetName(),
                        [painter, work] { Draw(*painter, *work, work->figures.size()); },
                        [painter, work, first, isFirst, compare] {
                            Picture picture = Sample(*painter, *work);
                            if (isFirst) *first = picture;
                            return compare(*first, picture);
                        },
                        allowed});
    }
    return ways;
}

PixelRuns::PixelRuns(Work& work) {
    const auto surface = std::make_shared<Surface>();
    const std::shared_ptr<Painter> painter = MakeDevicePainter(surface);
    painter->Prepare(work.line, work.color, work.shape);
    for (Figure& figure : work.figures) {
        const RECT box = VisibleBox(figure);
        if (box.left >= box.right || box.top >= box.bottom) continue;
        painter->FillRect(box, 0);
        DrawFigure(*painter, work, figure);
        ::GdiFlush();
        Collect(*surface, box);
    }
}

void PixelRuns::Collect(const Surface& surface, const RECT& box) {
    for (LONG y = box.top; y < box.bottom; ++y) {
        const std::uint32_t* row = surface.GetPixels() + std::ptrdiff_t{y} * kWidth;
        for (LONG x = box.left; x < box.right;) {
            LONG end = x + 1;
            while (end < box.right && row[end] == row[x])
                ++end;
            if (row[x] != 0) {
                m_Runs.push_back({static_cast<std::uint32_t>(y * kWidth + x),
                                  static_cast<std::uint32_t>(end - x), row[x]});
            }
            x = end;
        }
    }
}

void PixelRuns::PutDown(std::uint32_t* pixels) const {
    for (const Run& run : m_Runs)
        std::fill_n(pixels + run.offset, run.length, run.pixel);
}

}  // namespace zulbench
