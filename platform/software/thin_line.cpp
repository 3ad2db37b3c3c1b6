#include "platform/software/thin_line.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>

namespace device {
namespace {

constexpr std::uint32_t kDashMark = 18;
constexpr std::uint32_t kDashPeriod = 24;
constexpr std::int64_t kSpanWorthwhile = 16;  ///< pixels from which a level line is put as a span

/// Quotient of non-negative \p n by positive \p d, rounded up.
std::uint64_t DivideUp(std::uint64_t n, std::uint64_t d) {
    return n / d + (n % d != 0 ? 1 : 0);
}

/// One segment, ready to be walked or to be entered anywhere.
///
/// After i steps the minor coordinate has moved by floor((2 i rise + length - bias) / (2 length)) pixels.
/// The bias of 1 on the way up makes a half-way case stay behind, where on the way down it goes ahead: both
/// times to the smaller coordinate.
struct Segment {
    std::int32_t x, y;    ///< the first pixel
    std::int64_t length;  ///< extent along the major axis: the number of pixels
    std::int64_t rise;    ///< extent along the other one, at most length
    std::int32_t stepX, stepY;
    bool steep;  ///< y is the major axis
    std::int32_t bias;

    Segment(POINT from, POINT to) : x(from.x), y(from.y) {
        const std::int64_t dx = std::int64_t{to.x} - from.x;
        const std::int64_t dy = std::int64_t{to.y} - from.y;
        const std::int64_t width = dx < 0 ? -dx : dx;
        const std::int64_t height = dy < 0 ? -dy : dy;
        stepX = dx < 0 ? -1 : 1;
        stepY = dy < 0 ? -1 : 1;
        steep = height > width;
        length = steep ? height : width;
        rise = steep ? width : height;
        bias = (steep ? stepX : stepY) > 0 ? 1 : 0;
    }

    /// The first step at which the minor coordinate has moved by \p offset; length when it never does.
    std::int64_t FirstStep(std::int64_t offset) const {
        if (offset <= 0) return 0;
        if (offset > rise) return length;
        // ceil((2 length offset - length + bias) / (2 rise)), kept within 64 bits by dividing the product
        // first.
        const auto product = static_cast<std::uint64_t>(length) * static_cast<std::uint64_t>(offset);
        const auto divisor = static_cast<std::uint64_t>(rise);
        const auto whole = static_cast<std::int64_t>(product / divisor);
        const std::int64_t rest = 2 * static_cast<std::int64_t>(product % divisor) - length + bias;
        return rest > 0
                   ? whole +
                         static_cast<std::int64_t>(DivideUp(static_cast<std::uint64_t>(rest), 2 * divisor))
                   : whole - static_cast<std::int64_t>(static_cast<std::uint64_t>(-rest) / (2 * divisor));
    }

