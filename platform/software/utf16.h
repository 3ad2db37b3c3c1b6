/// \file
/// Characters of UTF-16 text.
#pragma once

#include <cstdint>

namespace device {

/// What half a surrogate pair is read as.
constexpr char32_t kReplacement = 0xFFFD;

/// The character at \p at, which is before \p count; moves \p at behind it.
inline char32_t NextCharacter(const char16_t* text, std::int64_t count, std::int64_t& at) {
    const char32_t unit = text[at++];
    if (unit < 0xD800 || unit > 0xDFFF) return unit;
    if (unit > 0xDBFF || at >= count) return kReplacement;
    const char32_t low = text[at];
    if (low < 0xDC00 || low > 0xDFFF) return kReplacement;
    ++at;
    return 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
}

}  // namespace device
