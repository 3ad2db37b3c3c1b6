#include "zul/scaler/mapping_kernels.h"

#include <atomic>
#include <cmath>

#include "zul/geometry/point.h"
#include "zul/kernel/numeric.h"
#include "zul/scaler/mapping_avx512.h"
#include "zul/scaler/mapping_vectors.h"
#include "zul/scaler/single_precision.h"

namespace zul {
namespace {

// --- plain: the rule ---

double ScreenX(const TLinearMap& map, TCoord x) {
    return static_cast<double>(std::int64_t{x} - map.left) * map.k;
}

double ScreenY(const TLinearMap& map, TCoord y) {
    return static_cast<double>(map.bottom - std::int64_t{y}) * map.k;
}

TLongPoint MapPoint(const TLinearMap& map, TPoint point) {
    return {RoundToLong(ScreenX(map, point.X)), RoundToLong(ScreenY(map, point.Y))};
}

void MapPlain(const TLinearMap& map, const TPoint* in, std::size_t count, TLongPoint* out) {
    for (std::size_t i = 0; i < count; ++i)
        out[i] = MapPoint(map, in[i]);
}

/// Continues a list of `kept` points, at least one.
std::size_t AppendDistinctPlain(const TLinearMap& map, const TPoint* in, std::size_t count, TLongPoint* out,
                                std::size_t kept) {
    for (std::size_t i = 0; i < count; ++i) {
        const TLongPoint mapped = MapPoint(map, in[i]);
        if (mapped != out[kept - 1]) out[kept++] = mapped;
    }
    return kept;
}

std::size_t MapDistinctPlain(const TLinearMap& map, const TPoint* in, std::size_t count, TLongPoint* out) {
    out[0] = MapPoint(map, in[0]);
    return AppendDistinctPlain(map, in + 1, count - 1, out, 1);
}

void MapTurnedPlain(const TLinearMap& map, const TMapTurn& turn, const TPoint* in, std::size_t count,
                    TLongPoint* out) {
    for (std::size_t i = 0; i < count; ++i) {
        TPoint point = in[i];
        CPoint::RotateEx(point.X, point.Y, turn.pivotX, turn.pivotY, turn.sine, turn.cosine);
        out[i] = {ToLong(ScreenX(map, point.X)), ToLong(ScreenY(map, point.Y))};
    }
}

// --- vectors ---
//
// A lane pair holds (x, y) of one point, so arrays of points are loaded and stored as they lie. It is mapped
// as (p - (left, bottom)) * (k, -k), which differs from the rule in nothing but the sign of zeros.
// Differences of a 16-bit and a 32-bit number are exact in doubles. NaN needs an infinite k or NaN to arise;
// those take the plain road.

#if defined(ZUL_MAPPING_SSE2)

/// One point a vector.
class CSse2Map {
public:
    explicit CSse2Map(const TLinearMap& map)
        : m_Origin(_mm_setr_pd(map.left, map.bottom)), m_Factor(_mm_setr_pd(map.k, -map.k)) {}

    /// Two points as 32-bit numbers.
    static __m128i Load(const TPoint* in) {
        const __m128i narrow = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(in));
        return _mm_srai_epi32(_mm_unpacklo_epi16(narrow, narrow), 16);
    }
    static __m128d LowPoint(__m128i points) { return _mm_cvtepi32_pd(points); }
    static __m128d HighPoint(__m128i points) { return _mm_cvtepi32_pd(_mm_unpackhi_epi64(points, points)); }

    __m128d Scale(__m128d point) const { return _mm_mul_pd(_mm_sub_pd(point, m_Origin), m_Factor); }
    __m128i MapTwo(const TPoint* in) const {
        const __m128i points = Load(in);
        return _mm_unpacklo_epi64(Truncate(AddHalf(Scale(LowPoint(points)))),
                                  Truncate(AddHalf(Scale(HighPoint(points)))));
    }

private:
    __m128d m_Origin, m_Factor;
};

void MapSse2(const TLinearMap& map, const TPoint* in, std::size_t count, TLongPoint* out) {
    const CSse2Map mapper(map);
    std::size_t i = 0;
    for (; i + 2 <= count; i += 2) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), mapper.MapTwo(in + i));
    }
    MapPlain(map, in + i, count - i, out + i);
}

