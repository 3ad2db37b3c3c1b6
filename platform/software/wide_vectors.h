/// \file
/// Loops that are compiled twice: for any processor, and for those with vectors of 32 bytes.
#pragma once

#if defined(__x86_64__)
/// Before a function: compiles it for the wide vectors. Call it only when `device::g_HasWideVectors` says so.
#define ZUL_WIDE_VECTORS __attribute__((target("avx2")))
#else
#define ZUL_WIDE_VECTORS
#endif
/// Before the loop that both functions share.
#define ZUL_IN_BOTH inline __attribute__((always_inline))

namespace device {

inline const bool g_HasWideVectors =
#if defined(__x86_64__)
    __builtin_cpu_supports("avx2");
#else
    false;
#endif

}  // namespace device
