// Stretched transfers: StretchPixels and KeyPixels.
#include <algorithm>
#include <cstring>

#include "platform/software/blit.h"
#include "platform/software/blit_rows.h"
#include "platform/software/color.h"
#include "platform/software/convert.h"

namespace device {

namespace {

/// Buffers are made for so many columns of target and source at most; wider transfers count as short of
/// memory. Ordinary bitmaps are far from it: only a row of few bits a pixel could be much longer.
constexpr std::int64_t kMaxColumns = std::int64_t{1} << 24;

/// What becomes of several source pixels that fall on one target pixel. All work on pixels in the target's
/// layout.
enum class Fold {
    Pick,  ///< across the last one stays, downwards the first
    And,
    Or,
};

Fold FoldOf(int stretchMode) {
    if (stretchMode == BLACKONWHITE) return Fold::And;
    if (stretchMode == WHITEONBLACK) return Fold::Or;
    return Fold::Pick;
}

void FoldBytes(Fold fold, std::uint8_t* into, const std::uint8_t* from, std::size_t bytes) {
    if (fold == Fold::And) {
        for (std::size_t i = 0; i < bytes; ++i)
            into[i] = static_cast<std::uint8_t>(into[i] & from[i]);
    } else {
        for (std::size_t i = 0; i < bytes; ++i)
            into[i] = static_cast<std::uint8_t>(into[i] | from[i]);
    }
}

/// Folds the pixels of each run; \p low is the column where \p span starts.
template <std::size_t Bytes>
void FoldPixels(Fold fold, const std::uint8_t* span, std::int32_t low, const SourceRun* runs,
                std::int32_t count, std::uint8_t* out) {
    for (std::int32_t i = 0; i < count; ++i, out += Bytes) {
        const std::uint8_t* pixel = span + static_cast<std::size_t>(runs[i].Low() - low) * Bytes;
        std::uint32_t sum = 0, next = 0;
        std::memcpy(&sum, pixel, Bytes);
        for (std::int32_t k = 1; k < runs[i].count; ++k) {
            pixel += Bytes;
            std::memcpy(&next, pixel, Bytes);
            sum = fold == Fold::And ? sum & next : sum | next;
        }
        std::memcpy(out, &sum, Bytes);
    }
}

/// The loop for one size of unpacked pixel.
decltype(&FoldPixels<1>) FoldFor(std::size_t pixelBytes) {
    constexpr decltype(&FoldPixels<1>) loops[] = {FoldPixels<1>, FoldPixels<2>, FoldPixels<3>, FoldPixels<4>};
    return loops[pixelBytes - 1];
}

/// The source's rows as the target's rows want them.
class StretchedRows {
public:
    StretchedRows(const Context& source, const Context& target, const StretchAxis& columns,
                  const StretchAxis& rows, ColorPair mono, Fold fold)
        : m_Converter(source, target, mono),
          m_Surface(source.surface),
          m_Mono(mono),
          m_Rows(rows),
          m_Fold(fold),
          m_PixelBytes(UnpackedBytes(target.surface.format)),
          m_TargetFormat(target.surface.format) {
        Plan(target.clip.bounds, columns);
        if (!m_ShortOfMemory && !m_Wanted.IsEmpty() && SharePixels(source, target)) SetAside();
    }

    /// The target pixels that have sources; empty when there is nothing to do.
    const Box& Wanted() const { return m_Wanted; }
    bool IsShortOfMemory() const { return m_ShortOfMemory; }

    /// For the part \p box of Wanted() from now on.
    void Start(const Box& box) {
        m_First = box.left - m_Wanted.left;
        m_Count = box.right - box.left;
        m_Ready.count = 0;
        RowBuffers& buffers = Buffers();
        if (!m_Straight) {
            m_Picks.Plan(m_PixelBytes, m_SpanCount, buffers.picks.data() + m_First, m_Count,
                         box.bottom - box.top, buffers.pickSteps);
        }
    }

