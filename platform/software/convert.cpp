#include "platform/software/convert.h"

#include <cstring>

#include "platform/software/color.h"

namespace device {

namespace {

/// The unpacked twin of a format.
constexpr Format Unpacked(Format format) {
    return IsIndexed(format) ? Format::Indexed8 : format;
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
        const std::uint32_t cell =
            ((color >> 3) & 31u) | (((color >> 11) & 31u) << 5) | (((color >> 19) & 31u) << 10);
        std::uint16_t& entry = m_Entries[cell];
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

    /// Small tables are searched for every change of colour along the row.
    template <Format S>
    static void MatchNearest(const PixelConverter& converter, const std::uint8_t* __restrict row,
                             std::int32_t x, std::int32_t count, std::uint8_t* __restrict out) {
        std::uint32_t last = 0;
        std::uint8_t entry = 0;
        for (std::int32_t i = 0; i < count; ++i) {
            const std::uint32_t pixel = Pixels<S>::Load(row, x + i);
            if (i == 0 || pixel != last) {
                last = pixel;
                entry =
                    static_cast<std::uint8_t>(NearestEntry(*converter.m_TargetColors, UnpackColor(S, pixel)));
            }
            out[i] = entry;
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
    m_TargetColors = ColorsOf(to);
    m_Identity = from.format == to.format && SameColors(fromColors, m_TargetColors);
    if (m_Identity) {
        VisitFormat(from.format, [&](auto s) { m_Loop = Loops::Keep<s.value>; });
        return;
    }
    const bool toKey = to.format == Format::Mono && m_TargetColors == nullptr;
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
        Cells().Prepare(*m_TargetColors);
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
    const int bits = BitsPerPixel(format);
    const std::int32_t perByte = 8 / bits;
    std::int32_t filled = lead;
    unsigned byte = 0;
    for (std::int32_t i = 0; i < count; ++i) {
        byte = (byte << bits) | unpacked[i];
        if (++filled == perByte) {
            *out++ = static_cast<std::uint8_t>(byte);
            byte = 0;
            filled = 0;
        }
    }
    if (filled != 0) *out = static_cast<std::uint8_t>(byte << (bits * (perByte - filled)));
}

}  // namespace device
