#include "zul/tools/font.h"

#include "zul/canvas/canvas.h"
#include "zul/kernel/message.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/stream.h"
#include "zul/tools/settings.h"

namespace zul {
namespace {

constexpr char16_t DefaultName[] = u"Microsoft Sans Serif";

constexpr TSettingMessages<CFont> Messages[] = {
    {10043, &CFont::GetAngle, &CFont::SetAngle},   {10045, &CFont::GetAlignment, &CFont::SetAlignment},
    {10047, &CFont::GetHeight, &CFont::SetHeight}, {10051, &CFont::GetOreolColor, &CFont::SetOreolColor},
    {10053, &CFont::GetStyle, &CFont::SetStyle},   {10055, &CFont::GetTextColor, &CFont::SetTextColor},
};
constexpr std::int32_t GetNameMessage = 10049;
constexpr std::int32_t SetNameMessage = 10050;

}  // namespace

CFont::~CFont() {
    if (m_Handle) ::DeleteObject(m_Handle);
}

const char16_t* CFont::GetName() {
    if (m_Name.IsEmpty()) SetName(DefaultName);
    return m_Name.GetBuffer();
}

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

void CFont::Invalidate() {
    m_fInvalid |= InvalidAll;
}

void CFont::Release(CCanvas* canvas) {
    if (!canvas || !canvas->GetHandle() || !m_DefaultFont) return;
    if (const HGDIOBJ selected = ::SelectObject(canvas->GetHandle(), m_DefaultFont)) ::DeleteObject(selected);
    m_Handle = m_DefaultFont = nullptr;
    m_fInvalid = InvalidAll;
}

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
            return AnswerSetting(Messages, *this, *message) || CAnyObject::DoMessage(message);
    }
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
