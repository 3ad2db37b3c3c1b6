/// \file
/// The mapping loops for processors with 512-bit vectors, eight points at a time. Internal to this folder.
#pragma once

#include <cstddef>

#include "zul/scaler/mapping_kernels.h"
#include "zul/scaler/mapping_vectors.h"
#include "zul/scaler/single_precision.h"

#if defined(ZUL_MAPPING_AVX2)
#define ZUL_MAPPING_AVX512

namespace zul {

/// \p single is usable and made from \p map.
void MapAvx512(const TLinearMap& map, const TSingleMap& single, const TPoint* in, std::size_t count,
               TLongPoint* out);
/// As MapDistinctPoints().
std::size_t MapDistinctAvx512(const TLinearMap& map, const TSingleMap& single, const TPoint* in,
                              std::size_t count, TLongPoint* out);

}  // namespace zul

#endif