    /// The steps [first, last) whose pixels lie in \p box.
    void Range(const Box& box, std::int64_t& first, std::int64_t& last) const {
        const std::int64_t major = steep ? y : x;
        const std::int64_t minor = steep ? x : y;
        const std::int64_t majorLow = steep ? box.top : box.left, majorHigh = steep ? box.bottom : box.right;
        const std::int64_t minorLow = steep ? box.left : box.top, minorHigh = steep ? box.right : box.bottom;
        const bool majorUp = (steep ? stepY : stepX) > 0;
        const bool minorUp = (steep ? stepX : stepY) > 0;
        first = std::max<std::int64_t>(0, majorUp ? majorLow - major : major - majorHigh + 1);
        last = std::min(length, majorUp ? majorHigh - major : major - majorLow + 1);
        if (first >= last) return;
        const std::int64_t lowOffset = minorUp ? minorLow - minor : minor - minorHigh + 1;
        const std::int64_t highOffset = minorUp ? minorHigh - minor : minor - minorLow + 1;
        if (highOffset <= 0) {
            last = first;
            return;
        }
        first = std::max(first, FirstStep(lowOffset));
        last = std::min(last, FirstStep(highOffset));
    }
};

// --- segments of a few pixels ---

constexpr std::int32_t kShort = 8;

/// The pixels of a segment of at most kShort as steps along its axes from the first one. The last pixel is
/// repeated up to the end, so that copying puts as many every time: how many are to go on is what processors
/// guess wrong most.
struct ShortSteps {
    std::uint8_t major[kShort], minor[kShort];
};

struct ShortTable {
    ShortSteps steps[kShort + 1][kShort + 1][2];  ///< by length, rise and bias
};

constexpr ShortTable MakeShortTable() {
    ShortTable table{};
    for (int length = 1; length <= kShort; ++length) {
        for (int rise = 0; rise <= length; ++rise) {
            for (int bias = 0; bias < 2; ++bias) {
                ShortSteps& steps = table.steps[length][rise][bias];
                for (int i = 0; i < kShort; ++i) {
                    const int at = i < length ? i : length - 1;
                    steps.major[i] = static_cast<std::uint8_t>(at);
                    steps.minor[i] =
                        static_cast<std::uint8_t>((2 * at * rise + length - bias) / (2 * length));
                }
            }
        }
    }
    return table;
}

constexpr ShortTable kShortTable = MakeShortTable();

/// A place on a segment, and what leads from there to the next pixel.
struct Walk {
    std::int32_t x;
    std::ptrdiff_t row;  ///< byte offset of the row from the surface's top
    std::int64_t error;  ///< negative; the minor coordinate moves when adding errorStep ends that
    std::int64_t errorStep, errorTurn;
    std::int32_t majorX, minorX;
    std::ptrdiff_t majorRow, minorRow;

    /// \param step the step to start at; its pixel lies on the surface.
    Walk(const Segment& segment, const Surface& surface, std::int64_t step)
        : error(-segment.length - segment.bias),
          errorStep(2 * segment.rise),
          errorTurn(2 * segment.length),
          majorX(segment.steep ? 0 : segment.stepX),
          minorX(segment.steep ? segment.stepX : 0),
          majorRow(segment.steep ? surface.stride * segment.stepY : 0),
          minorRow(segment.steep ? 0 : surface.stride * segment.stepY) {
        std::int64_t offset = 0;
        if (step != 0) {
            const auto length = static_cast<std::uint64_t>(segment.length);
            const auto product = static_cast<std::uint64_t>(step) * static_cast<std::uint64_t>(segment.rise);
            offset = static_cast<std::int64_t>(product / length);
            error += 2 * static_cast<std::int64_t>(product % length);
            if (error >= 0) {
                ++offset;
                error -= errorTurn;
            }
        }
        x = static_cast<std::int32_t>(segment.x + (segment.steep ? offset : step) * segment.stepX);
        row = surface.stride *
              static_cast<std::ptrdiff_t>(segment.y + (segment.steep ? step : offset) * segment.stepY);
    }
};

template <Format F, bool Copy>
inline void PutPixel(std::uint8_t* row, std::int32_t x, Mix mix) {
    if constexpr (Copy) {
        Pixels<F>::Store(row, x, mix.flip);
    } else {
        MixPixel<F>(row, x, mix);
    }
}

/// Puts \p count pixels and leaves the walk at the one after them.
template <Format F, bool Copy>
inline void Draw(Walk& walk, std::uint8_t* top, std::int64_t count, Mix mix) {
    Walk at = walk;
    for (; count > 0; --count) {
        PutPixel<F, Copy>(top + at.row, at.x, mix);
        at.error += at.errorStep;
        const std::int64_t turn = ~(at.error >> 63);  // all ones when the minor coordinate moves
        at.error -= at.errorTurn & turn;
        at.x += at.majorX + (at.minorX & static_cast<std::int32_t>(turn));
        at.row += at.majorRow + (at.minorRow & static_cast<std::ptrdiff_t>(turn));
    }
    walk = at;
}

/// The steps of a segment of at most kMost pixels, found without waiting for one another: the minor
/// coordinate is kept with 32 binary places.
///
/// It is a whole multiple of 1 / (2 length) that is rounded down; adding 1 / (4 length) keeps the result even
/// where the sum is wrong by less than that. A step is wrong by little more than 2^-32, so length steps are
/// wrong by less as long as 4 length^2 stays well below 2^32.
class FixedWalk {
public:
    static constexpr std::int64_t kMost = 16384;

