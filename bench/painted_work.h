/// \file
/// Rows whose work is figures: the same figures by every painter.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/painter.h"

namespace zulbench {

/// What is to be drawn.
struct Work {
    std::vector<Figure> figures;
    Shape shape = Shape::Polyline;
    Line line;
    COLORREF color = 0;      ///< of the line
    std::size_t sample = 0;  ///< figures that are drawn to compare pictures; 0: all. Where all would cover
                             ///< the picture, nothing could be seen.
};

void Draw(Painter& painter, Work& work, std::size_t count);

/// A way for each of our and of the peers' painters that can do the work. Its pictures are held against the
/// classes' one by \p compare.
std::vector<Way> PaintedWays(const std::shared_ptr<Work>& work,
                             double (*compare)(const Picture&, const Picture&), double allowed);

/// The pixels of figures as stretches of one colour, found by drawing them. To put them down again is what
/// any painter has to do at least.
class PixelRuns {
public:
    PixelRuns() = default;
    explicit PixelRuns(Work& work);
    /// Takes what is not black within \p box.
    void Collect(const Surface& surface, const RECT& box);
    /// \p pixels are kWidth x kHeight.
    void PutDown(std::uint32_t* pixels) const;

private:
    struct Run {
        std::uint32_t offset;
        std::uint32_t length;
        std::uint32_t pixel;
    };

    std::vector<Run> m_Runs;
};

}  // namespace zulbench
