/// \file
/// Text helpers of the system layer.
#pragma once

#include <cstdint>

#include "zul/kernel/export.h"

namespace zulsys {

/// Bare texts.
class ZUL_KERNEL_API CString {
public:
    /// True when the first \p length characters agree. Texts that end earlier are equal only when both end at
    /// the same place; a null text equals nothing but another null.
    static bool IsEqual(const char16_t* first, const char16_t* second, std::uint32_t length);
};

}  // namespace zulsys
