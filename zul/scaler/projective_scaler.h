/// \file
/// The map in perspective.
#pragma once

#include <cstdint>

#include "zul/geometry/coordinates.h"
#include "zul/kernel/export.h"
#include "zul/scaler/projection.h"
#include "zul/scaler/scaler.h"

namespace zul {

/// A scaler that shows the map as seen from above and behind the lower edge of the screen.
///
///          far edge: lands on the row of the horizon
///     M1 +--------------------------------+ M2
///         \            map               /      the visible box with its own width at the near edge,
///          \     +--------------+       /       the trapezoid around it reaching farther out:
///           \    | visible box  |      /        side factor  in box widths beyond either side,
///            \   |              |     /         depth factor in box heights beyond the upper edge
///          M0 +--+--------------+--+ M3
///               near edge: lands on the lower edge of the screen, at the scale of the visible box
///
/// The trapezoid, turned about the centre of the visible box, is mapped to the screen below the horizon by a
/// plane projective transform. The transform follows whatever moves the view; where it cannot be found (no
/// screen, an empty box, three corners on a line) the one before stays, and at first there is none: then
/// points stay as they are and lists come out empty. It is not stored: after ObjectFromBuffer() a screen size
/// brings it.
///
/// Ground beyond the far edge is mapped above the horizon, closer and closer to a row that it never reaches;
/// who shows a sky paints it last. Ground behind the viewer has no place on the screen: figures are cut off
/// there (MapFigure()), lists leave such points out (MapToScreenTrunc()), the other conversions apply the
/// formula to it, which throws it over the horizon. Navigation moves the visible box as in the flat view;
/// scrolled contents do not stay alike, so each step redraws all.
class ZUL_API CProjectiveScaler : public CScaler {
public:
    /// Limits of SetSlopeDepth(), in box heights.
    static constexpr double LeastDepthFactor = 1.5;
    static constexpr double GreatestDepthFactor = 10.0;

    CProjectiveScaler() = default;
    ~CProjectiveScaler() override = default;

    // --- what is to be drawn ---

    /// The box around the trapezoid, map units. `margin` is ignored, callers rely on the bare box.
    void GetQueryRect(TLongRect& rect, std::int32_t margin) override;
    /// Replaces `rect`, a part of the unturned visible box, by the box around the trapezoid that it widens
    /// to, then widens that by `margin` pixels as seen at the far edge, at least 2 map units; a margin of 0
    /// widens nothing.
    void PrepareQueryRect(TLongRect& rect, std::int32_t margin) override;
    /// Always 0: the transform turns the map, so drawn geometry is not to be turned.
    double GetRotationAngle() const override { return 0.0; }
    /// False for the rows in the upper part of the screen that has no labels.
    bool IsDepthVisible(std::int32_t screenY) const override;

    // --- set-up ---

    /// Rebuilds the transform from the visible box, or from four map points: near left, far left, far right,
    /// near right. Such points hold until the view changes.
    void InitPerspective(const TPoint* mapCorners);
    /// Screen row of the far edge as a fraction of the screen height, from the top: 0 at first, kept within
    /// [0, 0.9]; NaN changes nothing.
    void SetHorizonFraction(double fraction);
    double GetHorizonFraction() const { return m_HorizonFraction; }
    /// Takes effect when the transform is next rebuilt.
    void SetInscriptionClippingFraction(double fraction) override;
    /// Metres from the visible box's upper edge to the far edge, kept within 1.5 and 10 box heights.
    void SetSlopeDepth(std::int32_t depthMetres);
    double GetDepthFactor() const { return m_DepthFactor; }  ///< Box heights.
    double GetSideFactor() const { return m_SideFactor; }    ///< Box widths.
    void SetScreenSize(std::int32_t width, std::int32_t height) override;
    /// Makes the visible box start at `point` (its lower middle; null: where it starts now) and so large that
    /// the far edge lies `depthMetres` beyond its upper edge.
    void SetReviewDepth(std::int32_t depthMetres, const TPoint* point) override;
    /// Degrees by which the trapezoid is turned clockwise about the centre of the visible box, so that the
    /// map appears turned counter-clockwise.
    void SetRotationAngle(double degrees) override;

