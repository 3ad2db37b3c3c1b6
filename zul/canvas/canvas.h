/// \file
/// The canvas: the drawing surface over a device context.
#pragma once

#include <cstdint>

#include "platform/gdi.h"
#include "zul/canvas/region.h"
#include "zul/geometry/coordinates.h"
#include "zul/geometry/points.h"
#include "zul/kernel/any_object.h"
#include "zul/kernel/buffer.h"
#include "zul/kernel/export.h"
#include "zul/kernel/references.h"
#include "zul/raster/bitmap.h"
#include "zul/scaler/scaler.h"
#include "zul/tools/background.h"
#include "zul/tools/brush.h"
#include "zul/tools/font.h"
#include "zul/tools/gradient.h"
#include "zul/tools/palette.h"
#include "zul/tools/pen.h"

namespace zul {

class CRect;

/// Draws on one device with its own pen, brush, font, background and clip region.
///
/// The device is given (AttachToDevice) or made (CreateMemoryCanvas); without one every drawing call is
/// harmless and draws nothing. Scaler, gradient and bitmap are referred to, not owned, and drop out when they
/// are destroyed. With a scaler and pretranslation on (the default) coordinates are map units, otherwise
/// device pixels; operations that differ say so. A canvas belongs to one thread at a time.
///
/// A figure for which the device has no memory is left out and reported as error 3, text perhaps after a part
/// of it; for want of its own the canvas throws std::bad_alloc. Settings and the device's state are then as
/// before.
class ZUL_API CCanvas : public CAnyObject {
public:
    /// What a device can be asked for.
    enum TCaps : std::int32_t {
        CapsDpiX = 0,
        CapsDpiY = 1,
        CapsWidthMm = 2,
        CapsHeightMm = 3,
        CapsWidth = 4,
        CapsHeight = 5,
    };
    /// The modes that the platform knows; here it is always text.
    enum TMapMode : std::int32_t { MapText = 1, MapAnisotropic = 8 };
    /// Profiles of an edge line.
    enum TEdge : std::int32_t {
        EdgeRaisedInner = 0,
        EdgeSunkenInner = 1,
        EdgeRaisedOuter = 2,
        EdgeSunkenOuter = 3,
        EdgeBump = 4,
        EdgeEtched = 5,
        EdgeRaised = 6,
        EdgeSunken = 7,
    };
    /// Sides on which an edge is drawn.
    enum TEdgeFlags : std::int32_t {
        SideLeft = 0,
        SideTop = 1,
        SideRight = 2,
        SideBottom = 3,
        SideBottomLeft = 4,
        SideTopRight = 5,
        SideAll = 6,
    };
    /// Up to a border of one colour, or over a surface of one.
    enum TFillStyle : std::int32_t { FillBorder = 0, FillSurface = 1 };

    CCanvas();
    ~CCanvas() override;
    CCanvas(const CCanvas&) = delete;
    CCanvas& operator=(const CCanvas&) = delete;

    // --- device ---

    /// Releases the present device and takes \p device. \p memoryDC: Release(true) deletes it; \p ownDevice:
    /// every Release does. \p releaseMemory is passed to the release of the present device. A bitmap that the
    /// canvas already holds is selected at once.
    void AttachToDevice(HDC device, bool memoryDC = false, bool releaseMemory = true, bool ownDevice = false);
    /// Attaches to a new memory device like the screen. It draws on a single pixel until a bitmap is
    /// assigned.
    void CreateMemoryCanvas();
    /// Gives the device its own tools and bitmap back and lets go of it. Made with CreateMemoryCanvas and
    /// released with false, the device stays alive and is the caller's.
    void Release(bool deleteMemoryDC = true);
    /// Null when detached.
    HDC GetHandle() const { return m_Device; }
    /// Whether a canvas draws on the screen, on a printer.
    bool IsDisplayCanvas() const;
    bool IsPrinterCanvas() const { return m_Printer; }

    // --- bitmap of a memory canvas ---

    /// Selects \p bitmap into the device; null puts the device's own back. Not owned.
    void AssignBitmap(CBitmap* bitmap);
    CBitmap* GetBitmap();  ///< Null when none is assigned.

    // --- tools and references ---

