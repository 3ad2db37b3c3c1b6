#include "zul/scaler/projective_kernels.h"

#include <cmath>

#include "zul/kernel/numeric.h"
#include "zul/scaler/mapping_kernels.h"
#include "zul/scaler/mapping_vectors.h"

namespace zul {
namespace {

// --- plain: the rule ---

TLongPoint Divide(const TProjection& projection, TPoint point, double weight) {
    return {RoundToLong(projection.X(point.X, point.Y) / weight),
            RoundToLong(projection.Y(point.X, point.Y) / weight)};
}

void ProjectPlain(const TProjection& projection, const TPoint* in, std::size_t count, TLongPoint* out) {
    for (std::size_t i = 0; i < count; ++i)
        out[i] = ProjectPoint(projection, in[i]);
}

/// Continues a list of `kept` points, at least one.
std::size_t InFrontPlain(const TProjection& projection, double limit, const TPoint* in, std::size_t count,
                         TLongPoint* out, std::size_t& kept) {
    for (std::size_t i = 0; i < count; ++i) {
        const double weight = projection.Weight(in[i].X, in[i].Y);
        if (!(weight >= limit)) return i;
        const TLongPoint mapped = Divide(projection, in[i], weight);
        if (mapped != out[kept - 1]) out[kept++] = mapped;
    }
    return count;
}

// --- vectors ---
//
// Unlike the flat loops these keep x and y of several points in vectors of their own: each formula mixes the
// two. Groups with a point that is no everyday case are left to the plain loop.

#if defined(ZUL_MAPPING_SSE2)

/// Two points.
struct TSse2Points {
    explicit TSse2Points(const TPoint* in) {
        const __m128i pairs = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(in));
        x = _mm_cvtepi32_pd(_mm_srai_epi32(_mm_slli_epi32(pairs, 16), 16));
        y = _mm_cvtepi32_pd(_mm_srai_epi32(pairs, 16));
    }
    __m128d Apply(double kx, double ky, double constant) const {
        return _mm_add_pd(_mm_add_pd(_mm_mul_pd(_mm_set1_pd(kx), x), _mm_mul_pd(_mm_set1_pd(ky), y)),
                          _mm_set1_pd(constant));
    }
    __m128d Weight(const TProjection& p) const { return Apply(p.g, p.h, p.i); }
    __m128i Divide(const TProjection& p, __m128d weight) const {
        const __m128i screenX = Truncate(AddHalf(_mm_div_pd(Apply(p.a, p.b, p.c), weight)));
        const __m128i screenY = Truncate(AddHalf(_mm_div_pd(Apply(p.d, p.e, p.f), weight)));
        return _mm_unpacklo_epi32(screenX, screenY);
    }

    __m128d x, y;
};

void ProjectSse2(const TProjection& projection, const TPoint* in, std::size_t count, TLongPoint* out) {
    std::size_t i = 0;
    for (; i + 2 <= count; i += 2) {
        const TSse2Points points(in + i);
        const __m128d weight = points.Weight(projection);
        const __m128d size = _mm_andnot_pd(_mm_set1_pd(-0.0), weight);
        if (_mm_movemask_pd(_mm_cmplt_pd(size, _mm_set1_pd(kTinyWeight))) != 0) {
            ProjectPlain(projection, in + i, 2, out + i);
        } else {
            _mm_storeu_si128(reinterpret_cast<__m128i*>(out + i), points.Divide(projection, weight));
        }
    }
    ProjectPlain(projection, in + i, count - i, out + i);
}

std::size_t InFrontSse2(const TProjection& projection, double limit, const TPoint* in, std::size_t count,
                        TLongPoint* out, std::size_t& kept) {
    CSse2Distinct distinct(out, kept);
    std::size_t i = 0;
    for (; i + 2 <= count; i += 2) {
        const TSse2Points points(in + i);
        const __m128d weight = points.Weight(projection);
        if (_mm_movemask_pd(_mm_cmplt_pd(weight, _mm_set1_pd(limit))) != 0) break;
        distinct.Put(points.Divide(projection, weight));
    }
    kept = distinct.GetKept();
    return i + InFrontPlain(projection, limit, in + i, count - i, out, kept);
}

#endif

#if defined(ZUL_MAPPING_AVX2)

/// Four points.
struct TAvx2Points {
    ZUL_TARGET_AVX2 explicit TAvx2Points(const TPoint* in) {
        const __m128i pairs = _mm_loadu_si128(reinterpret_cast<const __m128i*>(in));
        x = _mm256_cvtepi32_pd(_mm_srai_epi32(_mm_slli_epi32(pairs, 16), 16));
        y = _mm256_cvtepi32_pd(_mm_srai_epi32(pairs, 16));
    }
    ZUL_TARGET_AVX2 __m256d Apply(double kx, double ky, double constant) const {
        return _mm256_add_pd(
            _mm256_add_pd(_mm256_mul_pd(_mm256_set1_pd(kx), x), _mm256_mul_pd(_mm256_set1_pd(ky), y)),
            _mm256_set1_pd(constant));
    }
    ZUL_TARGET_AVX2 __m256d Weight(const TProjection& p) const { return Apply(p.g, p.h, p.i); }
    ZUL_TARGET_AVX2 __m256i Divide(const TProjection& p, __m256d weight) const {
        const __m128i screenX = Truncate(AddHalf(_mm256_div_pd(Apply(p.a, p.b, p.c), weight)));
        const __m128i screenY = Truncate(AddHalf(_mm256_div_pd(Apply(p.d, p.e, p.f), weight)));
        return _mm256_inserti128_si256(_mm256_castsi128_si256(_mm_unpacklo_epi32(screenX, screenY)),
                                       _mm_unpackhi_epi32(screenX, screenY), 1);
    }

