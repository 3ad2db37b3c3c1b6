#include "platform/software/blit.h"

#include <cstring>

#include "platform/software/blit_rows.h"
#include "platform/software/convert.h"
#include "platform/software/extent.h"

namespace device {

namespace {

/// Rows of a source in the layout of a target's slice.
class StraightRows {
public:
    StraightRows(const Context& source, const Context& target)
        : m_Converter(source, target, {target.textColor, target.backgroundColor}),
          m_Surface(source.surface),
          m_Format(target.surface.format) {}

    /// For slices that start at source column \p x and are \p count pixels wide.
    void Start(std::int32_t x, std::int32_t count, const RowSlice& slice) {
        m_X = x;
        m_Count = count;
        m_Slice = slice;
        const std::int64_t bits = BitsPerPixel(m_Format);
        const std::int64_t start = (std::int64_t{x} - slice.lead) * bits;
        m_Shift = static_cast<unsigned>(start & 7);
        m_FirstByte = static_cast<std::ptrdiff_t>(x * bits / 8);
        m_Skew = static_cast<std::size_t>(1 + (start >> 3) - m_FirstByte);
    }

    /// Rows are handed out where they lie in the source, not as copies.
    bool IsDirect() const { return m_Converter.IsIdentity() && m_Shift == 0 && m_Skew == 1; }

    const std::uint8_t* Row(std::int32_t y) {
        const std::uint8_t* row = m_Surface.Row(y);
        if (IsDirect()) return row + m_FirstByte;
        if (m_Converter.IsIdentity()) return Shifted(row);
        RowBuffers& buffers = Buffers();
        std::uint8_t* span = Room(buffers.span, static_cast<std::size_t>(m_Count) * UnpackedBytes(m_Format));
        m_Converter.Convert(row, m_X, m_Count, span);
        if (!IsPacked(m_Format)) return span;
        std::uint8_t* packed = Room(buffers.packed, m_Slice.bytes);
        PackRow(m_Format, span, m_Count, m_Slice.lead, packed);
        return packed;
    }

private:
    /// Pixels that share bytes, moved to another place in their bytes. The bytes that hold them are copied
    /// between two spare ones, so that the loop may look one byte to each side.
    const std::uint8_t* Shifted(const std::uint8_t* row) {
        const std::int64_t bits = BitsPerPixel(m_Format);
        const auto end = static_cast<std::ptrdiff_t>(((std::int64_t{m_X} + m_Count) * bits + 7) / 8);
        const auto bytes = static_cast<std::size_t>(end - m_FirstByte);
        std::uint8_t* copy = Room(Buffers().bits, bytes + 2);
        copy[0] = copy[bytes + 1] = 0;
        std::memcpy(copy + 1, row + m_FirstByte, bytes);
        std::uint8_t* out = Room(Buffers().packed, m_Slice.bytes);
        const std::uint8_t* in = copy + m_Skew;
        for (std::size_t i = 0; i < m_Slice.bytes; ++i) {
            const unsigned pair = (unsigned{in[i]} << 8) | in[i + 1];
            out[i] = static_cast<std::uint8_t>(pair >> (8 - m_Shift));
        }
        return out;
    }

    PixelConverter m_Converter;
    Surface m_Surface;
    Format m_Format;
    RowSlice m_Slice;
    std::int32_t m_X = 0, m_Count = 0;
    std::ptrdiff_t m_FirstByte = 0;  ///< of the row's bytes that hold the pixels
    unsigned m_Shift = 0;            ///< bits by which pixels lie further right than in the slice
    std::size_t m_Skew = 1;          ///< 0 when the slice starts a byte before m_FirstByte, else 1
};

/// Whole rows that follow one another in both surfaces are one run of bytes.
bool IsOneRun(const Surface& target, const Surface& source, const RowSlice& slice) {
    return target.stride == source.stride &&
           (target.stride == static_cast<std::ptrdiff_t>(slice.bytes) ||
            target.stride == -static_cast<std::ptrdiff_t>(slice.bytes)) &&
           slice.firstMask == 0xFF && slice.lastMask == 0xFF;
}

}  // namespace

void PaintPixels(Context& target, const Box& box, Rop3 rop) {
    const Surface& surface = target.surface;
    if (!rop.UsesPattern()) {
        PutBox(MakeSolidInk(surface, MakeMix(rop.Binary(), 0, surface.format)), target.clip, box);
    } else if (target.brush->style != BS_NULL) {
        PutBox(BrushInk(target, *target.brush, rop.Binary()), target.clip, box);
    }
}

void CopyPixels(Context& target, const Box& area, const Context& source, std::int64_t dx, std::int64_t dy,
                Rop3 rop) {
    const Surface& to = target.surface;
    const Surface& from = source.surface;
    const Box existing = ExtentBox(dx, dy, from.width, from.height);
    const Box wanted = Intersect(Intersect(area, existing), target.clip.bounds);
    if (wanted.IsEmpty()) return;
    if (rop.UsesPattern() && target.brush->style == BS_NULL) rop = WithoutBrush(rop);

    // Something is visible of both, so the way between them fits 32 bits.
    const auto wayX = static_cast<std::int32_t>(dx), wayY = static_cast<std::int32_t>(dy);
    const bool within = SharePixels(target, source);
    const RowMixer mixer(rop);
    PatternRows pattern(target, rop);
    StraightRows rows(source, target);
    for (const Box& box : VisibleBoxes(target.clip, wanted, within && dy > 0, within && dx > 0)) {
        const RowSlice slice = SliceOf(to.format, box.left, box.right);
        rows.Start(box.left - wayX, box.right - box.left, slice);
        pattern.Start(box, slice);
        if ((mixer.IsCopy() || (!within && !rop.UsesPattern())) && rows.IsDirect() &&
            IsOneRun(to, from, slice)) {
            const std::int32_t first = to.stride > 0 ? box.top : box.bottom - 1;
            RowSlice run = slice;
            run.bytes *= static_cast<std::size_t>(box.bottom - box.top);
            mixer.Run(to.Row(first), run, from.Row(first - wayY), nullptr);
            continue;
        }
        // A row that is mixed with itself is read from a copy.
        const bool aside = within && dy == 0 && rows.IsDirect() && !mixer.IsCopy();
        const bool upwards = within && dy > 0;
        for (std::int32_t i = box.top; i < box.bottom; ++i) {
            const std::int32_t y = upwards ? box.top + box.bottom - 1 - i : i;
            const std::uint8_t* bytes = rows.Row(y - wayY);
            if (aside) {
                std::uint8_t* copy = Room(Buffers().span, slice.bytes);
                std::memcpy(copy, bytes, slice.bytes);
                bytes = copy;
            }
            mixer.Run(to.Row(y), slice, bytes, pattern.Row(y));
        }
    }
}

}  // namespace device
