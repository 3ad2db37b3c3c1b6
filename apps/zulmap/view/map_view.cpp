#include "apps/zulmap/view/map_view.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <sstream>

#include "apps/zulmap/made_object.h"
#include "apps/zulmap/map_sight.h"
#include "apps/zulmap/memory_picture.h"
#include "zul/geometry/angle.h"
#include "zul/geometry/trigonometry.h"
#include "zul/kernel/numeric.h"
#include "zul/scaler/projective_scaler.h"

namespace zulmap {
namespace {

/// The part of the whole map that is shown at most detail.
constexpr double kMostDetail = 0.0005;

/// Screens that the space of a flat view holds, side by side.
constexpr double kScreensInSpace = 4.0;

/// Part of a turned view that is held around it.
constexpr double kMargin = 1.0 / 8.0;

/// How far a turned space may reach: its corners stay within the map space wherever they are turned.
constexpr double kTurnedReach = 23168.0;

/// Pixels beyond which a preview is not worth while.
constexpr double kFarPreview = 1e6;

/// What a scaler is to show, in map units.
struct Setting {
    zul::TLongRect box;
    zul::TLongRect bounds;
    zul::TSize screen;
    double metresInUnit;
    double metresInSm;
    double leastDetail;
    double mostDetail;
};

/// A scaler that is put anywhere at once, without the detours of navigation.
template <class Scaler>
class PlacedScaler : public Scaler {
public:
    explicit PlacedScaler(const Setting& setting) {
        this->InitScaler(setting.box, setting.screen, setting.screen, kPixelsPerSm, setting.metresInUnit,
                         0.0);
        this->m_MapBounds = setting.bounds;
        // To the last bit what it was before: at its limits a scaler compares for equality.
        this->m_MetresInSm = setting.metresInSm;
        this->m_MinScale = setting.leastDetail;
        this->m_MaxScale = setting.mostDetail;
        this->CalculateBaseFraction();
    }