    __m256d x, y;
};

ZUL_TARGET_AVX2 void ProjectAvx2(const TProjection& projection, const TPoint* in, std::size_t count,
                                 TLongPoint* out) {
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4) {
        const TAvx2Points points(in + i);
        const __m256d weight = points.Weight(projection);
        const __m256d size = _mm256_andnot_pd(_mm256_set1_pd(-0.0), weight);
        if (_mm256_movemask_pd(_mm256_cmp_pd(size, _mm256_set1_pd(kTinyWeight), _CMP_LT_OQ)) != 0) {
            ProjectPlain(projection, in + i, 4, out + i);
        } else {
            _mm256_storeu_si256(reinterpret_cast<__m256i*>(out + i), points.Divide(projection, weight));
        }
    }
    ProjectPlain(projection, in + i, count - i, out + i);
}

ZUL_TARGET_AVX2 std::size_t InFrontAvx2(const TProjection& projection, double limit, const TPoint* in,
                                        std::size_t count, TLongPoint* out, std::size_t& kept) {
    CAvx2Distinct distinct(out, kept);
    std::size_t i = 0;
    for (; i + 4 <= count; i += 4) {
        const TAvx2Points points(in + i);
        const __m256d weight = points.Weight(projection);
        if (_mm256_movemask_pd(_mm256_cmp_pd(weight, _mm256_set1_pd(limit), _CMP_LT_OQ)) != 0) break;
        distinct.Put(points.Divide(projection, weight));
    }
    kept = distinct.GetKept();
    return i + InFrontPlain(projection, limit, in + i, count - i, out, kept);
}

#endif

// --- choice ---

/// Whether sums of products stay finite, so that no NaN arises; true of every transform that was found.
bool IsEveryday(const TProjection& p) {
    const double sum = std::abs(p.a) + std::abs(p.b) + std::abs(p.c) + std::abs(p.d) + std::abs(p.e) +
                       std::abs(p.f) + std::abs(p.g) + std::abs(p.h) + std::abs(p.i);
    return sum < 1e200;
}

TMappingRoad RoadFor(const TProjection& projection) {
    return IsEveryday(projection) ? GetMappingRoad() : TMappingRoad::Plain;
}

}  // namespace

TLongPoint ProjectPoint(const TProjection& projection, TPoint point) {
    const double weight = projection.Weight(point.X, point.Y);
    if (!(std::abs(weight) >= kTinyWeight)) return {point.X, point.Y};
    return Divide(projection, point, weight);
}

void ProjectPoints(const TProjection& projection, const TPoint* in, std::size_t count, TLongPoint* out) {
    switch (RoadFor(projection)) {
#if defined(ZUL_MAPPING_AVX2)
        case TMappingRoad::Avx512:
        case TMappingRoad::Avx2:
            return ProjectAvx2(projection, in, count, out);
#endif
#if defined(ZUL_MAPPING_SSE2)
        case TMappingRoad::Sse2:
            return ProjectSse2(projection, in, count, out);
#endif
        default:
            return ProjectPlain(projection, in, count, out);
    }
}

std::size_t ProjectPointsInFront(const TProjection& projection, double limit, const TPoint* in,
                                 std::size_t count, TLongPoint* out, std::size_t& kept) {
    if (count == 0) return 0;
    if (kept == 0) {
        const double weight = projection.Weight(in[0].X, in[0].Y);
        if (!(weight >= limit)) return 0;
        out[kept++] = Divide(projection, in[0], weight);
        return 1 + ProjectPointsInFront(projection, limit, in + 1, count - 1, out, kept);
    }
    switch (RoadFor(projection)) {
#if defined(ZUL_MAPPING_AVX2)
        case TMappingRoad::Avx512:
        case TMappingRoad::Avx2:
            return InFrontAvx2(projection, limit, in, count, out, kept);
#endif
#if defined(ZUL_MAPPING_SSE2)
        case TMappingRoad::Sse2:
            return InFrontSse2(projection, limit, in, count, out, kept);
#endif
        default:
            return InFrontPlain(projection, limit, in, count, out, kept);
    }
}

}  // namespace zul
