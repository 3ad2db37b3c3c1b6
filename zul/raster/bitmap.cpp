#include "zul/raster/bitmap.h"

#include <limits>
#include <utility>

#include "platform/dib_header.h"
#include "zul/canvas/canvas.h"
#include "zul/kernel/class_registry.h"
#include "zul/kernel/message.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/stream.h"
#include "zul/raster/bmp_file.h"
#include "zul/raster/packed_dib.h"
#include "zul/raster/pattern_bitmap.h"
#include "zul/tools/device_answers.h"
#include "zul/tools/device_guards.h"

namespace zul {
namespace {

/// A figure of a packed image as callers get it: 0 when 32 bits do not hold it.
std::int32_t Fitting(std::int64_t value) {
    const bool fits = value >= std::numeric_limits<std::int32_t>::min() &&
                      value <= std::numeric_limits<std::int32_t>::max();
    return fits ? static_cast<std::int32_t>(value) : 0;
}

}  // namespace

CBitmap::~CBitmap() {
    if (m_Handle && !m_Attached) ::DeleteObject(m_Handle);
}

// --- make and hold ---

void CBitmap::Clear() {
    if (m_Handle && !m_Attached) ::DeleteObject(m_Handle);
    if (CAnyBuffer* buffer = m_Buffer.Get()) buffer->Clear();
    m_Attached = false;
    m_Handle = nullptr;
}

bool CBitmap::Create(const void* dib) {
    return StorePacked(CPackedDib(dib, dib::kHeaderSize), dib);
}

bool CBitmap::Create(const void* dib, std::uint32_t length) {
    const CPackedDib packed(dib, length);
    return packed.GetDibSize() <= length && StorePacked(packed, dib);
}

bool CBitmap::StorePacked(const CPackedDib& dib, const void* data) {
    if (!dib.Exists() || dib.GetHeader().biSize < dib::kHeaderSize) return false;
    if (dib.GetDibSize() > dib::kSizeLimit) return false;
    const bool isFirst = !m_Buffer.IsExist();
    CAnyBuffer* buffer = NeedBuffer();
    const auto size = static_cast<std::uint32_t>(dib.GetDibSize());
    // Written before it is cut: the image may be the bitmap's own.
    if (buffer && buffer->Write(0, size, data) && buffer->Resize(size, true)) return true;
    if (isFirst) m_Buffer.DoSetInstance(nullptr);
    return false;
}

bool CBitmap::Create(const char16_t* name) {
    return CBitmap::Create(nullptr, name);
}

bool CBitmap::Create(void* module, const char16_t* name) {
    // A path is a text; only the resources of a module have numbers.
    if (!module && IS_INTRESOURCE(name)) return false;
    return Take(static_cast<HBITMAP>(
        ::LoadImageW(static_cast<HINSTANCE>(module), name, IMAGE_BITMAP, 0, 0, LR_DEFAULTCOLOR)));
}

bool CBitmap::Create(std::int32_t width, std::int32_t height, std::int32_t bitsPixel, const void* bits) {
    if (bitsPixel < 0 || !dib::FitsLimit(width, height, bitsPixel)) return false;
    return Take(::CreateBitmap(width, height, 1, static_cast<UINT>(bitsPixel), bits));
}

bool CBitmap::CreateCompatible(std::int32_t width, std::int32_t height, CCanvas* canvas) {
    constexpr int DeepestDevice = 32;
    if (!dib::FitsLimit(width, height, DeepestDevice)) return false;
    if (canvas) return Take(::CreateCompatibleBitmap(canvas->GetHandle(), width, height));
    const CScreenDevice screen;
    return Take(::CreateCompatibleBitmap(screen.Get(), width, height));
}

/// A handle just made replaces the contents; without one they stay.
bool CBitmap::Take(HBITMAP handle) {
    if (!handle) return false;
    CMadeHandle<HBITMAP> made(handle);
    Clear();
    m_Handle = made.Take();
    return true;
}

void CBitmap::AttachHandle(HBITMAP handle) {
    Clear();
    if (!handle) return;
    m_Handle = handle;
    m_Attached = true;
}

HBITMAP CBitmap::DetachHandle() {
    CModificator bracket(this);
    m_Attached = false;
    return std::exchange(m_Handle, nullptr);
}

// --- files ---

bool CBitmap::SaveToFile(const char16_t* path) {
    BITMAP description{};
    const HBITMAP handle = GetHandle();
    if (!handle || !::GetObjectW(handle, sizeof description, &description)) return false;
    // Before the file, which is empty from then on.
    const CScreenDevice screen;
    if (!IsDone(screen.Get(), this, u"CBitmap::SaveToFile")) return false;
    CBmpFile file(path);
    if (file.IsOpen()) {
        const BITMAPINFOHEADER header =
            MakeInfoHeader(screen.Get(), description.bmWidth, description.bmHeight, description.bmPlanes,
                           description.bmBitsPixel);
        const std::int64_t size = dib::RowsSize(header);
        file.WriteFileHeader(0, size);
        file.Write(&header, sizeof header, sizeof header);
        ExtractBitsFromHandle(nullptr);
        const CPackedDib dib = GetDib();
        const std::int64_t offset = dib.GetBitsOffset();
        file.Write(dib.At(offset), dib.Held(offset, size), size);
        if (file.Finish()) return true;
    }
    RunError(ErrorOverflow, u"Can't create file.", this);
    return false;
}

void CBitmap::ExtractBitsFromHandle(CCanvas*) {}

// --- query ---

CAnyBuffer* CBitmap::NeedBuffer() {
    CFactory<CAnyBuffer> factory;
    return m_Buffer.DoGetInstance(&factory, true);
}

CPackedDib CBitmap::GetDib() {
    CAnyBuffer* buffer = m_Buffer.Get();
    return buffer ? CPackedDib(buffer->GetBuffer(), buffer->GetSize()) : CPackedDib(nullptr, 0);
}

bool CBitmap::IsValid() {
    if (m_Handle) return true;
    const CAnyBuffer* buffer = m_Buffer.Get();
    return buffer && buffer->GetSize() > 0;
}

HBITMAP CBitmap::GetHandle() {
    if (!m_Handle) m_Handle = GetDib().MakeSection(true);
    return m_Handle;
}

void CBitmap::GetSize(std::int32_t& width, std::int32_t& height) {
    width = height = 0;
    if (const CPackedDib dib = GetDib(); dib.Exists()) {
        width = dib.GetHeader().biWidth;
        height = dib.GetHeader().biHeight;
        return;
    }
    BITMAP description{};
    const HBITMAP handle = GetHandle();
    if (handle && ::GetObjectW(handle, sizeof description, &description)) {
        width = description.bmWidth;
        height = description.bmHeight;
    }
}

std::int32_t CBitmap::GetWidth() {
    std::int32_t width, height;
    GetSize(width, height);
    return width;
}

std::int32_t CBitmap::GetHeight() {
    std::int32_t width, height;
    GetSize(width, height);
    return height;
}

const std::uint8_t* CBitmap::GetBits() {
    const CPackedDib dib = GetDib();
    return dib.At(dib.GetBitsOffset());
}

std::int32_t CBitmap::GetDIBSize() {
    return Fitting(GetDib().GetDibSize());
}

std::int32_t CBitmap::GetImageSize() {
    return Fitting(dib::ImageSize(GetDib().GetHeader()));
}

std::int32_t CBitmap::GetRowSize() {
    return Fitting(dib::RowSize(GetDib().GetHeader()));
}

std::int32_t CBitmap::GetColorUsed() {
    return Fitting(GetDib().GetHeader().biClrUsed);
}

const std::uint8_t* CBitmap::GetPaletteEntries() {
    const CPackedDib dib = GetDib();
    return dib.At(dib.GetColorTableOffset());
}

std::int32_t CBitmap::GetPaletteEntriesCount() {
    return Fitting(GetDib().GetColorCount());
}

std::int32_t CBitmap::GetPaletteSize() {
    return Fitting(4 * GetDib().GetColorCount());
}

CAnyPtr& GetPatternHolder() {
    static CAnyPtr holder;
    return holder;
}

CBitmap* CBitmap::GetPatternBitmap() {
    return static_cast<CBitmap*>(GetPatternHolder().DoGetInstance());
}

// --- persistence ---

bool CBitmap::ObjectToBuffer(CStream* stream) {
    if (!stream) return false;
    if (!m_Buffer.IsExist() && m_Handle) ExtractBitsFromHandle(nullptr);
    m_Buffer.ObjectToBuffer(stream);
    return CAnyObject::ObjectToBuffer(stream);
}

bool CBitmap::ObjectFromBuffer(CStream* stream) {
    if (!stream) return false;
    m_Buffer.ObjectFromBuffer(stream);
    return CAnyObject::ObjectFromBuffer(stream);
}

std::uint32_t CBitmap::GetPreferredSize() {
    return 8;
}

}  // namespace zul
