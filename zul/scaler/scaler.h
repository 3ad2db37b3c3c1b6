/// \file
/// The map-to-screen transformation.
#pragma once

#include <cstdint>

#include "zul/geometry/coordinates.h"
#include "zul/kernel/any_object.h"
#include "zul/kernel/export.h"
#include "zul/kernel/message.h"
#include "zul/kernel/stream.h"

namespace zul {

class CCanvas;
class CRect;

/// Turns map coordinates into screen pixels and back, and moves the view over the map.
///
/// Map units are 16-bit in drawn geometry and 32-bit in the map bounds and the visible box; y points up.
/// Screen pixels are 32-bit; y points down. Scales are metres of terrain per centimetre of screen, so a
/// greater scale shows less detail. Angles are degrees, turned about the pivot, which is the centre of the
/// visible box.
///
///     screen x = (x - span left) * k        span left   = min x of the visible box
///     screen y = (span bottom - y) * k      span bottom = max y of the visible box
///
/// A new scaler is not set up: k is 0 until InitScaler() has seen a screen. Conversions of a scaler that is
/// not set up, or of one with empty bounds, give finite values without meaning: what exceeds 32 bits
/// saturates, what is no number becomes 0; results of 16 bits keep their low bits.
///
/// "Rounded" is half away from zero. Conversions change no state.
class ZUL_API CScaler : public CAnyObject {
public:
    CScaler() = default;
    ~CScaler() override = default;

    // --- what is to be drawn ---

    /// The map box that covers the turned view. `margin` is ignored, callers rely on the bare box.
    virtual void GetQueryRect(TLongRect& rect, std::int32_t margin);
    /// Replaces `rect` (map units) by the box around its turned self, then widens it on every side by
    /// `margin` pixels, at least 2 map units; a margin of 0 widens nothing.
    virtual void PrepareQueryRect(TLongRect& rect, std::int32_t margin);
    /// Degrees by which drawn geometry is to be turned. A view that turns geometry itself answers 0.
    virtual double GetRotationAngle() const;
    /// Whether labels at this screen row are drawn: always true here, a perspective view hides its far rows.
    virtual bool IsDepthVisible(std::int32_t screenY) const;

    // --- set-up ---

    /// Part of the screen without labels, from the top; only a perspective view has one.
    virtual void SetInscriptionClippingFraction(double fraction);
    /// Pixels. Keeps scale and top-left corner of the view; the first size ever shows the whole map.
    virtual void SetScreenSize(std::int32_t width, std::int32_t height);
    /// Shows a map box. With `fit` the scale follows the box and stays within its limits; without, only the
    /// origin moves. A box without width or height is stored and nothing else happens.
    virtual void SetVisibleBox(std::int32_t minX, std::int32_t minY, std::int32_t maxX, std::int32_t maxY,
                               bool fit);
    /// Shows `depth` metres upwards from `point`, or from the middle of the lower edge when it is null.
    virtual void SetReviewDepth(std::int32_t depth, const TPoint* point);
    /// Turns the map counter-clockwise about the centre of the visible box; any angle.
    virtual void SetRotationAngle(double degrees);
    /// Sets everything up to show the whole of `bounds` (map units). `maxUnwrapped` is the largest area in
    /// pixels that the application renders at once, `maxZoomFraction` the part of the map that fills the
    /// screen at the most detailed scale (0 stands for 0.005). With a screen of 0 x 0 nothing is shown yet.
    virtual void InitScaler(const TLongRect& bounds, TSize screen, TSize maxUnwrapped, double pixelsPerSm,
                            double metresInUnit, double maxZoomFraction);

    // --- map to screen ---
    // The array forms read `count` points and write as many, or `count` as it comes back. A count below 1 or
    // a null array does nothing.

