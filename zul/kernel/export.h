/// \file
/// Marks what the kernel and the graphics library show to others. Everything else stays hidden.
#pragma once

#include "platform/export.h"

#if defined(ZUL_KERNEL_BUILD)
#define ZUL_KERNEL_API ZUL_SHOWN
#else
#define ZUL_KERNEL_API ZUL_USED
#endif

#if defined(ZUL_BUILD)
#define ZUL_API ZUL_SHOWN
#else
#define ZUL_API ZUL_USED
#endif