    FixedWalk(const Segment& segment, std::int64_t step) {
        const double part = static_cast<double>(std::int64_t{1} << 32) / static_cast<double>(segment.length);
        m_Step = static_cast<std::int64_t>(static_cast<double>(segment.rise) * part);
        m_Minor = static_cast<std::int64_t>(
                      (static_cast<double>(segment.length - segment.bias) * 0.5 + 0.25) * part) +
                  m_Step * step;
    }

    std::ptrdiff_t Minor() const { return static_cast<std::ptrdiff_t>(m_Minor >> 32); }
    void Next() { m_Minor += m_Step; }

private:
    std::int64_t m_Minor, m_Step;
};

/// Puts the steps first <= i < last of a segment on a surface whose pixels share no bytes.
template <Format F, bool Copy>
void DrawFixed(const Segment& segment, const Surface& surface, std::int64_t first, std::int64_t last,
               Mix mix) {
    constexpr std::ptrdiff_t size = BitsPerPixel(F) / 8;
    const std::ptrdiff_t across = segment.stepX * size, down = segment.stepY * surface.stride;
    const std::ptrdiff_t major = segment.steep ? down : across, minor = segment.steep ? across : down;
    FixedWalk walk(segment, first);
    const std::ptrdiff_t before = walk.Minor();
    const std::ptrdiff_t x =
        segment.x + (segment.steep ? before : static_cast<std::ptrdiff_t>(first)) * segment.stepX;
    const std::ptrdiff_t y =
        segment.y + (segment.steep ? static_cast<std::ptrdiff_t>(first) : before) * segment.stepY;
    std::uint8_t* const begin = surface.top + y * surface.stride + x * size;
    std::ptrdiff_t at = 0;
    for (std::int64_t left = last - first; left > 0; --left, at += major, walk.Next())
        PutPixel<F, Copy>(begin + at + (walk.Minor() - before) * minor, 0, mix);
}

/// Draws segments that follow one another; \p Lines puts them:
/// - `Whole(points, count)`: all pixels of all segments between points
/// - `Part(segment, first, last)`: its steps first <= i < last
/// - `Pass(from, to)`: after each segment of which parts were asked for, or none
template <class Lines>
class PathWalk {
public:
    PathWalk(const Clip& clip, Lines& lines) : m_Clip(clip), m_Lines(lines) {}

    void Draw(const Path& path) {
        for (int i = 0; i + 1 < path.count; i += kRunSegments) {
            const int run = std::min(kRunSegments, path.count - 1 - i) + 1;
            DrawRun(path.points + i, run,
                    path.extents != nullptr ? path.extents->Run(i) : Of(path.points + i, run));
        }
        if (!path.closed) return;
        const POINT closing[] = {path.points[path.count - 1], path.points[0]};
        DrawRun(closing, 2, Of(closing, 2));
    }

private:
    static Extents Of(const POINT* points, int count) {
        return FindExtents(points, static_cast<std::size_t>(count));
    }

    void DrawRun(const POINT* points, int count, const Extents& extents) {
        const bool seen = extents.Meet(m_Clip.bounds);
        const bool whole = m_Clip.count == 1 && extents.IsWithin(m_Clip.bounds);
        if (whole) {
            m_Lines.Whole(points, count);
            return;
        }
        for (int i = 1; i < count; ++i) {
            if (seen) DrawParts(points[i - 1], points[i]);
            m_Lines.Pass(points[i - 1], points[i]);
        }
    }

