/// \file
/// The font: the settings of drawn text.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/gdi.h"
#include "zul/kernel/any_object.h"
#include "zul/kernel/export.h"
#include "zul/kernel/string.h"
#include "zul/tools/handle_counts.h"

namespace zulsys {
class CTextFile;
}

namespace zul {

class CCanvas;
struct TSettings;

/// Face, height, angle, style, colours and alignment of text. The device font is made when a canvas next
/// writes or measures with the font and stays selected in the canvas's device until Release. The font owns
/// the handle it made.
///
/// A height in points becomes pixels by the device's vertical resolution. A height in metres becomes pixels
/// by the canvas's scaler at the time when the device font is made: once the view has zoomed, Invalidate()
/// brings the new size. What halo, alignment, the inscribed, framed and clipping bits do is told at
/// CCanvas::OutText.
///
/// A new font has no name of its own (it reads as the default face), 12 points, black, clipping on.
class ZUL_API CFont : public CAnyObject {
public:
    /// Bits of the style.
    enum TFontStyle : std::int32_t {
        StyleOreolMask = 0x07,  ///< pixels of halo, 0 for none
        StyleBold = 0x08,
        StyleItalic = 0x10,
        StyleStrikedOut = 0x20,
        StyleUnderlined = 0x40,
        StyleInscribed = 0x80,  ///< text in a rectangle is made as large as fits
        StyleFramed = 0x100,    ///< a frame around the text; inscribed text gets its rectangle drawn instead
        StyleClipping = 0x200,  ///< text in a rectangle is cut to it
        StyleScaled = 0x400,    ///< the height is in metres of terrain
    };
    /// Bits of the alignment: where text stands in its rectangle. Without a bit it stands in the middle; left
    /// wins over right, top over bottom.
    enum TAlignment : std::int32_t {
        AlignLeft = 0x01,
        AlignRight = 0x04,
        AlignTop = 0x08,
        AlignBottom = 0x20
    };

    CFont() = default;
    ~CFont() override;
    CFont(const CFont&) = delete;
    CFont& operator=(const CFont&) = delete;

    // --- query ---

    /// The face; an unnamed font takes the default face's name here. Valid until the name changes.
    const char16_t* GetName();
    std::int32_t GetAlignment() const { return m_Alignment; }    ///< TAlignment bits
    std::int32_t GetStyle() const { return m_Style; }            ///< TFontStyle bits
    std::int32_t GetTextColor() const { return m_TextColor; }    ///< 0x00BBGGRR
    std::int32_t GetOreolColor() const { return m_OreolColor; }  ///< Of the halo, 0x00BBGGRR.
    /// Points, or metres of terrain when IsScaled().
    std::int32_t GetHeight() const { return m_Height; }
    /// Tenths of a degree, counter-clockwise.
    std::int32_t GetAngle() const { return m_Angle; }
    /// The bits of the style, one by one.
    bool GetBold() const { return HasStyle(StyleBold); }
    bool GetItalic() const { return HasStyle(StyleItalic); }
    bool GetStrikedOut() const { return HasStyle(StyleStrikedOut); }
    bool GetUnderlined() const { return HasStyle(StyleUnderlined); }
    bool GetInscribed() const { return HasStyle(StyleInscribed); }
    bool GetFramed() const { return HasStyle(StyleFramed); }
    bool IsClipping() const { return HasStyle(StyleClipping); }
    bool IsScaled() const { return HasStyle(StyleScaled); }
    /// Pixels, 0 to 7; 0 means no halo.
    std::int32_t GetOreol() const { return m_Style & StyleOreolMask; }

    /// What the device font is asked for: negative, pixels of a character's height. A detached canvas has no
    /// resolution and gives 0, which is the device's own choice. (There are no mapping modes to consider.)
    std::int32_t GetLogicalHeight(CCanvas* canvas) const;
    /// The same for a height in metres; at least 7 pixels. Without a scaler the height counts as points.
    std::int32_t MetersToLogical(CCanvas* canvas) const;
    /// Points of a device font's height, whose sign does not count; 0 for a device without resolution.
    static std::int32_t GetHeightInPunkts(HDC device, std::int32_t height);

    /// Pixels that a single line takes on a device like the screen, as CCanvas measures them. A height in
    /// metres counts as points here: there is no scaler.
    void GetTextSize(const CString* text, std::int32_t& width, std::int32_t& height) const;
    std::int32_t GetTextWidth(const CString* text) const;
    std::int32_t GetTextHeight(const CString* text) const;
    void GetTextSize(const char16_t* text, std::int32_t length, std::int32_t& width,
                     std::int32_t& height) const;
    std::int32_t GetTextWidth(const char16_t* text, std::int32_t length) const;
    std::int32_t GetTextHeight(const char16_t* text, std::int32_t length) const;

    /// Device fonts made and deleted by all fonts of the process.
    static const THandleCounts& GetHandleCounts();

    // --- change: each setter records one modification when the value is a new one ---