    /// Figures that miss the box by less than this are drawn.
    void WidenFrame(std::int32_t reach) {
        const zul::TLongRect& box = this->m_VisibleBox;
        const auto coord = [](std::int64_t value) {
            return static_cast<zul::TCoord>(std::clamp<std::int64_t>(value, zul::MinCoord, zul::MaxCoord));
        };
        this->m_ExtVisible = {coord(std::int64_t{box.MinX} - reach), coord(std::int64_t{box.MinY} - reach),
                              coord(std::int64_t{box.MaxX} + reach), coord(std::int64_t{box.MaxY} + reach)};
    }
};

double Halfway(double low, double high) {
    return low + (high - low) / 2.0;
}

/// The middle of a span of the screen that shows as much of the map as it can.
double KeepOnSpan(double middle, double size, double low, double high) {
    if (high - low <= size) return Halfway(low, high);
    return std::clamp(middle, low + size / 2.0, high - size / 2.0);
}

}  // namespace

MapView::MapView(const MapFacts& map, zul::TSize screen)
    : m_Map(map), m_Whole(WholeOf(map)), m_Screen(screen), m_Space(MapSpace::Around({}, 1.0)) {
    ShowWhole();
}

// --- query ---

double MapView::GetPixelSize() const {
    return m_MetresInSm / kPixelsPerSm / m_Map.metresInUnit;
}

double MapView::GetLeastDetail() const {
    if (m_LeastDetail) return *m_LeastDetail;
    const MapSpace space(m_Whole, {}, m_Screen.Width, m_Screen.Height, m_Angle);
    return space.GetView().Width() / m_Screen.Width * kPixelsPerSm * m_Map.metresInUnit;
}

double MapView::GetMostDetail() const {
    if (m_MostDetail) return *m_MostDetail;
    const MapSpace space(m_Whole, {}, m_Screen.Width, m_Screen.Height, 0.0);
    return space.GetView().Width() / m_Screen.Width * kPixelsPerSm * m_Map.metresInUnit * kMostDetail;
}

std::int32_t MapView::GetHorizon() const {
    return m_IsPerspective ? zul::ToLong(std::ceil(m_Screen.Height * kSky)) : 0;
}

TDoublePoint MapView::GetPlace(zul::TLongPoint pixel) const {
    const TDoublePoint units = GetUnits(pixel);
    return {m_Space.GetCenter().X + units.X * m_Space.GetUnit(),
            m_Space.GetCenter().Y + units.Y * m_Space.GetUnit()};
}

std::string MapView::Describe() const {
    zul::TLongRect box;
    m_Scaler->GetVisibleBox(box);
    std::ostringstream text;
    text << std::setprecision(17) << "space " << m_Space.GetCenter().X << ' ' << m_Space.GetCenter().Y << ' '
         << m_Space.GetUnit() << " reach " << m_Reach << " box " << box.MinX << ' ' << box.MinY << ' '
         << box.MaxX << ' ' << box.MaxY << " angle " << m_Angle << " depth "
         << (m_IsPerspective ? m_Depth : 0.0) << " screen " << m_Screen.Width << ' ' << m_Screen.Height;
    return text.str();
}

// --- space and scaler ---

void MapView::ChooseUnits() {
    const double width = m_Screen.Width;
    const double height = m_Screen.Height;
    m_Reach = zul::MaxCoord;
    if (m_IsPerspective) {
        const double farHalf = 0.5 + zul::CProjectiveScaler().GetSideFactor();
        const double radius = std::hypot(farHalf * width, (0.5 + m_Depth) * height);
        m_UnitsInPixel = std::max(1, zul::ToLong(0.8 * m_Reach / radius));
        m_Roam = 0.1 * m_Reach;
    } else if (m_Angle != 0.0) {
        // The centre turns about itself, so that its way counts three times against the reach.
        const double radius = std::hypot(width, height) * (0.5 + kMargin);
        m_UnitsInPixel = std::max(1, zul::ToLong(0.4 * kTurnedReach / radius));
        m_Roam = std::max(0.0, kTurnedReach - radius * m_UnitsInPixel) / 3.0;
        m_Reach = kTurnedReach - 2.0 * m_Roam;
    } else {
        const double longer = std::max(width, height);
        const std::int32_t most = std::max(1, zul::ToLong(2.0 * m_Reach / (longer * kScreensInSpace)));
        m_UnitsInPixel = most % 2 == 1 ? most : most - 1;
        m_Roam = m_Reach - (longer / 2.0 + kReach) * m_UnitsInPixel;
    }
}

zul::TLongRect MapView::GetBounds(const zul::TLongRect& box) const {
    // A little less than a whole pixel is none: the edge of the map and that of the box were the same.
    const auto outwards = [this](double distance) {
        return zul::ToLong(std::ceil(distance / m_UnitsInPixel - 1e-6)) * std::int64_t{m_UnitsInPixel};
    };
    const TDoublePoint& center = m_Space.GetCenter();
    const double unit = m_Space.GetUnit();
    return {zul::SaturateToLong(box.MinX - outwards(box.MinX - (m_Whole.minX - center.X) / unit)),
            zul::SaturateToLong(box.MinY - outwards(box.MinY - (m_Whole.minY - center.Y) / unit)),
            zul::SaturateToLong(box.MaxX + outwards((m_Whole.maxX - center.X) / unit - box.MaxX)),
            zul::SaturateToLong(box.MaxY + outwards((m_Whole.maxY - center.Y) / unit - box.MaxY))};
}

std::unique_ptr<zul::CScaler> MapView::NewScaler(const zul::TLongRect& box, zul::TSize screen) const {
    const Setting setting{
        box,          GetBounds(box),   screen,         m_Space.GetUnit() * m_Map.metresInUnit,
        m_MetresInSm, GetLeastDetail(), GetMostDetail()};
    std::unique_ptr<zul::CScaler> scaler;
    if (m_IsPerspective) {
        auto projective = MakeObject<PlacedScaler<zul::CProjectiveScaler>>(setting);
        const auto height = static_cast<double>(std::int64_t{box.MaxY} - box.MinY);
        projective->SetHorizonFraction(kSky);
        projective->SetSlopeDepth(zul::RoundToLong(m_Depth * height * setting.metresInUnit));
        scaler = std::move(projective);
    } else {
        auto flat = MakeObject<PlacedScaler<zul::CScaler>>(setting);
        flat->WidenFrame(kReach * m_UnitsInPixel);
        scaler = std::move(flat);
    }
    if (m_Angle != 0.0) scaler->SetRotationAngle(m_Angle);
    return scaler;
}

std::unique_ptr<zul::CScaler> MapView::MakeScaler(const zul::TLongRect& part) const {
    zul::TLongRect box;
    m_Scaler->GetVisibleBox(box);
    return NewScaler({box.MinX + part.MinX * m_UnitsInPixel, box.MaxY - part.MaxY * m_UnitsInPixel,
                      box.MinX + part.MaxX * m_UnitsInPixel, box.MaxY - part.MinY * m_UnitsInPixel},
                     {part.MaxX - part.MinX, part.MaxY - part.MinY});
}

void MapView::Settle() {
    ChooseUnits();
    m_Space = MapSpace::Around(m_Center, GetPixelSize() / m_UnitsInPixel, m_Reach);
    const std::int32_t width = m_Screen.Width * m_UnitsInPixel;
    const std::int32_t height = m_Screen.Height * m_UnitsInPixel;
    m_Scaler = NewScaler({-width / 2, height / 2 - height, width - width / 2, height / 2}, m_Screen);
    AdoptCenter();
}

void MapView::AdoptCenter() {
    zul::TLongRect box;
    m_Scaler->GetVisibleBox(box);
    m_Center = {m_Space.GetCenter().X + Halfway(box.MinX, box.MaxX) * m_Space.GetUnit(),
                m_Space.GetCenter().Y + Halfway(box.MinY, box.MaxY) * m_Space.GetUnit()};
}

bool MapView::IsNearEnd() const {
    const double roam = m_Roam * m_Space.GetUnit();
    return std::abs(m_Center.X - m_Space.GetCenter().X) > roam ||
           std::abs(m_Center.Y - m_Space.GetCenter().Y) > roam;
}

zul::TLongRect MapView::GetWholeScreen() const {
    return {0, 0, m_Screen.Width, m_Screen.Height};
}

std::optional<zul::TLongRect> MapView::PreviewOf(const MapView::Sight& former) const {
    if (m_IsPerspective) return GetWholeScreen();
    const double pixelSize = GetPixelSize();
    const double dx = (former.center.X - m_Center.X) / pixelSize;
    const double dy = (former.center.Y - m_Center.Y) / pixelSize;
    const double radians = zul::CAngle::DegreeToRadian(m_Angle);
    const double x = m_Screen.Width / 2.0 + dx * zul::Cosine(radians) - dy * zul::Sine(radians);
    const double y = m_Screen.Height / 2.0 - dx * zul::Sine(radians) - dy * zul::Cosine(radians);
    const double halfWidth = former.screen.Width / 2.0 * former.pixelSize / pixelSize;
    const double halfHeight = former.screen.Height / 2.0 * former.pixelSize / pixelSize;
    if (std::max(std::abs(x) + halfWidth, std::abs(y) + halfHeight) > kFarPreview) return {};
    return zul::TLongRect{zul::RoundToLong(x - halfWidth), zul::RoundToLong(y - halfHeight),
                          zul::RoundToLong(x + halfWidth), zul::RoundToLong(y + halfHeight)};
}

// --- navigate ---

ViewChange MapView::ShowWhole() {
    m_MetresInSm = GetLeastDetail();
    m_Center = {Halfway(m_Whole.minX, m_Whole.maxX), Halfway(m_Whole.minY, m_Whole.maxY)};
    Settle();
    return {ViewChange::Kind::NewSpace, {}, {}};
}

ViewChange MapView::Drag(zul::TLongPoint from, zul::TLongPoint to, zul::CCanvas& canvas) {
    zul::TLongPoint shift{to.X - from.X, to.Y - from.Y};
    if (HasParts()) {
        std::int32_t dx = -shift.X;
        std::int32_t dy = shift.Y;
        if (!m_Scaler->Scroll(&canvas, dx, dy)) return {};
        shift = {-dx, dy};
    } else {
        const TDoublePoint start = GetUnits(from);
        const TDoublePoint end = GetUnits(to);
        std::int32_t dx = zul::RoundToLong(start.X - end.X);
        std::int32_t dy = zul::RoundToLong(start.Y - end.Y);
        if (!m_Scaler->ScrollInMapCoords(&canvas, dx, dy)) return {};
    }
    AdoptCenter();
    const zul::TLongRect preview{shift.X, shift.Y, shift.X + m_Screen.Width, shift.Y + m_Screen.Height};
    if (IsNearEnd()) {
        Settle();
        return {ViewChange::Kind::NewSpace, shift, preview};
    }
    const bool isInView = std::abs(shift.X) < m_Screen.Width && std::abs(shift.Y) < m_Screen.Height;
    return {HasParts() && isInView ? ViewChange::Kind::Shifted : ViewChange::Kind::Redrawn, shift, preview};
}

ViewChange MapView::ZoomTo(zul::TLongPoint a, zul::TLongPoint b) {
    const zul::TLongPoint middle{(a.X + b.X) / 2, (a.Y + b.Y) / 2};
    const double across = std::abs(a.X - b.X) * static_cast<double>(m_UnitsInPixel);
    const double up = std::abs(a.Y - b.Y) * static_cast<double>(m_UnitsInPixel);
    if (!m_IsPerspective) return Zoom(GetUnits(middle), across, up, true);
    const TDoublePoint left = GetUnits({a.X, middle.Y});
    const TDoublePoint right = GetUnits({b.X, middle.Y});
    const TDoublePoint top = GetUnits({middle.X, a.Y});
    const TDoublePoint bottom = GetUnits({middle.X, b.Y});
    return Zoom(GetUnits(middle), std::hypot(left.X - right.X, left.Y - right.Y),
                std::hypot(top.X - bottom.X, top.Y - bottom.Y), true);
}

ViewChange MapView::ZoomAt(zul::TLongPoint pixel, double factor) {
    const TDoublePoint fixed = GetUnits(pixel);
    zul::TLongRect box;
    m_Scaler->GetVisibleBox(box);
    const double x = Halfway(box.MinX, box.MaxX);
    const double y = Halfway(box.MinY, box.MaxY);
    const double shrink = std::max(factor, 1.0 / factor);
    return Zoom({fixed.X + (x - fixed.X) / factor, fixed.Y + (y - fixed.Y) / factor},
                (box.MaxX - box.MinX) / shrink, (box.MaxY - box.MinY) / shrink, factor > 1.0);
}

TDoublePoint MapView::GetUnits(zul::TLongPoint pixel) const {
    if (!HasGround(pixel)) pixel.Y = GetHorizon();
    m_Scaler->ScreenToMapEx(pixel.X, pixel.Y);
    return {static_cast<double>(pixel.X), static_cast<double>(pixel.Y)};
}

ViewChange MapView::Zoom(const TDoublePoint& middle, double width, double height, bool zoomIn) {
    const Sight former{m_Center, GetPixelSize(), m_Screen};
    const bool isZoomed = m_Scaler->Zoom(
        zul::RoundToLong(middle.X - width / 2.0), zul::RoundToLong(middle.Y - height / 2.0),
        zul::RoundToLong(middle.X + width / 2.0), zul::RoundToLong(middle.Y + height / 2.0), zoomIn);
    if (!isZoomed) return {};
    m_MetresInSm = m_Scaler->GetMetresInSm();
    AdoptCenter();
    return SettleOnMap(former);
}

ViewChange MapView::SettleOnMap(const std::optional<Sight>& former) {
    const double least = GetLeastDetail();
    m_MetresInSm = std::clamp(m_MetresInSm, std::min(GetMostDetail(), least), least);
    const double pixelSize = GetPixelSize();
    m_Center = {KeepOnSpan(m_Center.X, m_Screen.Width * pixelSize, m_Whole.minX, m_Whole.maxX),
                KeepOnSpan(m_Center.Y, m_Screen.Height * pixelSize, m_Whole.minY, m_Whole.maxY)};
    Settle();
    return {ViewChange::Kind::NewSpace, {}, former ? PreviewOf(*former) : GetWholeScreen()};
}

ViewChange MapView::TurnTo(double degrees) {
    degrees = std::fmod(degrees, 360.0);
    if (degrees == m_Angle) return {};
    const bool isWhole = m_MetresInSm == GetLeastDetail();
    m_Angle = degrees;
    if (isWhole) m_MetresInSm = GetLeastDetail();
    return SettleOnMap({});
}

ViewChange MapView::SetPerspective(bool on) {
    if (on == m_IsPerspective) return {};
    m_IsPerspective = on;
    return SettleOnMap({});
}

ViewChange MapView::SetDepth(double depth) {
    depth = std::clamp(depth, zul::CProjectiveScaler::LeastDepthFactor,
                       zul::CProjectiveScaler::GreatestDepthFactor);
    if (depth == m_Depth || !m_IsPerspective) return {};
    m_Depth = depth;
    return SettleOnMap({});
}

ViewChange MapView::Resize(zul::TSize screen) {
    if (screen.Width == m_Screen.Width && screen.Height == m_Screen.Height) return {};
    const Sight former{m_Center, GetPixelSize(), m_Screen};
    const bool isWhole = m_MetresInSm == GetLeastDetail();
    m_Screen = screen;
    if (isWhole) m_MetresInSm = GetLeastDetail();
    return SettleOnMap(former);
}

// --- limits ---

void MapView::LimitDetail() {
    m_MostDetail = m_MetresInSm;
    m_Scaler = MakeScaler(GetWholeScreen());
}

void MapView::LimitOverview() {
    m_LeastDetail = m_MetresInSm;
    m_Scaler = MakeScaler(GetWholeScreen());
}

void MapView::ClearLimits() {
    m_LeastDetail.reset();
    m_MostDetail.reset();
    m_Scaler = MakeScaler(GetWholeScreen());
}

}  // namespace zulmap
