/// \file
/// The bitmap: a raster image as a device object, as packed bytes, or both.
#pragma once

#include <cstdint>

#include "platform/gdi.h"
#include "zul/geometry/coordinates.h"
#include "zul/kernel/any_object.h"
#include "zul/kernel/buffer.h"
#include "zul/kernel/export.h"
#include "zul/kernel/references.h"
#include "zul/tools/gradient.h"

namespace zul {

class CCanvas;
class CPackedDib;

/// A raster image. It has a device handle, or a packed device-independent image in a buffer (which is what
/// gets stored), or both; the handle is made from the packed image when it is first asked for. The bitmap
/// owns the handles it makes, never one that was attached. While a canvas holds the bitmap selected, no other
/// device can: transfers then read the other device's own one-pixel bitmap.
class ZUL_API CBitmap : public CAnyObject {
public:
    /// Raster operations of block transfers.
    enum TRop : std::int32_t {
        RopSourceCopy = 0,
        RopPatternInvert = 1,
        RopDestinationInvert = 2,
        RopBlackness = 3,
        RopWhiteness = 4,
        RopSourceAnd = 5,
        RopSourceInvert = 6,
    };

    CBitmap() = default;
    ~CBitmap() override;
    CBitmap(const CBitmap&) = delete;
    CBitmap& operator=(const CBitmap&) = delete;

    // --- make and hold ---

    virtual bool IsVisual() { return true; }  ///< Whether it is a picture at all; always.
    /// Drops handle and packed image; an attached handle is left to its owner.
    virtual void Clear();
    /// Takes a copy of a packed image, whose header says how long it is. A handle that exists stays.
    /// \returns false for null, a header shorter than 40 bytes and an image beyond the size limit.
    virtual bool Create(const void* dib);
    /// The same from \p length bytes; false also when they are fewer than the header announces.
    bool Create(const void* dib, std::uint32_t length);
    /// Loads a BMP file. \returns false, and the former contents stay, when there is no such file or the
    /// device cannot read it; so do the further forms.
    virtual bool Create(const char16_t* name);
    /// Loads a bitmap resource of \p module, given as the platform's module handle; null: as from a file. A
    /// \p name below 0x10000 is a resource's number.
    virtual bool Create(void* module, const char16_t* name);
    /// A device-dependent bitmap. \p bits: rows from top to bottom, padded to 32 bits at every depth; null
    /// leaves it black.
    virtual bool Create(std::int32_t width, std::int32_t height, std::int32_t bitsPixel, const void* bits);
    /// A bitmap like \p canvas's device, or like the screen without a canvas.
    virtual bool CreateCompatible(std::int32_t width, std::int32_t height, CCanvas* canvas);
    /// Writes the handle's image as a BMP file with the screen's resolution. There is never a colour table in
    /// it, and the rows come from the packed image: what that does not hold is written as zeros. \returns
    /// whether the file is complete; one that cannot be made or written is reported and leaves what stood
    /// there, and without a handle there is none.
    virtual bool SaveToFile(const char16_t* path);
    /// Brings the handle's pixels into the packed image, for classes that can reach them. This one cannot.
    virtual void ExtractBitsFromHandle(CCanvas* canvas);
    /// Drops the contents and shows \p handle, which stays its giver's. Null only drops.
    void AttachHandle(HBITMAP handle);
    /// Gives the handle away; the caller deletes it.
    HBITMAP DetachHandle();

    // --- query ---

    /// Whether there is a handle or a packed image.
    bool IsValid();
    /// Pixels; 0 when there is nothing. A packed image's height is negative when its first row is the top.
    virtual std::int32_t GetWidth();
    virtual std::int32_t GetHeight();
    virtual void GetSize(std::int32_t& width, std::int32_t& height);
    /// The handle, made from the packed image when there is none yet; null when there is nothing.
    virtual HBITMAP GetHandle();
    /// Of the packed image; 0 or null when there is none, when an address lies outside the buffer, or when a
    /// figure does not fit 32 bits. Addresses are valid until the bitmap changes.
    const std::uint8_t* GetBits();
    std::int32_t GetDIBSize();
    std::int32_t GetImageSize();
    std::int32_t GetRowSize();
    std::int32_t GetColorUsed();
    const std::uint8_t* GetPaletteEntries();
    std::int32_t GetPaletteEntriesCount();
    /// Bytes of the colour table.
    std::int32_t GetPaletteSize();
    /// The colour of the first pixel, which icons take as their transparent one.
    std::int32_t GetBitmapMaskColor();
    /// The library's 8 x 8 one-bit pattern: there from InitializeLibrary to FinalizeLibrary, else null.
    static CBitmap* GetPatternBitmap();

    // --- draw: positions and sizes in pixels; null targets and sources draw nothing ---

    /// A printer gets the block through a 24-bit picture of its size. That picture is read from the source
    /// position again and put down with the operation again, on purpose: pages look as they always did.
    void BitBlt(CCanvas* target, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                std::int32_t sourceX, std::int32_t sourceY, TRop rop);
    void BitBlt(CBitmap* target, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                std::int32_t sourceX, std::int32_t sourceY, TRop rop);
    /// Shrinking drops pixels, it does not mix them.
    void StretchBlt(CCanvas* target, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                    std::int32_t sourceX, std::int32_t sourceY, std::int32_t sourceWidth,
                    std::int32_t sourceHeight, TRop rop);
    /// Leaves out the pixels of colour \p color.
    void Transparent(CCanvas* target, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                     std::int32_t sourceX, std::int32_t sourceY, std::int32_t sourceWidth,
                     std::int32_t sourceHeight, std::int32_t color);
    /// The device cannot do these: each reports error 4 and draws nothing.
    void AlphaBlend(CCanvas* target, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                    std::int32_t sourceX, std::int32_t sourceY, std::int32_t sourceWidth,
                    std::int32_t sourceHeight, CGradient::TBlend blend);
    void PlgBlt(CCanvas* target, const TLongPoint* corners, std::int32_t sourceX, std::int32_t sourceY,
                std::int32_t width, std::int32_t height, CBitmap* mask, std::int32_t maskX,
                std::int32_t maskY);
    void AlphaFade(CCanvas* target, std::int32_t x, std::int32_t y, std::int32_t alpha);
    /// Fills the whole bitmap.
    void Fill(std::int32_t color);
    /// A new bitmap like the screen with a part of this one. The caller deletes it.
    CBitmap* ExtractBitmap(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height);
    /// A new bitmap like the screen with all of this one stretched into it; null unless this one has a
    /// handle. The caller deletes it.
    CBitmap* Stretch(std::int32_t width, std::int32_t height);
    /// Draws the whole bitmap at (0, 0) of \p canvas. \returns true.
    virtual bool DoPaint(CCanvas* canvas, CAnyObject* parameter);
    /// Answers "Draw" (first parameter the canvas's address) with DoPaint.
    bool DoMessage(CMessage* message) override;

    // --- persist: the reference to the packed image's buffer, 8 bytes ---

    bool ObjectToBuffer(CStream* stream) override;
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override;

protected:
    /// The packed image, absent without a buffer.
    CPackedDib GetDib();
    /// The packed image's buffer, made when there is none; null when memory is short.
    CAnyBuffer* NeedBuffer();

    CRef<CAnyBuffer> m_Buffer;   ///< the packed image
    HBITMAP m_Handle = nullptr;  ///< made from it, or attached
    bool m_Attached = false;     ///< whether the handle is its giver's

private:
    bool StorePacked(const CPackedDib& dib, const void* data);
    bool Take(HBITMAP handle);
};

}  // namespace zul