    /// A length, rounded.
    virtual std::int32_t MapToScreen(std::int32_t length) const;
    /// A point, not turned, rounded.
    virtual void MapToScreen(std::int32_t x, std::int32_t y, std::int32_t& screenX,
                             std::int32_t& screenY) const;
    /// Points, not turned, rounded.
    virtual void MapToScreen(TLongPoint* out, const TPoint* in, std::int32_t& count) const;
    /// As above, but a point that falls on the pixel of the one before is left out; `count` comes back as the
    /// number written, 0 when there was nothing to do.
    virtual void MapToScreenTrunc(TLongPoint* out, const TPoint* in, std::int32_t& count) const;
    /// Points, turned with CPoint::RotateEx whatever the angle, then truncated, not rounded.
    virtual void MapToScreenEx(TLongPoint* out, const TPoint* in, std::int32_t& count) const;
    /// A point, turned with CPoint::Rotate unless the angle is 0, rounded.
    virtual void MapToScreenEx(TCoord x, TCoord y, std::int32_t& screenX, std::int32_t& screenY) const;
    /// The form that drawing wants: MapToScreenTrunc(), or MapToScreenEx() when geometry is to be turned.
    void MapForDrawing(TLongPoint* out, const TPoint* in, std::int32_t& count) const;

    // --- screen to map ---

    /// A length, rounded.
    virtual std::int32_t ScreenToMap(std::int32_t length) const;
    /// A point, not turned, rounded, low 16 bits.
    virtual void ScreenToMap(std::int32_t screenX, std::int32_t screenY, TCoord& x, TCoord& y) const;
    /// `count` TLongPoint records in place, not turned, rounded.
    virtual void ScreenToMap(void* points, std::int32_t count) const;
    /// A point in place, not turned, rounded.
    virtual void ScreenToMapL(std::int32_t& x, std::int32_t& y) const;
    /// A point, turned back, low 16 bits of the form below.
    virtual void ScreenToMapEx(std::int32_t screenX, std::int32_t screenY, TCoord& x, TCoord& y) const;
    /// A point in place, rounded; unless the angle is 0, its low 16 bits are turned back about the pivot.
    virtual void ScreenToMapEx(std::int32_t& x, std::int32_t& y) const;
    /// Points in place. Turns the low 16 bits of each screen point back about the pivot before it is scaled.
    virtual void ScreenToMapEx(TLongPoint* points, std::int32_t count) const;

    // --- navigation ---

    /// Moves the view by pixels, dx to the right, dy up the map, and stops at the map's edges; dx and dy come
    /// back as what was scrolled. Carries the pattern origin of the canvas's brush along (null: no brush).
    /// False when nothing moved. Moves no pixels.
    virtual bool Scroll(CCanvas* canvas, std::int32_t& dx, std::int32_t& dy);
    /// The same in map units.
    virtual bool ScrollInMapCoords(CCanvas* canvas, std::int32_t& dx, std::int32_t& dy);
    /// Zooms into a map rectangle, or out so that the present view shrinks into it; corners in any order.
    /// Stops at the scale limits. False, and nothing changed, when the view already stands at the limit.
    virtual bool Zoom(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, bool zoomIn);
    /// Moves the view so that its centre is (x, y), which becomes the pivot.
    virtual void CenterMap(std::int32_t x, std::int32_t y);

    // --- figures that a view may have to cut before they can be mapped; only a perspective view has to ---

    /// Room that MapFigure() needs for a list of `count` points.
    virtual std::int32_t GetFigureRoom(std::int32_t count) const;
    /// Maps a polyline or (`closed`) a ring as MapForDrawing() does, without what lies behind the viewer.
    virtual void MapFigure(TLongPoint* out, const TPoint* in, std::int32_t& count, bool closed) const;
    /// Whether a map point lies in front of the viewer.
    virtual bool IsInFront(std::int32_t x, std::int32_t y) const;
    /// Moves an end (map units) that lies behind the viewer along the segment to the front. False, and
    /// nothing moved, when both lie behind.
    virtual bool CutSegment(TLongPoint& a, TLongPoint& b) const;

    /// Scrolls by (x, y) less half the visible box: map units given where pixels are scrolled, as ever.
    bool PlaceToCenter(CCanvas* canvas, TCoord x, TCoord y);
    /// Centres a map that is smaller than the screen. Whether the view moved.
    bool CheckVisible();
    /// Least detailed scale. A view of more detail jumps to it.
    void SetMinScale(double scale);
    /// Most detailed scale. A view of less detail jumps to it.
    void SetMaxScale(double scale);
    /// Scroll bar values, in steps of a quarter of the visible box.
    void GetScrollParams(std::int32_t& range, std::int32_t& position, bool vertical) const;

    // --- state ---

