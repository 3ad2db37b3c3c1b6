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
    std::uint32_t Find(std::uint32_t color) {
        std::uint16_t& entry = m_Entries[CellOf(color)];
        if (entry == kUnknown) {
            entry = static_cast<std::uint16_t>(NearestEntry(m_Colors, LevelColor(color)));
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
        m_Ready = true;
    }
    std::uint32_t Find(std::uint32_t color) {
        std::uint16_t& mask = m_Masks[CellOf(color)];
        if (mask == 0) mask = MaskOf(color);
        if ((mask & (mask - 1)) == 0) return LowestBit(mask);
        std::uint32_t best = 0;
        std::int32_t least = std::numeric_limits<std::int32_t>::max();
        for (unsigned left = mask; left != 0; left &= left - 1) {
            const std::uint32_t entry = LowestBit(left);
            const std::int32_t distance = ColorDistance(m_Colors.colors[entry], color);
            if (distance < least) {
                least = distance;
                best = entry;
            }
        }
        return best;
    }

private:
    static std::uint32_t LowestBit(unsigned mask) { return static_cast<std::uint32_t>(__builtin_ctz(mask)); }

    /// The entries whose least distance from the cell of \p color is not above every distance of another
    /// entry.
    std::uint16_t MaskOf(std::uint32_t color) const {
        std::int32_t nearest[16], limit = std::numeric_limits<std::int32_t>::max();
        for (std::int32_t i = 0; i < m_Colors.count; ++i) {
            std::int32_t least = 0, most = 0;
            for (unsigned shift = 0; shift < 24; shift += 8) {
                const auto low = static_cast<std::int32_t>((color >> shift) & 0xF8u), high = low + 7;
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
    std::array<std::uint16_t, 32768> m_Masks;
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
        unsigned byte = 0;
        for (int i = 0; i < 8; ++i)
            byte |= static_cast<unsigned>(pixels[i]) << (7 - i);
        return static_cast<std::uint8_t>(byte);
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

    template <Format S>
    static void MatchCells(const PixelConverter&, const std::uint8_t* __restrict row, std::int32_t x,
                           std::int32_t count, std::uint8_t* __restrict out) {
        CellEntries& cells = Cells();
        for (std::int32_t i = 0; i < count; ++i) {
            out[i] = static_cast<std::uint8_t>(cells.Find(UnpackColor(S, Pixels<S>::Load(row, x + i))));
        }
    }

    template <Format S>
    static void MatchNearest(const PixelConverter&, const std::uint8_t* __restrict row, std::int32_t x,
                             std::int32_t count, std::uint8_t* __restrict out) {
        CellCandidates& candidates = Candidates();
        for (std::int32_t i = 0; i < count; ++i) {
            out[i] = static_cast<std::uint8_t>(candidates.Find(UnpackColor(S, Pixels<S>::Load(row, x + i))));
        }
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
