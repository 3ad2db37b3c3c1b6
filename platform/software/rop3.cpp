#include "platform/software/rop3.h"

#include <cstring>

namespace device {

namespace {

/// What a null brush leaves of each operation, as measured on the platform: it passes over the steps that
/// would bring the pattern in. A digit an operation, row by row; its bit 2 s + d is the result.
constexpr char kBrushless[16][17] = {
    "018C8A9886A4C21A", "111111478BEBEDEE", "81214822828B2DED", "C123456786A7CDEC",
    "41244148844B8DEB", "A125156786ABC7EA", "6126466286646249", "71274727877777E7",
    "818888888D8B8DE7", "9B294962D96B6DE6", "AE83EA6889AEADEA", "BE274B478BEBBDEE",
    "C12C856889CBCEEC", "DE2D47278DDBEDEE", "EE2E4E478EEEEEEE", "A12C4A6789AECDEF",
};

constexpr unsigned HexDigit(char digit) {
    return static_cast<unsigned>(digit <= '9' ? digit - '0' : digit - 'A' + 10);
}

constexpr std::uint8_t MaskOf(unsigned bit) {
    return (bit & 1u) != 0 ? 0xFF : 0x00;
}

}  // namespace

Rop3 WithoutBrush(Rop3 rop) {
    const unsigned digit = HexDigit(kBrushless[rop.table >> 4][rop.table & 15]);
    return {static_cast<std::uint8_t>(digit | (digit << 4))};
}

RowSlice SliceOf(Format format, std::int32_t left, std::int32_t right) {
    const std::int64_t bits = BitsPerPixel(format);
    const std::int64_t from = left * bits, to = right * bits;
    RowSlice slice;
    slice.offset = static_cast<std::ptrdiff_t>(from / 8);
    slice.bytes = static_cast<std::size_t>((to + 7) / 8 - from / 8);
    slice.lead = static_cast<std::int32_t>(from % 8 / bits);
    slice.firstMask = static_cast<std::uint8_t>(0xFF >> (from % 8));
    slice.lastMask = static_cast<std::uint8_t>(0xFF << ((8 - to % 8) % 8));
    return slice;
}

/// The operation is known when the loop is compiled, so that nothing is left of it but what it does.
template <unsigned Table>
void RowMixer::MixSource(const RowMixer&, std::uint8_t* destination, const std::uint8_t* source,
                         const std::uint8_t*, std::size_t bytes) {
    constexpr unsigned flips = Table, keeps = Table ^ (Table >> 1u);
    constexpr std::uint8_t flip = MaskOf(flips), flipSource = MaskOf(flips ^ (flips >> 2u));
    constexpr std::uint8_t keep = MaskOf(keeps), keepSource = MaskOf(keeps ^ (keeps >> 2u));
    std::uint8_t* __restrict d = destination;
    const std::uint8_t* __restrict s = source;
    for (std::size_t i = 0; i < bytes; ++i) {
        d[i] =
            static_cast<std::uint8_t>((d[i] & (keep ^ (s[i] & keepSource))) ^ (flip ^ (s[i] & flipSource)));
    }
}

template <std::size_t... Tables>
constexpr std::array<RowMixer::Loop, sizeof...(Tables)> RowMixer::SourceLoops(
    std::index_sequence<Tables...>) {
    return {MixSource<Tables>...};
}

RowMixer::RowMixer(Rop3 rop) : m_Keep(SumOf(rop, true)), m_Flip(SumOf(rop, false)) {
    static constexpr auto sourceLoops = SourceLoops(std::make_index_sequence<16>());
    if (rop.table == Rop3::FromCode(SRCCOPY).table) return;
    m_Loop = rop.UsesPattern() ? MixBoth : sourceLoops[rop.table & 15u];
}

/// The flip is the result for a destination of 0; the keep is where a destination of 1 changes the result.
RowMixer::Sum RowMixer::SumOf(Rop3 rop, bool destination) {
    const unsigned values = destination ? rop.table ^ (rop.table >> 1u) : rop.table;
    const unsigned none = values, source = values >> 2u, pattern = values >> 4u, both = values >> 6u;
    Sum sum;
    sum.one = MaskOf(none);
    sum.source = MaskOf(none ^ source);
    sum.pattern = MaskOf(none ^ pattern);
    sum.both = MaskOf(none ^ source ^ pattern ^ both);
    return sum;
}

void RowMixer::MixBoth(const RowMixer& mixer, std::uint8_t* destination, const std::uint8_t* source,
                       const std::uint8_t* pattern, std::size_t bytes) {
    const Sum keepSum = mixer.m_Keep, flipSum = mixer.m_Flip;
    std::uint8_t* __restrict d = destination;
    const std::uint8_t* __restrict s = source;
    const std::uint8_t* __restrict p = pattern;
    for (std::size_t i = 0; i < bytes; ++i) {
        const unsigned both = s[i] & p[i];
        const unsigned keep =
            keepSum.one ^ (s[i] & keepSum.source) ^ (p[i] & keepSum.pattern) ^ (both & keepSum.both);
        const unsigned flip =
            flipSum.one ^ (s[i] & flipSum.source) ^ (p[i] & flipSum.pattern) ^ (both & flipSum.both);
        d[i] = static_cast<std::uint8_t>((d[i] & keep) ^ flip);
    }
}

void RowMixer::Run(std::uint8_t* row, const RowSlice& slice, const std::uint8_t* source,
                   const std::uint8_t* pattern) const {
    std::uint8_t* first = row + slice.offset;
    std::uint8_t* last = first + slice.bytes - 1;
    const std::uint8_t oldFirst = *first, oldLast = *last;
    if (m_Loop == nullptr) {
        std::memmove(first, source, slice.bytes);
    } else {
        m_Loop(*this, first, source, pattern, slice.bytes);
    }
    // The outer bytes may hold neighbours' pixels too.
    *first = static_cast<std::uint8_t>((oldFirst & ~slice.firstMask) | (*first & slice.firstMask));
    *last = static_cast<std::uint8_t>((oldLast & ~slice.lastMask) | (*last & slice.lastMask));
}

}  // namespace device