    /// Once for each clip box that shows some.
    void DrawParts(POINT from, POINT to) {
        if ((SidesOutside(from) & SidesOutside(to)) != 0) return;
        const Segment segment(from, to);
        const std::int32_t top = std::min(from.y, to.y), bottom = std::max(from.y, to.y);
        const Box* const end = m_Clip.boxes + m_Clip.count;
        for (const Box* box = m_Clip.FirstBelow(top); box != end && box->top <= bottom; ++box) {
            std::int64_t first = 0, last = 0;
            segment.Range(*box, first, last);
            if (first < last) m_Lines.Part(segment, first, last);
        }
    }

    unsigned SidesOutside(POINT p) const {
        const Box& bounds = m_Clip.bounds;
        return (p.x < bounds.left ? 1u : 0u) | (p.x >= bounds.right ? 2u : 0u) |
               (p.y < bounds.top ? 4u : 0u) | (p.y >= bounds.bottom ? 8u : 0u);
    }

    const Clip& m_Clip;
    Lines& m_Lines;
};

template <class Lines>
void DrawPath(const Clip& clip, const Path& path, Lines lines) {
    PathWalk<Lines>(clip, lines).Draw(path);
}

template <Format F, bool Copy>
class SolidLines {
public:
    explicit SolidLines(const Ink& ink) : m_Ink(ink), m_Surface(*ink.surface), m_Mix(ink.mix) {}

    void Whole(const POINT* points, int count) {
        if (RepeatsPoints(points, count)) {
            const DistinctPoints distinct(points, count);
            DrawSegments(distinct.Points(), distinct.Count());
        } else {
            DrawSegments(points, count);
        }
    }

    void Part(const Segment& segment, std::int64_t first, std::int64_t last) {
        if (segment.rise == 0 && !segment.steep && last - first >= kSpanWorthwhile) {
            const std::int64_t left = segment.stepX > 0 ? segment.x + first : segment.x - last + 1;
            PutSpan(m_Ink, {segment.y, static_cast<std::int32_t>(left),
                            static_cast<std::int32_t>(left + last - first)});
            return;
        }
        if constexpr (!IsPacked(F)) {
            if (segment.length <= FixedWalk::kMost) {
                DrawFixed<F, Copy>(segment, m_Surface, first, last, m_Mix);
                return;
            }
        }
        Walk walk(segment, m_Surface, first);
        device::Draw<F, Copy>(walk, m_Surface.top, last - first, m_Mix);
    }

    void Pass(POINT, POINT) {}

private:
    void DrawSegments(const POINT* points, int count) {
        const POINT *from = points, *const last = points + count - 1;
        while ((from = PutSmallSteps(from, last)) != last) {
            DrawSegment(from[0], from[1]);
            ++from;
        }
    }

    /// Goes on until the next point is more than a few pixels away. Most points of a coast are neighbours.
    const POINT* PutSmallSteps(const POINT* from, const POINT* last) const {
        std::uint8_t* const top = m_Surface.top;
        const std::ptrdiff_t stride = m_Surface.stride;
        const Mix mix = m_Mix;
        for (; from != last; ++from) {
            const std::int32_t dx = from[1].x - from->x, dy = from[1].y - from->y;
            if (IsUnit(dx) && IsUnit(dy)) {
                if ((dx | dy) != 0) PutPixel<F, Copy>(top + stride * from->y, from->x, mix);
            } else if (!PutShort(top + stride * from->y, stride, from->x, dx, dy, mix)) {
                break;
            }
        }
        return from;
    }

