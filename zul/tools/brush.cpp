#include "zul/tools/brush.h"

#include "zul/canvas/canvas.h"
#include "zul/kernel/client.h"
#include "zul/kernel/message.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/stream.h"
#include "zul/raster/bitmap.h"
#include "zul/tools/device_guards.h"
#include "zul/tools/formats.h"
#include "zul/tools/settings.h"

namespace zul {
namespace {

using CMadeBrush = CMadeHandle<HBRUSH>;

constexpr std::int32_t GetOriginMessage = 10037;
constexpr std::int32_t SetOriginMessage = 10038;

// Only the first two carry the flag, as the callers of the older platform passed them.
constexpr int SysColorIndices[] = {
    COLOR_WINDOW | SYS_COLOR_INDEX_FLAG,
    COLOR_BTNFACE | SYS_COLOR_INDEX_FLAG,
    COLOR_BACKGROUND,
    COLOR_ACTIVECAPTION,
    COLOR_HIGHLIGHT,
    COLOR_MENUTEXT,
};

THandleCounts g_Counts;

}  // namespace

const TSettings& CBrush::GetSettings() {
    static constexpr TSetting Rows[] = {
        {10041, u"Type", u"type", TSettingForm::Number, 0, SettingAccess<&CBrush::GetType, &CBrush::SetType>},
        {10039, u"Style", u"style", TSettingForm::Number, 1,
         SettingAccess<&CBrush::GetStyle, &CBrush::SetStyle>},
        {10035, u"Color", u"color", TSettingForm::Color, 2,
         SettingAccess<&CBrush::GetColor, &CBrush::SetColor>},
    };
    static constexpr TSettings settings(u"Brush", Rows);
    return settings;
}

CBrush::~CBrush() {
    Delete(m_Handle);
    for (const HBRUSH brush : m_Superseded)
        Delete(brush);
}

CBitmap* CBrush::GetPattern() {
    return m_Pattern.Get();
}

void CBrush::GetOrigin(std::int32_t& x, std::int32_t& y) const {
    x = m_OriginX;
    y = m_OriginY;
}

bool CBrush::IsEqualSettings(const CBrush* other) const {
    return other && m_Type == other->m_Type && m_Style == other->m_Style && m_Color == other->m_Color;
}

int CBrush::GetSysColorIndex(TSysType kind) {
    const bool known = kind >= SysWindow && kind <= SysMenuText;
    return known ? SysColorIndices[kind] : -1;
}

const THandleCounts& CBrush::GetHandleCounts() {
    return g_Counts;
}

void CBrush::Create(TBrushType type, std::int32_t color, TBrushStyle style) {
    SetType(type);
    SetStyle(style);
    SetColor(color);
    m_fInvalid = InvalidHandle;
}

void CBrush::CreateXor() {
    SetType(BrushSolid);
    SetColor(0xFFFFFF);
    m_fInvalid = InvalidHandle;
}

void CBrush::Default() {
    SetType(BrushSolid);
    SetColor(0xFFFFFF);
}

void CBrush::CreateSysColorBrush(TSysType kind, CCanvas* canvas) {
    const int index = GetSysColorIndex(kind);
    if (index < 0) return;
    const HBRUSH brush = ::GetSysColorBrush(index);
    Adopt(brush, canvas);
    m_Type = BrushSolid;
    m_Color = static_cast<std::int32_t>(::GetSysColor(index));
}

void CBrush::SetColor(std::int32_t color) {
    if (StoreSetting(*this, m_Color, color)) m_fInvalid |= InvalidHandle;
}

void CBrush::SetStyle(std::int32_t style) {
    if (StoreSetting(*this, m_Style, style)) m_fInvalid |= InvalidHandle;
}

void CBrush::SetType(std::int32_t type) {
    if (StoreSetting(*this, m_Type, type)) m_fInvalid |= InvalidHandle;
}

void CBrush::SetPattern(CBitmap* pattern) {
    if (m_Pattern.IsEqual(pattern)) return;
    CModificator bracket(this);
    m_Pattern.DoSetInstance(pattern);
    m_fInvalid |= InvalidHandle;
}

void CBrush::SetOrigin(std::int32_t x, std::int32_t y) {
    if (m_OriginX == x && m_OriginY == y) return;
    m_OriginX = x;
    m_OriginY = y;
    m_fInvalid |= InvalidOrigin;
}

void CBrush::ApplyBrush(CBrush* other, bool withOrigin) {
    if (!other || other == this) return;
    if (withOrigin) SetOrigin(other->m_OriginX, other->m_OriginY);
    SetColor(other->m_Color);
    SetStyle(other->m_Style);
    SetType(other->m_Type);
    SetPattern(other->GetPattern());
}

HBRUSH CBrush::Make(CCanvas* canvas) {
    const bool nothing = (canvas && canvas->IsLinesOnlyMode()) || m_Type == BrushNone ||
                         (m_Type == BrushPattern && !m_Pattern.IsExist());
    if (nothing) return static_cast<HBRUSH>(::GetStockObject(NULL_BRUSH));
    if (m_Type == BrushPattern) return ::CreatePatternBrush(m_Pattern->GetHandle());
    return ::CreateSolidBrush(static_cast<COLORREF>(m_Color));
}

HBRUSH CBrush::GetHandle(CCanvas* canvas) {
    if (!(m_fInvalid & InvalidHandle)) return m_Handle;
    CMadeBrush brush(Make(canvas));
    if (!brush.Get()) {
        RunError(ErrorFailed, u"Can't create brush handle <zul::CBrush::Validate()>", this);
        return m_Handle;
    }
    if (m_Handle && !canvas) {
        CClient::RaiseException(this, u"internal.Brush", u"Handle is in use");
        // Whoever was given the old handle may still use it, so it lives as long as the brush.
        m_Superseded.push_back(m_Handle);
        m_Handle = nullptr;
    }
    Adopt(brush.Take(), canvas);
    return m_Handle;
}

/// Takes a new device brush over: selects it where there is a device, keeps what the device had at first and
/// deletes what the brush had.
void CBrush::Adopt(HBRUSH brush, CCanvas* canvas) {
    if (brush) ++g_Counts.Made;
    HBRUSH previous = nullptr;
    if (canvas && canvas->GetHandle()) {
        previous = static_cast<HBRUSH>(::SelectObject(canvas->GetHandle(), brush));
        if (!m_DefaultBrush) {
            m_DefaultBrush = previous;
        } else if (previous != brush) {
            Delete(previous);
        }
    }
    if (m_Handle != previous && m_Handle != brush) Delete(m_Handle);
    m_Handle = brush;
    m_fInvalid &= ~InvalidHandle;
}

void CBrush::Delete(HBRUSH brush) {
    if (brush && ::DeleteObject(brush)) ++g_Counts.Deleted;
}

void CBrush::Renew(CCanvas* canvas) {
    if (!canvas) return;
    if (m_fInvalid & InvalidHandle) GetHandle(canvas);
    if ((m_fInvalid & InvalidOrigin) && canvas->GetHandle()) {
        ::SetBrushOrgEx(canvas->GetHandle(), m_OriginX, m_OriginY, nullptr);
        m_fInvalid &= ~InvalidOrigin;
    }
}

void CBrush::Release(CCanvas* canvas) {
    if (!canvas || !m_DefaultBrush) return;
    const HBRUSH selected = static_cast<HBRUSH>(::SelectObject(canvas->GetHandle(), m_DefaultBrush));
    Delete(selected);
    // The brush's own comes out of the device, unless that is gone already.
    if (m_Handle != selected) Delete(m_Handle);
    m_Handle = m_DefaultBrush = nullptr;
    m_fInvalid = InvalidAll;
}

bool CBrush::DoMessage(CMessage* message) {
    if (!message) return false;
    switch (message->GetCode()) {
        case GetOriginMessage:
            message->SetResult(static_cast<std::int64_t>(
                static_cast<std::uint64_t>(static_cast<std::uint32_t>(m_OriginY)) << 32 |
                static_cast<std::uint32_t>(m_OriginX)));
            return true;
        case SetOriginMessage:
            // Stored without a mark on purpose: callers send it with the device's origin already set.
            m_OriginX = WrapToLong(message->GetParam1());
            m_OriginY = WrapToLong(message->GetParam2());
            return true;
        case InvalidateMessage:
            m_fInvalid |= WrapToLong(message->GetParam1());
            return true;
        default:
            return AnswerSetting(GetSettings(), *this, *message) || CAnyObject::DoMessage(message);
    }
}

void CBrush::ImportParameters(zulsys::CTextFile& file) {
    ImportBlock(*this, GetSettings(), file);
}

void CBrush::ImportParametersEx(CAnyObject* element) {
    ImportElement(*this, GetSettings(), element);
}

void CBrush::ExportParameters(zulsys::CTextFile& file) const {
    ExportBlock(*this, GetSettings(), file);
}

void CBrush::ExportParametersEx(zulsys::CTextFile& file) const {
    ExportElement(*this, GetSettings(), file);
}

bool CBrush::ObjectToBuffer(CStream* stream) {
    if (!stream) return false;
    WriteFields(*stream, m_Color, m_Style, m_Type);
    m_Pattern.ObjectToBuffer(stream);
    return CAnyObject::ObjectToBuffer(stream);
}

bool CBrush::ObjectFromBuffer(CStream* stream) {
    if (!stream) return false;
    ReadFields(*stream, m_Color, m_Style, m_Type);
    m_Pattern.ObjectFromBuffer(stream);
    m_fInvalid = InvalidAll;
    return CAnyObject::ObjectFromBuffer(stream);
}

std::uint32_t CBrush::GetPreferredSize() {
    return 20;
}

}  // namespace zul
