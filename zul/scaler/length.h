/// \file
/// A length on the ground.
#pragma once

#include <cstdint>

#include "zul/kernel/domain.h"
#include "zul/kernel/export.h"

namespace zul {

/// A number of metres that prints itself in metres or kilometres. Stored, compared, parsed and asked for its
/// value as any CFloat.
class ZUL_API CLength : public CFloat {
public:
    explicit CLength(double metres = 0.0) : CFloat(metres) {}  ///< Any value.
    ~CLength() override = default;

    /// Metres, as CFloat prints them; or kilometres when the format ends in "KM". The mark alone stands for
    /// "%f"; otherwise it is printed with the rest of the format and the last two characters of the result
    /// are dropped, so that "%.2f KM" leaves a blank behind the number. A text shorter than that becomes
    /// empty. \returns true
    bool ToString(CString& text, const char16_t* format) override;
};

}  // namespace zul
