#include "zul/kernel/domain.h"

#include <charconv>
#include <optional>
#include <string_view>

#include "zul/kernel/modificator.h"
#include "zul/kernel/numeric.h"
#include "zul/kernel/stream.h"

namespace zul {
namespace {

/// The whole text as a number; nothing when anything else is in it.
template <class Number>
std::optional<Number> Parse(const CString& text) {
    std::string_view bytes = text.GetBufferAnsi();
    const auto startsNumber = [&bytes] {
        return !bytes.empty() && (bytes.front() == '.' || (bytes.front() >= '0' && bytes.front() <= '9'));
    };
    if (!bytes.empty() && bytes.front() == '+') {
        bytes.remove_prefix(1);
        if (!startsNumber()) return std::nullopt;
    }
    const std::string_view number = bytes;
    if (!bytes.empty() && bytes.front() == '-') bytes.remove_prefix(1);
    if (!startsNumber()) return std::nullopt;  // keeps out the words for infinity and the like

    Number value{};
    const char* const end = number.data() + number.size();
    const auto parsed = std::from_chars(number.data(), end, value);
    if (parsed.ec != std::errc() || parsed.ptr != end) return std::nullopt;
    return value;
}

/// The number behind a value, unwrapped; null when it is no number.
CAnyDomain* NumberIn(CAnyDomain* value) {
    CAnyDomain* const inner = value != nullptr ? value->GetDomainValue() : nullptr;
    const bool isNumber =
        dynamic_cast<CFloat*>(inner) != nullptr || dynamic_cast<CInteger*>(inner) != nullptr;
    return isNumber ? inner : nullptr;
}

template <class Number>
std::int32_t Order(Number first, Number second) {
    return first < second ? -1 : second < first ? 1 : 0;
}

}  // namespace

// --- CAnyDomain ---

bool CAnyDomain::GetInscription(CString& text) {
    return ToString(text, nullptr);
}
std::int32_t CAnyDomain::Compare(CAnyDomain*) {
    return 0;
}
CAnyDomain* CAnyDomain::GetDomainValue() {
    return this;
}
void CAnyDomain::SetValue(CAnyDomain*) {}
bool CAnyDomain::IsValidString(const CString&, const char16_t*) {
    return true;
}
bool CAnyDomain::ToString(CString&, const char16_t*) {
    return false;
}
void CAnyDomain::FromString(const CString&, const char16_t*) {}
double CAnyDomain::GetDoubleValue() {
    return 0.0;
}
std::int64_t CAnyDomain::GetIntegerValue() {
    return 0;
}

// --- CFloat ---

void CFloat::SetValue(double value) {
    if (m_Value == value) return;
    CModificator modificator(this, m_Value, value);
    m_Value = value;
}

bool CFloat::ObjectToBuffer(CStream* stream) {
    if (stream == nullptr) return false;
    return stream->Write(&m_Value, sizeof m_Value) && CAnyDomain::ObjectToBuffer(stream);
}

bool CFloat::ObjectFromBuffer(CStream* stream) {
    if (stream == nullptr) return false;
    return stream->Read(&m_Value, sizeof m_Value) && CAnyDomain::ObjectFromBuffer(stream);
}

std::int32_t CFloat::Compare(CAnyDomain* other) {
    CAnyDomain* const number = NumberIn(other);
    return number != nullptr ? Order(m_Value, number->GetDoubleValue()) : 0;
}

void CFloat::SetValue(CAnyDomain* other) {
    if (CAnyDomain* number = NumberIn(other)) SetValue(number->GetDoubleValue());
}

bool CFloat::IsValidString(const CString& text, const char16_t*) {
    return Parse<double>(text).has_value();
}

bool CFloat::ToString(CString& text, const char16_t* format) {
    text = CString::FormatNumber(format, m_Value);
    return true;
}

void CFloat::FromString(const CString& text, const char16_t*) {
    if (const auto value = Parse<double>(text)) SetValue(*value);
}

std::int64_t CFloat::GetIntegerValue() {
    return ToLong64(m_Value);
}

// --- CInteger ---

void CInteger::SetValue(std::int64_t value) {
    if (m_Value == value) return;
    CModificator modificator(this, static_cast<double>(m_Value), static_cast<double>(value));
    m_Value = value;
}

bool CInteger::ObjectToBuffer(CStream* stream) {
    if (stream == nullptr) return false;
    return stream->Write(&m_Value, sizeof m_Value) && CAnyDomain::ObjectToBuffer(stream);
}

bool CInteger::ObjectFromBuffer(CStream* stream) {
    if (stream == nullptr) return false;
    return stream->Read(&m_Value, sizeof m_Value) && CAnyDomain::ObjectFromBuffer(stream);
}

std::int32_t CInteger::Compare(CAnyDomain* other) {
    CAnyDomain* const number = NumberIn(other);
    if (number == nullptr) return 0;
    // Two integers are compared as such: a double does not tell large neighbours apart.
    if (dynamic_cast<CInteger*>(number) != nullptr) return Order(m_Value, number->GetIntegerValue());
    return Order(GetDoubleValue(), number->GetDoubleValue());
}

void CInteger::SetValue(CAnyDomain* other) {
    if (CAnyDomain* number = NumberIn(other)) SetValue(number->GetIntegerValue());
}

bool CInteger::IsValidString(const CString& text, const char16_t*) {
    return Parse<std::int64_t>(text).has_value();
}

bool CInteger::ToString(CString& text, const char16_t*) {
    text = CString::Format(u"%d", m_Value);
    return true;
}

void CInteger::FromString(const CString& text, const char16_t*) {
    if (const auto value = Parse<std::int64_t>(text)) SetValue(*value);
}

}  // namespace zul
