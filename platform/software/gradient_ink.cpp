#include "platform/software/gradient_ink.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

#include "platform/software/color.h"

namespace device {

namespace {

constexpr int kBlue = 0, kGreen = 1, kRed = 2, kAlpha = 3;
/// Levels of a dithered channel on an indexed surface, and the steps between them.
constexpr std::uint32_t kLevels = 3, kLevelStep = 127;
/// Vertices of a triangle that are closer than this can be reckoned with in 64 bits.
constexpr std::int64_t kNear = std::int64_t{1} << 22;

std::array<std::int32_t, GradientInk::kChannels> ChannelsOf(const TRIVERTEX& vertex) {
    return {vertex.Blue, vertex.Green, vertex.Red, vertex.Alpha};
}

/// From one vertex to another.
struct Way {
    Way(const TRIVERTEX& from, const TRIVERTEX& to)
        : x(std::int64_t{to.x} - from.x), y(std::int64_t{to.y} - from.y) {}
    bool IsNear() const { return std::abs(x) < kNear && std::abs(y) < kNear; }

    std::int64_t x, y;
};

/// Twice the signed area between two ways from one vertex, in integers or, for far ones, in doubles.
template <class T>
T Area(const Way& a, const Way& b) {
    return static_cast<T>(a.x) * static_cast<T>(b.y) - static_cast<T>(b.x) * static_cast<T>(a.y);
}

/// The values of a channel along a row, without a division a pixel.
class NearValues {
public:
    NearValues(const GradientInk& ink, const GradientInk::Plane& plane, std::int32_t x, std::int32_t y)
        : m_Divisor(ink.divisor) {
        const std::int64_t sum =
            plane.perX * (std::int64_t{x} - ink.originX) + plane.perY * (std::int64_t{y} - ink.originY);
        Divide(sum, m_Whole, m_Rest);
        Divide(plane.perX, m_WholeStep, m_RestStep);
        m_Whole += plane.start;
    }

    std::uint32_t Next() {
        const auto value = static_cast<std::uint32_t>(m_Whole);
        m_Whole += m_WholeStep;
        m_Rest += m_RestStep;
        if (m_Rest >= m_Divisor) {
            m_Rest -= m_Divisor;
            ++m_Whole;
        }
        return value;
    }

private:
    /// Rounds down: 0 <= rest < divisor.
    void Divide(std::int64_t value, std::int64_t& whole, std::int64_t& rest) const {
        whole = value / m_Divisor;
        rest = value % m_Divisor;
        if (rest < 0) {
            rest += m_Divisor;
            --whole;
        }
    }

    std::int64_t m_Divisor, m_Whole = 0, m_Rest = 0, m_WholeStep = 0, m_RestStep = 0;
};

/// The same for planes whose numbers do not fit integers.
class FarValues {
public:
    FarValues(const GradientInk& ink, const GradientInk::Plane& plane, std::int32_t x, std::int32_t y)
        : m_Start(plane.start),
          m_PerX(static_cast<double>(plane.perX)),
          m_Row(static_cast<double>(plane.perY) * (static_cast<double>(y) - ink.originY)),
          m_Divisor(ink.farDivisor),
          m_X(static_cast<double>(x) - ink.originX) {}

