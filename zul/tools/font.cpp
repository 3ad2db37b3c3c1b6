#include "zul/tools/font.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <type_traits>

#include "zul/canvas/canvas.h"
#include "zul/kernel/client.h"
#include "zul/kernel/message.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/numeric.h"
#include "zul/kernel/stream.h"
#include "zul/tools/device_guards.h"
#include "zul/tools/formats.h"
#include "zul/tools/settings.h"

namespace zul {
namespace {

constexpr char16_t DefaultName[] = u"Microsoft Sans Serif";

constexpr std::int32_t GetNameMessage = 10049;
constexpr std::int32_t SetNameMessage = 10050;

constexpr double PointsPerInch = 72.0;
constexpr std::int32_t LeastMetricPixels = 7;

THandleCounts g_Counts;

void DeleteCounted(HFONT font) {
    if (font && ::DeleteObject(font)) ++g_Counts.Deleted;
}

std::int32_t Negated(std::int32_t value) {
    return SaturateToLong(-std::int64_t{value});
}

/// A face name in the room that a description has, its last character zero.
template <class TCharacter, std::size_t Room>
void CopyFaceName(const char16_t* name, TCharacter (&to)[Room]) {
    for (std::size_t i = 0; i + 1 < Room && name[i]; ++i)
        to[i] = static_cast<TCharacter>(name[i]);
}

/// A canvas like the screen that writes with a font's settings.
class CMeasuringCanvas {
public:
    explicit CMeasuringCanvas(const CFont& font) {
        m_Canvas.CreateMemoryCanvas();
        m_Canvas.GetFont().ApplyFont(&font);
    }
    CCanvas* operator->() { return &m_Canvas; }

private:
    CCanvas m_Canvas;
};

}  // namespace

const TSettings& CFont::GetSettings() {
    static constexpr TSetting Rows[] = {
        {GetNameMessage, u"Name", u"name", TSettingForm::Text, 0,
         SettingAccess<&CFont::m_Name, &CFont::SetName>},
        {10053, u"Style", u"style", TSettingForm::Number, 1,
         SettingAccess<&CFont::GetStyle, &CFont::SetStyle>},
        {10055, u"Color", u"color", TSettingForm::Color, 3,
         SettingAccess<&CFont::GetTextColor, &CFont::SetTextColor>},
        {10047, u"Height", u"height", TSettingForm::Number, 2,
         SettingAccess<&CFont::GetHeight, &CFont::SetHeight>},
        {10045, u"Alignment", u"alignment", TSettingForm::Number, 4,
         SettingAccess<&CFont::GetAlignment, &CFont::SetAlignment>},
        {10051, u"Oreol color", u"oreol_color", TSettingForm::Color, 5,
         SettingAccess<&CFont::GetOreolColor, &CFont::SetOreolColor>},
        {10043, u"Angle", u"angle", TSettingForm::Number, 6,
         SettingAccess<&CFont::GetAngle, &CFont::SetAngle>},
    };
    static constexpr TSettings settings(u"Font", Rows);
    return settings;
}

CFont::~CFont() {
    DeleteCounted(m_Handle);
    for (const HFONT font : m_Superseded)
        DeleteCounted(font);
}

const THandleCounts& CFont::GetHandleCounts() {
    return g_Counts;
}

// --- query ---

const char16_t* CFont::GetName() {
    if (m_Name.IsEmpty()) SetName(DefaultName);
    return m_Name.GetBuffer();
}

std::int32_t CFont::GetLogicalHeight(CCanvas* canvas) const {
    if (!canvas) return 0;
    const double perInch = canvas->GetDeviceCaps(CCanvas::CapsDpiY);
    return Negated(ToLong(perInch * m_Height / PointsPerInch + 0.5));
}

std::int32_t CFont::MetersToLogical(CCanvas* canvas) const {
    const CScaler* scaler = canvas ? canvas->GetScaler() : nullptr;
    if (!scaler) return GetLogicalHeight(canvas);
    const std::int32_t units = RoundToLong(m_Height / scaler->GetMetresInUnit());
    return Negated(std::max(scaler->MapToScreen(units), LeastMetricPixels));
}

std::int32_t CFont::GetHeightInPunkts(HDC device, std::int32_t height) {
    const int dpi = ::GetDeviceCaps(device, LOGPIXELSY);
    return dpi > 0 ? ToLong(std::abs(height * PointsPerInch) / dpi + 0.5) : 0;
}

void CFont::GetTextSize(const CString* text, std::int32_t& width, std::int32_t& height) const {
    CMeasuringCanvas(*this)->GetTextSize(text, width, height);
}

std::int32_t CFont::GetTextWidth(const CString* text) const {
    return CMeasuringCanvas(*this)->GetTextWidth(text);
}

std::int32_t CFont::GetTextHeight(const CString* text) const {
    return CMeasuringCanvas(*this)->GetTextHeight(text);
}

void CFont::GetTextSize(const char16_t* text, std::int32_t length, std::int32_t& width,
                        std::int32_t& height) const {
    CMeasuringCanvas(*this)->GetTextSize(text, length, width, height);
}

std::int32_t CFont::GetTextWidth(const char16_t* text, std::int32_t length) const {
    return CMeasuringCanvas(*this)->GetTextWidth(text, length);
}

std::int32_t CFont::GetTextHeight(const char16_t* text, std::int32_t length) const {
    return CMeasuringCanvas(*this)->GetTextHeight(text, length);
}

// --- change ---

void CFont::Create(const char16_t* name, std::int32_t height, std::int32_t textColor, std::int32_t angle) {
    SetName(name);
    SetHeight(height);
    SetTextColor(textColor);
    SetAngle(angle);
    m_fInvalid = InvalidHandle;
}

void CFont::Default() {
    SetTextColor(0);
    SetAlignment(9);
    SetStyle(0);
    SetAngle(0);
    SetName(DefaultName);
    SetHeight(12);
}

void CFont::SetName(const char16_t* name) {
    if (!name || m_Name.IsEqual(name, false)) return;
    CModificator bracket(this);
    m_Name.SetBuffer(name);
    m_fInvalid |= InvalidHandle;
}

void CFont::SetHeight(std::int32_t height) {
    if (StoreSetting(*this, m_Height, height)) m_fInvalid |= InvalidHandle;
}

bool CFont::StoreStyle(std::int32_t style) {
    return StoreSetting(*this, m_Style, style);
}

void CFont::SetStyle(std::int32_t style) {
    if (StoreStyle(style)) m_fInvalid |= InvalidHandle;
}

void CFont::SetAngle(std::int32_t angle) {
    if (StoreSetting(*this, m_Angle, angle)) m_fInvalid |= InvalidHandle;
}

void CFont::SetTextColor(std::int32_t color) {
    if (StoreSetting(*this, m_TextColor, color)) m_fInvalid |= InvalidColor;
}

void CFont::SetOreolColor(std::int32_t color) {
    StoreSetting(*this, m_OreolColor, color);
}

void CFont::SetAlignment(std::int32_t alignment) {
    StoreSetting(*this, m_Alignment, alignment);
}

void CFont::SetOreol(std::int32_t oreol) {
    StoreStyle((m_Style & ~StyleOreolMask) | (oreol & StyleOreolMask));
}

void CFont::ApplyFont(const CFont* other) {
    if (!other || other == this) return;
    SetName(other->m_Name.GetBuffer());
    SetAlignment(other->m_Alignment);
    SetStyle(other->m_Style);
    SetTextColor(other->m_TextColor);
    SetOreolColor(other->m_OreolColor);
    SetHeight(other->m_Height);
    SetAngle(other->m_Angle);
}

void CFont::FromHandle(HFONT font, CCanvas* canvas) {
    LOGFONTW told{};
    if (::GetObjectW(font, sizeof told, &told) != sizeof told) return;
    const CScreenDevice screen;
    SetAngle(told.lfEscapement);
    SetHeight(GetHeightInPunkts(canvas ? canvas->GetHandle() : screen.Get(), told.lfHeight));
    char16_t name[std::extent_v<decltype(told.lfFaceName)> + 1] = {};
    std::copy(std::begin(told.lfFaceName), std::end(told.lfFaceName), name);
    SetName(name);
    SetItalic(told.lfItalic != 0);
    SetBold(told.lfWeight >= FW_BOLD);
    SetStrikedOut(told.lfStrikeOut != 0);
    SetUnderlined(told.lfUnderline != 0);
}

// --- operate ---

void CFont::Invalidate() {
    m_fInvalid |= InvalidAll;
}

LOGFONTW CFont::Describe(CCanvas* canvas) {
    const CScaler* scaler = canvas->GetScaler();
    LOGFONTW wanted{};
    wanted.lfHeight = IsScaled() && scaler ? MetersToLogical(canvas) : GetLogicalHeight(canvas);
    wanted.lfEscapement = m_Angle;
    if (scaler && scaler->IsAddAngleToFontAngle()) {
        const std::int32_t viewAngle = RoundToLong(scaler->GetRotationAngle() * 10.0);
        wanted.lfEscapement = SaturateToLong(std::int64_t{m_Angle} + viewAngle);
    }
    wanted.lfWeight = GetBold() ? FW_BOLD : FW_NORMAL;
    wanted.lfItalic = GetItalic();
    wanted.lfUnderline = GetUnderlined();
    wanted.lfStrikeOut = GetStrikedOut();
    CopyFaceName(GetName(), wanted.lfFaceName);
    return wanted;
}

HFONT CFont::Make(CCanvas* canvas) {
    if (canvas) {
        const LOGFONTW wanted = Describe(canvas);
        return ::CreateFontIndirectW(&wanted);
    }
    const CScreenDevice screen;
    CCanvas measured;
    measured.AttachToDevice(screen.Get());
    const LOGFONTW wanted = Describe(&measured);
    return ::CreateFontIndirectW(&wanted);
}

HFONT CFont::GetHandle(CCanvas* canvas, bool replace) {
    if (!(m_fInvalid & InvalidHandle)) return m_Handle;
    CMadeHandle<HFONT> font(Make(canvas));
    if (!font.Get()) {
        RunError(ErrorFailed, u"Can't create font handle <zul::CFont::GetHandle()>", this);
        return m_Handle;
    }
    if (m_Handle && !canvas) {
        if (!replace) CClient::RaiseException(this, u"internal.Font", u"Handle in use");
        // Whoever was given the old handle may still use it, so it lives as long as the font.
        m_Superseded.push_back(m_Handle);
        m_Handle = nullptr;
    }
    Adopt(font.Take(), canvas);
    return m_Handle;
}

/// Takes a new device font over: selects it where there is a device, keeps what the device had at first and
/// deletes what the font had.
void CFont::Adopt(HFONT font, CCanvas* canvas) {
    ++g_Counts.Made;
    HFONT previous = nullptr;
    if (canvas && canvas->GetHandle()) {
        previous = static_cast<HFONT>(::SelectObject(canvas->GetHandle(), font));
        if (!m_DefaultFont) {
            m_DefaultFont = previous;
        } else {
            DeleteCounted(previous);
        }
    }
    if (m_Handle != previous) DeleteCounted(m_Handle);
    m_Handle = font;
    m_fInvalid &= ~InvalidHandle;
}

void CFont::Renew(CCanvas* canvas) {
    if (!canvas) return;
    if (m_fInvalid & InvalidHandle) GetHandle(canvas);
    if ((m_fInvalid & InvalidColor) && canvas->GetHandle()) {
        ::SetTextColor(canvas->GetHandle(),
                       static_cast<COLORREF>(canvas->IsBlackLinesMode() ? 0 : m_TextColor));
        m_fInvalid &= ~InvalidColor;
    }
}

void CFont::Release(CCanvas* canvas) {
    if (!canvas || !canvas->GetHandle() || !m_DefaultFont) return;
    const HFONT selected = static_cast<HFONT>(::SelectObject(canvas->GetHandle(), m_DefaultFont));
    DeleteCounted(selected);
    // The font's own comes out of the device, unless that is gone already.
    if (m_Handle != selected) DeleteCounted(m_Handle);
    m_Handle = m_DefaultFont = nullptr;
    m_fInvalid = InvalidAll;
}

// --- messages and persistence ---

bool CFont::DoMessage(CMessage* message) {
    if (!message) return false;
    switch (message->GetCode()) {
        case GetNameMessage:
            message->SetResult(CMessage::FromPointer(GetName()));
            return true;
        case SetNameMessage: {
            const auto* name = CMessage::ToPointer<const char16_t>(message->GetParam1());
            if (!name) return CAnyObject::DoMessage(message);
            SetName(name);
            return true;
        }
        default:
            return AnswerSetting(GetSettings(), *this, *message) || CAnyObject::DoMessage(message);
    }
}

void CFont::ImportParameters(zulsys::CTextFile& file) {
    ImportBlock(*this, GetSettings(), file);
}

void CFont::ImportParametersEx(CAnyObject* element) {
    ImportElement(*this, GetSettings(), element);
}

void CFont::ExportParameters(zulsys::CTextFile& file) const {
    ExportBlock(*this, GetSettings(), file);
}

void CFont::ExportParametersEx(zulsys::CTextFile& file) const {
    ExportElement(*this, GetSettings(), file);
}

bool CFont::ObjectToBuffer(CStream* stream) {
    if (!stream) return false;
    m_Name.ObjectToBuffer(stream);
    WriteFields(*stream, m_Alignment, m_Style, m_TextColor, m_OreolColor, m_Height, m_Angle);
    return CAnyObject::ObjectToBuffer(stream);
}

bool CFont::ObjectFromBuffer(CStream* stream) {
    if (!stream) return false;
    m_Name.ObjectFromBuffer(stream);
    ReadFields(*stream, m_Alignment, m_Style, m_TextColor, m_OreolColor, m_Height, m_Angle);
    Invalidate();
    return CAnyObject::ObjectFromBuffer(stream);
}

std::uint32_t CFont::GetPreferredSize() {
    return m_Name.GetPreferredSize() + 24;
}

}  // namespace zul