    /// The tools that the next figure is drawn with. They live as long as the canvas.
    CPen& GetPen() { return m_Pen; }
    CBrush& GetBrush() { return m_Brush; }
    CFont& GetFont() { return m_Font; }
    CBackground& GetBackground() { return m_Background; }
    CRegion& GetRegion() { return m_Region; }
    /// Not owned; null takes it away.
    void SetScaler(CScaler* scaler);
    CScaler* GetScaler() { return m_Scaler.Get(); }
    /// Not owned; forgotten when the device is released. Selecting and realising it is the caller's.
    void SetPalette(CPalette* palette);
    CPalette* GetPalette() { return m_Palette.Get(); }
    /// Not owned; null takes it away.
    void SetGradient(CGradient* gradient);
    CGradient* GetGradient() { return m_Gradient.Get(); }
    /// Copies the tools' settings, palette and gradient where \p source has them, and with \p withScaler the
    /// scaler's state. Null and the canvas itself are ignored.
    void ApplyCanvas(CCanvas* source, bool withScaler);
    /// Sets the device's text colour past the font, which sets its own again with the next text.
    void SetTextColor(std::int32_t color);

    // --- modes: each setter returns the previous value ---

    /// Whether coordinates go through the scaler; true at first.
    bool SetPretranslation(bool on);
    bool IsPretranslation() const { return m_PretranslateCoords; }
    /// Brushes made from now on fill nothing.
    bool SetLinesOnlyMode(bool on);
    bool IsLinesOnlyMode() const { return m_LinesOnly; }
    /// Pens made and texts drawn from now on are black.
    bool SetBlackLinesMode(bool on);
    bool IsBlackLinesMode() const { return m_BlackLines; }
    /// What happens to a point list that is not inside the scaler's visible rectangle. True, as at first: it
    /// is clipped to it in whole map units. False: it is left out when its box misses the rectangle and drawn
    /// uncut otherwise, so that no point is rounded to the rectangle's border and line patterns keep their
    /// place when the view moves.
    bool SetListClipping(bool on);
    bool IsListClipping() const { return m_ListClipping; }

    /// The device has no mapping modes; these stand in for callers that use them. Extents and origins are
    /// neither set nor reported: the arguments stay as they are.
    TMapMode GetMapMode() const { return MapText; }
    /// Without effect. SetMapMode() returns its argument, not the former mode, on purpose.
    TMapMode SetMapMode(TMapMode mode) { return mode; }
    bool IsAnisotropicMode() const { return GetMapMode() == MapAnisotropic; }
    void SetWindowExtents(std::int32_t, std::int32_t, std::int32_t*, std::int32_t*) {}
    void SetViewportExtents(std::int32_t, std::int32_t, std::int32_t*, std::int32_t*) {}
    void SetWindowOrigin(std::int32_t, std::int32_t, std::int32_t*, std::int32_t*) {}
    void SetViewportOrigin(std::int32_t, std::int32_t, std::int32_t*, std::int32_t*) {}
    void GetWindowExtents(std::int32_t&, std::int32_t&) const {}
    void GetViewportExtents(std::int32_t&, std::int32_t&) const {}
    void GetWindowOrigin(std::int32_t&, std::int32_t&) const {}
    void GetViewportOrigin(std::int32_t&, std::int32_t&) const {}

    // --- what the device can: false or 0 when detached ---

    /// In the unit of what is asked for: dots an inch, millimetres, pixels.
    std::int32_t GetDeviceCaps(TCaps caps) const;
    /// Millimetres.
    bool GetDeviceSize(std::int32_t& width, std::int32_t& height) const;
    /// Pixels.
    bool GetResolution(std::int32_t& width, std::int32_t& height) const;
    /// Of a printer: where on the paper printing begins, and all of the paper, in dots.
    bool GetPhysicalOffset(std::int32_t& x, std::int32_t& y) const;
    bool GetPhysicalSize(std::int32_t& width, std::int32_t& height) const;
    /// Horizontal pixels per inch.
    std::int32_t GetDPI() const;
    std::int32_t GetBitsPixel() const;  ///< Bits that a pixel takes on the device.
    /// A colour of the desktop; 0 outside the enumeration.
    static std::int32_t GetSysColor(CBrush::TSysType kind);

    // --- navigation ---

    /// Zooms the scaler to a rectangle in map units. False without a scaler or when nothing changed.
    bool Zoom(TCoord x1, TCoord y1, TCoord x2, TCoord y2, bool zoomIn);
    /// CScaler::PlaceToCenter() with this canvas. False without a scaler or when nothing moved.
    bool PlaceToCenter(TCoord x, TCoord y);
    /// Moves the device's pixels within \p rect. The scaler is not asked and not changed.
    void Scroll(std::int32_t dx, std::int32_t dy, const TLongRect& rect);

    // --- coordinates ---