std::size_t MapDistinctSse2(const TLinearMap& map, const TPoint* in, std::size_t count, TLongPoint* out) {
    const CSse2Map mapper(map);
    out[0] = MapPoint(map, in[0]);
    CSse2Distinct distinct(out, 1);
    std::size_t i = 1;
    for (; i + 2 <= count; i += 2)
        distinct.Put(mapper.MapTwo(in + i));
    return AppendDistinctPlain(map, in + i, count - i, out, distinct.GetKept());
}

/// RotateEx with its own sign test: half is added to zeros of either sign.
class CSse2Turn {
public:
    explicit CSse2Turn(const TMapTurn& turn)
        : m_Pivot(_mm_setr_pd(turn.pivotX, turn.pivotY)),
          m_Cosine(_mm_set1_pd(turn.cosine)),
          m_Sine(_mm_setr_pd(-turn.sine, turn.sine)) {}

    __m128d Turn(__m128d point) const {
        const __m128d d = _mm_sub_pd(point, m_Pivot);
        const __m128d r = _mm_add_pd(_mm_mul_pd(m_Cosine, d), _mm_mul_pd(m_Sine, _mm_shuffle_pd(d, d, 1)));
        const __m128d sign = _mm_and_pd(_mm_cmplt_pd(r, _mm_setzero_pd()), _mm_set1_pd(-0.0));
        const __m128d half = _mm_or_pd(sign, _mm_set1_pd(0.5));
        const __m128i turned = _mm_cvttpd_epi32(_mm_add_pd(r, _mm_add_pd(half, m_Pivot)));
        return _mm_cvtepi32_pd(_mm_srai_epi32(_mm_slli_epi32(turned, 16), 16));
    }

private:
    __m128d m_Pivot, m_Cosine, m_Sine;
};

void MapTurnedSse2(const TLinearMap& map, const TMapTurn& turn, const TPoint* in, std::size_t count,
                   TLongPoint* out) {
    const CSse2Map mapper(map);
    const CSse2Turn turner(turn);
    std::size_t i = 0;
    for (; i + 2 <= count; i += 2) {
        const __m128i points = CSse2Map::Load(in + i);
        const __m128d low = mapper.Scale(turner.Turn(CSse2Map::LowPoint(points)));
        const __m128d high = mapper.Scale(turner.Turn(CSse2Map::HighPoint(points)));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i),
                         _mm_unpacklo_epi64(Truncate(low), Truncate(high)));
    }
    MapTurnedPlain(map, turn, in + i, count - i, out + i);
}

#endif

#if defined(ZUL_MAPPING_AVX2)

/// Four points a vector.
class CAvx2SingleMap {
public:
    ZUL_TARGET_AVX2 CAvx2SingleMap(const TLinearMap& map, const TSingleMap& single)
        : m_Exact(map),
          m_Origin(_mm256_setr_ps(single.left, single.bottom, single.left, single.bottom, single.left,
                                  single.bottom, single.left, single.bottom)),
          m_Factor(_mm256_setr_ps(single.k, -single.k, single.k, -single.k, single.k, -single.k, single.k,
                                  -single.k)),
          m_Certain(_mm256_set1_ps(single.certain)) {}

    ZUL_TARGET_AVX2 __m256i MapFour(const TPoint* in) const {
        const __m128i narrow = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
        const __m256 points = _mm256_cvtepi32_ps(_mm256_cvtepi16_epi32(narrow));
        const __m256 place = _mm256_mul_ps(_mm256_sub_ps(points, m_Origin), m_Factor);
        const __m256 pixel = _mm256_round_ps(place, _MM_FROUND_TO_NEAREST_INT | _MM_FROUND_NO_EXC);
        const __m256 off = _mm256_andnot_ps(_mm256_set1_ps(-0.0f), _mm256_sub_ps(place, pixel));
        if (_mm256_movemask_ps(_mm256_cmp_ps(off, m_Certain, _CMP_NLE_UQ)) != 0) return m_Exact.MapFour(in);
        return _mm256_cvttps_epi32(pixel);
    }

private:
    CAvx2Map m_Exact;
    __m256 m_Origin, m_Factor, m_Certain;
};

