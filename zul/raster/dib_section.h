/// \file
/// The DIB section: a bitmap whose pixels lie in memory that everybody can address.
#pragma once

#include <cstdint>
#include <vector>

#include "zul/raster/bitmap.h"

namespace zul {

/// A bitmap over a section of the device, whose pixels can be read and written directly, by the byte or pixel
/// by pixel. The packed image always has the header and the colour table; the pixels come into it only with
/// ExtractBitsFromHandle and when the section is stored. Read back from a store, a section has its packed
/// image and no handle, and works on that image's pixels.
///
/// Every Create drops the former contents first, whatever comes of it. After a failure there is no handle,
/// and the packed image holds as much of a header as was known.
class ZUL_API CDibSection : public CBitmap {
public:
    using CBitmap::Create;

    // --- make and hold ---

    /// Drops handle and packed image. Unlike other bitmaps a section deletes an attached handle too.
    void Clear() override;
    /// From a BMP file of one plane, uncompressed, with a 40-byte info header and its first row at the
    /// bottom; a short colour table is filled up with black. The rows are taken from right behind the colour
    /// table, wherever the file says that they are. Anything else is reported. \returns true in every case.
    bool Create(const char16_t* path) override;
    /// From a bitmap resource of a module; the pixels stay zero, only size, depth and colours are taken over.
    /// \returns whether there is a section now; true also for a resource that is not found, which is
    /// reported.
    bool Create(void* module, const char16_t* name) override;
    /// A section like the screen of \p bitsPixel bits a pixel (below 1: the screen's depth) with the pixels
    /// at \p bits: rows in stored order, padded to 32 bits; null leaves them zero. A negative \p height puts
    /// the first row at the top. Depths up to 8 get a ramp of greys as colours, from black on in steps of
    /// one. Failure is reported. \returns true in every case.
    bool Create(std::int32_t width, std::int32_t height, std::int32_t bitsPixel, const void* bits) override;
    /// The same for \p canvas's device and with its depth; the screen's without a canvas.
    bool CreateCompatible(std::int32_t width, std::int32_t height, CCanvas* canvas) override;
    /// Writes header, colour table and pixels as a BMP file. A section that Create made for a size has no
    /// colour table of its own, and none is written. \returns whether the file is complete; one that
    /// cannot be made or written is reported and leaves what stood there, and for an empty section there is
    /// none.
    bool SaveToFile(const char16_t* path) override;
    /// Copies the section's pixels into the packed image. \p canvas is not asked.
    void ExtractBitsFromHandle(CCanvas* canvas) override;

    // --- query ---

    /// Of the packed header, 0 without one; the handle is not asked.
    std::int32_t GetWidth() override;
    std::int32_t GetHeight() override;
    void GetSize(std::int32_t& width, std::int32_t& height) override;
    /// The section; never made from the packed image.
    HBITMAP GetHandle() override { return m_Handle; }
    /// The section's pixels, null when there is no section. Valid until the section changes.
    void* GetDIBBits();

    // --- pixels ---
    //
    // x and y count in stored order, so y 0 is the first stored row. Places outside the pixels, which are the
    // section's or else the packed image's, read 0 and take nothing; x may run into a row's padding and on
    // into the next row. Four bits and 24 bits follow rules of their own, on purpose: callers rely on them.

    /// The stored number. 1 bit: 0 or 1; 4 bits: 0 to 15, an even x from the lower half of its byte, an odd x
    /// from the upper; 8 and 16 bits: with sign; 24 bits: 1 unless the four bytes from the pixel on are zero;
    /// 32 bits: the value; another depth: -1. 0 without a packed header.
    std::int32_t GetPixel(std::int32_t x, std::int32_t y);
    /// 1 bit: the lowest bit of \p color; 4 bits: clears the lower half of the byte (even x) or the upper one
    /// (odd x) and then sets the byte's lowest bit for a \p color that is not 0 (odd x: whose lowest byte is
    /// not 0); 8 and 16 bits: that many low bits; 24 bits: ORs the lowest byte into the pixel's first; 32
    /// bits: the value; another depth: nothing.
    void SetPixel(std::int32_t x, std::int32_t y, std::int32_t color);

    // --- persist: as any bitmap, with the section's pixels ---

    bool ObjectToBuffer(CStream* stream) override;

private:
    /// Pixel bytes and how many there are.
    struct TBlock {
        const std::uint8_t* Bytes;
        std::int64_t Size;
    };

    bool HasSection() const { return m_Handle && m_Bits; }
    bool MakeSection(HDC device, std::int32_t width, std::int32_t height, std::int32_t bitsPixel);
    void CreateOn(HDC device, std::int32_t width, std::int32_t height, std::int32_t bitsPixel,
                  const void* bits);
    std::vector<std::uint8_t> CopyPacked(const void* bits);
    bool ReadFile(const char16_t* path);
    bool TakeSection(const CPackedDib& dib);
    void DropSection();
    TBlock GetBlock(const CPackedDib& dib) const;

    void* m_Bits = nullptr;
    std::int64_t m_BitsSize = 0;  // what lies at m_Bits, whatever the packed header says later
};

}  // namespace zul