    // --- map to screen: as the flat forms round and truncate; none turns again ---

    std::int32_t MapToScreen(std::int32_t length) const override;
    /// A point without an image leaves the results as they were.
    void MapToScreen(std::int32_t x, std::int32_t y, std::int32_t& screenX,
                     std::int32_t& screenY) const override;
    /// A point without an image keeps its map coordinates.
    void MapToScreen(TLongPoint* out, const TPoint* in, std::int32_t& count) const override;
    /// Leaves out points behind the viewer, and those on the pixel of the one before.
    void MapToScreenTrunc(TLongPoint* out, const TPoint* in, std::int32_t& count) const override;
    void MapToScreenEx(TLongPoint* out, const TPoint* in, std::int32_t& count) const override;
    void MapToScreenEx(TCoord x, TCoord y, std::int32_t& screenX, std::int32_t& screenY) const override;

    /// Twice the count: each point behind the viewer may become two where a figure is cut.
    std::int32_t GetFigureRoom(std::int32_t count) const override;
    /// Cuts the figure off a little behind the near edge, off the screen, where it is joined along the cut.
    void MapFigure(TLongPoint* out, const TPoint* in, std::int32_t& count, bool closed) const override;
    bool IsInFront(std::int32_t x, std::int32_t y) const override;
    bool CutSegment(TLongPoint& a, TLongPoint& b) const override;

    // --- screen to map: turned back; a pixel without ground leaves the results as they were; 16-bit results
    // are the nearest coordinates ---

    using CScaler::ScreenToMap;  // with an untyped array: flat, as of any scaler
    std::int32_t ScreenToMap(std::int32_t length) const override;
    void ScreenToMap(std::int32_t screenX, std::int32_t screenY, TCoord& x, TCoord& y) const override;
    void ScreenToMapL(std::int32_t& x, std::int32_t& y) const override;
    void ScreenToMapEx(std::int32_t screenX, std::int32_t screenY, TCoord& x, TCoord& y) const override;
    void ScreenToMapEx(std::int32_t& x, std::int32_t& y) const override;
    void ScreenToMapEx(TLongPoint* points, std::int32_t count) const override;
    /// Points in place.
    virtual void ScreenToMap(TLongPoint* points, std::int32_t count) const;

    // --- state ---

    /// Smaller with the distance from the viewer; behind it as at the cut of figures.
    double GetScreenToVisibleAt(std::int32_t x, std::int32_t y) const override;
    /// Row of the far edge, pixels.
    double GetHorizonY() const { return m_HorizonY; }
    /// The middles of the near and the far edge, as far as 16 bits reach: from where to where the view goes.
    void GetViewLine(TPoint& nearPoint, TPoint& farPoint) const;
    /// The corners of the trapezoid in map units, in the order of InitPerspective().
    void GetMapCorners(TLongPoint (&corners)[4]) const;

protected:
    void ViewChanged() override { Rebuild(nullptr); }

private:
    void Rebuild(const TPoint* mapCorners);
    /// The trapezoid over a box, turned.
    void FindTrapezoid(const TLongRect& box, TLongPoint (&corners)[4]) const;
    void KeepTrapezoid(const TLongPoint (&corners)[4]);
    /// Map units that a pixel covers at the far edge, across or into the distance, whichever is more.
    double UnitsInFarPixel() const;
    TLongPoint CutPoint(TLongPoint inFront, TLongPoint behind) const;
    TLongPoint MapCut(TPoint inFront, TPoint behind) const;

    TProjection m_MapToScreenMatrix{};
    TProjection m_ScreenToMapMatrix{};
    TPoint m_NearPoint{};
    TPoint m_FarPoint{};
    double m_InscriptionClippingFraction = 0.25;
    double m_InscriptionClippingY = 0.0;
    double m_SideFactor = 1.5;
    double m_DepthFactor = 3.0;
    double m_HorizonY = 0.0;
    double m_HorizonFraction = 0.0;
    double m_PerspectiveAngle = 0.0;
    TLongPoint m_Corners[4] = {};
    double m_NearWeight = 1.0;  ///< at the near edge
    double m_NearLimit = 1.0;   ///< the least weight of a point in front of the viewer
};

}  // namespace zul