    std::uint32_t Next() {
        const double value = m_Start + (m_PerX * m_X + m_Row) / m_Divisor;
        m_X += 1;
        return static_cast<std::uint32_t>(std::clamp(value, 0.0, 65535.0));
    }

private:
    double m_Start, m_PerX, m_Row, m_Divisor, m_X;
};

/// The level of a dithered channel, of which \p rank decides whether it is rounded up.
std::uint32_t Level5(std::uint32_t value, std::uint32_t rank) {
    return std::min<std::uint32_t>((value + (rank >> 4) * 128) / 2048, 31);
}
std::uint32_t Level3(std::uint32_t value, std::uint32_t rank) {
    return (value + rank * 128) / 32768;
}

template <Format F>
std::uint32_t PixelOf(const GradientInk& ink, const std::uint32_t (&value)[GradientInk::kChannels],
                      std::uint32_t rank) {
    if constexpr (IsIndexed(F)) {
        return ink.entries[(Level3(value[kRed], rank) * kLevels + Level3(value[kGreen], rank)) * kLevels +
                           Level3(value[kBlue], rank)];
    } else if constexpr (BitsPerPixel(F) == 16) {
        const auto channel = [rank](std::uint32_t from) { return WidenChannel(Level5(from, rank), 5); };
        return PackColor(F, channel(value[kRed]) | channel(value[kGreen]) << 8 | channel(value[kBlue]) << 16);
    } else {
        const std::uint32_t alpha = F == Format::Bgrx32 ? value[kAlpha] >> 8 << 24 : 0;
        return alpha | value[kRed] >> 8 << 16 | (value[kGreen] & 0xFF00u) | value[kBlue] >> 8;
    }
}

/// Whether a format's pixels depend on their place in the dither's cell.
constexpr bool IsDithered(Format format) {
    return BitsPerPixel(format) <= 16;
}

/// After so many pixels along x and along y a colour that does not change is dithered alike again.
template <Format F>
constexpr std::int32_t kPeriod = !IsDithered(F)          ? 1
                                 : BitsPerPixel(F) == 16 ? 4
                                                         : 16;

/// Puts what is not repeated from elsewhere.
template <Format F, class Values>
void PutPixels(const GradientInk& ink, const Span& run) {
    const std::int32_t y = run.y;
    Values values[] = {{ink, ink.planes[kBlue], run.left, y},
                       {ink, ink.planes[kGreen], run.left, y},
                       {ink, ink.planes[kRed], run.left, y},
                       {ink, ink.planes[kAlpha], run.left, y}};
    std::uint8_t* const row = ink.surface->Row(y);
    for (std::int32_t x = run.left; x < run.right; ++x) {
        const std::uint32_t value[] = {values[kBlue].Next(), values[kGreen].Next(), values[kRed].Next(),
                                       values[kAlpha].Next()};
        Pixels<F>::Store(row, x, PixelOf<F>(ink, value, IsDithered(F) ? DitherRank(x, y) : 0));
    }
}

template <Format F, class Values>
void PutRun(const GradientInk& ink, const Span& run) {
    if (IsPacked(F) || !ink.IsConstantAlong(&GradientInk::Plane::perX)) {
        PutPixels<F, Values>(ink, run);
        return;
    }
    const std::int32_t end = run.left + std::min(kPeriod<F>, run.right - run.left);
    PutPixels<F, Values>(ink, {run.y, run.left, end});
    constexpr std::size_t bytes = BitsPerPixel(F) / 8;
    RepeatBytes(ink.surface->Row(run.y) + static_cast<std::ptrdiff_t>(bytes) * run.left, bytes * kPeriod<F>,
                bytes * static_cast<std::size_t>(run.right - run.left));
}

template <Format F, class Values>
void PutRuns(const Ink& base, const Span* runs, std::size_t count) {
    for (const Span* run = runs; run != runs + count; ++run)
        PutRun<F, Values>(static_cast<const GradientInk&>(base), *run);
}

/// Rows of a gradient along x repeat with the dither's cell.
template <Format F>
bool CopyRow(const GradientInk& ink, const Box& box, std::int32_t y) {
    constexpr std::int32_t period = kPeriod<F>;
    if (IsPacked(F) || y - box.top < period || !ink.IsConstantAlong(&GradientInk::Plane::perY)) return false;
    constexpr std::ptrdiff_t bytes = BitsPerPixel(F) / 8;
    std::memcpy(ink.surface->Row(y) + bytes * box.left, ink.surface->Row(y - period) + bytes * box.left,
                static_cast<std::size_t>(bytes * (box.right - box.left)));
    return true;
}

template <Format F, class Values>
void PutRows(const Ink& base, const Box& box) {
    const auto& ink = static_cast<const GradientInk&>(base);
    for (std::int32_t y = box.top; y < box.bottom; ++y) {
        if (!CopyRow<F>(ink, box, y)) PutRun<F, Values>(ink, {y, box.left, box.right});
    }
}

}  // namespace

GradientInk::GradientInk(const Context& context, const TRIVERTEX& first, const TRIVERTEX& second,
                         bool vertical) {
    const bool ordered = vertical ? first.y <= second.y : first.x <= second.x;
    const TRIVERTEX& low = ordered ? first : second;
    const Way way(low, ordered ? second : first);
    const auto from = ChannelsOf(low), to = ChannelsOf(ordered ? second : first);
    originX = low.x;
    originY = low.y;
    divisor = vertical ? way.y : way.x;
    for (std::size_t i = 0; i < planes.size(); ++i) {
        planes[i].start = from[i];
        (vertical ? planes[i].perY : planes[i].perX) = to[i] - from[i];
    }
    Prepare(context);
}

GradientInk::GradientInk(const Context& context, const TRIVERTEX& a, const TRIVERTEX& b, const TRIVERTEX& c) {
    const Way ab(a, b), ac(a, c);
    const bool isNear = ab.IsNear() && ac.IsNear();
    const auto atA = ChannelsOf(a), atB = ChannelsOf(b), atC = ChannelsOf(c);
    originX = a.x;
    originY = a.y;
    for (std::size_t i = 0; i < planes.size(); ++i) {
        const std::int64_t toB = atB[i] - atA[i], toC = atC[i] - atA[i];
        planes[i] = {toB * ac.y - toC * ab.y, toC * ab.x - toB * ac.x, atA[i]};
    }
    if (isNear) {
        divisor = Area<std::int64_t>(ab, ac);
    } else {
        farDivisor = Area<double>(ab, ac);
    }
    if (divisor < 0) {
        divisor = -divisor;
        for (Plane& plane : planes)
            plane = {-plane.perX, -plane.perY, plane.start};
    }
    Prepare(context);
}

void GradientInk::Prepare(const Context& context) {
    surface = &context.surface;
    VisitFormat(surface->format, [this](auto format) {
        constexpr Format kFormat = decltype(format)::value;
        spans = farDivisor == 0 ? PutRuns<kFormat, NearValues> : PutRuns<kFormat, FarValues>;
        box = farDivisor == 0 ? PutRows<kFormat, NearValues> : PutRows<kFormat, FarValues>;
    });
    if (!IsIndexed(surface->format)) return;
    std::size_t next = 0;
    for (std::uint32_t red = 0; red < kLevels; ++red)
        for (std::uint32_t green = 0; green < kLevels; ++green)
            for (std::uint32_t blue = 0; blue < kLevels; ++blue)
                entries[next++] = static_cast<std::uint8_t>(
                    NearestPixel(context, RGB(red * kLevelStep, green * kLevelStep, blue * kLevelStep)));
}

bool IsFlat(const TRIVERTEX& a, const TRIVERTEX& b, const TRIVERTEX& c) {
    const Way ab(a, b), ac(a, c);
    return ab.IsNear() && ac.IsNear() ? Area<std::int64_t>(ab, ac) == 0 : Area<double>(ab, ac) == 0;
}

}  // namespace device
