#include "zul/tools/background.h"

#include "zul/canvas/canvas.h"
#include "zul/kernel/message.h"
#include "zul/kernel/stream.h"
#include "zul/tools/formats.h"
#include "zul/tools/settings.h"

namespace zul {
namespace {

constexpr int DeviceModes[] = {TRANSPARENT, OPAQUE};
constexpr int DeviceRops[] = {R2_COPYPEN, R2_XORPEN};

}  // namespace

const TSettings& CBackground::GetSettings() {
    static constexpr TSetting Rows[] = {
        {10059, u"Mode", u"mode", TSettingForm::Number, 0,
         SettingAccess<&CBackground::GetMode, &CBackground::SetMode>},
        {10057, u"Color", u"color", TSettingForm::Color, 1,
         SettingAccess<&CBackground::GetColor, &CBackground::SetColor>},
        {10061, u"Rop", u"rop", TSettingForm::Number, 2,
         SettingAccess<&CBackground::GetRop, &CBackground::SetRop>},
    };
    static constexpr TSettings settings(u"Background", Rows);
    return settings;
}

void CBackground::Default() {
    m_BkMode = ModeTransparent;
    m_BkColor = 0;
    m_Rop = RopCopy;
    m_fInvalid = InvalidAll;
}

void CBackground::SetColor(std::int32_t color) {
    if (StoreSetting(*this, m_BkColor, color)) m_fInvalid |= InvalidColor;
}

void CBackground::SetMode(std::int32_t mode) {
    if (StoreSetting(*this, m_BkMode, mode)) m_fInvalid |= InvalidMode;
}

void CBackground::SetRop(std::int32_t rop) {
    if (StoreSetting(*this, m_Rop, rop)) m_fInvalid |= InvalidRop;
}

void CBackground::ApplyBackground(const CBackground* other) {
    if (!other || other == this) return;
    SetColor(other->m_BkColor);
    SetMode(other->m_BkMode);
    SetRop(other->m_Rop);
}

void CBackground::Set(CCanvas* canvas) {
    if (!canvas) return;
    const HDC device = canvas->GetHandle();
    if (m_fInvalid & InvalidColor) ::SetBkColor(device, static_cast<COLORREF>(m_BkColor));
    if ((m_fInvalid & InvalidMode) && (m_BkMode == ModeTransparent || m_BkMode == ModeOpaque)) {
        ::SetBkMode(device, DeviceModes[m_BkMode]);
    }
    if ((m_fInvalid & InvalidRop) && (m_Rop == RopCopy || m_Rop == RopXor)) {
        ::SetROP2(device, DeviceRops[m_Rop]);
    }
    m_fInvalid &= ~InvalidAll;
}

bool CBackground::DoMessage(CMessage* message) {
    if (!message) return false;
    if (message->GetCode() == InvalidateMessage) {
        m_fInvalid |= WrapToLong(message->GetParam1());
        return true;
    }
    return AnswerSetting(GetSettings(), *this, *message) || CAnyObject::DoMessage(message);
}

void CBackground::ImportParameters(zulsys::CTextFile& file) {
    ImportBlock(*this, GetSettings(), file);
}

void CBackground::ImportParametersEx(CAnyObject* element) {
    ImportElement(*this, GetSettings(), element);
}

void CBackground::ExportParameters(zulsys::CTextFile& file) const {
    ExportBlock(*this, GetSettings(), file);
}

void CBackground::ExportParametersEx(zulsys::CTextFile& file) const {
    ExportElement(*this, GetSettings(), file);
}

bool CBackground::ObjectToBuffer(CStream* stream) {
    if (!stream) return false;
    WriteFields(*stream, m_BkMode, m_BkColor, m_Rop);
    return CAnyObject::ObjectToBuffer(stream);
}

bool CBackground::ObjectFromBuffer(CStream* stream) {
    if (!stream) return false;
    ReadFields(*stream, m_BkMode, m_BkColor, m_Rop);
    m_fInvalid = InvalidAll;
    return CAnyObject::ObjectFromBuffer(stream);
}

std::uint32_t CBackground::GetPreferredSize() {
    return 12;
}

}  // namespace zul
