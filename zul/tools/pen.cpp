#include "zul/tools/pen.h"

#include "zul/canvas/canvas.h"
#include "zul/kernel/message.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/numeric.h"
#include "zul/kernel/stream.h"
#include "zul/tools/device_guards.h"
#include "zul/tools/formats.h"
#include "zul/tools/pen_styles.h"
#include "zul/tools/settings.h"

namespace zul {
namespace {

using penstyles::TPenRecipe;
using CMadePen = CMadeHandle<HPEN>;

THandleCounts g_Counts;

HPEN CreateColoredPen(int style, std::int32_t width, std::int32_t color) {
    return ::CreatePen(style, width, static_cast<COLORREF>(color));
}

void DeleteCountedPen(HPEN pen) {
    if (pen && ::DeleteObject(pen)) ++g_Counts.Deleted;
}

HPEN CreateFromRecipe(const TPenRecipe& recipe, std::int32_t width, const CPen& pen) {
    const std::int32_t wide = SaturateToLong(std::int64_t{width} * recipe.WidthFactor + recipe.WidthAddend);
    switch (recipe.Kind) {
        case TPenRecipe::Absent:
            return nullptr;
        case TPenRecipe::NullLike:
            return CreateColoredPen(PS_NULL, wide, pen.GetColor());
        case TPenRecipe::NullThin:
            return CreateColoredPen(PS_NULL, 1, 0);
        case TPenRecipe::StockWhite:
            return static_cast<HPEN>(::GetStockObject(WHITE_PEN));
        case TPenRecipe::SolidMain:
            return CreateColoredPen(PS_SOLID, wide, pen.GetColor());
        case TPenRecipe::SolidExtra:
            return CreateColoredPen(PS_SOLID, wide, pen.GetExtraColor());
    }
    return nullptr;
}

/// Holds a flag at a value; false afterwards, also when an error handler throws.
class CFlagScope {
public:
    CFlagScope(bool& flag, bool value) : m_Flag(flag) { m_Flag = value; }
    ~CFlagScope() { m_Flag = false; }
    CFlagScope(const CFlagScope&) = delete;
    CFlagScope& operator=(const CFlagScope&) = delete;

private:
    bool& m_Flag;
};

}  // namespace

const TSettings& CPen::GetSettings() {
    static constexpr TSetting Rows[] = {
        {10031, u"Type", u"type", TSettingForm::Number, 0, SettingAccess<&CPen::GetType, &CPen::SetType>},
        {10029, u"Style", u"style", TSettingForm::Number, 1, SettingAccess<&CPen::GetStyle, &CPen::SetStyle>},
        {10019, u"Color", u"color", TSettingForm::Color, 3, SettingAccess<&CPen::GetColor, &CPen::SetColor>},
        {10033, u"Width", u"width", TSettingForm::Number, 2, SettingAccess<&CPen::GetWidth, &CPen::SetWidth>},
        {10023, u"EndType", u"end_type", TSettingForm::Number, 4,
         SettingAccess<&CPen::GetEndType, &CPen::SetEndType>},
        {10021, u"DashLength", u"dash_length", TSettingForm::Number, 5,
         SettingAccess<&CPen::GetDashLength, &CPen::SetDashLength>},
        {10025, u"ExtraColor", u"extra_color", TSettingForm::Color, 6,
         SettingAccess<&CPen::GetExtraColor, &CPen::SetExtraColor>},
        {10027, u"IsScaled", u"is_scaled", TSettingForm::Flag, 7,
         SettingAccess<&CPen::IsScaled, &CPen::SetScaled>},
    };
    static constexpr TSettings settings(u"Pen", Rows);
    return settings;
}

CPen::~CPen() {
    DeleteCountedPen(m_Handle);
    DeleteCountedPen(m_ExtraHandle1);
    DeleteCountedPen(m_ExtraHandle2);
}

bool CPen::IsEqualSettings(const CPen* other) const {
    return other && m_Type == other->m_Type && m_Style == other->m_Style && m_EndType == other->m_EndType &&
           m_Width == other->m_Width && m_Color == other->m_Color && m_DashLength == other->m_DashLength &&
           m_ExtraColor == other->m_ExtraColor && m_fScaled == other->m_fScaled;
}

std::int32_t CPen::GetExtendedStylesCount() {
    return penstyles::Count;
}

bool CPen::NeedExtraColor(TPenStyle style) {
    return penstyles::Exists(style) && penstyles::Get(style).ExtraColor;
}

bool CPen::NeedDashLength(TPenStyle style) {
    return penstyles::Exists(style) && penstyles::Get(style).DashLength;
}

bool CPen::NeedEndings(TPenStyle style) {
    // The index against the whole word, not against a flag: kept on purpose, the dialogs rely on the answer.
    return (penstyles::GetWord(style) & static_cast<std::uint32_t>(style)) != 0;
}

bool CPen::IsEnabledEndings() const {
    if (m_Type < PenExtended) return true;
    return (penstyles::GetWord(m_Style) & penstyles::EndingsAllowed) != 0;
}

const THandleCounts& CPen::GetHandleCounts() {
    return g_Counts;
}

void CPen::Create(TPenType type, TPenStyle style, std::int32_t width, std::int32_t color,
                  std::int32_t endType, std::int32_t dashLength, std::int32_t extraColor) {
    SetType(type);
    SetStyle(style);
    SetWidth(width);
    SetColor(color);
    SetEndType(endType);
    SetDashLength(dashLength);
    SetExtraColor(extraColor);
    SetScaled(false);
    m_fInvalid = true;
}

void CPen::CreateXor(std::int32_t width) {
    SetType(PenSolid);
    SetWidth(width);
    SetColor(0xFFFFFF);
    m_fInvalid = true;
}

void CPen::Default() {
    SetType(PenSolid);
    SetEndType(0);
    SetColor(0);
    SetWidth(1);
    SetScaled(false);
}

void CPen::SetType(std::int32_t type) {
    if (StoreSetting(*this, m_Type, type)) m_fInvalid = true;
}

void CPen::SetStyle(std::int32_t style) {
    if (StoreSetting(*this, m_Style, style)) m_fInvalid = true;
}

void CPen::SetEndType(std::int32_t endType) {
    StoreSetting(*this, m_EndType, endType);
}

void CPen::SetWidth(std::int32_t width) {
    if (StoreSetting(*this, m_Width, width)) m_fInvalid = true;
}

void CPen::SetColor(std::int32_t color) {
    if (StoreSetting(*this, m_Color, color)) m_fInvalid = true;
}

void CPen::SetExtraColor(std::int32_t color) {
    if (StoreSetting(*this, m_ExtraColor, color) && m_Type == PenExtended) m_fInvalid = true;
}

void CPen::SetDashLength(std::int32_t length) {
    if (StoreSetting(*this, m_DashLength, length) && m_Type == PenExtended) m_fInvalid = true;
}

void CPen::SetScaled(bool scaled) {
    if (m_fScaled == scaled) return;
    CModificator bracket(this, m_fScaled, scaled);
    m_fScaled = scaled;
}

void CPen::ApplyPen(const CPen* other) {
    if (!other || other == this) return;
    SetColor(other->m_Color);
    SetDashLength(other->m_DashLength);
    SetEndType(other->m_EndType);
    SetExtraColor(other->m_ExtraColor);
    SetStyle(other->m_Style);
    SetType(other->m_Type);
    SetScaled(other->m_fScaled);
    SetWidth(other->m_Width);
}

std::int32_t CPen::CalculatePixelWidth(CCanvas* canvas, std::int32_t width) {
    if (!m_fScaled) return width;
    const CScaler* scaler = canvas ? canvas->GetScaler() : nullptr;
    m_MeterToPixelFactor = scaler ? scaler->GetScreenToVisible() / scaler->GetMetresInUnit() : 1.0;
    return GetPixelValue(width);
}

std::int32_t CPen::GetPixelValue(std::int32_t value) const {
    return RoundToLong(m_MeterToPixelFactor * value);
}

void CPen::Make(CCanvas* canvas) {
    if (!canvas) return;
    std::int32_t width = CalculatePixelWidth(canvas, m_Width);
    if (width == 0) width = 1;
    m_Device = canvas->GetHandle();
    if (m_Type == PenExtended) {
        CFlagScope black(m_fBlackLines, canvas->IsBlackLinesMode());
        if (ValidateKelvornPen(width)) return;
        SetType(PenSolid);
    }
    CFlagScope black(m_fBlackLines, canvas->IsBlackLinesMode());
    CMadePen pen(m_Type == PenNone     ? CreateColoredPen(PS_NULL, 0, 0)
                 : m_Type == PenDashed ? CreateColoredPen(PS_DASH, width, GetColor())
                                       : CreateColoredPen(PS_SOLID, width, GetColor()));
    if (!pen.Get()) {
        RunError(ErrorFailed, u"Can't create pen handle <zul::CPen::Validate()>", this);
        return;
    }
    Adopt(pen.Take(), nullptr, nullptr);
}

bool CPen::ValidateKelvornPen(std::int32_t width) {
    if (!penstyles::Exists(m_Style)) return false;
    const penstyles::TStyle& style = penstyles::Get(m_Style);
    if (style.Main.Kind == TPenRecipe::Absent) return false;

    CMadePen main(CreateFromRecipe(style.Main, width, *this));
    CMadePen extra1(CreateFromRecipe(style.Extra1, width, *this));
    CMadePen extra2(CreateFromRecipe(style.Extra2, width, *this));
    const std::uint32_t word = penstyles::GetWord(m_Style);
    bool complete = main.Get() != nullptr;
    if (word & penstyles::OneExtraPen) {
        complete = complete && (extra1.Get() || extra2.Get());
    } else if (word & penstyles::TwoExtraPens) {
        complete = complete && extra1.Get() && extra2.Get();
    }
    if (!complete) {
        RunError(ErrorFailed, u"Can't create pen handle <zul::CPen::ValidateKelvornPen()>", this);
        // True on purpose: a pen that only failed to get its handles is not to become a solid one.
        return true;
    }
    m_MadeWidth = width;
    Adopt(main.Take(), extra1.Take(), extra2.Take());
    return true;
}

/// Selects the new main pen, keeps what the device had at first and deletes what the pen had.
void CPen::Adopt(HPEN main, HPEN extra1, HPEN extra2) {
    const HPEN previous = static_cast<HPEN>(::SelectObject(m_Device, main));
    for (const HPEN pen : {main, extra1, extra2})
        if (pen && pen != previous) ++g_Counts.Made;  // the stock pen may follow itself
    if (!m_DefaultPen) {
        m_DefaultPen = previous;
    } else if (previous != main) {
        DeleteCountedPen(previous);
    }
    if (m_Handle != previous && m_Handle != main) DeleteCountedPen(m_Handle);
    DeleteCountedPen(m_ExtraHandle1);
    DeleteCountedPen(m_ExtraHandle2);
    m_Handle = main;
    m_ExtraHandle1 = extra1;
    m_ExtraHandle2 = extra2;
    m_fInvalid = false;
}

void CPen::Release(CCanvas* canvas) {
    if (!canvas || !canvas->GetHandle() || !m_DefaultPen) return;
    const HPEN selected = static_cast<HPEN>(::SelectObject(canvas->GetHandle(), m_DefaultPen));
    DeleteCountedPen(selected);
    // The main pen comes out of the device, unless that is gone already.
    for (const HPEN pen : {m_Handle, m_ExtraHandle1, m_ExtraHandle2})
        if (pen != selected) DeleteCountedPen(pen);
    m_Handle = m_ExtraHandle1 = m_ExtraHandle2 = m_DefaultPen = nullptr;
    m_Device = nullptr;
    m_fInvalid = true;
}

bool CPen::DoMessage(CMessage* message) {
    if (!message) return false;
    if (message->GetCode() == InvalidateMessage) {
        m_fInvalid = true;
        return true;
    }
    return AnswerSetting(GetSettings(), *this, *message) || CAnyObject::DoMessage(message);
}

void CPen::ImportParameters(zulsys::CTextFile& file) {
    ImportBlock(*this, GetSettings(), file);
}

void CPen::ImportParametersEx(CAnyObject* element) {
    ImportElement(*this, GetSettings(), element);
}

void CPen::ExportParameters(zulsys::CTextFile& file) const {
    ExportBlock(*this, GetSettings(), file);
}

void CPen::ExportParametersEx(zulsys::CTextFile& file) const {
    ExportElement(*this, GetSettings(), file);
}

bool CPen::ObjectToBuffer(CStream* stream) {
    if (!stream) return false;
    WriteFields(*stream, m_Type, m_Style, m_EndType, m_Width, m_DashLength, m_Color, m_ExtraColor,
                static_cast<std::uint8_t>(m_fScaled));
    return CAnyObject::ObjectToBuffer(stream);
}

bool CPen::ObjectFromBuffer(CStream* stream) {
    if (!stream) return false;
    std::uint8_t scaled = m_fScaled;
    ReadFields(*stream, m_Type, m_Style, m_EndType, m_Width, m_DashLength, m_Color, m_ExtraColor, scaled);
    m_fScaled = scaled != 0;
    m_fInvalid = true;
    return CAnyObject::ObjectFromBuffer(stream);
}

std::uint32_t CPen::GetPreferredSize() {
    return 29;
}

}  // namespace zul
