#include "zul/canvas/canvas.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <utility>

#include "zul/kernel/class_registry.h"
#include "zul/kernel/stream.h"
#include "zul/tools/device_answers.h"

namespace zul {
namespace {

/// What a canvas's stored form has before its font, pen and brush, which have fixed sizes.
class CStoredHead : public CStream {
public:
    explicit CStoredHead(CStream* source) : m_Source(source) {
        if (!source) return;
        m_Size = static_cast<std::uint32_t>(std::min<std::uint64_t>(sizeof m_Bytes, source->GetRemaining()));
        if (!source->Read(m_Bytes, m_Size)) m_Size = 0;
    }
    bool Read(void* data, std::uint32_t size) override {
        const bool isThere = data && size <= GetRemaining();
        if (isThere) std::memcpy(data, m_Bytes + m_Position, size);
        m_Position = isThere ? m_Position + size : m_Size;
        return isThere;
    }
    bool Write(const void*, std::uint32_t) override { return false; }
    std::uint64_t GetRemaining() const override { return m_Size - m_Position; }
    std::int64_t FromStoredId(std::int64_t stored) override { return m_Source->FromStoredId(stored); }

private:
    CStream* m_Source;
    std::uint8_t m_Bytes[29 + 20];
    std::uint32_t m_Size = 0, m_Position = 0;
};

}  // namespace

CCanvas::CCanvas() {
    m_Buffer.SetAsNotSerializable(true);
}

CCanvas::~CCanvas() {
    Release(true);
    DropPalette();
}

// --- device ---

void CCanvas::AttachToDevice(HDC device, bool memoryDC, bool releaseMemory, bool ownDevice) {
    Release(releaseMemory);
    m_Background.Invalidate();
    m_Device = device;
    m_MemoryDC = memoryDC;
    m_OwnsDevice = ownDevice;
    m_Printer = device && ::GetDeviceCaps(device, TECHNOLOGY) == DT_RASPRINTER;
    if (CBitmap* bitmap = m_Bitmap.Get(); bitmap && device) {
        if (const HBITMAP handle = bitmap->GetHandle()) {
            m_DefaultBitmap = static_cast<HBITMAP>(::SelectObject(device, handle));
            IsDone(m_DefaultBitmap, this, u"CCanvas::AttachToDevice");
        }
    }
}

void CCanvas::CreateMemoryCanvas() {
    const HDC device = ::CreateCompatibleDC(nullptr);
    if (IsDone(device, this, u"CCanvas::CreateMemoryCanvas")) AttachToDevice(device, true, true, false);
}

void CCanvas::Release(bool deleteMemoryDC) {
    if (!m_Device) return;
    m_Pen.Release(this);
    m_Brush.Release(this);
    m_Font.Release(this);
    if (CPalette* palette = m_Palette.Get()) palette->Release(this);
    DropPalette();
    if (m_DefaultBitmap) {
        ::SelectObject(m_Device, m_DefaultBitmap);
        m_DefaultBitmap = nullptr;
    }
    if (m_OwnsDevice || (m_MemoryDC && deleteMemoryDC)) ::DeleteDC(m_Device);
    m_MemoryDC = false;
    m_Device = nullptr;
}

bool CCanvas::IsDisplayCanvas() const {
    return m_Device && ::GetDeviceCaps(m_Device, TECHNOLOGY) == DT_RASDISPLAY;
}

// --- bitmap ---

void CCanvas::AssignBitmap(CBitmap* bitmap) {
    if (bitmap) {
        const HGDIOBJ previous = ::SelectObject(m_Device, bitmap->GetHandle());
        if (!previous && ReportShortage(this, u"CCanvas::AssignBitmap")) return;
        // Of several bitmaps in a row it is the device's own one that goes back in the end.
        if (!m_DefaultBitmap) m_DefaultBitmap = static_cast<HBITMAP>(previous);
        m_Bitmap.DoSetInstance(bitmap);
    } else if (m_DefaultBitmap) {
        ::SelectObject(m_Device, m_DefaultBitmap);
        m_DefaultBitmap = nullptr;
        m_Bitmap.DoSetInstance(nullptr);
    }
}

CBitmap* CCanvas::GetBitmap() {
    CBitmap* bitmap = m_Bitmap.Get();
    if (!bitmap) AssignBitmap(nullptr);
    return bitmap;
}

// --- tools and references ---

void CCanvas::SetScaler(CScaler* scaler) {
    m_Scaler.DoSetInstance(scaler);
}

void CCanvas::SetPalette(CPalette* palette) {
    if (m_Palette.IsEqual(palette)) return;
    DropPalette();
    m_Palette.DoSetInstance(palette);
}

void CCanvas::SetGradient(CGradient* gradient) {
    m_Gradient.DoSetInstance(gradient);
}

/// Empties the palette pointer; a palette that the canvas made for itself goes with it.
void CCanvas::DropPalette() {
    if (m_OwnsPalette) m_Palette.Remove();
    m_OwnsPalette = false;
    m_Palette.DoSetInstance(nullptr);
}

void CCanvas::ApplyCanvas(CCanvas* source, bool withScaler) {
    if (!source || source == this) return;
    m_Pen.ApplyPen(&source->m_Pen);
    m_Brush.ApplyBrush(&source->m_Brush, false);
    m_Font.ApplyFont(&source->m_Font);
    m_Background.ApplyBackground(&source->m_Background);
    m_Region.ApplyRegion(&source->m_Region, this);
    if (const CPalette* palette = source->m_Palette.Get()) {
        if (!m_Palette.IsExist()) {
            auto made = std::unique_ptr<CPalette>(new CPalette);
            NeedMemory(made != nullptr);
            m_Palette.DoSetInstance(made.get());
            made.release();
            m_OwnsPalette = true;
        }
        if (CPalette* own = m_Palette.Get()) own->ApplyPalette(palette);
    }
    if (const CGradient* gradient = source->m_Gradient.Get()) {
        CFactory<CGradient> factory;
        if (CGradient* own = m_Gradient.DoGetInstance(&factory, true)) own->ApplyGradient(gradient);
    }
    const CScaler* scaler = source->m_Scaler.Get();
    if (withScaler && scaler) {
        CFactory<CScaler> factory;
        if (CScaler* own = m_Scaler.DoGetInstance(&factory, true)) own->ApplyScaler(scaler);
    }
}

void CCanvas::SetTextColor(std::int32_t color) {
    ::SetTextColor(m_Device, static_cast<COLORREF>(color));
    m_Font.Invalidate();
}

// --- modes ---

bool CCanvas::SetPretranslation(bool on) {
    return std::exchange(m_PretranslateCoords, on);
}

bool CCanvas::SetLinesOnlyMode(bool on) {
    return std::exchange(m_LinesOnly, on);
}

bool CCanvas::SetBlackLinesMode(bool on) {
    return std::exchange(m_BlackLines, on);
}

bool CCanvas::SetListClipping(bool on) {
    return std::exchange(m_ListClipping, on);
}

// --- what the device can ---

std::int32_t CCanvas::GetDeviceCaps(TCaps caps) const {
    constexpr int Indices[] = {LOGPIXELSX, LOGPIXELSY, HORZSIZE, VERTSIZE, HORZRES, VERTRES};
    const bool known = caps >= CapsDpiX && caps <= CapsHeight;
    return ::GetDeviceCaps(m_Device, known ? Indices[caps] : 0);
}

bool CCanvas::GetCapsPair(int first, int second, std::int32_t& x, std::int32_t& y) const {
    if (!m_Device) return false;
    x = ::GetDeviceCaps(m_Device, first);
    y = ::GetDeviceCaps(m_Device, second);
    return true;
}

bool CCanvas::GetDeviceSize(std::int32_t& width, std::int32_t& height) const {
    return GetCapsPair(HORZSIZE, VERTSIZE, width, height);
}

bool CCanvas::GetResolution(std::int32_t& width, std::int32_t& height) const {
    return GetCapsPair(HORZRES, VERTRES, width, height);
}

bool CCanvas::GetPhysicalOffset(std::int32_t& x, std::int32_t& y) const {
    return GetCapsPair(PHYSICALOFFSETX, PHYSICALOFFSETY, x, y);
}

bool CCanvas::GetPhysicalSize(std::int32_t& width, std::int32_t& height) const {
    return GetCapsPair(PHYSICALWIDTH, PHYSICALHEIGHT, width, height);
}

std::int32_t CCanvas::GetDPI() const {
    return m_Device ? ::GetDeviceCaps(m_Device, LOGPIXELSX) : 0;
}

std::int32_t CCanvas::GetBitsPixel() const {
    return m_Device ? ::GetDeviceCaps(m_Device, BITSPIXEL) : 0;
}

std::int32_t CCanvas::GetSysColor(CBrush::TSysType kind) {
    const int index = CBrush::GetSysColorIndex(kind);
    return index < 0 ? 0 : static_cast<std::int32_t>(::GetSysColor(index));
}

// --- navigation ---

bool CCanvas::Zoom(TCoord x1, TCoord y1, TCoord x2, TCoord y2, bool zoomIn) {
    CScaler* scaler = GetScaler();
    return scaler && scaler->Zoom(x1, y1, x2, y2, zoomIn);
}

bool CCanvas::PlaceToCenter(TCoord x, TCoord y) {
    CScaler* scaler = GetScaler();
    return scaler && scaler->PlaceToCenter(this, x, y);
}

void CCanvas::Scroll(std::int32_t dx, std::int32_t dy, const TLongRect& rect) {
    const RECT area{rect.MinX, rect.MinY, rect.MaxX, rect.MaxY};
    IsDone(::ScrollDC(m_Device, dx, dy, &area, &area, nullptr, nullptr), this, u"CCanvas::Scroll");
}

// --- persistence ---

bool CCanvas::ObjectToBuffer(CStream* stream) {
    m_Pen.ObjectToBuffer(stream);
    m_Brush.ObjectToBuffer(stream);
    m_Font.ObjectToBuffer(stream);
    m_Background.ObjectToBuffer(stream);
    m_Scaler.ObjectToBuffer(stream);
    m_Gradient.ObjectToBuffer(stream);
    return true;
}

bool CCanvas::ObjectFromBuffer(CStream* stream) {
    // The font comes first since it alone may lack memory: then nothing has changed.
    CStoredHead head(stream);
    m_Font.ObjectFromBuffer(stream);
    m_Pen.ObjectFromBuffer(stream ? &head : nullptr);
    m_Brush.ObjectFromBuffer(stream ? &head : nullptr);
    m_Background.ObjectFromBuffer(stream);
    m_Scaler.ObjectFromBuffer(stream);
    m_Gradient.ObjectFromBuffer(stream);
    return true;
}

std::uint32_t CCanvas::GetPreferredSize() {
    return m_Pen.GetPreferredSize() + m_Brush.GetPreferredSize() + m_Font.GetPreferredSize() +
           m_Background.GetPreferredSize() + m_Region.GetPreferredSize() + 16;
}

}  // namespace zul
