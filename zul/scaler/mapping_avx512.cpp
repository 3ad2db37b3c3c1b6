#include "zul/scaler/mapping_avx512.h"

#include <algorithm>

#if defined(ZUL_MAPPING_AVX512)

#define ZUL_TARGET_AVX512 __attribute__((target("avx512f,avx512vl,avx512bw,avx512dq,popcnt")))

namespace zul {
namespace {

constexpr std::size_t kBlock = 8;  ///< points a vector
/// Points that memory is asked for in advance: its own guesses end with each page and each list.
constexpr std::size_t kAhead = 256;
constexpr auto kAll16 = static_cast<__mmask16>(-1);
constexpr auto kAll8 = static_cast<__mmask8>(-1);

ZUL_TARGET_AVX512 __mmask8 First(std::size_t count) {
    return static_cast<__mmask8>((1u << count) - 1);
}

/// Eight points. Forms with a mask of all lanes stand where the plain ones make the compiler believe that
/// lanes are read before they are set.
class CAvx512Map {
public:
    ZUL_TARGET_AVX512 CAvx512Map(const TLinearMap& map, const TSingleMap& single)
        : m_Exact(map),
          m_Origin(Pairs(single.left, single.bottom)),
          m_Factor(Pairs(single.k, -single.k)),
          m_Certain(_mm512_set1_ps(single.certain)) {}

    ZUL_TARGET_AVX512 __m512i Map(__m256i narrow) const {
        const __m512i points = _mm512_maskz_cvtepi16_epi32(kAll16, narrow);
        const __m512 place =
            _mm512_mul_ps(_mm512_sub_ps(_mm512_maskz_cvtepi32_ps(kAll16, points), m_Origin), m_Factor);
        const __m512 pixel =
            _mm512_maskz_roundscale_ps(kAll16, place, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
        const __m512 off = _mm512_abs_ps(_mm512_sub_ps(place, pixel));
        if (_mm512_cmp_ps_mask(off, m_Certain, _CMP_NLE_UQ) != 0) return MapExactly(narrow);
        return _mm512_maskz_cvttps_epi32(kAll16, pixel);
    }

private:
    ZUL_TARGET_AVX512 static __m512 Pairs(float x, float y) { return _mm512_setr4_ps(x, y, x, y); }

    ZUL_TARGET_AVX512 __m512i MapExactly(__m256i narrow) const {
        TPoint points[kBlock];
        TLongPoint mapped[kBlock];
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(points), narrow);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(mapped), m_Exact.MapFour(points));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(mapped + kBlock / 2),
                            m_Exact.MapFour(points + kBlock / 2));
        return _mm512_loadu_si512(mapped);
    }

    CAvx2Map m_Exact;
    __m512 m_Origin, m_Factor, m_Certain;
};

ZUL_TARGET_AVX512 __m256i Load(const TPoint* in) {
    return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(in));
}
ZUL_TARGET_AVX512 __m256i LoadFirst(const TPoint* in, std::size_t count) {
    return _mm256_maskz_loadu_epi32(First(count), in);
}

}  // namespace

ZUL_TARGET_AVX512 void MapAvx512(const TLinearMap& map, const TSingleMap& single, const TPoint* in,
                                 std::size_t count, TLongPoint* out) {
    const CAvx512Map mapper(map, single);
    std::size_t i = 0;
    for (; i + kBlock <= count; i += kBlock)
        _mm512_storeu_si512(out + i, mapper.Map(Load(in + i)));
    if (i < count) {
        _mm512_mask_storeu_epi64(out + i, First(count - i), mapper.Map(LoadFirst(in + i, count - i)));
    }
}

ZUL_TARGET_AVX512 std::size_t MapDistinctAvx512(const TLinearMap& map, const TSingleMap& single,
                                                const TPoint* in, std::size_t count, TLongPoint* out) {
    const CAvx512Map mapper(map, single);
    std::size_t kept = 0, i = 0;
    __m512i before = _mm512_setzero_si512();
    __mmask8 always = 1;  // the first point has none before it
    for (; i + kBlock <= count; i += kBlock) {
        __builtin_prefetch(in + i + kAhead);
        const __m512i points = mapper.Map(Load(in + i));
        const __m512i predecessors = _mm512_maskz_alignr_epi64(kAll8, points, before, kBlock - 1);
        const auto stay = static_cast<__mmask8>(_mm512_cmpneq_epi64_mask(points, predecessors) | always);
        // Always eight are written, the stayers in front. They end at most where the eight just read would
        // lie.
        _mm512_storeu_si512(out + kept, _mm512_maskz_compress_epi64(stay, points));
        kept += static_cast<std::size_t>(__builtin_popcount(stay));
        before = points;
        always = 0;
    }
    if (i < count) {
        const __m512i points = mapper.Map(LoadFirst(in + i, count - i));
        const __m512i predecessors = _mm512_maskz_alignr_epi64(kAll8, points, before, kBlock - 1);
        const auto stay = static_cast<__mmask8>((_mm512_cmpneq_epi64_mask(points, predecessors) | always) &
                                                First(count - i));
        const auto stayers = static_cast<std::size_t>(__builtin_popcount(stay));
        _mm512_mask_storeu_epi64(out + kept, First(stayers), _mm512_maskz_compress_epi64(stay, points));
        kept += stayers;
    }
    return kept;
}

}  // namespace zul

#endif
