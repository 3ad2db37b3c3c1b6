/// \file
/// The pen: how lines and outlines are drawn.
#pragma once

#include <cstdint>

#include "platform/gdi.h"
#include "zul/geometry/coordinates.h"
#include "zul/kernel/any_object.h"
#include "zul/kernel/export.h"
#include "zul/tools/handle_counts.h"

namespace zulsys {
class CTextFile;
}

namespace zul {

class CCanvas;
struct TSettings;

/// A line's kind, width and colours. The device pens are made when a canvas next draws with the pen and stay
/// selected in the canvas's device until Release. The pen owns the handles it made; the pen that the device
/// had before belongs to the device and goes back to it.
///
/// A new pen is solid, one pixel wide and black.
class ZUL_API CPen : public CAnyObject {
public:
    /// What a pen draws.
    enum TPenType : std::int32_t {
        PenNone = 0,      ///< no line
        PenSolid = 1,     ///< also drawn for every value that is not listed
        PenDashed = 2,    ///< the device's dash; the device draws it solid when wider than a pixel
        PenExtended = 3,  ///< one of the extended styles
    };
    /// Index of an extended style, 0 to GetExtendedStylesCount() - 1.
    using TPenStyle = std::int32_t;

    CPen() = default;
    ~CPen() override;
    CPen(const CPen&) = delete;
    CPen& operator=(const CPen&) = delete;

    // --- query ---

    std::int32_t GetType() const { return m_Type; }    ///< TPenType, or whatever was set
    std::int32_t GetStyle() const { return m_Style; }  ///< Of an extended pen; any number may have been set.
    std::int32_t GetEndType() const { return m_EndType; }  ///< The set that DrawEndings() tells of.
    /// Pixels, or metres of terrain when IsScaled().
    std::int32_t GetWidth() const { return m_Width; }
    /// Of a style that NeedDashLength(), in pen widths.
    std::int32_t GetDashLength() const { return m_DashLength; }
    /// Black while the pen is being made for a canvas in black-lines mode, else the pen's own colour.
    std::int32_t GetColor() const { return m_fBlackLines ? 0 : m_Color; }
    /// Of a style that NeedExtraColor(), 0x00BBGGRR.
    std::int32_t GetExtraColor() const { return m_ExtraColor; }
    bool IsScaled() const { return m_fScaled; }  ///< Whether the width is in metres of terrain.
    /// All settings equal; handles and the invalid mark do not count. False for null.
    bool IsEqualSettings(const CPen* other) const;

    static std::int32_t GetExtendedStylesCount();  ///< How many extended styles there are.
    /// Whether a style uses the second colour or the dash length. False outside the table of styles.
    static bool NeedExtraColor(TPenStyle style);
    static bool NeedDashLength(TPenStyle style);
    /// What the dialogs for line styles ask before they offer endings: false for styles 0, 1, 3, 7, 15 and 31
    /// and outside the table. It is a different question from IsEnabledEndings().
    static bool NeedEndings(TPenStyle style);
    /// Whether the pen as it is set may carry line endings.
    bool IsEnabledEndings() const;

    /// Device pens made and deleted by all pens of the process.
    static const THandleCounts& GetHandleCounts();

    // --- change: each setter records one modification when the value is a new one ---

    /// Sets everything; the width is in pixels afterwards.
    void Create(TPenType type, TPenStyle style, std::int32_t width, std::int32_t color, std::int32_t endType,
                std::int32_t dashLength, std::int32_t extraColor);
    /// A white solid pen, for drawing under an exclusive-or raster operation.
    void CreateXor(std::int32_t width);
    /// Solid, black, one pixel wide, no endings. Style, dash length and second colour stay.
    void Default();
    /// Any value is kept. The device pens are made anew with the next figure where the setting shows in them.
    void SetType(std::int32_t type);
    void SetStyle(std::int32_t style);
    void SetEndType(std::int32_t endType);
    void SetWidth(std::int32_t width);
    void SetColor(std::int32_t color);
    void SetExtraColor(std::int32_t color);
    void SetDashLength(std::int32_t length);
    /// Does not make the pen anew by itself: the unit acts with the next change that does.
    void SetScaled(bool scaled);
    /// Copies the settings. Null and the pen itself are ignored.
    void ApplyPen(const CPen* other);

    // --- operate ---

    /// The pixels of \p width on \p canvas; a metric width also stores the canvas's pixels per metre for
    /// GetPixelValue. Rounded half away from zero.
    std::int32_t CalculatePixelWidth(CCanvas* canvas, std::int32_t width);
    /// \p value times the stored pixels per metre, rounded half away from zero.
    std::int32_t GetPixelValue(std::int32_t value) const;

    /// Makes the pen current on the canvas's device if anything changed since the last time. An extended
    /// style without device pens of its own turns the pen into a solid one. A pen that cannot be made is
    /// reported (error 3) and stays to be made. Null is ignored.
    void Validate(CCanvas* canvas) {
        if (m_fInvalid) Make(canvas);
    }
    /// Makes the device pens of an extended style, \p width pixels wide, on the device of the last
    /// validation. \returns false, with nothing done, for a style that has none.
    bool ValidateKelvornPen(std::int32_t width);
    /// Gives the device its former pen back and deletes the pen's own.
    void Release(CCanvas* canvas);

