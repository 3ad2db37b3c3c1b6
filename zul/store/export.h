/// \file
/// Marks what the store's library shows to others.
#pragma once

#include "platform/export.h"

#if defined(ZUL_STORE_BUILD)
#define ZUL_STORE_API ZUL_SHOWN
#else
#define ZUL_STORE_API ZUL_USED
#endif