    /// A text colour that has not reached the device yet waits for the next SetTextColor or Invalidate.
    void Create(const char16_t* name, std::int32_t height, std::int32_t textColor, std::int32_t angle);
    /// 12 points of the default face, black, no style, not turned.
    void Default();
    /// Null leaves the name as it is; the font's own characters may be passed.
    void SetName(const char16_t* name);
    /// The device font, or the colour, is set anew with the next text.
    void SetHeight(std::int32_t height);
    void SetStyle(std::int32_t style);
    void SetAngle(std::int32_t angle);
    void SetTextColor(std::int32_t color);
    void SetBold(bool on) { SetShapeBit(StyleBold, on); }
    void SetItalic(bool on) { SetShapeBit(StyleItalic, on); }
    void SetStrikedOut(bool on) { SetShapeBit(StyleStrikedOut, on); }
    void SetUnderlined(bool on) { SetShapeBit(StyleUnderlined, on); }
    void SetInscribed(bool on) { SetShapeBit(StyleInscribed, on); }
    void SetFramed(bool on) { SetShapeBit(StyleFramed, on); }
    /// These do not have the device font made anew.
    void SetOreolColor(std::int32_t color);
    void SetAlignment(std::int32_t alignment);
    /// Only the low three bits of \p oreol count.
    void SetOreol(std::int32_t oreol);
    /// Neither has the device font made anew: a new unit acts with the next change that does.
    void SetClipping(bool on) { StoreStyle(WithBit(StyleClipping, on)); }
    void SetScaled(bool on) { StoreStyle(WithBit(StyleScaled, on)); }
    /// Copies the settings. Null and the font itself are ignored.
    void ApplyFont(const CFont* other);
    /// Takes over angle, height (in points of \p canvas's device, or of the screen without one), face, weight
    /// and shape of a device font. Anything else than a live font changes nothing.
    void FromHandle(HFONT font, CCanvas* canvas);

    // --- operate ---

    /// Has the device font made and the text colour set anew.
    void Invalidate();
    /// The device font, made anew when a setting changed, and then selected in \p canvas when one is given;
    /// without one it is made for the screen. A font that cannot be made is reported (error 3) and the old
    /// one returned. Remaking a font that was handed out without a canvas raises "Handle in use", unless
    /// \p replace says that this is known; either way the former handle lives as long as the font.
    HFONT GetHandle(CCanvas* canvas, bool replace = false);
    /// Makes the font and its colour, black in black-lines mode, current on the canvas's device if anything
    /// changed. Null is ignored.
    void Validate(CCanvas* canvas) {
        if (m_fInvalid & InvalidAll) Renew(canvas);
    }
    /// Gives the device its former font back and deletes the font's own.
    void Release(CCanvas* canvas);

    /// Codes 10043 to 10056 read and write the settings; the name travels as the address of its characters.
    bool DoMessage(CMessage* message) override;

    // --- the settings as text (see formats.h) ---

    /// Reads the parameter block that \p file stands at, up to its end line.
    virtual void ImportParameters(zulsys::CTextFile& file);
    /// Takes the settings from the attributes of an XML element, which the host's reader stands for. Those
    /// that it lacks stay.
    virtual void ImportParametersEx(CAnyObject* element);
    /// Write name, style, height, colours, alignment and angle as a parameter block, as an XML element.
    virtual void ExportParameters(zulsys::CTextFile& file) const;
    virtual void ExportParametersEx(zulsys::CTextFile& file) const;

    // --- persist: the name, then alignment, style, text and halo colour, height, angle ---

    bool ObjectToBuffer(CStream* stream) override;
    /// The device font is made anew afterwards.
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override;

private:
    static const TSettings& GetSettings();

    enum TInvalid : std::int32_t { InvalidHandle = 1, InvalidColor = 2, InvalidAll = 3 };

    bool HasStyle(std::int32_t bit) const { return (m_Style & bit) != 0; }
    std::int32_t WithBit(std::int32_t bit, bool on) const { return on ? m_Style | bit : m_Style & ~bit; }
    bool StoreStyle(std::int32_t style);
    void SetShapeBit(std::int32_t bit, bool on) { SetStyle(WithBit(bit, on)); }
    LOGFONTW Describe(CCanvas* canvas);
    HFONT Make(CCanvas* canvas);
    void Renew(CCanvas* canvas);
    void Adopt(HFONT font, CCanvas* canvas);

    CString m_Name;
    std::int32_t m_Alignment = 9;
    std::int32_t m_Style = StyleClipping;
    std::int32_t m_TextColor = 0;
    std::int32_t m_OreolColor = 0;
    std::int32_t m_Height = 12;
    std::int32_t m_Angle = 0;
    HFONT m_Handle = nullptr;
    HFONT m_DefaultFont = nullptr;
    std::int32_t m_fInvalid = InvalidAll;
    std::vector<HFONT> m_Superseded;  ///< handed out once, replaced since; freed with the font
};

}  // namespace zul