template <class TMapper>
ZUL_TARGET_AVX2 void MapFours(const TMapper& mapper, const TLinearMap& map, const TPoint* in,
                              std::size_t count, TLongPoint* out) {
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4) {
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + i), mapper.MapFour(in + i));
    }
    MapPlain(map, in + i, count - i, out + i);
}

ZUL_TARGET_AVX2 void MapAvx2(const TLinearMap& map, const TPoint* in, std::size_t count, TLongPoint* out) {
    const TSingleMap single(map);
    if (single.usable) {
        MapFours(CAvx2SingleMap(map, single), map, in, count, out);
    } else {
        MapFours(CAvx2Map(map), map, in, count, out);
    }
}

template <class TMapper>
ZUL_TARGET_AVX2 std::size_t MapDistinctFours(const TMapper& mapper, const TLinearMap& map, const TPoint* in,
                                             std::size_t count, TLongPoint* out) {
    out[0] = MapPoint(map, in[0]);
    CAvx2Distinct distinct(out, 1);
    std::size_t i = 1;
    for (; i + 4 <= count; i += 4)
        distinct.Put(mapper.MapFour(in + i));
    return AppendDistinctPlain(map, in + i, count - i, out, distinct.GetKept());
}

ZUL_TARGET_AVX2 std::size_t MapDistinctAvx2(const TLinearMap& map, const TPoint* in, std::size_t count,
                                            TLongPoint* out) {
    const TSingleMap single(map);
    if (single.usable) return MapDistinctFours(CAvx2SingleMap(map, single), map, in, count, out);
    return MapDistinctFours(CAvx2Map(map), map, in, count, out);
}

class CAvx2Turn {
public:
    ZUL_TARGET_AVX2 explicit CAvx2Turn(const TMapTurn& turn)
        : m_Pivot(_mm256_setr_pd(turn.pivotX, turn.pivotY, turn.pivotX, turn.pivotY)),
          m_Cosine(_mm256_set1_pd(turn.cosine)),
          m_Sine(_mm256_setr_pd(-turn.sine, turn.sine, -turn.sine, turn.sine)) {}

    ZUL_TARGET_AVX2 __m256d Turn(__m256d points) const {
        const __m256d d = _mm256_sub_pd(points, m_Pivot);
        const __m256d r =
            _mm256_add_pd(_mm256_mul_pd(m_Cosine, d), _mm256_mul_pd(m_Sine, _mm256_permute_pd(d, 5)));
        const __m256d negative = _mm256_cmp_pd(r, _mm256_setzero_pd(), _CMP_LT_OQ);
        const __m256d sign = _mm256_and_pd(negative, _mm256_set1_pd(-0.0));
        const __m256d half = _mm256_or_pd(sign, _mm256_set1_pd(0.5));
        const __m128i turned = _mm256_cvttpd_epi32(_mm256_add_pd(r, _mm256_add_pd(half, m_Pivot)));
        return _mm256_cvtepi32_pd(_mm_srai_epi32(_mm_slli_epi32(turned, 16), 16));
    }

private:
    __m256d m_Pivot, m_Cosine, m_Sine;
};

ZUL_TARGET_AVX2 void MapTurnedAvx2(const TLinearMap& map, const TMapTurn& turn, const TPoint* in,
                                   std::size_t count, TLongPoint* out) {
    const CAvx2Map mapper(map);
    const CAvx2Turn turner(turn);
    std::size_t i = 0;
    for (; i + 2 <= count; i += 2) {
        const __m256d turned = turner.Turn(CAvx2Map::Load(in + i));
        _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), Truncate(mapper.Scale(turned)));
    }
    MapTurnedPlain(map, turn, in + i, count - i, out + i);
}

#endif

#if defined(ZUL_MAPPING_AVX512)

void MapWidest(const TLinearMap& map, const TPoint* in, std::size_t count, TLongPoint* out) {
    const TSingleMap single(map);
    if (single.usable) {
        MapAvx512(map, single, in, count, out);
    } else {
        MapAvx2(map, in, count, out);
    }
}