    /// Pixels of the box in target row \p y, unpacked. \p repeated tells that they are those of the call
    /// before. They may have been put where \p room is, unless it is null.
    const std::uint8_t* Row(std::int32_t y, bool& repeated, std::uint8_t* room) {
        const SourceRun run = Buffers().rows[static_cast<std::size_t>(y - m_Wanted.top)];
        repeated = run.first == m_Ready.first && run.count == m_Ready.count;
        if (!repeated) {
            m_Ready = run;
            m_Pixels = m_Fold == Fold::Pick || (run.count == 1 && !m_Reduces) ? Picked(run.first, room)
                                                                              : Folded(run);
        }
        return m_Pixels;
    }

    /// 0xFF for each pixel of the row last asked for whose colour is \p key, else 0.
    const std::uint8_t* Marks(COLORREF key) {
        RowBuffers& buffers = Buffers();
        std::uint8_t* span = Room(buffers.marks, static_cast<std::size_t>(m_SpanCount));
        MarkKey(m_Surface, m_Mono, key, SourceRow(m_Ready.first), m_SpanLow, m_SpanCount, span);
        const std::int32_t* picks = buffers.picks.data() + m_First;
        if (m_Straight) return span + picks[0];
        std::uint8_t* out = Room(buffers.gatheredMarks, static_cast<std::size_t>(m_Count));
        GatherPixels<1>(span, picks, m_Count, out);
        return out;
    }

private:
    const std::uint8_t* SourceRow(std::int32_t y) const { return m_Surface.Row(y - m_TopRow); }

    /// Finds the target pixels that have sources, and each column's sources.
    void Plan(const Box& bounds, const StretchAxis& columns) {
        RowBuffers& buffers = Buffers();
        Box wanted = Intersect(
            {columns.TargetLow(), m_Rows.TargetLow(), columns.TargetHigh(), m_Rows.TargetHigh()}, bounds);
        m_ShortOfMemory = std::int64_t{wanted.right} - wanted.left > kMaxColumns;
        if (m_ShortOfMemory) return;
        while (wanted.left < wanted.right && columns.SourcesOf(wanted.left).count == 0)
            ++wanted.left;
        while (wanted.left < wanted.right && columns.SourcesOf(wanted.right - 1).count == 0)
            --wanted.right;
        while (wanted.top < wanted.bottom && m_Rows.SourcesOf(wanted.top).count == 0)
            ++wanted.top;
        while (wanted.top < wanted.bottom && m_Rows.SourcesOf(wanted.bottom - 1).count == 0)
            --wanted.bottom;
        m_Wanted = wanted;
        if (wanted.IsEmpty()) return;

        const SourceRun leftmost = columns.SourcesOf(wanted.left);
        const SourceRun rightmost = columns.SourcesOf(wanted.right - 1);
        m_SpanLow = std::min(leftmost.Low(), rightmost.Low());
        m_SpanCount = std::max(leftmost.High(), rightmost.High()) - m_SpanLow + 1;
        m_ShortOfMemory = m_SpanCount > kMaxColumns;
        if (m_ShortOfMemory) return;
        m_Rows.FindSources(wanted.top, wanted.bottom, buffers.rows);
        columns.FindSources(wanted.left, wanted.right, buffers.columns);
        buffers.picks.clear();
        for (const SourceRun& run : buffers.columns) {
            const std::int32_t pick = run.Last() - m_SpanLow;
            m_Straight = m_Straight && (buffers.picks.empty() || pick == buffers.picks.back() + 1);
            m_Reduces = m_Reduces || run.count > 1;
            buffers.picks.push_back(pick);
        }
    }

    /// Copies the source rows in use when the target may overwrite them.
    void SetAside() {
        const SourceRun top = m_Rows.SourcesOf(m_Wanted.top);
        const SourceRun bottom = m_Rows.SourcesOf(m_Wanted.bottom - 1);
        const std::int32_t low = std::min(top.Low(), bottom.Low());
        const std::int32_t high = std::max(top.High(), bottom.High());
        const Box used{m_SpanLow, low, m_SpanLow + m_SpanCount, high + 1};
        if (Intersect(used, m_Wanted).IsEmpty()) return;
        const Surface original = m_Surface;
        m_Surface = MakeSurface(m_Aside, original.width, high - low + 1, original.format, false);
        m_Surface.table = original.table;
        m_ShortOfMemory = m_Surface.top == nullptr;
        if (m_ShortOfMemory) return;
        m_TopRow = low;
        const RowSlice row = SliceOf(original.format, 0, original.width);
        for (std::int32_t y = low; y <= high; ++y) {
            std::memcpy(m_Surface.Row(y - low), original.Row(y), row.bytes);
        }
    }