    // --- draw: device pixels, any coordinates, on the device of the last validation ---
    //
    // What the pen draws in several strokes it draws with device pens of its own; whatever happens, the
    // device has its pen and brush back afterwards. A device pen that cannot be made is reported (error 3)
    // when the figure is done, and its strokes are missing. Null and fewer than two points draw nothing.

    /// The figures of an extended pen, line endings included. A polygon is filled with the device's brush and
    /// closed by itself. The device's position comes to the last point, of a polygon to the first.
    void Polyline(const TLongPoint* points, std::int32_t count) { DrawPoly(points, count, false); }
    void Polygon(const TLongPoint* points, std::int32_t count) { DrawPoly(points, count, true); }
    /// Both corners belong to the outline, which begins at the upper left and runs clockwise.
    void Rectangle(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
    /// From the canvas's position, which stays where it is: several calls in a row make a star.
    void LineTo(std::int32_t x, std::int32_t y, CCanvas* canvas);
    /// Arrow heads along one straight line, as wide as the pen and in its colour, whatever its style.
    /// \param spacing, offset  between two arrows and before the first one, in pen widths
    /// \param direction  true: the arrows point to the second point, false: to the first
    void DrawArrowsLine(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
                        std::int32_t spacing, std::int32_t offset, bool direction);
    /// The dots and arrows at the ends of a line that is drawn already, where IsEnabledEndings(). The end
    /// type is a set: 1 dot at the start, 2 dot at the end, 4 arrow at the start, 8 arrow at the end (an
    /// arrow leaves no dot), 16 wide arrows, 32 filled ones; bits 16 to 23 the arrows' length in pen widths
    /// (0: 7), bits 24 to 31 the angle of either wing in degrees (0: 12, wide ones 30). A closed line ends
    /// where it starts. The device's position comes to the line's end.
    void DrawEndings(const TLongPoint* points, std::int32_t count, bool closed);
    /// The same for a line of two points.
    void DrawEndings(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);

    /// Codes 10019 to 10034 read and write the settings; 10080 marks the device pens as stale.
    bool DoMessage(CMessage* message) override;

    // --- the settings as text (see formats.h) ---

    /// Reads the parameter block that \p file stands at, up to its end line.
    virtual void ImportParameters(zulsys::CTextFile& file);
    /// Takes the settings from the attributes of an XML element, which the host's reader stands for. Those
    /// that it lacks stay.
    virtual void ImportParametersEx(CAnyObject* element);
    /// Write type, style, width, colours, endings, dash length and unit as a parameter block, as an XML
    /// element.
    virtual void ExportParameters(zulsys::CTextFile& file) const;
    virtual void ExportParametersEx(zulsys::CTextFile& file) const;

    // --- persist: the eight settings, 29 bytes ---

    bool ObjectToBuffer(CStream* stream) override;
    /// The device pens are made anew afterwards.
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override;

private:
    static const TSettings& GetSettings();

    void Make(CCanvas* canvas);
    void Adopt(HPEN main, HPEN extra1, HPEN extra2);
    /// Of the pen as it is set, at least 1 or negative.
    std::int32_t GetPixelWidth() const;
    HPEN MakePen(int style, std::int32_t width) const;

    // Drawing: false when a device pen could not be made. Lengths along a line are in pen widths.
    void DrawPoly(const TLongPoint* points, std::int32_t count, bool closed);
    bool DrawBase(const TLongPoint* points, std::int32_t count, bool closed, bool visible);
    bool DrawMarks(const TLongPoint* points, std::int32_t count, bool closed, bool base);
    void DrawOutline(HPEN pen, const TLongPoint* points, std::int32_t count, bool closed);
    void DrawDashLine(const TLongPoint* points, std::int32_t count, std::int64_t start, std::int64_t dash,
                      std::int64_t gap, bool closed, std::int32_t width, std::int32_t penWidth);
    bool DrawCrossLines(const TLongPoint* points, std::int32_t count, double half, std::int64_t offset,
                        std::int64_t spacing, bool side, bool oneSided, bool closed, std::int32_t width);
    bool DrawArrowsPolyline(const TLongPoint* points, std::int32_t count, std::int64_t spacing,
                            std::int64_t offset, bool direction, bool closed, std::int32_t width);
    bool PutEndings(const TLongPoint* points, std::int32_t count, bool closed);
    void DrawArrow(TLongPoint from, TLongPoint tip, std::int32_t width, std::uint32_t endType);
    void DrawOverlappedEllipse(TLongPoint center, std::int64_t half);

    std::int32_t m_Type = PenSolid;
    std::int32_t m_Style = 0;
    std::int32_t m_EndType = 0;
    std::int32_t m_Width = 1;
    std::int32_t m_DashLength = 5;
    double m_MeterToPixelFactor = 1.0;
    std::int32_t m_Color = 0;
    std::int32_t m_ExtraColor = 0;
    bool m_fScaled = false;
    bool m_fBlackLines = false;
    HDC m_Device = nullptr;
    HPEN m_Handle = nullptr;
    std::int32_t m_MadeWidth = 1;  ///< pixels, of an extended style's device pens
    HPEN m_ExtraHandle1 = nullptr;
    HPEN m_ExtraHandle2 = nullptr;
    HPEN m_DefaultPen = nullptr;
    bool m_fInvalid = true;
};

}  // namespace zul
