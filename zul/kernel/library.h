/// \file
/// The library's entry functions. A host finds them by name.
#pragma once

#include "zul/kernel/export.h"

extern "C" {

/// Makes every class of the library known to the class registry, with its factory and its description
/// document, and the structure "CPoints" to the structure registry. Called once, before an object is created
/// by name; calling it again is harmless.
ZUL_API void AutoRegister();

/// Makes the shared 8 x 8 pattern that CBitmap::GetPatternBitmap() returns. Independent of AutoRegister().
ZUL_API void InitializeLibrary();

/// Releases the shared pattern.
ZUL_API void FinalizeLibrary();
}
