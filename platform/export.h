/// \file
/// Marks what the platform library shows to others.
#pragma once

#if defined(_WIN32)
#define ZUL_SHOWN __declspec(dllexport)
#define ZUL_USED __declspec(dllimport)
#else
#define ZUL_SHOWN __attribute__((visibility("default")))
#define ZUL_USED __attribute__((visibility("default")))
#endif

#if defined(_WIN32)
#define ZUL_PLATFORM_API  // the shim is a part of whatever calls it, never imported
#elif defined(ZUL_PLATFORM_BUILD)
#define ZUL_PLATFORM_API ZUL_SHOWN
#else
#define ZUL_PLATFORM_API ZUL_USED
#endif