    /// False, and nothing put, for a longer segment.
    static bool PutShort(std::uint8_t* row, std::ptrdiff_t stride, std::int32_t x, std::int32_t dx,
                         std::int32_t dy, Mix mix) {
        if constexpr (IsPacked(F)) {
            return false;
        } else {
            const std::int32_t width = std::abs(dx), height = std::abs(dy);
            if (width > kShort || height > kShort) return false;
            constexpr std::ptrdiff_t size = BitsPerPixel(F) / 8;
            const std::ptrdiff_t across = dx < 0 ? -size : size, down = dy < 0 ? -stride : stride;
            const bool steep = height > width;
            const std::int32_t length = steep ? height : width;
            const ShortSteps& steps =
                kShortTable.steps[length][steep ? width : height][(steep ? dx : dy) < 0 ? 0 : 1];
            const std::ptrdiff_t major = steep ? down : across, minor = steep ? across : down;
            std::uint8_t* const first = row + x * size;
            for (std::int32_t i = 0; i < (Copy ? kShort : length); ++i)
                PutPixel<F, Copy>(first + steps.major[i] * major + steps.minor[i] * minor, 0, mix);
            return true;
        }
    }
    static bool IsUnit(std::int32_t distance) { return static_cast<std::uint32_t>(distance + 1) <= 2; }

    /// Kept out of the loop above, which wants the registers for itself.
    __attribute__((noinline)) void DrawSegment(POINT from, POINT to) {
        const Segment segment(from, to);
        Part(segment, 0, segment.length);
    }

    const Ink& m_Ink;
    const Surface m_Surface;
    const Mix m_Mix;
};

template <Format F>
class DashedLines {
public:
    DashedLines(const Ink& mark, const Ink& gap, std::uint64_t phase)
        : m_Surface(*mark.surface), m_Mark(mark.mix), m_Gap(gap.mix), m_Phase(phase) {}

    void Whole(const POINT* points, int count) {
        for (int i = 1; i < count; ++i) {
            const Segment segment(points[i - 1], points[i]);
            Part(segment, 0, segment.length);
            m_Phase += static_cast<std::uint64_t>(segment.length);
        }
    }

    void Part(const Segment& segment, std::int64_t first, std::int64_t last) {
        Walk walk(segment, m_Surface, first);
        auto place = static_cast<std::uint32_t>((m_Phase + static_cast<std::uint64_t>(first)) % kDashPeriod);
        while (first < last) {
            const bool marked = place < kDashMark;
            const std::int64_t run =
                std::min<std::int64_t>((marked ? kDashMark : kDashPeriod) - place, last - first);
            device::Draw<F, false>(walk, m_Surface.top, run, marked ? m_Mark : m_Gap);
            first += run;
            place = marked ? kDashMark : 0;
        }
    }

    void Pass(POINT from, POINT to) {
        const std::int64_t dx = std::int64_t{to.x} - from.x, dy = std::int64_t{to.y} - from.y;
        m_Phase += static_cast<std::uint64_t>(std::max(std::abs(dx), std::abs(dy)));
    }

private:
    const Surface m_Surface;
    const Mix m_Mark, m_Gap;
    std::uint64_t m_Phase;
};

}  // namespace

void StrokeThin(const Ink& ink, const Clip& clip, const Path& path) {
    if (path.count < 1 || clip.count == 0) return;
    VisitFormat(ink.surface->format, [&](auto format) {
        constexpr Format F = decltype(format)::value;
        if (ink.mix.IsCopy()) {
            DrawPath(clip, path, SolidLines<F, true>(ink));
        } else {
            DrawPath(clip, path, SolidLines<F, false>(ink));
        }
    });
}

void StrokeDashed(const Ink& mark, const Ink& gap, const Clip& clip, const Path& path) {
    if (path.count < 1 || clip.count == 0) return;
    VisitFormat(mark.surface->format, [&](auto format) {
        constexpr Format F = decltype(format)::value;
        DrawPath(clip, path, DashedLines<F>(mark, gap, path.phase));
    });
}

}  // namespace device