std::size_t MapDistinctWidest(const TLinearMap& map, const TPoint* in, std::size_t count, TLongPoint* out) {
    const TSingleMap single(map);
    return single.usable ? MapDistinctAvx512(map, single, in, count, out)
                         : MapDistinctAvx2(map, in, count, out);
}

#endif

// --- choice ---

struct TLoops {
    TMappingRoad road;
    void (*map)(const TLinearMap&, const TPoint*, std::size_t, TLongPoint*);
    std::size_t (*mapDistinct)(const TLinearMap&, const TPoint*, std::size_t, TLongPoint*);  ///< one at least
    void (*mapTurned)(const TLinearMap&, const TMapTurn&, const TPoint*, std::size_t, TLongPoint*);
};

/// Slowest first.
constexpr TLoops kRoads[] = {
    {TMappingRoad::Plain, MapPlain, MapDistinctPlain, MapTurnedPlain},
#if defined(ZUL_MAPPING_SSE2)
    {TMappingRoad::Sse2, MapSse2, MapDistinctSse2, MapTurnedSse2},
#endif
#if defined(ZUL_MAPPING_AVX2)
    {TMappingRoad::Avx2, MapAvx2, MapDistinctAvx2, MapTurnedAvx2},
#endif
#if defined(ZUL_MAPPING_AVX512)
    {TMappingRoad::Avx512, MapWidest, MapDistinctWidest, MapTurnedAvx2},
#endif
};

constexpr const TLoops& kPlain = kRoads[0];

bool ProcessorHas([[maybe_unused]] TMappingRoad road) {
#if defined(ZUL_MAPPING_AVX2)
    if (road == TMappingRoad::Avx2) return __builtin_cpu_supports("avx2");
#endif
#if defined(ZUL_MAPPING_AVX512)
    if (road == TMappingRoad::Avx512) {
        return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512vl") &&
               __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("avx512dq");
    }
#endif
    return true;
}

const TLoops* FindFastest() {
    const TLoops* fastest = &kPlain;
    for (const TLoops& loops : kRoads) {
        if (ProcessorHas(loops.road)) fastest = &loops;
    }
    return fastest;
}

std::atomic<const TLoops*>& Current() {
    static std::atomic<const TLoops*> current{FindFastest()};
    return current;
}

/// The loops for this map: the chosen ones, or the rule where NaN may arise.
const TLoops& LoopsFor(const TLinearMap& map) {
    return std::isfinite(map.k) ? *Current().load(std::memory_order_relaxed) : kPlain;
}

}  // namespace

bool IsMappingRoadAvailable(TMappingRoad road) {
    for (const TLoops& loops : kRoads) {
        if (loops.road == road) return ProcessorHas(road);
    }
    return false;
}

TMappingRoad GetMappingRoad() {
    return Current().load(std::memory_order_relaxed)->road;
}

TMappingRoad SelectMappingRoad(TMappingRoad road) {
    const TMappingRoad before = GetMappingRoad();
    for (const TLoops& loops : kRoads) {
        if (loops.road == road && ProcessorHas(road)) Current().store(&loops);
    }
    return before;
}

void MapPoints(const TLinearMap& map, const TPoint* in, std::size_t count, TLongPoint* out) {
    LoopsFor(map).map(map, in, count, out);
}

std::size_t MapDistinctPoints(const TLinearMap& map, const TPoint* in, std::size_t count, TLongPoint* out) {
    return count == 0 ? 0 : LoopsFor(map).mapDistinct(map, in, count, out);
}

void MapTurnedPoints(const TLinearMap& map, const TMapTurn& turn, const TPoint* in, std::size_t count,
                     TLongPoint* out) {
    // A true sine and cosine keep the turned point within 32 bits, which the vectors rely on.
    const bool isTrueTurn = std::fabs(turn.sine) <= 1.0 && std::fabs(turn.cosine) <= 1.0;
    (isTrueTurn ? LoopsFor(map) : kPlain).mapTurned(map, turn, in, count, out);
}

}  // namespace zul