    /// In place. A rotated view takes the low 16 bits of the map coordinates.
    void PreparePoint(std::int32_t& x, std::int32_t& y);
    /// \p out has room for \p count points; \p count may become smaller. Nothing happens for a count below 1.
    void PreparePoint(TLongPoint* out, const TPoint* in, std::int32_t& count);
    /// Pixels of a length in map units; the length itself where coordinates are not mapped.
    std::int32_t PrepareLength(std::int32_t length);

    // --- lines ---

    /// The position is kept in 16 bits.
    void MoveTo(std::int32_t x, std::int32_t y);
    /// An extended pen leaves the position where it is: the next line starts there again.
    void LineTo(std::int32_t x, std::int32_t y);
    /// Device pixels.
    TLongPoint GetPosition() const { return {m_CurPositionX, m_CurPositionY}; }
    /// MoveTo() and LineTo(), in perspective with what lies in front of the viewer.
    void Line(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
    /// See SetListClipping().
    void Polyline(CPoints* points);
    void Polyline(const TPoint* points, std::int32_t count);
    /// Device pixels; draws with the tools as they stand, without validating them.
    void Polyline(const TLongPoint* points, std::int32_t count);

    // --- text ---
    //
    // Drawn with the font on the background's mode. Characters stand in the order of the text, from left to
    // right: combining marks follow their letters and right-to-left scripts are neither turned nor joined.
    // A zero character ends a line. Null and empty texts measure 0 and draw nothing.

    /// Pixels of a text in one line, whatever the font's angle; line breaks are not interpreted. Without a
    /// device 0.
    void GetTextSize(const CString* text, std::int32_t& width, std::int32_t& height);
    std::int32_t GetTextWidth(const CString* text);
    /// The only one of these that reports a missing device, "Device == NULL".
    std::int32_t GetTextHeight(const CString* text);
    /// The same for at most \p length characters; none below 1.
    void GetTextSize(const char16_t* text, std::int32_t length, std::int32_t& width, std::int32_t& height);
    std::int32_t GetTextWidth(const char16_t* text, std::int32_t length);
    std::int32_t GetTextHeight(const char16_t* text, std::int32_t length);

    /// Draws a text in one line, the left end of its upper edge at a point; the font's alignment does not
    /// count. A halo, unless in black-lines mode, is the text in the halo's colour, moved by up to that many
    /// pixels to the left, right, up and down.
    void OutText(const CString* text, std::int32_t x, std::int32_t y);

    /// Draws the lines of a text in a rectangle, where the font's alignment puts them, each with its halo.
    /// In map units y1 is the lower side, in pixels the upper one. What the font adds:
    /// - inscribed: the height with which the longest line and all lines fit, for this text only;
    /// - framed: an outline around the block, half the font's height away. Inscribed and framed: the outline
    ///   of the rectangle instead. The pen draws them; the brush becomes type 0 and stays so;
    /// - clipping: text that is neither framed nor turned is cut to the rectangle within the canvas's region;
    /// - an angle: the lines turn about the rectangle's left corner at y2, an outline about a left corner of
    ///   its own (of a frame on a map the lower one). With pretranslation off outlines are not turned. Pixels
    ///   with pretranslation on turn clockwise, against the characters: switch it off for them.
    ///
    /// A background with the exclusive-or operation draws the rectangle's outline and no text.
    ///
    /// A turned view carries the rectangle's middle to its place and leaves rectangle and text upright. What
    /// is aligned to the top hangs below the lower side there, what is aligned to the bottom stands on the
    /// upper one, and outlines are turned once more than the map: middle alignment without them is what suits
    /// such views. Callers rely on all of this.
    ///
    /// The first line that a perspective view hides ends everything: the clip, and the height of inscribed
    /// text, stay as they are then.
    void OutText(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, const CString* text);

    // --- areas ---

    /// See SetListClipping().
    void Polygon(CPoints* points);
    /// Two points draw a line.
    void Polygon(const TPoint* points, std::int32_t count);
    /// Device pixels. Two points draw a line and a polygon without area.
    void Polygon(const TLongPoint* points, std::int32_t count);
    /// Draws the first list only.
    void PolyPolygon(CPoints** lists, std::uint32_t count);
    /// Draws the first ring only.
    void PolyPolygon(const TLongPoint* points, const int* counts, std::uint32_t count);
    /// Both corners belong to the rectangle.
    void Rectangle(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
    /// The right and bottom side lie outside the ellipse.
    void Ellipse(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
    /// The device sides are kept in 16 bits.
    void Circle(std::int32_t x, std::int32_t y, std::int32_t radius);
    /// Map corners are mapped without the rotation. Right and bottom excluded. Null: the canvas's brush.
    void FillRect(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, CBrush* brush);
    void FillRect(const CRect& rect, CBrush* brush);
    /// Paints the brush that the device has selected, without validating the canvas's own.
    void PatBlt(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, CBitmap::TRop rop);
    /// Fills rectangles or triangles with the colours between their vertices; right and bottom excluded, no
    /// tool matters. Null for the gradient: the canvas's own.
    /// \param corners vertex indices, two a rectangle or three a triangle; null takes the vertices in turn.
    /// \param count how many figures \p corners names. Below 1, nothing is drawn.
    /// Error 3, with nothing drawn, for an index that is no vertex. Figures that reach behind the viewer of a
    /// perspective are left out, and so are triangles without area.
    void DrawGradient(CGradient* gradient, const std::int32_t* corners, std::int32_t count,
                      CGradient::TMode mode);

    // --- rubber bands: drawn twice they are gone, the canvas's tools stay; mapped only when asked ---

    void XorLine(TLongPoint a, TLongPoint b, bool translate);  ///< Between two points.
    /// An open angle from \p a over \p b to \p c.
    void XorSector(TLongPoint a, TLongPoint b, TLongPoint c, bool translate);
    /// Outline only. A list of two points is never closed.
    void XorPolygon(CPoints* points, bool closed, bool translate);
    /// Two opposite corners; outline only, solid with either pen.
    void XorRectangle(TLongPoint a, TLongPoint b, bool solidPen, bool translate);
    /// In the rectangle between two corners; outline only.
    void XorEllipse(TLongPoint a, TLongPoint b, bool translate);

    // --- pixels and blocks: device pixels; null sources and bitmaps draw nothing ---

    /// Off the surface: -1.
    std::int32_t GetPixel(std::int32_t x, std::int32_t y) const;
    void SetPixel(std::int32_t x, std::int32_t y, std::int32_t color);  ///< Off the surface nothing happens.
    /// In the background's colour.
    void Pixel(std::int32_t x, std::int32_t y);
    /// Copies a block of pixels at its size.
    void BitBlt(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height, CCanvas* source,
                std::int32_t sourceX, std::int32_t sourceY, CBitmap::TRop rop);
    void BitBlt(CBitmap* bitmap, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                std::int32_t sourceX, std::int32_t sourceY, CBitmap::TRop rop);
    /// Shrinking drops pixels, it does not mix them.
    void StretchBlt(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height, CCanvas* source,
                    std::int32_t sourceX, std::int32_t sourceY, std::int32_t sourceWidth,
                    std::int32_t sourceHeight, CBitmap::TRop rop);
    void StretchBlt(CBitmap* bitmap, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                    std::int32_t sourceX, std::int32_t sourceY, std::int32_t sourceWidth,
                    std::int32_t sourceHeight, CBitmap::TRop rop);
    /// Leaves out the source's pixels of colour \p color.
    void Transparent(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height, CCanvas* source,
                     std::int32_t sourceX, std::int32_t sourceY, std::int32_t sourceWidth,
                     std::int32_t sourceHeight, std::int32_t color);
    /// The profile of an edge along some sides of a rectangle. Nothing outside the enumerations.
    void DrawEdge(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, TEdge edge,
                  TEdgeFlags sides);
    /// Sends \p object the message "Draw" with this canvas and \p parameter. \returns its answer.
    bool Draw(CAnyObject* object, void* parameter);

    // --- what the device cannot: each reports an error (3 or 4) and draws nothing ---

    /// Reported, nothing drawn; so are the ones below.
    void Arc(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
             std::int32_t startX, std::int32_t startY, std::int32_t endX, std::int32_t endY);
    void AngleArc(std::int32_t x, std::int32_t y, std::int32_t radius, double start, double sweep);
    void Pie(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
             std::int32_t startX, std::int32_t startY, std::int32_t endX, std::int32_t endY);
    void Chord(std::int32_t left, std::int32_t top, std::int32_t right, std::int32_t bottom,
               std::int32_t startX, std::int32_t startY, std::int32_t endX, std::int32_t endY);
    void PolyBezier(CPoints* points);
    void FloodFill(std::int32_t x, std::int32_t y, std::int32_t color, TFillStyle style);
    /// See DrawGradient() for one that draws.
    void GradientFill(CGradient* gradient, std::int32_t* triangles, std::int32_t count,
                      CGradient::TMode mode);
    /// Makes the mask's handle before it reports.
    void PlgBlt(const TLongPoint* corners, CCanvas* source, std::int32_t sourceX, std::int32_t sourceY,
                std::int32_t width, std::int32_t height, CBitmap* mask, std::int32_t maskX,
                std::int32_t maskY);
    /// Reported, nothing drawn.
    void AlphaBlend(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height, CCanvas* source,
                    std::int32_t sourceX, std::int32_t sourceY, std::int32_t sourceWidth,
                    std::int32_t sourceHeight, CGradient::TBlend blend);

    // --- persist: pen, brush, font, background, then the references to scaler and gradient ---

    bool ObjectToBuffer(CStream* stream) override;
    bool ObjectFromBuffer(CStream* stream) override;
    /// Generous: counts the region too, which is not stored.
    std::uint32_t GetPreferredSize() override;

private:
    /// The scaler, when coordinates are to go through it.
    CScaler* GetMapping() { return m_PretranslateCoords ? m_Scaler.Get() : nullptr; }
    /// The points of a list that are to be drawn, as SetListClipping says; null when there are none.
    CPoints* Clip(CPoints* points, bool closed);
    /// Whether the points that a figure hangs on lie in front of the viewer. In perspective some may not;
    /// then lists and single lines are cut, and other figures are not drawn.
    bool IsInFront(TLongPoint a, TLongPoint b);
    /// Cuts a line to what lies in front of the viewer. False when nothing does.
    bool CutLine(TLongPoint& a, TLongPoint& b);
    /// Maps a polyline or (`closed`) a ring into the scratch buffer, widens it without a scaler. False when
    /// it has too many points.
    bool ConvertList(const CScaler* scaler, const TPoint* points, std::int32_t& count, bool closed);
    /// The converted points. To be asked for anew after anything that may call an error handler.
    TLongPoint* GetConverted() { return static_cast<TLongPoint*>(m_Buffer.GetBuffer()); }
    TLongPoint Translated(TLongPoint point, bool translate);
    void SetPosition(std::int32_t x, std::int32_t y);
    void ValidateLine();
    void ValidateFigure();
    /// \p extended: the pen was an extended one before it was validated.
    void DrawPolygon(const TLongPoint* points, std::int32_t count, bool extended);
    struct TTextBlock;
    TSize Measure(const char16_t* text, std::int64_t length);
    /// A length in pixels in the unit that figures are given in.
    std::int64_t ToOwnUnit(std::int32_t pixels);
    /// Gives the font the height with which the block fits its rectangle.
    void FitText(TTextBlock& block, const char16_t* longest);
    void LayOutText(TTextBlock& block);
    /// False when a line could not be seen, which ends the text.
    bool DrawTextLines(const TTextBlock& block, const CString& text);
    void DrawTextFrame(const TTextBlock& block, std::int64_t x, std::int64_t y);
    void DrawTextBox(const TTextBlock& block, TLongPoint a, TLongPoint b);
    /// The halo and the text, in pixels.
    void DrawTextRun(TLongPoint at, const char16_t* text, std::int64_t length);
    void FillDeviceRect(TLongPoint low, TLongPoint high, CBrush* brush);
    /// The gradient's vertices in device pixels and behind them the indices of the figures that are drawn, in
    /// the scratch buffer. \returns how many figures, 0 also after an error.
    std::uint32_t PrepareGradient(const CGradient& gradient, const std::int32_t* corners, std::uint32_t count,
                                  std::uint32_t cornersEach);
    bool GetCapsPair(int first, int second, std::int32_t& x, std::int32_t& y) const;
    void DropPalette();

    CPen m_Pen;
    CBrush m_Brush;
    CFont m_Font;
    CBackground m_Background;
    CRegion m_Region;
    CPtr<CPalette> m_Palette;
    CRef<CScaler> m_Scaler;
    CPtr<CBitmap> m_Bitmap;
    CPtr<CBitmap> m_Icon;
    CPtr<CAnyObject> m_VectIcon;
    CRef<CGradient> m_Gradient;
    HDC m_Device = nullptr;
    HBITMAP m_DefaultBitmap = nullptr;
    CAnyMemoryBuffer m_Buffer;  ///< scratch: device points of the figure being drawn
    CPoints m_Clipped{false};   ///< scratch: a list cut to the visible rectangle
    bool m_MemoryDC = false;
    bool m_OwnsDevice = false;
    bool m_Anisotropic = false;
    bool m_PretranslateCoords = true;
    bool m_ListClipping = true;
    bool m_Printer = false;
    bool m_LinesOnly = false;
    bool m_BlackLines = false;
    bool m_OwnsPalette = false;
    std::int32_t m_CurPositionX = 0;
    std::int32_t m_CurPositionY = 0;
};

}  // namespace zul
