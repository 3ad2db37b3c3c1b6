/// \file
/// The font: the settings of drawn text.
#pragma once

#include <cstdint>

#include "platform/gdi.h"
#include "zul/kernel/any_object.h"
#include "zul/kernel/export.h"
#include "zul/kernel/string.h"

namespace zul {

class CCanvas;

/// Face, height, angle, style, colours and alignment of text.
///
/// A new font has no name of its own (it reads as the default face), 12 points, black, clipping on.
class ZUL_API CFont : public CAnyObject {
public:
    /// Bits of the style.
    enum TFontStyle : std::int32_t {
        StyleOreolMask = 0x07,  ///< halo, 0 for none
        StyleBold = 0x08,
        StyleItalic = 0x10,
        StyleStrikedOut = 0x20,
        StyleUnderlined = 0x40,
        StyleInscribed = 0x80,
        StyleFramed = 0x100,
        StyleClipping = 0x200,
        StyleScaled = 0x400,  ///< the height is in metres of terrain
    };

    CFont() = default;
    ~CFont() override;
    CFont(const CFont&) = delete;
    CFont& operator=(const CFont&) = delete;

    // --- query ---

    /// The face; an unnamed font takes the default face's name here. Valid until the name changes.
    const char16_t* GetName();
    std::int32_t GetAlignment() const { return m_Alignment; }
    std::int32_t GetStyle() const { return m_Style; }
    std::int32_t GetTextColor() const { return m_TextColor; }
    std::int32_t GetOreolColor() const { return m_OreolColor; }
    /// Points, or metres of terrain when IsScaled().
    std::int32_t GetHeight() const { return m_Height; }
    /// Tenths of a degree, counter-clockwise.
    std::int32_t GetAngle() const { return m_Angle; }
    bool GetBold() const { return HasStyle(StyleBold); }
    bool GetItalic() const { return HasStyle(StyleItalic); }
    bool GetStrikedOut() const { return HasStyle(StyleStrikedOut); }
    bool GetUnderlined() const { return HasStyle(StyleUnderlined); }
    bool GetInscribed() const { return HasStyle(StyleInscribed); }
    bool GetFramed() const { return HasStyle(StyleFramed); }
    bool IsClipping() const { return HasStyle(StyleClipping); }
    bool IsScaled() const { return HasStyle(StyleScaled); }
    /// 0 to 7; 0 means no halo.
    std::int32_t GetOreol() const { return m_Style & StyleOreolMask; }

    // --- change: each setter records one modification when the value is a new one ---

    void Create(const char16_t* name, std::int32_t height, std::int32_t textColor, std::int32_t angle);
    /// 12 points of the default face, black, no style, not turned.
    void Default();
    /// Null leaves the name as it is; the font's own characters may be passed.
    void SetName(const char16_t* name);
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
    // These do not have the device font made anew.
    void SetOreolColor(std::int32_t color);
    void SetAlignment(std::int32_t alignment);
    /// Only the low three bits of \p oreol count.
    void SetOreol(std::int32_t oreol);
    void SetClipping(bool on) { StoreStyle(WithBit(StyleClipping, on)); }
    void SetScaled(bool on) { StoreStyle(WithBit(StyleScaled, on)); }
    /// Copies the settings. Null and the font itself are ignored.
    void ApplyFont(const CFont* other);
    /// Has the device font made and the text colour set anew.
    void Invalidate();

    /// Gives the device its former font back and deletes the font's own.
    void Release(CCanvas* canvas);

    /// Codes 10043 to 10056 read and write the settings; the name travels as the address of its characters.
    bool DoMessage(CMessage* message) override;

    // --- persist: the name, then alignment, style, text and halo colour, height, angle ---

    bool ObjectToBuffer(CStream* stream) override;
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override;

private:
    enum TInvalid : std::int32_t { InvalidHandle = 1, InvalidColor = 2, InvalidAll = 3 };

    bool HasStyle(std::int32_t bit) const { return (m_Style & bit) != 0; }
    std::int32_t WithBit(std::int32_t bit, bool on) const { return on ? m_Style | bit : m_Style & ~bit; }
    bool StoreStyle(std::int32_t style);
    void SetShapeBit(std::int32_t bit, bool on) { SetStyle(WithBit(bit, on)); }

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
};

}  // namespace zul