    /// Shows the whole of other bounds (map units), when there is a screen.
    void SetMapBounds(std::int32_t minX, std::int32_t minY, std::int32_t maxX, std::int32_t maxY);
    /// Pixels, as of InitScaler().
    void SetMaximumUnwrappedSize(std::int32_t width, std::int32_t height);
    /// Shows the whole map.
    void SetBaseScale();
    /// Takes over the view of another scaler, but neither its angle and pivot nor its printer factor. Null
    /// and self change nothing.
    void ApplyScaler(const CScaler* other);

    /// Pixels.
    void GetScreenSize(std::int32_t& width, std::int32_t& height) const;
    void GetMaximumUnwrappedSize(std::int32_t& width, std::int32_t& height) const;
    /// Map bounds narrowed to 16 bits as CRect does it.
    void GetMapBounds(CRect& rect) const;
    void GetMapBounds(TLongRect& rect) const { rect = m_MapBounds; }    ///< Map units.
    void GetVisibleBox(TLongRect& rect) const { rect = m_VisibleBox; }  ///< Map units, before turning.
    /// The turned visible box and an eighth of its size more on every side: the frame for clipping, map
    /// units.
    const TRect& GetExtVisible() const { return m_ExtVisible; }
    void GetPivotPoint(TCoord& x, TCoord& y) const;  ///< Map units.
    /// Pixels scrolled since the view was last built anew; x counts against dx, y along dy.
    void GetScrollOffset(std::int32_t& x, std::int32_t& y) const;
    /// k, pixels per map unit; not above 0 while the scaler is not set up.
    double GetScreenToVisible() const { return m_ScreenToVisible; }
    /// Pixels per map unit across the view at a map point: k everywhere in a flat view.
    virtual double GetScreenToVisibleAt(std::int32_t x, std::int32_t y) const;
    double GetMetresInUnit() const { return m_MetresInUnit; }  ///< Metres that a map unit is long.
    double GetMetresInSm() const { return m_MetresInSm; }      ///< The scale; -1 at first.
    double GetMinScale() const { return m_MinScale; }          ///< The least detailed scale.
    double GetMaxScale() const { return m_MaxScale; }          ///< The most detailed scale.
    /// Whether fonts add the view's angle to their own.
    bool IsAddAngleToFontAngle() const { return m_AddAngleToFontAngle; }

    /// Per mille of the map that the unwrapped area shows, at most 1000; the printer factor while it is on.
    std::int32_t GetRatio() const;
    /// Per mille of the least detailed scale, rounded; the next is the way back.
    std::int32_t GetPercentRatio(std::int32_t metresInSm) const;
    std::int32_t GetMetersInSm(std::int32_t ratio) const;
    /// Stores the factor, and switches it on when it is less than GetRatio().
    void SetPrinterScaleFactor(std::int32_t factor);
    void ClearPrinterScaleFactor();  ///< Switches the factor off.

    /// Reports error 5 when the map point lies outside the map bounds.
    void TestPoint(std::int32_t x, std::int32_t y) const;
    /// The same for each of `count` TLongPoint records.
    void TestPoints(const void* points, std::int32_t count) const;
    /// The map point under a pixel, clamped to the map bounds. Bits: 1 and 2 the pixel's x, y lies off the
    /// screen; 4 and 8 the map x, y was clamped. 0, and no point written, when the scaler is not set up.
    std::int32_t HitTest(std::int32_t screenX, std::int32_t screenY, TCoord& x, TCoord& y) const;

    // --- persistence and messages ---

    /// 96 bytes: bounds, box, scales and origin. Screen size, angle and pivot are not stored. False only for
    /// null, as below.
    bool ObjectToBuffer(CStream* stream) override;
    /// Fields that a short stream lacks keep their values. Nothing is recalculated.
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override;

