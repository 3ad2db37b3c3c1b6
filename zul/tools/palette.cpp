#include "zul/tools/palette.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "zul/canvas/canvas.h"
#include "zul/kernel/message.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/numeric.h"
#include "zul/kernel/stream.h"
#include "zul/tools/device_guards.h"
#include "zul/tools/settings.h"

namespace zul {
namespace {

enum TPaletteMessage : std::int32_t {
    AppendMessage = 10063,
    DeleteMessage = 10064,
    GetColorMessage = 10065,
    SetColorMessage = 10066,
};

constexpr WORD PaletteVersion = 0x300;
constexpr std::uint32_t EntrySize = sizeof(std::int32_t);

std::int32_t Distance(std::int32_t first, std::int32_t second) {
    std::uint8_t red1, green1, blue1, red2, green2, blue2;
    CPalette::GetColor(first, red1, green1, blue1);
    CPalette::GetColor(second, red2, green2, blue2);
    return std::abs(red1 - red2) + std::abs(green1 - green2) + std::abs(blue1 - blue2);
}

}  // namespace

CPalette::~CPalette() {
    if (m_Handle) ::DeleteObject(m_Handle);
}

std::int32_t CPalette::GetCount() const {
    return static_cast<std::int32_t>(m_Entries.GetCount());
}

std::int32_t CPalette::GetColor(std::int32_t index) const {
    if (!Holds(index)) {
        RunError(ErrorFailed, u"Out of range error : Index in <zul::CPalette::GetColors>", this);
        return 0;
    }
    return m_Entries[static_cast<std::uint32_t>(index)];
}

void CPalette::GetEntries(std::int32_t* out, std::int32_t start, std::int32_t count) const {
    if (start > GetCount() - 1) {
        RunError(ErrorFailed, u"Out of range error : nStartIndex in <zul::CPalette::GetEntries>", this);
        return;
    }
    if (!out || start < 0) return;
    const std::int32_t copied = std::min(count, GetCount() - start - 1);
    for (std::int32_t i = 0; i < copied; ++i)
        out[i] = m_Entries[static_cast<std::uint32_t>(start + i)];
}

std::int32_t CPalette::GetNearestIndex(std::int32_t color) const {
    if (m_Type != 0) return -1;
    const std::int32_t* first = m_Entries.GetBuffer();
    const std::int32_t* last = first + m_Entries.GetCount();
    const std::int32_t* nearest = std::min_element(first, last, [color](std::int32_t a, std::int32_t b) {
        return Distance(a, color) < Distance(b, color);
    });
    return nearest == last ? -1 : static_cast<std::int32_t>(nearest - first);
}

std::int32_t CPalette::GetColor(std::uint8_t red, std::uint8_t green, std::uint8_t blue) {
    return static_cast<std::int32_t>(RGB(red, green, blue));
}

void CPalette::GetColor(std::int32_t color, std::uint8_t& red, std::uint8_t& green, std::uint8_t& blue) {
    const auto value = static_cast<COLORREF>(color);
    red = GetRValue(value);
    green = GetGValue(value);
    blue = GetBValue(value);
}

CString CPalette::GetColorStringToXML(std::int32_t color, bool) {
    std::uint8_t red, green, blue;
    GetColor(color, red, green, blue);
    return CString::Format(u"%06x(%d,%d,%d)", red << 16 | green << 8 | blue, red, green, blue);
}

std::int32_t CPalette::GetColorFromXML(const CString& text) {
    const std::int64_t value = ToLong64(CString::Convert(text.GetBuffer(), 16));
    const auto byteAt = [value](int shift) { return static_cast<std::uint8_t>((value >> shift) & 0xFF); };
    return GetColor(byteAt(16), byteAt(8), byteAt(0));
}

void CPalette::SetType(std::int32_t type) {
    // The mark is cleared, not set: kept on purpose, callers set the type of a palette that is in use.
    if (StoreSetting(*this, m_Type, type)) m_fInvalid = false;
}

void CPalette::Append(std::int32_t color) {
    NeedMemory(m_Entries.Append(color));
    m_fInvalid = true;
}

void CPalette::Delete(std::int32_t index) {
    if (!Holds(index)) return;
    m_Entries.DoDelete(static_cast<std::uint32_t>(index) * EntrySize, EntrySize);
    m_fInvalid = true;
}

void CPalette::SetColor(std::int32_t index, std::int32_t color) {
    if (!Holds(index)) {
        RunError(ErrorFailed, u"Out of range error : Index in <zul::CPalette::GetColors>", this);
        return;
    }
    m_Entries[static_cast<std::uint32_t>(index)] = color;
    m_fInvalid = true;
}

void CPalette::Clear() {
    CModificator bracket(this);
    m_Entries.Clear();
    if (m_Handle) ::DeleteObject(m_Handle);
    m_Handle = nullptr;
    m_fInvalid = true;
}

void CPalette::ApplyPalette(const CPalette* other) {
    if (!other || other == this) return;
    CBuffer<std::int32_t> entries = other->m_Entries;
    Clear();
    SetType(other->m_Type);
    m_Entries = std::move(entries);
    m_fInvalid = true;
}

HPALETTE CPalette::MakeHandle() const {
    const std::uint32_t count = std::min<std::uint32_t>(m_Entries.GetCount(), UINT16_MAX);
    const std::size_t size = sizeof(LOGPALETTE) + (count - 1) * sizeof(PALETTEENTRY);
    CAnyMemoryBuffer description;
    auto* palette = static_cast<LOGPALETTE*>(description.Resize(static_cast<std::uint32_t>(size), false));
    if (!palette) return nullptr;
    palette->palVersion = PaletteVersion;
    palette->palNumEntries = static_cast<WORD>(count);
    for (std::uint32_t i = 0; i < count; ++i) {
        PALETTEENTRY& entry = palette->palPalEntry[i];
        GetColor(m_Entries[i], entry.peRed, entry.peGreen, entry.peBlue);
    }
    return ::CreatePalette(palette);
}

void CPalette::Select(CCanvas* canvas) {
    if (!m_fInvalid || GetCount() == 0 || !canvas || !canvas->GetHandle()) return;
    CMadeHandle made(MakeHandle());
    if (!made.Get()) {
        RunError(ErrorFailed, u"Can't create palette handle <zul::CPalette::Validate()>", this);
        return;
    }
    const HPALETTE previous = ::SelectPalette(canvas->GetHandle(), made.Get(), FALSE);
    if (!previous) return;  // the device is gone
    if (m_DefaultPalette) {
        DeleteDisplaced(previous);
    } else {
        m_DefaultPalette = previous;
    }
    m_Handle = made.Take();
    m_fInvalid = false;
}

void CPalette::Realize(CCanvas* canvas) {
    if (!m_fRealize || !canvas || !canvas->GetHandle()) return;
    ::RealizePalette(canvas->GetHandle());
    m_fRealize = false;
}

/// Deletes the palette that came out of a device, and this one's where that is another.
void CPalette::DeleteDisplaced(HPALETTE displaced) {
    if (displaced) ::DeleteObject(displaced);
    if (m_Handle && m_Handle != displaced) ::DeleteObject(m_Handle);
}

void CPalette::Release(CCanvas* canvas) {
    if (!canvas || !canvas->GetHandle() || !m_DefaultPalette) return;
    DeleteDisplaced(::SelectPalette(canvas->GetHandle(), m_DefaultPalette, FALSE));
    m_Handle = m_DefaultPalette = nullptr;
    m_fInvalid = m_fRealize = true;
}

bool CPalette::DoMessage(CMessage* message) {
    if (!message) return false;
    // An index beyond 32 bits is no index of the palette either.
    const std::int32_t index = SaturateToLong(message->GetParam1());
    switch (message->GetCode()) {
        case AppendMessage:
            Append(WrapToLong(message->GetParam1()));
            return true;
        case DeleteMessage:
            Delete(index);
            return true;
        case GetColorMessage:
            message->SetResult(GetColor(index));
            return true;
        case SetColorMessage:
            SetColor(index, WrapToLong(message->GetParam2()));
            return true;
        case InvalidateMessage:
            m_fInvalid = true;
            return true;
        default:
            return CAnyObject::DoMessage(message);
    }
}

bool CPalette::ObjectToBuffer(CStream* stream) {
    if (!stream) return false;
    WriteFields(*stream, m_Type);
    m_Entries.ObjectToBuffer(stream);
    return CAnyObject::ObjectToBuffer(stream);
}

bool CPalette::ObjectFromBuffer(CStream* stream) {
    if (!stream) return false;
    std::int32_t type = m_Type;
    ReadFields(*stream, type);
    m_Entries.ObjectFromBuffer(stream);
    m_Type = type;
    m_fInvalid = m_fRealize = true;
    return CAnyObject::ObjectFromBuffer(stream);
}

std::uint32_t CPalette::GetPreferredSize() {
    return m_Entries.GetPreferredSize() + 4;
}

}  // namespace zul