    /// The span of source columns in use, converted.
    const std::uint8_t* Span(std::int32_t sourceY, std::vector<std::uint8_t>& buffer) {
        const std::uint8_t* row = SourceRow(sourceY);
        if (m_Converter.IsIdentity() && !IsPacked(m_TargetFormat)) {
            return row + static_cast<std::size_t>(m_SpanLow) * m_PixelBytes;
        }
        std::uint8_t* span = Room(buffer, static_cast<std::size_t>(m_SpanCount) * m_PixelBytes);
        m_Converter.Convert(row, m_SpanLow, m_SpanCount, span);
        return span;
    }

    const std::uint8_t* Picked(std::int32_t sourceY, std::uint8_t* room) {
        RowBuffers& buffers = Buffers();
        const std::uint8_t* span = Span(sourceY, buffers.span);
        if (m_Straight) {
            return span + static_cast<std::size_t>(buffers.picks.data()[m_First]) * m_PixelBytes;
        }
        std::uint8_t* out =
            room != nullptr ? room : Room(buffers.gathered, static_cast<std::size_t>(m_Count) * m_PixelBytes);
        m_Picks.Gather(span, m_Ready.step * m_Surface.stride, out);
        return out;
    }

    const std::uint8_t* Folded(const SourceRun& run) {
        RowBuffers& buffers = Buffers();
        const std::size_t bytes = static_cast<std::size_t>(m_SpanCount) * m_PixelBytes;
        std::uint8_t* sum = Room(buffers.bits, bytes);
        std::memcpy(sum, Span(run.first, buffers.span), bytes);
        for (std::int32_t i = 1; i < run.count; ++i) {
            FoldBytes(m_Fold, sum, Span(run.first + i * run.step, buffers.span), bytes);
        }
        std::uint8_t* out = Room(buffers.gathered, static_cast<std::size_t>(m_Count) * m_PixelBytes);
        FoldFor(m_PixelBytes)(m_Fold, sum, m_SpanLow, buffers.columns.data() + m_First, m_Count, out);
        return out;
    }