    /// The first parameter is the address of the data; the type behind it cannot be checked, a null address
    /// is not handled.
    ///
    /// | code  | data                              | effect                                         |
    /// |-------|-----------------------------------|------------------------------------------------|
    /// | 10069 | double                            | receives the most detailed scale               |
    /// | 10070 | double                            | SetMaxScale()                                  |
    /// | 10071 | double                            | receives the least detailed scale              |
    /// | 10072 | double                            | SetMinScale()                                  |
    /// | 10073 | double                            | receives the scale                             |
    /// | 10074 | four pointers to 32 bits          | receive the visible box                        |
    /// | 10077 | four times 32 bits                | receive the map bounds                         |
    /// | 10078 | four times 32 bits                | become the visible box, at the same scale      |
    /// | 10179 | 16-bit x, 16-bit y, double behind | become the origin (x, -y) and k; goes on to the |
    /// |       | them without padding              | base class, whose answer is returned           |
    bool DoMessage(CMessage* message) override;

protected:
    /// Fits the visible box to the screen and derives k, scale and origin from it.
    void CalculateScaleFactor();
    /// The scale at which this fraction of the map fills the screen.
    double CalculateMaxScale(double fraction) const;
    void CalculateBaseFraction();  ///< How much of the map the unwrapped area shows.
    /// Moves the origin by map units and rebuilds the visible box from the screen size.
    void CalculateVisible(std::int32_t dx, std::int32_t dy);
    /// Rebuilds the frame for clipping; a turned view also gets its pivot back into the centre.
    void CalculateExtVisible();
    /// Called after every recalculation: what is derived from the view follows it.
    virtual void ViewChanged() {}

    /// In 64 bits, since a box may reach over all of 32; negative when inverted.
    std::int64_t BoundsWidth() const { return std::int64_t{m_MapBounds.MaxX} - m_MapBounds.MinX; }
    std::int64_t BoundsHeight() const { return std::int64_t{m_MapBounds.MaxY} - m_MapBounds.MinY; }
    std::int64_t VisibleWidth() const { return std::int64_t{m_VisibleBox.MaxX} - m_VisibleBox.MinX; }
    std::int64_t VisibleHeight() const { return std::int64_t{m_VisibleBox.MaxY} - m_VisibleBox.MinY; }

    TLongRect m_MapBounds{};                ///< map units
    TLongRect m_VisibleBox{};               ///< before turning
    TRect m_ExtVisible{};                   ///< frame for clipping, map units
    double m_PixelsPerSm = 0.0;             ///< resolution of the screen
    double m_ScreenToVisible = 0.0;         ///< k, pixels a map unit
    double m_BaseFraction = 0.0;            ///< of the map, in the unwrapped area
    double m_MetresInSm = -1.0;             ///< the scale
    double m_MinScale = 1500.0;             ///< the least detailed one
    double m_MaxScale = 10.0;               ///< the most detailed one
    double m_MetresInUnit = 1.0;            ///< metres that a map unit is long
    std::int32_t m_SpanLeft = 0;            ///< the left screen column, map units
    std::int32_t m_SpanBottom = 0;          ///< the top screen row, in spite of its name
    std::int32_t m_OffsX = 0;               ///< pixels scrolled, see GetScrollOffset()
    std::int32_t m_OffsY = 0;               ///< pixels scrolled
    std::int32_t m_ScreenWidth = 0;         ///< pixels
    std::int32_t m_ScreenHeight = 0;        ///< pixels
    std::int32_t m_MaxUnwrappedWidth = 0;   ///< pixels
    std::int32_t m_MaxUnwrappedHeight = 0;  ///< pixels
    std::int32_t m_PrinterScaleFactor = 0;  ///< per mille
    TCoord m_PivotX = 0;                    ///< map units
    TCoord m_PivotY = 0;                    ///< map units
    double m_Angle = 0.0;                   ///< degrees
    bool m_AddAngleToFontAngle = false;     ///< see IsAddAngleToFontAngle()
    bool m_UsePrinterScaleFactor = false;   ///< whether the factor is on

private:
    /// Calls visit(field) for each field of the stored form, in its order, until one is refused.
    template <typename TVisit>
    void VisitStored(TVisit visit);
    /// Visible box of this size, its top left corner in the origin.
    void ShowFrom(std::int64_t left, std::int64_t bottom, std::int32_t width, std::int32_t height);
    /// Screen to map without turning or rounding.
    double MapX(std::int32_t screenX) const { return screenX / m_ScreenToVisible + m_SpanLeft; }
    double MapY(std::int32_t screenY) const { return m_SpanBottom - screenY / m_ScreenToVisible; }
    bool IsInBounds(TLongPoint point) const;
    bool ScrollAcross(CCanvas* canvas, std::int32_t& dx, bool& redraw);
    bool ScrollUp(CCanvas* canvas, std::int32_t& dy, bool redraw);
    void JumpToScale(double scale);
};

}  // namespace zul
