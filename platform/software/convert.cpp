#include "platform/software/convert.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "platform/software/color.h"

namespace device {

namespace {

/// The unpacked twin of a format.
constexpr Format Unpacked(Format format) {
    return IsIndexed(format) ? Format::Indexed8 : format;
}

/// A number for each cell of colours that agree in the high 5 bits of each channel.
constexpr std::uint32_t CellOf(std::uint32_t color) {
    return ((color >> 3) & 31u) | (((color >> 11) & 31u) << 5) | (((color >> 19) & 31u) << 10);
}

/// The darkest colour of a cell.
constexpr std::uint32_t ColorOfCell(std::uint32_t cell) {
    return ((cell & 31u) << 3) | (((cell >> 5) & 31u) << 11) | (((cell >> 10) & 31u) << 19);
}

/// Entries of an 8-bit table for colours cut to 5 bits a channel, looked up once each. The platform matches
/// the middle of such a cell, so neighbouring colours of a fine ramp may fall on one entry.
class CellEntries {
public:
    /// Makes the look-ups good for \p colors.
    void Prepare(const ColorTable& colors) {
        if (m_Ready && colors.count == m_Colors.count && colors.colors == m_Colors.colors) return;
        m_Colors = colors;
        m_Entries.fill(kUnknown);
        m_Ready = true;
    }
    std::uint32_t Find(std::uint32_t cell) {
        std::uint16_t& entry = m_Entries[cell];
        if (entry == kUnknown) {
            entry = static_cast<std::uint16_t>(NearestEntry(m_Colors, LevelColor(ColorOfCell(cell))));
        }
        return entry;
    }

private:
    static constexpr std::uint16_t kUnknown = 0xFFFF;
    ColorTable m_Colors;
    std::array<std::uint16_t, 32768> m_Entries;
    bool m_Ready = false;
};

CellEntries& Cells() {
    static thread_local CellEntries cells;
    return cells;
}

/// Which entries of a small table can be the nearest to some colour of a cell, 5 bits a channel, found once
/// for each cell. Most cells have one; among the others the exact colour decides.
class CellCandidates {
public:
    /// Makes the look-ups good for \p colors, of which there are at most 16.
    void Prepare(const ColorTable& colors) {
        if (m_Ready && colors.count == m_Colors.count && colors.colors == m_Colors.colors) return;
        m_Colors = colors;
        m_Masks.fill(0);
        m_Entries.fill(kUndecided);
        m_Ready = true;
    }
    /// The entry that is the nearest to every colour of the cell; kUndecided when that is not known.
    std::uint32_t Of(std::uint32_t cell) const { return m_Entries[cell]; }
    /// The entry that is the nearest to \p color of the cell.
    std::uint32_t Decide(std::uint32_t cell, std::uint32_t color) {
        std::uint16_t& mask = m_Masks[cell];
        if (mask == 0) mask = MaskOf(ColorOfCell(cell));
        const std::uint32_t entry = Nearest(mask, color);
        if ((mask & (mask - 1)) == 0) m_Entries[cell] = static_cast<std::uint8_t>(entry);
        return entry;
    }

    static constexpr std::uint32_t kUndecided = 0xFF;

private:
    /// The one of \p mask that is nearest to a colour.
    std::uint32_t Nearest(unsigned mask, std::uint32_t color) const {
        std::uint32_t best = 0;
        std::int32_t least = std::numeric_limits<std::int32_t>::max();
        for (unsigned left = mask; left != 0; left &= left - 1) {
            const auto entry = static_cast<std::uint32_t>(__builtin_ctz(left));
            const std::int32_t distance = ColorDistance(m_Colors.colors[entry], color);
            if (distance < least) {
                least = distance;
                best = entry;
            }
        }
        return best;
    }
    /// The entries whose least distance from the cell that \p color starts is not above every distance of
    /// another entry.
    std::uint16_t MaskOf(std::uint32_t color) const {
        std::int32_t nearest[16], limit = std::numeric_limits<std::int32_t>::max();
        for (std::int32_t i = 0; i < m_Colors.count; ++i) {
            std::int32_t least = 0, most = 0;
            for (unsigned shift = 0; shift < 24; shift += 8) {
                const auto low = static_cast<std::int32_t>((color >> shift) & 0xFFu), high = low + 7;
                const auto own = static_cast<std::int32_t>(
                    (m_Colors.colors[static_cast<std::size_t>(i)] >> shift) & 0xFFu);
                const std::int32_t inside = std::clamp(own, low, high) - own;
                const std::int32_t far = std::max(high - own, own - low);
                least += inside * inside;
                most += far * far;
            }
            nearest[i] = least;
            limit = std::min(limit, most);
        }
        unsigned mask = 0;
        for (std::int32_t i = 0; i < m_Colors.count; ++i)
            if (nearest[i] <= limit) mask |= 1u << i;
        return static_cast<std::uint16_t>(mask);
    }

