/// \file
/// The vector steps that the mapping loops have in common. Internal to this folder.
///
/// Numbers become integers by truncation, which yields the least integer for everything out of range: right
/// below, so only the upper end is cut first. NaN would come out wrong; whoever calls keeps it away. The half
/// gets the sign of the value; for +0, where the rule subtracts it, both ways end at 0.
#pragma once

#include <cstddef>
#include <cstdint>

#include "zul/geometry/coordinates.h"
#include "zul/scaler/mapping_kernels.h"

#if defined(__SSE2__)
#define ZUL_MAPPING_SSE2
#include <immintrin.h>
// MinGW's compiler keeps 32-byte values on a stack that is only aligned to 16 bytes.
#if !defined(__MINGW32__)
#define ZUL_MAPPING_AVX2
#define ZUL_TARGET_AVX2 __attribute__((target("avx2")))
#endif
#endif

namespace zul {

#if defined(ZUL_MAPPING_SSE2)

constexpr double kUpperEnd = 2147483647.0;

inline __m128d AddHalf(__m128d value) {
    const __m128d sign = _mm_and_pd(value, _mm_set1_pd(-0.0));
    return _mm_add_pd(value, _mm_or_pd(sign, _mm_set1_pd(0.5)));
}

inline __m128i Truncate(__m128d value) {
    return _mm_cvttpd_epi32(_mm_min_pd(value, _mm_set1_pd(kUpperEnd)));
}

/// Continues a list, leaving out what equals the point before.
class CSse2Distinct {
public:
    /// \p kept points of \p out stand already, at least one.
    CSse2Distinct(TLongPoint* out, std::size_t kept)
        : m_Out(out),
          m_Kept(kept),
          m_Before(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(out + kept - 1))) {}

    /// Two points.
    void Put(__m128i points) {
        const __m128i same = _mm_cmpeq_epi32(points, _mm_unpacklo_epi64(m_Before, points));
        const int bits = _mm_movemask_ps(_mm_castsi128_ps(same));
        m_Before = _mm_unpackhi_epi64(points, points);
        // Both are written, and written over by the next one if they are to go: no branch to mispredict.
        _mm_storel_epi64(reinterpret_cast<__m128i*>(m_Out + m_Kept), points);
        m_Kept += (bits & 3) != 3;
        _mm_storel_epi64(reinterpret_cast<__m128i*>(m_Out + m_Kept), m_Before);
        m_Kept += (bits & 12) != 12;
    }
    std::size_t GetKept() const { return m_Kept; }

private:
    TLongPoint* m_Out;
    std::size_t m_Kept;
    __m128i m_Before;
};

#endif

#if defined(ZUL_MAPPING_AVX2)

ZUL_TARGET_AVX2 inline __m256d AddHalf(__m256d values) {
    const __m256d sign = _mm256_and_pd(values, _mm256_set1_pd(-0.0));
    return _mm256_add_pd(values, _mm256_or_pd(sign, _mm256_set1_pd(0.5)));
}

ZUL_TARGET_AVX2 inline __m128i Truncate(__m256d values) {
    return _mm256_cvttpd_epi32(_mm256_min_pd(values, _mm256_set1_pd(kUpperEnd)));
}

/// Maps in doubles, two points a vector.
class CAvx2Map {
public:
    ZUL_TARGET_AVX2 explicit CAvx2Map(const TLinearMap& map)
        : m_Origin(_mm256_setr_pd(map.left, map.bottom, map.left, map.bottom)),
          m_Factor(_mm256_setr_pd(map.k, -map.k, map.k, -map.k)) {}

    ZUL_TARGET_AVX2 static __m256d Load(const TPoint* in) {
        const __m128i narrow = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(in));
        return _mm256_cvtepi32_pd(_mm_cvtepi16_epi32(narrow));
    }
    ZUL_TARGET_AVX2 __m256d Scale(__m256d points) const {
        return _mm256_mul_pd(_mm256_sub_pd(points, m_Origin), m_Factor);
    }
    ZUL_TARGET_AVX2 __m256i MapFour(const TPoint* in) const {
        const __m128i low = Truncate(AddHalf(Scale(Load(in))));
        const __m128i high = Truncate(AddHalf(Scale(Load(in + 2))));
        return _mm256_inserti128_si256(_mm256_castsi128_si256(low), high, 1);
    }

private:
    __m256d m_Origin, m_Factor;
};

/// For a set of points to drop, a bit each: how many of four stay, and which 32-bit halves move to the front.
struct TCompression {
    std::size_t stay;
    std::int32_t from[8];
};

struct TCompressionTable {
    TCompression rows[16];
};

constexpr TCompressionTable MakeCompressionTable() {
    TCompressionTable table{};
    for (unsigned drop = 0; drop < 16; ++drop) {
        TCompression& row = table.rows[drop];
        for (int point = 0; point < 4; ++point) {
            if (drop >> point & 1) continue;
            row.from[2 * row.stay] = 2 * point;
            row.from[2 * row.stay + 1] = 2 * point + 1;
            ++row.stay;
        }
    }
    return table;
}

inline constexpr TCompressionTable kCompressions = MakeCompressionTable();

/// As CSse2Distinct, four points at a time.
class CAvx2Distinct {
public:
    ZUL_TARGET_AVX2 CAvx2Distinct(TLongPoint* out, std::size_t kept)
        : m_Out(out),
          m_Kept(kept),
          m_Before(_mm256_castsi128_si256(_mm_loadl_epi64(reinterpret_cast<__m128i*>(out + kept - 1)))) {}

    ZUL_TARGET_AVX2 void Put(__m256i points) {
        const __m256i turned = _mm256_permute4x64_epi64(points, _MM_SHUFFLE(2, 1, 0, 3));
        const __m256i predecessors = _mm256_blend_epi32(turned, m_Before, 3);
        m_Before = turned;
        const __m256i same = _mm256_cmpeq_epi64(points, predecessors);
        const int drop = _mm256_movemask_pd(_mm256_castsi256_pd(same));
        // Always four are written, the stayers in front: no branch to mispredict. They end at most where the
        // four just read would lie, as long as no more were kept than read.
        const TCompression& row = kCompressions.rows[drop];
        const __m256i from = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(row.from));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(m_Out + m_Kept),
                            _mm256_permutevar8x32_epi32(points, from));
        m_Kept += row.stay;
    }
    std::size_t GetKept() const { return m_Kept; }

private:
    TLongPoint* m_Out;
    std::size_t m_Kept;
    __m256i m_Before;
};

#endif

}  // namespace zul
