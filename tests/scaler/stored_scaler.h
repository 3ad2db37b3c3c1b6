/// \file
/// The stored form of a scaler as a record, through which tests put a scaler into any state and look into it.
#pragma once

#include <cstdint>
#include <cstring>
#include <ostream>

#include "zul/geometry/coordinates.h"
#include "zul/kernel/stream.h"
#include "zul/scaler/scaler.h"

namespace zul {

inline void PrintTo(const TLongRect& rect, std::ostream* out) {
    *out << "(" << rect.MinX << ", " << rect.MinY << ", " << rect.MaxX << ", " << rect.MaxY << ")";
}
inline void PrintTo(const TLongPoint& point, std::ostream* out) {
    *out << "(" << point.X << ", " << point.Y << ")";
}
inline bool operator==(const TLongRect& a, const TLongRect& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

struct TStoredScaler {
    TLongRect bounds{};
    TLongRect box{};
    double metresInSm = 0.0;
    double k = 0.0;
    double baseFraction = 0.0;
    double pixelsPerSm = 0.0;
    double metresInUnit = 0.0;
    double minScale = 0.0;
    double maxScale = 0.0;
    std::int32_t left = 0;
    std::int32_t bottom = 0;
};
static_assert(sizeof(TStoredScaler) == 96);

inline bool operator==(const TStoredScaler& a, const TStoredScaler& b) {
    return std::memcmp(static_cast<const void*>(&a), static_cast<const void*>(&b), sizeof a) == 0;
}

inline void Restore(CScaler& scaler, const TStoredScaler& stored) {
    CMemoryStream stream(&stored, sizeof stored);
    scaler.ObjectFromBuffer(&stream);
}

inline TStoredScaler StoredFormOf(CScaler& scaler) {
    TStoredScaler stored;
    CMemoryStream stream;
    scaler.ObjectToBuffer(&stream);
    if (stream.GetSize() == sizeof stored) std::memcpy(&stored, stream.GetBuffer(), sizeof stored);
    return stored;
}

/// Only the mapping: k, and the map point in the top left corner of the screen.
inline void SetMapping(CScaler& scaler, double k, std::int32_t left, std::int32_t bottom) {
    TStoredScaler stored;
    stored.k = k;
    stored.left = left;
    stored.bottom = bottom;
    Restore(scaler, stored);
}

}  // namespace zul
