#include "zul/canvas/region.h"

#include <utility>

#include "zul/canvas/canvas.h"
#include "zul/canvas/corners.h"
#include "zul/kernel/numeric.h"
#include "zul/tools/device_answers.h"
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

/// Makes a region the canvas's clip. False, reported, when memory is short; a device that is gone is no
/// matter.
bool Clips(HRGN region, CCanvas* canvas, const CRegion* owner, const char16_t* member) {
    return ::SelectClipRgn(canvas->GetHandle(), region) != ERROR || !ReportShortage(owner, member);
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
    if (source->m_Handle &&
        !IsDone(copy.Get() && ::CombineRgn(copy.Get(), source->m_Handle, nullptr, RGN_COPY), this,
                u"CRegion::ApplyRegion")) {
        return;
    }
    if (canvas && canvas->GetHandle() && !Clips(copy.Get(), canvas, this, u"CRegion::ApplyRegion")) return;
    Replace(copy.Take());
}

/// Takes a region just made, combined with the present one, as region and clip.
void CRegion::Adopt(HRGN made, CCanvas* canvas, TCombine combine) {
    CMadeHandle<HRGN> region(made);
    if (!IsDone(made, this, u"CRegion::Create")) return;
    static_assert(CombineAnd == RGN_AND && CombineCopy == RGN_COPY, "the modes have the device's numbers");
    const bool combines = m_Handle && combine >= CombineAnd && combine <= CombineCopy;
    if (combines && !IsDone(::CombineRgn(made, made, m_Handle, combine), this, u"CRegion::Create")) return;
    if (canvas && !Clips(made, canvas, this, u"CRegion::Create")) return;
    Replace(region.Take());
}

void CRegion::Replace(HRGN handle) {
    if (m_Handle) ::DeleteObject(m_Handle);
    m_Handle = handle;
}

// --- change ---

void CRegion::Offset(std::int32_t dx, std::int32_t dy, CCanvas* canvas) {
    if (!m_Handle) return;
    if (!::OffsetRgn(m_Handle, dx, dy) && ReportShortage(this, u"CRegion::Offset")) return;
    if (canvas && !::SelectClipRgn(canvas->GetHandle(), m_Handle) &&
        ::GetLastError() == ERROR_NOT_ENOUGH_MEMORY) {
        ::OffsetRgn(m_Handle, SaturateToLong(-std::int64_t{dx}), SaturateToLong(-std::int64_t{dy}));
        ReportShortage(this, u"CRegion::Offset");
    }
}

void CRegion::ExcludeClipRect(CCanvas* canvas, std::int32_t x1, std::int32_t y1, std::int32_t x2,
                              std::int32_t y2) {
    TLongPoint low{x1, y1}, high{x2, y2};
    const CScaler* scaler = canvas ? canvas->GetScaler() : nullptr;
    if (scaler) MapCorners(*scaler, low, high);
    if (!::ExcludeClipRect(DeviceOf(canvas), low.X, low.Y, high.X, high.Y) &&
        ReportShortage(this, u"CRegion::ExcludeClipRect")) {
        return;
    }
    Replace(nullptr);
}

void CRegion::SetNullRegion(CCanvas* canvas) {
    if (!::SelectClipRgn(DeviceOf(canvas), nullptr) && ReportShortage(this, u"CRegion::SetNullRegion"))
        return;
    Replace(nullptr);
}

// --- a clip for a while ---

void CRegion::SaveRegion(CCanvas* canvas) {
    DeleteCounted(std::exchange(m_SaveRgn, nullptr));
    // Without it the clip would be gone in the end.
    const HRGN clip = MakeAnyRegion();
    NeedMemory(clip || ::GetLastError() != ERROR_NOT_ENOUGH_MEMORY);
    if (!clip) return;
    ++g_Counts.Made;
    const int found = ::GetClipRgn(DeviceOf(canvas), clip);
    if (found == 1) {
        m_SaveRgn = clip;
        return;
    }
    DeleteCounted(clip);
    NeedMemory(found == 0 || ::GetLastError() != ERROR_NOT_ENOUGH_MEMORY);
}

void CRegion::RestoreRegion(CCanvas* canvas) {
    ::SelectClipRgn(DeviceOf(canvas), m_SaveRgn);
    DeleteCounted(m_Handle);
    m_Handle = std::exchange(m_SaveRgn, nullptr);
}

}  // namespace zul
