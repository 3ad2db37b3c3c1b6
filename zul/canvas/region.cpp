#include "zul/canvas/region.h"

#include <utility>

#include "zul/canvas/canvas.h"
#include "zul/canvas/corners.h"
#include "zul/tools/device_guards.h"

namespace zul {
namespace {

THandleCounts g_Counts;

/// Null, which every device call refuses, without a canvas.
HDC DeviceOf(CCanvas* canvas) {
    return canvas ? canvas->GetHandle() : nullptr;
}

void DeleteCounted(HRGN region) {
    if (!region) return;
    ::DeleteObject(region);
    ++g_Counts.Deleted;
}

HRGN MakeAnyRegion() {
    return ::CreateRectRgn(0, 0, 1, 1);
}

}  // namespace

CRegion::~CRegion() {
    DeleteCounted(m_Handle);
    if (m_SaveRgn) ::DeleteObject(m_SaveRgn);
}

const THandleCounts& CRegion::GetHandleCounts() {
    return g_Counts;
}

// --- query ---

bool CRegion::IsInside(std::int32_t x, std::int32_t y) const {
    return !m_Handle || ::PtInRegion(m_Handle, x, y);
}

void CRegion::GetRegionBox(TLongRect& box, CCanvas* canvas) const {
    RECT seen{};
    const int kind = m_Handle ? ::GetRgnBox(m_Handle, &seen) : ::GetClipBox(DeviceOf(canvas), &seen);
    if (kind == ERROR) return;
    if (kind == NULLREGION) seen = {};  // some devices tell where there would be pixels
    TLongPoint low{seen.left, seen.top}, high{seen.right, seen.bottom};
    const CScaler* scaler = canvas ? canvas->GetScaler() : nullptr;
    if (scaler && kind != NULLREGION) {
        scaler->ScreenToMapEx(low.X, low.Y);
        scaler->ScreenToMapEx(high.X, high.Y);
        std::swap(low.Y, high.Y);
    }
    box = {low.X, low.Y, high.X, high.Y};
}

// --- make ---

void CRegion::Create(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, CCanvas* canvas,
                     TCombine combine) {
    TLongPoint low{x1, y1}, high{x2, y2};
    const CScaler* scaler = canvas && canvas->IsPretranslation() ? canvas->GetScaler() : nullptr;
    if (scaler) MapCorners(*scaler, low, high);
    Adopt(::CreateRectRgn(low.X, low.Y, high.X, high.Y), canvas, combine);
}

void CRegion::Create(CPoints*, CCanvas*, TCombine) {
    RunError(ErrorFailed, u"CreatePolygonRegion is not supported in WinCE", this);
}

void CRegion::ApplyRegion(const CRegion* source, CCanvas* canvas) {
    if (!source || source == this) return;
    CMadeHandle<HRGN> copy(source->m_Handle ? MakeAnyRegion() : nullptr);
    if (source->m_Handle && ::CombineRgn(copy.Get(), source->m_Handle, nullptr, RGN_COPY) == ERROR) return;
    Replace(copy.Take());
    if (canvas && canvas->GetHandle()) ::SelectClipRgn(canvas->GetHandle(), m_Handle);
}

/// Takes a region just made, combined with the present one, as region and clip.
void CRegion::Adopt(HRGN made, CCanvas* canvas, TCombine combine) {
    CMadeHandle<HRGN> region(made);
    if (!made) return;
    static_assert(CombineAnd == RGN_AND && CombineCopy == RGN_COPY, "the modes have the device's numbers");
    const bool combines = m_Handle && combine >= CombineAnd && combine <= CombineCopy;
    if (combines && ::CombineRgn(made, made, m_Handle, combine) == ERROR) return;
    if (canvas) ::SelectClipRgn(canvas->GetHandle(), made);
    Replace(region.Take());
}

void CRegion::Replace(HRGN handle) {
    if (m_Handle) ::DeleteObject(m_Handle);
    m_Handle = handle;
}

// --- change ---

void CRegion::Offset(std::int32_t dx, std::int32_t dy, CCanvas* canvas) {
    if (!m_Handle) return;
    ::OffsetRgn(m_Handle, dx, dy);
    if (canvas) ::SelectClipRgn(canvas->GetHandle(), m_Handle);
}

void CRegion::ExcludeClipRect(CCanvas* canvas, std::int32_t x1, std::int32_t y1, std::int32_t x2,
                              std::int32_t y2) {
    TLongPoint low{x1, y1}, high{x2, y2};
    const CScaler* scaler = canvas ? canvas->GetScaler() : nullptr;
    if (scaler) MapCorners(*scaler, low, high);
    ::ExcludeClipRect(DeviceOf(canvas), low.X, low.Y, high.X, high.Y);
    Replace(nullptr);
}

void CRegion::SetNullRegion(CCanvas* canvas) {
    ::SelectClipRgn(DeviceOf(canvas), nullptr);
    Replace(nullptr);
}

// --- a clip for a while ---

void CRegion::SaveRegion(CCanvas* canvas) {
    DeleteCounted(std::exchange(m_SaveRgn, nullptr));
    const HRGN clip = MakeAnyRegion();
    if (!clip) return;
    ++g_Counts.Made;
    if (::GetClipRgn(DeviceOf(canvas), clip) == 1) {
        m_SaveRgn = clip;
    } else {
        DeleteCounted(clip);
    }
}

void CRegion::RestoreRegion(CCanvas* canvas) {
    ::SelectClipRgn(DeviceOf(canvas), m_SaveRgn);
    DeleteCounted(m_Handle);
    m_Handle = std::exchange(m_SaveRgn, nullptr);
}

}  // namespace zul
