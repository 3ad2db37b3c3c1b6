#include "bench/plot.h"

#include <algorithm>
#include <cmath>

#include "apps/zulmap/picture_file.h"
#include "bench/surface.h"
#include "zul/kernel/numeric.h"
#include "zul/kernel/string.h"

namespace zulbench {
namespace {

constexpr std::int32_t kPlotWidth = 800, kPlotHeight = 500;
constexpr zul::TLongRect kFrame{70, 44, 590, 440};  ///< where the lines are
constexpr std::int32_t kPaper = 0xFFFFFF, kInk = 0x303030, kGrid = 0xE0E0E0, kGuide = 0xA0A0A0;
constexpr std::int32_t kColors[] = {0xB4501E, 0x3C3CD2, 0x3C9632, 0xA0329B, 0x1E96E6, 0x808000};
constexpr std::int32_t kMark = 3;         ///< half a sample's mark, pixels
constexpr std::int32_t kLegendRow = 22;   ///< pixels
constexpr std::int32_t kLegendLine = 24;  ///< pixels

/// A range of decades laid over a range of pixels.
struct Axis {
    int low, high;  ///< powers of ten
    std::int32_t from, to;

    std::int32_t At(double value) const {
        return zul::RoundToLong(from + (std::log10(value) - low) / (high - low) * (to - from));
    }
};

/// The decades around all values.
template <typename Value>
Axis AxisOf(const Plot& plot, Value value, std::int32_t from, std::int32_t to) {
    double least = HUGE_VAL, most = 0.0;
    for (const Series& series : plot.series) {
        for (const Sample& sample : series.samples) {
            least = std::min(least, value(sample));
            most = std::max(most, value(sample));
        }
    }
    const int low = static_cast<int>(std::floor(std::log10(least)));
    return {low, std::max(low + 1, static_cast<int>(std::ceil(std::log10(most)))), from, to};
}

/// 10 to a power with the prefix that suits: "100 n", "10 k".
std::string PowerText(int power) {
    static constexpr const char* kPrefixes[] = {" n", " u", " m", "", " k", " M", " G"};
    const int group = std::clamp((power + 9) / 3, 0, 6);
    return std::to_string(std::lround(std::pow(10.0, power + 9 - 3 * group))) + kPrefixes[group];
}

class PlotPainter {
public:
    explicit PlotPainter(const Plot& plot)
        : m_Plot(plot),
          m_X(AxisOf(
              plot, [](const Sample& s) { return s.amount; }, kFrame.MinX, kFrame.MaxX)),
          m_Y(AxisOf(
              plot, [](const Sample& s) { return s.seconds; }, kFrame.MaxY, kFrame.MinY)),
          m_Surface(kPlotWidth, kPlotHeight),
          m_Canvas(m_Surface.GetCanvas()) {}

    Picture Draw() {
        m_Canvas.GetBrush().SetColor(kPaper);
        m_Canvas.FillRect(0, 0, kPlotWidth, kPlotHeight, nullptr);
        DrawGrid();
        DrawGuide();
        for (std::size_t i = 0; i < m_Plot.series.size(); ++i)
            DrawSeries(i);
        Letter(m_Plot.title, kFrame.MinX, 12, 13, Align::Left);
        Letter(m_Plot.amount, (kFrame.MinX + kFrame.MaxX) / 2, kFrame.MaxY + 32, 10, Align::Middle);
        return m_Surface.GetPicture();
    }

private:
    enum class Align { Left, Middle, Right };

    void Letter(const std::string& text, std::int32_t x, std::int32_t y, std::int32_t points, Align align) {
        m_Canvas.GetFont().Create(u"Sans", points, kInk, 0);
        const zul::CString line(text.c_str());
        const std::int32_t width = m_Canvas.GetTextWidth(&line);
        m_Canvas.OutText(&line,
                         x - (align == Align::Left     ? 0
                              : align == Align::Middle ? width / 2
                                                       : width),
                         y);
    }
    void TakePen(zul::CPen::TPenType type, std::int32_t width, std::int32_t color) {
        m_Canvas.GetPen().Create(type, 0, width, color, 0, 0, 0);
    }

    void DrawGrid() {
        TakePen(zul::CPen::PenSolid, 1, kGrid);
        for (int power = m_X.low; power <= m_X.high; ++power) {
            const std::int32_t x = m_X.At(std::pow(10.0, power));
            m_Canvas.Line(x, kFrame.MinY, x, kFrame.MaxY);
            Letter(PowerText(power), x, kFrame.MaxY + 8, 9, Align::Middle);
        }
        for (int power = m_Y.low; power <= m_Y.high; ++power) {
            const std::int32_t y = m_Y.At(std::pow(10.0, power));
            m_Canvas.Line(kFrame.MinX, y, kFrame.MaxX, y);
            Letter(PowerText(power) + (power % 3 == 0 && power >= 0 ? " s" : "s"), kFrame.MinX - 8, y - 7, 9,
                   Align::Right);
        }
    }

    /// As time would grow from the end of the first series back to its start.
    void DrawGuide() {
        const Sample& end = m_Plot.series[0].samples.back();
        double amount = m_Plot.series[0].samples.front().amount;
        const double least = std::pow(10.0, m_Y.low);
        amount = std::max(amount, end.amount * least / end.seconds);
        TakePen(zul::CPen::PenDashed, 1, kGuide);
        m_Canvas.Line(m_X.At(end.amount), m_Y.At(end.seconds), m_X.At(amount),
                      m_Y.At(end.seconds * amount / end.amount));
        const std::int32_t y = LegendY(m_Plot.series.size());
        m_Canvas.Line(LegendX(), y, LegendX() + kLegendLine, y);
        Letter("linear", LegendX() + kLegendLine + 8, y - 8, 10, Align::Left);
    }

    void DrawSeries(std::size_t index) {
        const Series& series = m_Plot.series[index];
        const std::int32_t color = kColors[index % std::size(kColors)];
        TakePen(zul::CPen::PenSolid, 2, color);
        m_Canvas.GetBrush().SetColor(color);
        const Sample* before = nullptr;
        for (const Sample& sample : series.samples) {
            const std::int32_t x = m_X.At(sample.amount), y = m_Y.At(sample.seconds);
            if (before) m_Canvas.Line(m_X.At(before->amount), m_Y.At(before->seconds), x, y);
            m_Canvas.Ellipse(x - kMark, y - kMark, x + kMark + 1, y + kMark + 1);
            before = &sample;
        }
        const std::int32_t y = LegendY(index);
        m_Canvas.Line(LegendX(), y, LegendX() + kLegendLine, y);
        Letter(series.name, LegendX() + kLegendLine + 8, y - 8, 10, Align::Left);
    }
    static std::int32_t LegendX() { return kFrame.MaxX + 14; }
    static std::int32_t LegendY(std::size_t index) {
        return kFrame.MinY + 10 + kLegendRow * static_cast<std::int32_t>(index);
    }

    const Plot& m_Plot;
    Axis m_X, m_Y;
    Surface m_Surface;
    zul::CCanvas& m_Canvas;
};

}  // namespace

double Series::Steepest() const {
    double steepest = 0.0;
    for (std::size_t i = 1; i < samples.size(); ++i) {
        const double time = samples[i].seconds / samples[i - 1].seconds;
        steepest = std::max(steepest, time / (samples[i].amount / samples[i - 1].amount));
    }
    return steepest;
}

void WritePlot(const std::string& path, const Plot& plot) {
    const Picture picture = PlotPainter(plot).Draw();
    zulmap::WritePicture(path, {picture.width, picture.height, picture.pixels.data()});
}

}  // namespace zulbench
