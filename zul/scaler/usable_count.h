/// \file
/// What all conversions of arrays check. Internal to this folder.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zul {

/// Elements of an array handed in by a caller, 0 when there is nothing to convert.
inline std::size_t UsableCount(const void* out, const void* in, std::int32_t count) {
    return out != nullptr && in != nullptr && count > 0 ? static_cast<std::size_t>(count) : 0;
}

}  // namespace zul
