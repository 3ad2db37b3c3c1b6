/// \file
/// The brush: how areas are filled.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/gdi.h"
#include "zul/kernel/any_object.h"
#include "zul/kernel/export.h"
#include "zul/kernel/references.h"
#include "zul/tools/handle_counts.h"

namespace zulsys {
class CTextFile;
}

namespace zul {

class CBitmap;
class CCanvas;
struct TSettings;

/// A fill's kind, colour, pattern and pattern origin. The device brush is made when a canvas next fills with
/// the brush and stays selected in the canvas's device until Release. The brush owns the handle it made and
/// refers to its pattern bitmap without owning it.
///
/// A new brush is solid and white.
class ZUL_API CBrush : public CAnyObject {
public:
    /// What a brush fills with.
    enum TBrushType : std::int32_t {
        BrushNone = 0,     ///< fills nothing
        BrushSolid = 1,    ///< also made for every value that is not listed
        BrushPattern = 3,  ///< tiles the pattern bitmap; fills nothing without one
    };
    /// Kept and stored for callers; the device has no hatched brushes.
    using TBrushStyle = std::int32_t;
    /// Colours of the desktop that a brush or a caller may ask for.
    enum TSysType : std::int32_t {
        SysWindow = 0,
        SysButtonFace = 1,
        SysDesktop = 2,
        SysActiveCaption = 3,
        SysHighlight = 4,
        SysMenuText = 5,
    };

    CBrush() = default;
    ~CBrush() override;
    CBrush(const CBrush&) = delete;
    CBrush& operator=(const CBrush&) = delete;

    // --- query ---

    std::int32_t GetColor() const { return m_Color; }  ///< 0x00BBGGRR
    std::int32_t GetStyle() const { return m_Style; }  ///< As it was set; nothing depends on it.
    std::int32_t GetType() const { return m_Type; }    ///< TBrushType, or whatever was set
    /// Null without a pattern, or when the bitmap is gone.
    CBitmap* GetPattern();
    /// The device pixel on which a pattern tile begins.
    void GetOrigin(std::int32_t& x, std::int32_t& y) const;
    /// Type, style and colour equal; pattern and origin are not compared. False for null.
    bool IsEqualSettings(const CBrush* other) const;

    /// The device's colour index of \p kind, with the older platform's flag where it takes one; -1 outside
    /// the enumeration.
    static int GetSysColorIndex(TSysType kind);
    /// Device brushes made and deleted by all brushes of the process.
    static const THandleCounts& GetHandleCounts();

    // --- change: each setter records one modification when the value is a new one ---

    /// Forgets an origin that has not reached the device yet.
    void Create(TBrushType type, std::int32_t color, TBrushStyle style);
    /// A white solid brush, for filling under an exclusive-or raster operation.
    void CreateXor();
    /// Solid and white. Style, pattern and origin stay.
    void Default();
    /// Takes a brush in a colour of the desktop at once, selected in \p canvas when one is given. The colour
    /// is taken over without a modification record. Nothing happens outside the enumeration.
    void CreateSysColorBrush(TSysType kind, CCanvas* canvas);
    /// The brush is made anew with the next figure.
    void SetColor(std::int32_t color);
    void SetStyle(std::int32_t style);
    void SetType(std::int32_t type);
    /// The bitmap is referred to, not owned; null takes the pattern away.
    void SetPattern(CBitmap* pattern);
    /// The device pixel on which a pattern tile begins. Not recorded as a modification.
    void SetOrigin(std::int32_t x, std::int32_t y);
    /// Copies the settings, the origin only when \p withOrigin. Null and the brush itself are ignored.
    void ApplyBrush(CBrush* other, bool withOrigin);

    // --- operate ---

    /// The device brush, made anew when a setting changed, and then selected in \p canvas when one is given.
    /// Without a canvas only a brush that holds no handle yet should ask: remaking one that may be in use
    /// raises "Handle is in use". A brush that cannot be made is reported (error 3) and the old one returned.
    HBRUSH GetHandle(CCanvas* canvas);
    /// Makes the brush and its origin current on the canvas's device if anything changed. Null is ignored.
    void Validate(CCanvas* canvas) {
        if (m_fInvalid & (InvalidHandle | InvalidOrigin)) Renew(canvas);
    }
    /// Gives the device its former brush back and deletes the brush's own.
    void Release(CCanvas* canvas);

    /// Codes 10035 to 10042 read and write the settings (the origin in one value: X in the low 32 bits, Y in
    /// the high ones); 10080 ORs its parameter into the invalid flags.
    bool DoMessage(CMessage* message) override;

    // --- the settings as text (see formats.h) ---

    /// Reads the parameter block that \p file stands at, up to its end line.
    virtual void ImportParameters(zulsys::CTextFile& file);
    /// Takes the settings from the attributes of an XML element, which the host's reader stands for. Those
    /// that it lacks stay.
    virtual void ImportParametersEx(CAnyObject* element);
    /// Write type, style and colour as a parameter block, as an XML element.
    virtual void ExportParameters(zulsys::CTextFile& file) const;
    virtual void ExportParametersEx(zulsys::CTextFile& file) const;

    // --- persist: colour, style, type and the reference to the pattern, 20 bytes ---

    bool ObjectToBuffer(CStream* stream) override;
    /// The device brush is made anew afterwards.
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override;

private:
    static const TSettings& GetSettings();

    enum TInvalid : std::int32_t { InvalidHandle = 1, InvalidOrigin = 2, InvalidAll = 7 };

    HBRUSH Make(CCanvas* canvas);
    void Renew(CCanvas* canvas);
    void Adopt(HBRUSH brush, CCanvas* canvas);
    void Delete(HBRUSH brush);

    std::int32_t m_Color = 0xFFFFFF;
    std::int32_t m_Style = 4;
    std::int32_t m_Type = BrushSolid;
    CRef<CBitmap> m_Pattern;
    std::int32_t m_OriginX = 0;
    std::int32_t m_OriginY = 0;
    HBRUSH m_DefaultBrush = nullptr;
    HBRUSH m_Handle = nullptr;
    std::int32_t m_fInvalid = InvalidAll;
    std::vector<HBRUSH> m_Superseded;  ///< handed out once, replaced since; freed with the brush
};

}  // namespace zul
