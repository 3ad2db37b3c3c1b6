/// \file
/// The clip region of a canvas.
#pragma once

#include "platform/gdi.h"
#include "zul/kernel/any_object.h"
#include "zul/kernel/export.h"

namespace zul {

class CCanvas;

/// The clip region of a canvas. Without a handle nothing is clipped. The region owns its handle; it has no
/// persistent content.
class ZUL_API CRegion : public CAnyObject {
public:
    CRegion() = default;
    ~CRegion() override;
    CRegion(const CRegion&) = delete;
    CRegion& operator=(const CRegion&) = delete;

    /// Null when nothing is clipped.
    HRGN GetHandle() const { return m_Handle; }
    /// Takes over what \p source clips: nothing, when it has no handle. Null and the region itself are
    /// ignored.
    void ApplyRegion(const CRegion* source);

private:
    HRGN m_Handle = nullptr;
    HRGN m_SaveRgn = nullptr;
};

}  // namespace zul
