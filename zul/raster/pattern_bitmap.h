/// \file
/// Where the library keeps its shared pattern.
#pragma once

#include "zul/kernel/references.h"

namespace zul {

/// Holds the bitmap that CBitmap::GetPatternBitmap() returns; empty outside InitializeLibrary and
/// FinalizeLibrary, which alone make and destroy it.
CAnyPtr& GetPatternHolder();

}  // namespace zul