    ColorTable m_Colors;
    std::array<std::uint16_t, 32768> m_Masks;   ///< a bit for each entry that may be the nearest
    std::array<std::uint8_t, 32768> m_Entries;  ///< of cells with one bit that have been asked for
    bool m_Ready = false;
};

CellCandidates& Candidates() {
    static thread_local CellCandidates candidates;
    return candidates;
}

/// Pixels of one byte, the first in the highest bits.
template <int Bits>
std::uint8_t PackByte(const std::uint8_t* pixels) {
    if constexpr (Bits == 4) {
        return static_cast<std::uint8_t>(pixels[0] << 4 | pixels[1]);
    } else {
        // The sum of eight copies, none of whose bits meet: the last byte gets one bit of each pixel.
        std::uint64_t eight;
        std::memcpy(&eight, pixels, sizeof eight);
        return static_cast<std::uint8_t>(eight * 0x8040201008040201u >> 56);
    }
}

template <int Bits>
void PackPixels(const std::uint8_t* __restrict unpacked, std::int32_t count, std::int32_t lead,
                std::uint8_t* __restrict out) {
    static constexpr std::int32_t perByte = 8 / Bits;
    // A byte that is not full at either end is made up with zeros.
    const auto part = [](const std::uint8_t* pixels, std::int32_t from, std::int32_t pixelCount) {
        std::uint8_t whole[perByte] = {};
        std::memcpy(whole + from, pixels, static_cast<std::size_t>(pixelCount));
        return PackByte<Bits>(whole);
    };
    if (lead != 0) {
        const std::int32_t first = std::min(count, perByte - lead);
        *out++ = part(unpacked, lead, first);
        unpacked += first;
        count -= first;
    }
    for (; count >= perByte; count -= perByte, unpacked += perByte)
        *out++ = PackByte<Bits>(unpacked);
    if (count > 0) *out = part(unpacked, 0, count);
}

bool SameColors(const ColorTable* a, const ColorTable* b) {
    return a == b || (a != nullptr && b != nullptr && a->colors == b->colors);
}

}  // namespace

const ColorTable* ColorsOf(const Surface& surface) {
    if (surface.table != nullptr) return surface.table;
    if (surface.format != Format::Indexed4 && surface.format != Format::Indexed8) return nullptr;
    return &DeviceColors(surface.format);
}

/// The row loops, for a source format S and a target format T.
struct PixelConverter::Loops {
    template <Format S>
    static void Keep(const PixelConverter&, const std::uint8_t* __restrict row, std::int32_t x,
                     std::int32_t count, std::uint8_t* __restrict out) {
        if constexpr (S == Unpacked(S)) {
            constexpr std::size_t bytes = UnpackedBytes(S);
            std::memcpy(out, row + static_cast<std::size_t>(x) * bytes,
                        static_cast<std::size_t>(count) * bytes);
        } else {
            for (std::int32_t i = 0; i < count; ++i) {
                Pixels<Unpacked(S)>::Store(out, i, Pixels<S>::Load(row, x + i));
            }
        }
    }

    template <Format S, Format T>
    static void LookUp(const PixelConverter& converter, const std::uint8_t* __restrict row, std::int32_t x,
                       std::int32_t count, std::uint8_t* __restrict out) {
        for (std::int32_t i = 0; i < count; ++i) {
            Pixels<Unpacked(T)>::Store(out, i, converter.m_Pixels[Pixels<S>::Load(row, x + i)]);
        }
    }

    template <Format S, Format T>
    static void Recode(const PixelConverter&, const std::uint8_t* __restrict row, std::int32_t x,
                       std::int32_t count, std::uint8_t* __restrict out) {
        for (std::int32_t i = 0; i < count; ++i) {
            Pixels<T>::Store(out, i, PackColor(T, UnpackColor(S, Pixels<S>::Load(row, x + i))));
        }
    }

    template <Format S>
    static void MatchKey(const PixelConverter& converter, const std::uint8_t* __restrict row, std::int32_t x,
                         std::int32_t count, std::uint8_t* __restrict out) {
        for (std::int32_t i = 0; i < count; ++i) {
            out[i] = Pixels<S>::Load(row, x + i) == converter.m_Key ? 1 : 0;
        }
    }

    /// Calls `match(i, cell)` for each of the pixels. Cells are numbered some pixels ahead, in a loop that
    /// the compiler can put into vectors.
    template <Format S, class Match>
    static void ForCells(const std::uint8_t* row, std::int32_t x, std::int32_t count, Match&& match) {
        constexpr std::int32_t kAhead = 256;
        std::uint16_t cells[kAhead];
        for (std::int32_t from = 0; from < count; from += kAhead) {
            const std::int32_t pixels = std::min(count - from, kAhead);
            for (std::int32_t i = 0; i < pixels; ++i) {
                const std::uint32_t pixel = Pixels<S>::Load(row, x + from + i);
                cells[i] = static_cast<std::uint16_t>(CellOf(UnpackColor(S, pixel)));
            }
            for (std::int32_t i = 0; i < pixels; ++i)
                match(from + i, cells[i]);
        }
    }

