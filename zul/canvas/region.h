/// \file
/// The clip region of a canvas.
#pragma once

#include <cstdint>

#include "platform/gdi.h"
#include "zul/geometry/coordinates.h"
#include "zul/kernel/any_object.h"
#include "zul/kernel/export.h"
#include "zul/tools/handle_counts.h"

namespace zul {

class CBitmap;
class CCanvas;
class CPoints;

/// A set of device pixels that a canvas draws within; without a handle it is all of them.
///
/// The region owns its handle. A device keeps a copy of what is selected into it, so the region of a canvas
/// mirrors what was last selected through it and knows nothing of a clip set past it. Operations with a
/// canvas also set the clip of its device; null, or a detached canvas, leaves only the region. The region has
/// no persistent content.
class ZUL_API CRegion : public CAnyObject {
public:
    /// What becomes of a new region where one exists already. Without one, and for other values, the new one
    /// is taken as it is.
    enum TCombine : std::int32_t {
        CombineReplace = 0,
        CombineAnd = 1,
        CombineOr = 2,
        CombineXor = 3,
        CombineDifference = 4,  ///< the new region without the old one
        CombineCopy = 5,        ///< the new region
    };

    CRegion() = default;
    ~CRegion() override;
    CRegion(const CRegion&) = delete;
    CRegion& operator=(const CRegion&) = delete;

    // --- query ---

    /// Null when nothing is clipped.
    HRGN GetHandle() const { return m_Handle; }
    /// Device pixels; true everywhere without a handle.
    bool IsInside(std::int32_t x, std::int32_t y) const;
    /// The smallest box around the region, or without a handle around what \p canvas's device shows; left as
    /// it is without either. Right and bottom are outside. With a scaler, pretranslating or not, a box that
    /// is not empty comes in map units, turned back by its corners, MaxY upwards.
    void GetRegionBox(TLongRect& box, CCanvas* canvas) const;
    /// Made counts the clips that SaveRegion read, Deleted the handles that it, RestoreRegion and the
    /// destructor deleted.
    static const THandleCounts& GetHandleCounts();

    // --- make: a region that cannot be made changes nothing ---

    /// A rectangle without its right and bottom side: device pixels, or map units where \p canvas
    /// pretranslates (mapped without the rotation).
    void Create(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, CCanvas* canvas,
                TCombine combine);
    /// Not supported by the device: reports error 3 and changes nothing.
    void Create(CPoints* points, CCanvas* canvas, TCombine combine);
    /// The pixels of \p bitmap, its upper left one at (0, 0), whose colour is not \p color, 0x00BBGGRR. A
    /// bitmap that a device has selected cannot be read: nothing changes, nor for null.
    void Create(CBitmap* bitmap, std::int32_t color, CCanvas* canvas, TCombine combine);
    /// Takes over \p source, and sets or takes away the clip accordingly. Null and the region itself are
    /// ignored.
    void ApplyRegion(const CRegion* source, CCanvas* canvas);

    // --- change ---

    /// Moves by device pixels.
    void Offset(std::int32_t dx, std::int32_t dy, CCanvas* canvas);
    /// Takes a rectangle out of the device's clip and forgets the region, which no longer mirrors that. Map
    /// units with a scaler, even where the canvas does not pretranslate.
    void ExcludeClipRect(CCanvas* canvas, std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
    /// Takes the clip away.
    void SetNullRegion(CCanvas* canvas);

    // --- a clip for a while ---

    /// Remembers the device's clip, in place of one remembered before.
    void SaveRegion(CCanvas* canvas);
    /// Sets the remembered clip, or none when there was none, and makes it the region.
    void RestoreRegion(CCanvas* canvas);

private:
    void Adopt(HRGN made, CCanvas* canvas, TCombine combine);
    void Replace(HRGN handle);

    HRGN m_Handle = nullptr;
    HRGN m_SaveRgn = nullptr;
};

}  // namespace zul
