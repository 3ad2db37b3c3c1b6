/// \file
/// The palette: a list of colours.
#pragma once

#include <cstdint>

#include "platform/gdi.h"
#include "zul/kernel/any_object.h"
#include "zul/kernel/buffer.h"
#include "zul/kernel/export.h"
#include "zul/kernel/string.h"

namespace zul {

class CCanvas;

/// Colours by index, with a search for the nearest one, that a device can take over. A new palette is empty
/// and of kind 0.
///
/// Selected into a canvas, a palette gives its colours to whatever is drawn in a colour by number: 0x01000000
/// plus the index, in pens, brushes, texts and backgrounds alike. Realised as well, it becomes the colours of
/// a surface of 1, 4 or 8 bits that has none of its own, and everything is drawn in the nearest of them. DIB
/// sections and true colours keep theirs.
class ZUL_API CPalette : public CAnyObject {
public:
    CPalette() = default;
    ~CPalette() override;
    CPalette(const CPalette&) = delete;
    CPalette& operator=(const CPalette&) = delete;

    // --- query ---

    std::int32_t GetCount() const;                   ///< Colours.
    std::int32_t GetType() const { return m_Type; }  ///< The kind; only 0 has a meaning here.
    /// Outside the palette: error 3 and 0.
    std::int32_t GetColor(std::int32_t index) const;
    /// Copies at most \p count colours from \p start on; the palette's last colour is never among them, on
    /// purpose: callers rely on that limit. A start behind the last colour is error 3.
    void GetEntries(std::int32_t* out, std::int32_t start, std::int32_t count) const;
    /// The index of the colour with the smallest sum of component differences, the lowest one of several;
    /// -1 in an empty palette and in one of another kind than 0.
    std::int32_t GetNearestIndex(std::int32_t color) const;

    /// A colour from its components, and the components of one.
    static std::int32_t GetColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue);
    static void GetColor(std::int32_t color, std::uint8_t& red, std::uint8_t& green, std::uint8_t& blue);
    /// Colours of four components do not exist here: always 0.
    static std::int32_t GetColor(std::uint8_t, std::uint8_t, std::uint8_t, std::uint8_t) { return 0; }

    /// A colour as text: six hexadecimal digits, red first, and the three components in decimal for human
    /// readers, "ff8000(255,128,0)". The colour's high byte is not kept; the flag makes no difference.
    static CString GetColorStringToXML(std::int32_t color, bool = true);
    /// The colour of such a text, from its hexadecimal digits alone. No digits give black, more than six the
    /// low 24 bits of their number.
    static std::int32_t GetColorFromXML(const CString& text);

    // --- change ---

    /// Recorded. The device palette then counts as up to date instead of stale, on purpose.
    void SetType(std::int32_t type);
    void Append(std::int32_t color);  ///< The device palette becomes stale.
    /// Nothing happens outside the palette.
    void Delete(std::int32_t index);
    /// Outside the palette: error 3.
    void SetColor(std::int32_t index, std::int32_t color);
    /// Empties the palette and deletes its device palette; recorded.
    void Clear();
    /// Takes over kind and colours. Null and the palette itself are ignored.
    void ApplyPalette(const CPalette* other);

    // --- operate ---

    /// Makes the device palette from the colours, at most 65535 of them, when they have changed, and selects
    /// it into the canvas's device. Nothing happens to an empty palette, one that is up to date, be it
    /// selected or not, and on a detached canvas. Error 3 when the device palette cannot be made.
    void Select(CCanvas* canvas);
    /// Gives the selected palette's colours to the canvas's surface: once, and again after a Release.
    void Realize(CCanvas* canvas);
    /// Gives the device its former palette back and deletes the palette's own. What was realised stays.
    void Release(CCanvas* canvas);

    /// 10063 append, 10064 delete, 10065 colour at an index, 10066 set it; 10080 marks the device palette as
    /// stale.
    bool DoMessage(CMessage* message) override;

    // --- persist: the kind, then the colours ---

    bool ObjectToBuffer(CStream* stream) override;
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override;

private:
    HPALETTE MakeHandle() const;
    void DeleteDisplaced(HPALETTE displaced);
    bool Holds(std::int32_t index) const { return index >= 0 && index < GetCount(); }

    std::int32_t m_Type = 0;
    CBuffer<std::int32_t> m_Entries;
    HPALETTE m_Handle = nullptr;
    HPALETTE m_DefaultPalette = nullptr;
    bool m_fInvalid = true;
    bool m_fRealize = true;
};

}  // namespace zul