    template <Format S>
    static void MatchCells(const PixelConverter&, const std::uint8_t* __restrict row, std::int32_t x,
                           std::int32_t count, std::uint8_t* __restrict out) {
        CellEntries& entries = Cells();
        ForCells<S>(row, x, count, [&entries, out](std::int32_t i, std::uint32_t cell) {
            out[i] = static_cast<std::uint8_t>(entries.Find(cell));
        });
    }

    template <Format S>
    static void MatchNearest(const PixelConverter&, const std::uint8_t* __restrict row, std::int32_t x,
                             std::int32_t count, std::uint8_t* __restrict out) {
        CellCandidates& candidates = Candidates();
        ForCells<S>(row, x, count, [&candidates, row, x, out](std::int32_t i, std::uint32_t cell) {
            std::uint32_t entry = candidates.Of(cell);
            if (entry == CellCandidates::kUndecided)
                entry = candidates.Decide(cell, UnpackColor(S, Pixels<S>::Load(row, x + i)));
            out[i] = static_cast<std::uint8_t>(entry);
        });
    }

    template <Format S, Format T>
    static Loop Choose() {
        if constexpr (IsIndexed(S)) {
            return LookUp<S, T>;
        } else if constexpr (T == Format::Indexed8) {
            return MatchCells<S>;
        } else if constexpr (IsIndexed(T)) {
            return MatchNearest<S>;
        } else {
            return Recode<S, T>;
        }
    }
};

PixelConverter::PixelConverter(const Context& source, const Context& target, ColorPair mono) {
    const Surface& from = source.surface;
    const Surface& to = target.surface;
    const ColorTable* fromColors = ColorsOf(from);
    const ColorTable* toColors = ColorsOf(to);
    m_Identity = from.format == to.format && SameColors(fromColors, toColors);
    if (m_Identity) {
        VisitFormat(from.format, [&](auto s) { m_Loop = Loops::Keep<s.value>; });
        return;
    }
    const bool toKey = to.format == Format::Mono && toColors == nullptr;
    m_Key = toKey ? NearestPixel(source, source.backgroundColor) : 0;
    if (toKey && !IsIndexed(from.format)) {
        VisitFormat(from.format, [&](auto s) { m_Loop = Loops::MatchKey<s.value>; });
        return;
    }
    VisitFormat(from.format, [&](auto s) {
        VisitFormat(to.format, [&](auto t) { m_Loop = Loops::template Choose<s.value, t.value>(); });
    });
    if (IsIndexed(from.format)) {
        const std::uint32_t entries = 1u << BitsPerPixel(from.format);
        for (std::uint32_t i = 0; i < entries; ++i) {
            if (toKey) {
                m_Pixels[i] = i == m_Key ? 1 : 0;
            } else {
                const std::uint32_t color =
                    fromColors != nullptr ? fromColors->colors[i] : (i == 0 ? mono.zero : mono.one);
                m_Pixels[i] = NearestPixel(target, color);
            }
        }
    } else if (to.format == Format::Indexed8) {
        Cells().Prepare(*toColors);
    } else if (IsIndexed(to.format)) {
        Candidates().Prepare(*toColors);
    }
}

void MarkKey(const Surface& surface, ColorPair mono, COLORREF key, const std::uint8_t* __restrict row,
             std::int32_t x, std::int32_t count, std::uint8_t* __restrict out) {
    const std::uint32_t wanted = key & 0xFFFFFFu;
    const ColorTable* colors = ColorsOf(surface);
    VisitFormat(surface.format, [&](auto s) {
        constexpr Format S = s.value;
        for (std::int32_t i = 0; i < count; ++i) {
            const std::uint32_t pixel = Pixels<S>::Load(row, x + i);
            std::uint32_t color;
            if constexpr (!IsIndexed(S)) {
                color = UnpackColor(S, pixel);
            } else if (colors != nullptr) {
                color = colors->colors[pixel];
            } else {
                color = pixel == 0 ? mono.zero : mono.one;
            }
            out[i] = color == wanted ? 0xFF : 0x00;
        }
    });
}

void PackRow(Format format, const std::uint8_t* unpacked, std::int32_t count, std::int32_t lead,
             std::uint8_t* __restrict out) {
    if (format == Format::Indexed4) {
        PackPixels<4>(unpacked, count, lead, out);
    } else {
        PackPixels<1>(unpacked, count, lead, out);
    }
}

}  // namespace device
