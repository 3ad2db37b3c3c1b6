/// \file
/// What part of a map a window shows.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "apps/zulmap/map_data.h"
#include "apps/zulmap/map_space.h"
#include "zul/canvas/canvas.h"
#include "zul/geometry/coordinates.h"
#include "zul/scaler/scaler.h"

namespace zulmap {

/// What a step of navigation did to the picture.
struct ViewChange {
    enum class Kind {
        None,      ///< the step was not possible
        Shifted,   ///< every pixel moved by `shift`; what came in from the sides is unknown
        Redrawn,   ///< all is to be drawn anew, in the same map space
        NewSpace,  ///< all is to be drawn anew, in another map space
    };
    Kind kind = Kind::None;
    zul::TLongPoint shift{};  ///< of a drag; about so far, unless all moved by it
    /// About where the former picture lies in the new one, pixels, right and bottom excluded; none when it is
    /// of no use. Shown until the new one is there.
    std::optional<zul::TLongRect> preview;
};

/// A view that moves over the map.
///
/// Each zoom lays the 16-bit map space anew around the view, so that every scale is drawn as finely as the
/// file allows. A pixel of the flat, unturned view is an odd number of map units. So scrolling by pixels is
/// scrolling by whole units, and as no coordinate lies halfway between two pixels, the scrolled picture is
/// the one that drawing it anew would give. A turned view rounds every point about a centre that moves along,
/// and a perspective view is not moved by shifting it; these are drawn anew with each step.
///
/// Pixels count from the upper left corner. Scales are metres per centimetre of screen.
class MapView {
public:
    /// Pixels by which a figure's wide line, marks and endings may reach beyond its points.
    static constexpr std::int32_t kReach = 128;

    /// Shows the whole of \p map, which is not empty and outlives the view. Each side of \p screen is at
    /// least 1.
    MapView(const MapFacts& map, zul::TSize screen);

    // --- query ---

    const MapFacts& GetMap() const { return m_Map; }
    const MapSpace& GetSpace() const { return m_Space; }
    zul::CScaler& GetScaler() const { return *m_Scaler; }
    zul::TSize GetScreen() const { return m_Screen; }
    double GetAngle() const { return m_Angle; }
    bool IsPerspective() const { return m_IsPerspective; }
    /// See SetDepth().
    double GetDepth() const { return m_Depth; }
    double GetMetresInSm() const { return m_MetresInSm; }
    /// Whether a pixel shows the map, not the sky.
    bool HasGround(zul::TLongPoint pixel) const { return !m_IsPerspective || pixel.Y >= GetHorizon(); }
    /// The place under a pixel in the file's coordinates; under the sky that at the horizon.
    TDoublePoint GetPlace(zul::TLongPoint pixel) const;
    /// A scaler of its own for a part of the screen, right and bottom excluded; (0, 0) becomes its upper left
    /// pixel. Only the flat, unturned view has parts, of the others it is the whole screen.
    std::unique_ptr<zul::CScaler> MakeScaler(const zul::TLongRect& part) const;
    bool HasParts() const { return !m_IsPerspective && m_Angle == 0.0; }
    /// The view in numbers that say all of it: space, visible box, angle, perspective, screen.
    std::string Describe() const;

    // --- navigate ---

    ViewChange ShowWhole();
    /// The map follows a pointer that moves from one pixel to another, as far as the map goes. The pattern
    /// origin of the brush of \p canvas goes along.
    ViewChange Drag(zul::TLongPoint from, zul::TLongPoint to, zul::CCanvas& canvas);
    /// Shows what lies between two pixels, as large as it fits.
    ViewChange ZoomTo(zul::TLongPoint a, zul::TLongPoint b);
    /// What lies under a pixel stays there. \p factor above 1 shows more detail.
    ViewChange ZoomAt(zul::TLongPoint pixel, double factor);
    /// Degrees, counter-clockwise, finite.
    ViewChange TurnTo(double degrees);
    ViewChange SetPerspective(bool on);
    /// How far a perspective view reaches beyond its near edge, in heights of the near box, 1.5 to 10.
    ViewChange SetDepth(double depth);
    ViewChange Resize(zul::TSize screen);

    // --- limits of the scale: without them the whole map and a two thousandth of it ---

    /// From now on the view shows no more detail than now.
    void LimitDetail();
    /// From now on the view shows no more of the map than now.
    void LimitOverview();
    void ClearLimits();

private:
    struct Sight {
        TDoublePoint center;
        double pixelSize;
        zul::TSize screen;
    };

    double GetLeastDetail() const;
    double GetMostDetail() const;
    /// Of the file's units.
    double GetPixelSize() const;
    /// The first row below the sky.
    std::int32_t GetHorizon() const;
    TDoublePoint GetUnits(zul::TLongPoint pixel) const;
    zul::TLongRect GetWholeScreen() const;
    /// The whole map in map units, its sides whole pixels away from those of the box.
    zul::TLongRect GetBounds(const zul::TLongRect& box) const;
    std::unique_ptr<zul::CScaler> NewScaler(const zul::TLongRect& box, zul::TSize screen) const;

    ViewChange Zoom(const TDoublePoint& middle, double width, double height, bool zoomIn);
    void ChooseUnits();
    /// Lays space and scaler around the centre.
    void Settle();
    /// The same after scale and centre were brought within their limits.
    ViewChange SettleOnMap(const std::optional<Sight>& former);
    void AdoptCenter();
    bool IsNearEnd() const;
    std::optional<zul::TLongRect> PreviewOf(const Sight& former) const;

    const MapFacts& m_Map;
    Box m_Whole;
    zul::TSize m_Screen;
    TDoublePoint m_Center{};  ///< of the visible box, in the file's coordinates
    double m_MetresInSm = 0.0;
    double m_Angle = 0.0;
    bool m_IsPerspective = false;
    double m_Depth = 3.0;
    std::optional<double> m_LeastDetail;
    std::optional<double> m_MostDetail;

    std::int32_t m_UnitsInPixel = 1;
    double m_Reach = 0.0;  ///< map units that the space holds on every side of its middle
    double m_Roam = 0.0;   ///< map units that the centre may be away from it
    MapSpace m_Space;
    std::unique_ptr<zul::CScaler> m_Scaler;
};

}  // namespace zulmap
