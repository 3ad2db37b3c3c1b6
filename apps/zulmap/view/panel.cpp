#include "apps/zulmap/view/panel.h"

#include <algorithm>
#include <cmath>
#include <iomanip>
#include <sstream>
#include <utility>

#include "apps/zulmap/caption.h"
#include "apps/zulmap/memory_picture.h"
#include "apps/zulmap/pixel_coordinates.h"

namespace zulmap {
namespace {

constexpr CaptionFont kText{9, false, true};
constexpr std::int32_t kLineHeight = 15;
constexpr std::int32_t kPadding = 6;
constexpr std::int32_t kDistance = 8;  ///< from the sides of the screen
constexpr std::int32_t kTick = 4;

constexpr std::int32_t kGround = 0xF6F8F8;
constexpr std::int32_t kFrame = 0x9A948C;
constexpr std::int32_t kInk = 0x3A3028;

constexpr double kBarPart = 1.0 / 6.0;

std::string Fixed(double value, int decimals) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(decimals) << value;
    return text.str();
}

/// Decimals with which a step of this size is seen.
int DecimalsOf(double step) {
    return std::clamp(static_cast<int>(std::ceil(-std::log10(step))), 0, 9);
}

/// The largest of 1, 2, 5, 10, 20 ... that is not above a length.
double RoundLength(double length) {
    const double power = std::pow(10.0, std::floor(std::log10(length)));
    for (const double step : {5.0, 2.0}) {
        if (step * power <= length) return step * power;
    }
    return power;
}

std::string NameOf(double metres) {
    if (metres >= 1000.0) return Fixed(metres / 1000.0, 0) + " km";
    return Fixed(metres, DecimalsOf(metres)) + " m";
}

std::string Degrees(double value, int decimals, const char* positive, const char* negative) {
    return Fixed(std::abs(value), decimals) + (value < 0.0 ? negative : positive);
}

}  // namespace

bool Panel::operator==(const Panel& other) const {
    return IsEqual(place, other.place) && lines == other.lines && bar == other.bar;
}

Panel MakePanel(std::vector<std::string> lines, std::int32_t bar, Corner corner, zul::TSize screen) {
    std::int32_t width = bar;
    for (const std::string& line : lines) {
        width = std::max(width, GetCaptionSize(line, kText).Width);
    }
    width += 2 * kPadding;
    const auto count = static_cast<std::int32_t>(lines.size());
    const std::int32_t height = 2 * kPadding + count * kLineHeight + (bar > 0 ? kTick + kPadding : 0);
    const bool isLeft = corner == Corner::UpperLeft || corner == Corner::LowerLeft;
    const bool isUpper = corner == Corner::UpperLeft || corner == Corner::UpperRight;
    const std::int32_t left = isLeft ? kDistance : screen.Width - kDistance - width;
    const std::int32_t top = isUpper ? kDistance : screen.Height - kDistance - height;
    return {{left, top, left + width, top + height}, std::move(lines), bar};
}

Panel MakeScalePanel(const MapView& view) {
    const zul::TSize screen = view.GetScreen();
    const double metresInPixel = view.GetMetresInSm() / kPixelsPerSm;
    const double length = RoundLength(screen.Width * kBarPart * metresInPixel);
    const auto bar = std::max(1, static_cast<std::int32_t>(std::lround(length / metresInPixel)));
    return MakePanel({NameOf(length)}, bar, Corner::LowerLeft, screen);
}

Panel MakePositionPanel(const MapView& view, zul::TLongPoint pixel) {
    const TDoublePoint place = view.GetPlace(pixel);
    const double pixelSize = view.GetMetresInSm() / kPixelsPerSm / view.GetMap().metresInUnit;
    const int decimals = DecimalsOf(pixelSize);
    const std::string text =
        view.GetMap().isInDegrees
            ? Degrees(place.Y, decimals, " N", " S") + "  " + Degrees(place.X, decimals, " E", " W")
            : Fixed(place.X, decimals) + ", " + Fixed(place.Y, decimals);
    return MakePanel({text}, 0, Corner::LowerRight, view.GetScreen());
}

void DrawPanel(zul::CCanvas& canvas, const Panel& panel) {
    const PixelRect& place = panel.place;
    const PixelCoordinates pixels(canvas);
    canvas.GetBrush().Create(zul::CBrush::BrushSolid, kGround, 0);
    canvas.GetPen().Create(zul::CPen::PenSolid, 0, 1, kFrame, 0, 0, 0);
    canvas.Rectangle(place.MinX, place.MinY, place.MaxX - 1, place.MaxY - 1);
    canvas.GetPen().SetColor(kInk);
    canvas.GetBackground().SetMode(zul::CBackground::ModeTransparent);
    const std::int32_t left = place.MinX + kPadding;
    std::int32_t top = place.MinY + kPadding;
    for (const std::string& line : panel.lines) {
        DrawCaption(canvas, {left, top}, line, kText, kInk);
        top += kLineHeight;
    }
    if (panel.bar > 0) {
        const std::int32_t bottom = place.MaxY - kPadding - 1;
        const std::int32_t right = left + panel.bar - 1;
        // Two pixels thick; the last pixel of a line is left out.
        canvas.Line(left, bottom - kTick, left, bottom);
        canvas.Line(right, bottom - kTick, right, bottom);
        canvas.Line(left, bottom, right + 1, bottom);
        canvas.Line(left, bottom - 1, right + 1, bottom - 1);
    }
}

}  // namespace zulmap
