#include "platform/software/glyph_picture.h"

#include <limits>

namespace device {

namespace {

constexpr std::uint8_t kFull = 255;
/// From this length on calling a span writer is cheaper than putting single pixels.
constexpr std::int32_t kLongRun = 16;

std::uint16_t Narrow(std::int32_t value) {
    return static_cast<std::uint16_t>(value);
}

}  // namespace

GlyphPicture::GlyphPicture(const Box& box, const std::uint8_t* coverage) : m_Box(box) {
    const std::int32_t width = box.right - box.left, height = box.bottom - box.top;
    std::vector<Point> partial;
    for (std::int32_t y = 0; y < height; ++y, coverage += width) {
        for (std::int32_t x = 0; x < width; ++x) {
            if (coverage[x] == 0) continue;
            if (coverage[x] < kFull) {
                partial.push_back({Narrow(x), Narrow(y)});
                m_Coverage.push_back(coverage[x]);
                continue;
            }
            std::int32_t end = x + 1;
            while (end < width && coverage[end] == kFull)
                ++end;
            if (end - x >= kLongRun) {
                m_Runs.push_back({Narrow(x), Narrow(y), Narrow(end - x)});
            } else {
                for (std::int32_t at = x; at < end; ++at)
                    m_Points.push_back({Narrow(at), Narrow(y)});
            }
            x = end - 1;
        }
    }
    while (m_Points.size() % kGroup != 0)
        m_Points.push_back(m_Points.back());
    m_Points.insert(m_Points.end(), partial.begin(), partial.end());
    m_Offsets.resize(m_Points.size());
    m_Runs.shrink_to_fit();
    m_Points.shrink_to_fit();
    m_Coverage.shrink_to_fit();
}

std::size_t GlyphPicture::Bytes() const {
    return sizeof *this + m_Runs.size() * sizeof(Run) +
           m_Points.size() * (sizeof(Point) + sizeof(std::int32_t)) + m_Coverage.size();
}

bool GlyphPicture::FindOffsets(std::ptrdiff_t stride, int pixelBytes) const {
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    const std::int64_t rowBytes = stride < 0 ? -std::int64_t{stride} : std::int64_t{stride};
    const std::int64_t rows = std::int64_t{m_Box.bottom} - m_Box.top;
    const std::int64_t columns = std::int64_t{m_Box.right} - m_Box.left;
    if (rowBytes > (kMost - columns * pixelBytes) / (rows + 1)) return false;
    for (std::size_t i = 0; i < m_Points.size(); ++i) {
        m_Offsets[i] =
            static_cast<std::int32_t>(m_Points[i].y * std::int64_t{stride} + m_Points[i].x * pixelBytes);
    }
    m_Stride = stride;
    m_PixelBytes = pixelBytes;
    return true;
}

}  // namespace device