    PixelConverter m_Converter;
    Surface m_Surface;
    ColorPair m_Mono;
    StretchAxis m_Rows;
    Fold m_Fold;
    std::size_t m_PixelBytes;
    Format m_TargetFormat;
    PixelMemory m_Aside;        ///< copy of the source's rows, from m_TopRow on
    std::int32_t m_TopRow = 0;  ///< source row that is row 0 of m_Surface
    bool m_ShortOfMemory = false;
    Box m_Wanted;
    std::int32_t m_SpanLow = 0, m_SpanCount = 0;  ///< source columns in use
    bool m_Straight = true;                       ///< columns follow one another as in the source
    bool m_Reduces = false;                       ///< some column has several sources
    std::int32_t m_First = 0, m_Count = 0;        ///< the box's columns, counted from Wanted().left
    PixelPicks m_Picks;                           ///< of the box's columns unless they are straight
    SourceRun m_Ready;                            ///< the source rows of m_Pixels
    const std::uint8_t* m_Pixels = nullptr;
};

/// Stores the pixels that are not marked.
template <Format T>
void PutUnmarked(std::uint8_t* __restrict row, std::int32_t x, const std::uint8_t* __restrict pixels,
                 const std::uint8_t* __restrict marks, std::int32_t count) {
    using From = Pixels<IsPacked(T) ? Format::Indexed8 : T>;
    for (std::int32_t i = 0; i < count; ++i) {
        const std::uint32_t old = Pixels<T>::Load(row, x + i);
        Pixels<T>::Store(row, x + i, marks[i] != 0 ? old : From::Load(pixels, i));
    }
}

/// Stores the pixels that differ from \p key in some bit of the colour. Needs no marks, so that it runs at
/// memory speed.
template <Format F>
void PutUnkeyed(std::uint8_t* __restrict row, std::int32_t x, const std::uint8_t* __restrict pixels,
                std::uint32_t key, std::int32_t count) {
    constexpr std::uint32_t colorBits = F == Format::Rgb555 ? 0x7FFFu : 0xFFFFFFu;
    for (std::int32_t i = 0; i < count; ++i) {
        const std::uint32_t old = Pixels<F>::Load(row, x + i), pixel = Pixels<F>::Load(pixels, i);
        Pixels<F>::Store(row, x + i, (pixel & colorBits) == key ? old : pixel);
    }
}

/// The pixel that has a colour; a number that no pixel has when none has the colour.
std::uint32_t PixelOfKey(Format format, COLORREF key) {
    const std::uint32_t pixel = PackColor(format, key);
    return UnpackColor(format, pixel) == (key & 0xFFFFFFu) ? pixel : 0xFFFFFFFFu;
}

}  // namespace

bool StretchPixels(Context& target, const StretchAxis& columns, const StretchAxis& rows,
                   const Context& source, Rop3 rop) {
    if (rop.UsesPattern() && target.brush->style == BS_NULL) rop = WithoutBrush(rop);
    const Surface& to = target.surface;
    const ColorPair mono{target.textColor, target.backgroundColor};
    StretchedRows stretched(source, target, columns, rows, mono, FoldOf(target.stretchMode));
    if (stretched.IsShortOfMemory()) return false;
    if (stretched.Wanted().IsEmpty()) return true;
    const RowMixer mixer(rop);
    const bool putsDirectly = mixer.IsCopy() && !IsPacked(to.format);
    PatternRows pattern(target, rop);
    for (const Box& box : VisibleBoxes(target.clip, stretched.Wanted(), false, false)) {
        const RowSlice slice = SliceOf(to.format, box.left, box.right);
        std::uint8_t* packed = IsPacked(to.format) ? Room(Buffers().packed, slice.bytes) : nullptr;
        stretched.Start(box);
        pattern.Start(box, slice);
        for (std::int32_t y = box.top; y < box.bottom; ++y) {
            bool repeated = false;
            std::uint8_t* const place = to.Row(y) + slice.offset;
            const std::uint8_t* bytes = stretched.Row(y, repeated, putsDirectly ? place : nullptr);
            if (bytes == place) continue;
            if (packed != nullptr) {
                if (!repeated) PackRow(to.format, bytes, box.right - box.left, slice.lead, packed);
                bytes = packed;
            }
            mixer.Run(to.Row(y), slice, bytes, pattern.Row(y));
        }
    }
    return true;
}

bool KeyPixels(Context& target, const StretchAxis& columns, const StretchAxis& rows, const Context& source,
               COLORREF key) {
    const Surface& to = target.surface;
    StretchedRows stretched(source, target, columns, rows, {RGB(0, 0, 0), RGB(255, 255, 255)}, Fold::Pick);
    if (stretched.IsShortOfMemory()) return false;
    if (stretched.Wanted().IsEmpty()) return true;
    const bool alike = to.format == source.surface.format && !IsIndexed(to.format);
    const std::uint32_t keyPixel = alike ? PixelOfKey(to.format, key) : 0;
    for (const Box& box : VisibleBoxes(target.clip, stretched.Wanted(), false, false)) {
        const std::int32_t width = box.right - box.left;
        const std::uint8_t* marks = nullptr;
        stretched.Start(box);
        for (std::int32_t y = box.top; y < box.bottom; ++y) {
            bool repeated = false;
            const std::uint8_t* pixels = stretched.Row(y, repeated, nullptr);
            if (alike) {
                VisitFormat(to.format, [&](auto t) {
                    if constexpr (!IsIndexed(t.value))
                        PutUnkeyed<t.value>(to.Row(y), box.left, pixels, keyPixel, width);
                });
                continue;
            }
            if (!repeated) marks = stretched.Marks(key);
            VisitFormat(to.format,
                        [&](auto t) { PutUnmarked<t.value>(to.Row(y), box.left, pixels, marks, width); });
        }
    }
    return true;
}

}  // namespace device
