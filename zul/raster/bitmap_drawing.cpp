#include <memory>

#include "zul/canvas/bitmap_canvas.h"
#include "zul/kernel/message.h"
#include "zul/raster/dib_section.h"

namespace zul {

void CBitmap::BitBlt(CCanvas* target, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                     std::int32_t sourceX, std::int32_t sourceY, TRop rop) {
    if (!target) return;
    if (!target->IsPrinterCanvas()) {
        target->BitBlt(this, x, y, width, height, sourceX, sourceY, rop);
        return;
    }
    CDibSection section;
    section.Create(width, height, 24, nullptr);
    if (!section.GetHandle()) return;
    CBitmapCanvas picture(&section);
    picture.BitBlt(this, 0, 0, width, height, sourceX, sourceY, rop);
    // Read from the source position and with the operation once more, on purpose: pages depend on it.
    target->BitBlt(x, y, width, height, &picture, sourceX, sourceY, rop);
}

void CBitmap::BitBlt(CBitmap* target, std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height,
                     std::int32_t sourceX, std::int32_t sourceY, TRop rop) {
    if (!target) return;
    CBitmapCanvas canvas(target);
    BitBlt(&canvas, x, y, width, height, sourceX, sourceY, rop);
}

void CBitmap::StretchBlt(CCanvas* target, std::int32_t x, std::int32_t y, std::int32_t width,
                         std::int32_t height, std::int32_t sourceX, std::int32_t sourceY,
                         std::int32_t sourceWidth, std::int32_t sourceHeight, TRop rop) {
    if (!target) return;
    target->StretchBlt(this, x, y, width, height, sourceX, sourceY, sourceWidth, sourceHeight, rop);
}

void CBitmap::Transparent(CCanvas* target, std::int32_t x, std::int32_t y, std::int32_t width,
                          std::int32_t height, std::int32_t sourceX, std::int32_t sourceY,
                          std::int32_t sourceWidth, std::int32_t sourceHeight, std::int32_t color) {
    if (!target) return;
    CBitmapCanvas source(this);
    target->Transparent(x, y, width, height, &source, sourceX, sourceY, sourceWidth, sourceHeight, color);
}

void CBitmap::AlphaBlend(CCanvas* target, std::int32_t x, std::int32_t y, std::int32_t width,
                         std::int32_t height, std::int32_t sourceX, std::int32_t sourceY,
                         std::int32_t sourceWidth, std::int32_t sourceHeight, CGradient::TBlend blend) {
    if (!target) return;
    CBitmapCanvas source(this);
    target->AlphaBlend(x, y, width, height, &source, sourceX, sourceY, sourceWidth, sourceHeight, blend);
}

void CBitmap::PlgBlt(CCanvas* target, const TLongPoint* corners, std::int32_t sourceX, std::int32_t sourceY,
                     std::int32_t width, std::int32_t height, CBitmap* mask, std::int32_t maskX,
                     std::int32_t maskY) {
    if (!target) return;
    CBitmapCanvas source(this);
    target->PlgBlt(corners, &source, sourceX, sourceY, width, height, mask, maskX, maskY);
}

void CBitmap::AlphaFade(CCanvas*, std::int32_t, std::int32_t, std::int32_t) {
    RunError(ErrorUnsupported, u"AlphaFading not supported in WINCE. <CBitmap::AlphaFade>", this);
}

void CBitmap::Fill(std::int32_t color) {
    CBitmapCanvas canvas(this);
    canvas.GetBrush().SetColor(color);
    std::int32_t width, height;
    GetSize(width, height);
    canvas.FillRect(0, 0, width, height, nullptr);
}

std::int32_t CBitmap::GetBitmapMaskColor() {
    return CBitmapCanvas(this).GetPixel(0, 0);
}

CBitmap* CBitmap::ExtractBitmap(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) {
    std::unique_ptr<CBitmap> part(new CBitmap);
    if (!part) return nullptr;
    part->CreateCompatible(width, height, nullptr);
    BitBlt(part.get(), 0, 0, width, height, x, y, RopSourceCopy);
    return part.release();
}

CBitmap* CBitmap::Stretch(std::int32_t width, std::int32_t height) {
    if (!m_Handle) return nullptr;
    std::unique_ptr<CBitmap> stretched(new CBitmap);
    if (!stretched) return nullptr;
    stretched->CreateCompatible(width, height, nullptr);
    std::int32_t ownWidth, ownHeight;
    GetSize(ownWidth, ownHeight);
    CBitmapCanvas target(stretched.get());
    StretchBlt(&target, 0, 0, width, height, 0, 0, ownWidth, ownHeight, RopSourceCopy);
    return stretched.release();
}

bool CBitmap::DoPaint(CCanvas* canvas, CAnyObject*) {
    BitBlt(canvas, 0, 0, GetWidth(), GetHeight(), 0, 0, RopSourceCopy);
    return true;
}

bool CBitmap::DoMessage(CMessage* message) {
    if (!message) return false;
    CCanvas* canvas = CMessage::ToPointer<CCanvas>(message->GetParam1());
    if (!canvas || !message->IsNamed(u"Draw")) return CAnyObject::DoMessage(message);
    return DoPaint(canvas, CMessage::ToPointer<CAnyObject>(message->GetParam2()));
}

}  // namespace zul
