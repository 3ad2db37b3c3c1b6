#include <algorithm>

#include "zul/canvas/bitmap_canvas.h"
#include "zul/canvas/canvas.h"
#include "zul/kernel/message.h"
#include "zul/kernel/numeric.h"
#include "zul/tools/device_answers.h"
#include "zul/tools/device_guards.h"

namespace zul {
namespace {

/// The device's numbers by TRop. An operation outside the table reaches no device.
constexpr DWORD DeviceRops[] = {SRCCOPY, PATINVERT, DSTINVERT, BLACKNESS, WHITENESS, SRCAND, SRCINVERT};

bool IsKnown(CBitmap::TRop rop) {
    return rop >= CBitmap::RopSourceCopy && rop <= CBitmap::RopSourceInvert;
}

/// The device's numbers by TEdge and by TEdgeFlags.
constexpr UINT DeviceEdges[] = {
    BDR_RAISEDINNER,
    BDR_SUNKENINNER,
    BDR_RAISEDOUTER,
    BDR_SUNKENOUTER,
    BDR_RAISEDOUTER | BDR_SUNKENINNER,
    BDR_SUNKENOUTER | BDR_RAISEDINNER,
    BDR_RAISEDOUTER | BDR_RAISEDINNER,
    BDR_SUNKENOUTER | BDR_SUNKENINNER,
};
constexpr UINT DeviceSides[] = {
    BF_LEFT, BF_TOP, BF_RIGHT, BF_BOTTOM, BF_BOTTOM | BF_LEFT, BF_TOP | BF_RIGHT, BF_RECT,
};

}  // namespace

// --- pixels ---

std::int32_t CCanvas::GetPixel(std::int32_t x, std::int32_t y) const {
    return static_cast<std::int32_t>(::GetPixel(m_Device, x, y));
}

void CCanvas::SetPixel(std::int32_t x, std::int32_t y, std::int32_t color) {
    ::SetPixel(m_Device, x, y, static_cast<COLORREF>(color));
}

void CCanvas::Pixel(std::int32_t x, std::int32_t y) {
    SetPixel(x, y, m_Background.GetColor());
}

// --- blocks ---

void CCanvas::PatBlt(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, CBitmap::TRop rop) {
    if (!IsKnown(rop)) return;
    if (!IsInFront({x1, y1}, {x2, y2})) return;
    PreparePoint(x1, y1);
    PreparePoint(x2, y2);
    const auto [left, right] = std::minmax(x1, x2);
    const auto [top, bottom] = std::minmax(y1, y2);
    IsDone(::PatBlt(m_Device, left, top, SaturateToLong(std::int64_t{right} - left),
                    SaturateToLong(std::int64_t{bottom} - top), DeviceRops[rop]),
           this, u"CCanvas::PatBlt");
}

void CCanvas::BitBlt(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height, CCanvas* source,
                     std::int32_t sourceX, std::int32_t sourceY, CBitmap::TRop rop) {
    if (!source || !IsKnown(rop)) return;
    IsDone(::BitBlt(m_Device, x, y, width, height, source->m_Device, sourceX, sourceY, DeviceRops[rop]), this,
           u"CCanvas::BitBlt");
}

void CCanvas::BitBlt(CBitmap* bitmap, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                     std::int32_t sourceX, std::int32_t sourceY, CBitmap::TRop rop) {
    if (!bitmap) return;
    CBitmapCanvas source(bitmap);
    BitBlt(x, y, width, height, &source, sourceX, sourceY, rop);
}

void CCanvas::StretchBlt(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                         CCanvas* source, std::int32_t sourceX, std::int32_t sourceY,
                         std::int32_t sourceWidth, std::int32_t sourceHeight, CBitmap::TRop rop) {
    if (!source || !IsKnown(rop)) return;
    // A device's first mode would AND the rows that shrinking drops into the others.
    CStretchModeSelection dropping(m_Device, COLORONCOLOR);
    IsDone(::StretchBlt(m_Device, x, y, width, height, source->m_Device, sourceX, sourceY, sourceWidth,
                        sourceHeight, DeviceRops[rop]),
           this, u"CCanvas::StretchBlt");
}

void CCanvas::StretchBlt(CBitmap* bitmap, std::int32_t x, std::int32_t y, std::int32_t width,
                         std::int32_t height, std::int32_t sourceX, std::int32_t sourceY,
                         std::int32_t sourceWidth, std::int32_t sourceHeight, CBitmap::TRop rop) {
    if (!bitmap) return;
    CBitmapCanvas source(bitmap);
    StretchBlt(x, y, width, height, &source, sourceX, sourceY, sourceWidth, sourceHeight, rop);
}

void CCanvas::Transparent(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                          CCanvas* source, std::int32_t sourceX, std::int32_t sourceY,
                          std::int32_t sourceWidth, std::int32_t sourceHeight, std::int32_t color) {
    if (!source) return;
    IsDone(::TransparentImage(m_Device, x, y, width, height, source->m_Device, sourceX, sourceY, sourceWidth,
                              sourceHeight, static_cast<COLORREF>(color)),
           this, u"CCanvas::Transparent");
}

void CCanvas::DrawEdge(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, TEdge edge,
                       TEdgeFlags sides) {
    if (edge < EdgeRaisedInner || edge > EdgeSunken || sides < SideLeft || sides > SideAll) return;
    RECT area{x1, y1, x2, y2};
    IsDone(::DrawEdge(m_Device, &area, DeviceEdges[edge], DeviceSides[sides]), this, u"CCanvas::DrawEdge");
}

bool CCanvas::Draw(CAnyObject* object, void* parameter) {
    return RunMessage(u"Draw", object, nullptr, CMessage::FromPointer(this),
                      CMessage::FromPointer(parameter));
}

// --- what the device cannot ---

// Arcs report the text of the pie, on purpose: callers compare it.
void CCanvas::Arc(std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                  std::int32_t, std::int32_t) {
    RunError(ErrorFailed, u"Abstract error <CCanvas::Pie - undefined method>", this);
}

void CCanvas::AngleArc(std::int32_t, std::int32_t, std::int32_t, double, double) {
    RunError(ErrorFailed, u"Abstract error <CCanvas::Pie - undefined method>", this);
}

void CCanvas::Pie(std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                  std::int32_t, std::int32_t) {
    RunError(ErrorFailed, u"Abstract error <CCanvas::Pie - undefined method>", this);
}

void CCanvas::Chord(std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                    std::int32_t, std::int32_t) {
    RunError(ErrorFailed, u"Abstract error <CCanvas::Chord - undefined method>", this);
}

void CCanvas::PolyBezier(CPoints*) {
    RunError(ErrorFailed, u"Abstract error <CCanvas::PolyBezier - undefined method>", this);
}

void CCanvas::FloodFill(std::int32_t, std::int32_t, std::int32_t, TFillStyle) {
    RunError(ErrorUnsupported, u"FloodFill is not supported in WinCE. <CCanvas::FloodFill>", this);
}

void CCanvas::GradientFill(CGradient*, std::int32_t*, std::int32_t, CGradient::TMode) {
    // Callers of this name fall back to plain fills when they hear the error; DrawGradient draws.
    RunError(ErrorUnsupported, u"GradientFill is not supported in WinCE. <CCanvas::GradientFill>", this);
}

void CCanvas::PlgBlt(const TLongPoint*, CCanvas*, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                     CBitmap* mask, std::int32_t, std::int32_t) {
    if (mask) mask->GetHandle();
    RunError(ErrorUnsupported, u"PlgBlt is not supported in WinCE. <CCanvas::PlgBlt>", this);
}

void CCanvas::AlphaBlend(std::int32_t, std::int32_t, std::int32_t, std::int32_t, CCanvas*, std::int32_t,
                         std::int32_t, std::int32_t, std::int32_t, CGradient::TBlend) {
    RunError(ErrorUnsupported, u"AlphaBlending is not supported in WinCE. <CCanvas::AlphaBlend>", this);
}

}  // namespace zul
