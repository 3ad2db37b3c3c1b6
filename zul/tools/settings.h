/// \file
/// What the drawing tools share: settings that record their changes, stored fields, and one table of a tool's
/// settings from which its messages, parameter blocks and XML elements are made.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <type_traits>

#include "zul/kernel/any_object.h"
#include "zul/kernel/message.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/numeric.h"
#include "zul/kernel/stream.h"
#include "zul/kernel/string.h"

namespace zul {

/// Stores \p value under one modification bracket. An equal value changes nothing and gives false.
inline bool StoreSetting(CAnyObject& owner, std::int32_t& field, std::int32_t value) {
    if (field == value) return false;
    CModificator bracket(&owner, field, value);
    field = value;
    return true;
}

/// Writes fields at their own widths, one after the other.
template <class... TFields>
void WriteFields(CStream& stream, const TFields&... fields) {
    static_assert((std::is_arithmetic_v<TFields> && ...), "only numbers have a fixed stored form");
    (stream.Write(&fields, sizeof fields), ...);
}

/// Reads them back. A field that the stream no longer holds keeps its value.
template <class... TFields>
void ReadFields(CStream& stream, TFields&... fields) {
    static_assert((std::is_arithmetic_v<TFields> && ...), "only numbers have a fixed stored form");
    static_assert((!std::is_same_v<TFields, bool> && ...), "a stored byte may hold more than a bool can");
    (stream.Read(&fields, sizeof fields), ...);
}

/// How the value of a setting is written and read.
enum class TSettingForm {
    Number,
    Color,  ///< in an XML element a colour string, elsewhere a number
    Flag,   ///< 0 or 1; every other number is taken as 1
    Text,   ///< as it stands, between single quotes
};

/// A setting's value on its way into a tool or out of it.
struct TSettingValue {
    std::int32_t Number = 0;
    CString Text{};  ///< of the form Text only
};

/// The way to a setting's value; the object is of the class that the setting belongs to.
struct TSettingAccess {
    TSettingValue (*Get)(const CAnyObject& tool);
    void (*Set)(CAnyObject& tool, const TSettingValue& value);
};

/// One setting of a tool: what messages, parameter blocks and XML elements call it.
struct TSetting {
    std::int32_t Code;          ///< the message that asks for it; the next code sets it
    const char16_t* Key;        ///< in a parameter block
    const char16_t* Attribute;  ///< of an XML element
    TSettingForm Form;
    std::size_t Line;  ///< its place among the written ones, from 0; the rows stand in the order of reading
    TSettingAccess Access;
};

/// The settings of a tool and the name under which they are written.
struct TSettings {
    template <std::size_t N>
    constexpr TSettings(const char16_t* tool, const TSetting (&rows)[N]) : Tool(tool), Rows(rows), Count(N) {}

    const TSetting* begin() const { return Rows; }
    const TSetting* end() const { return Rows + Count; }

    const char16_t* Tool;
    const TSetting* Rows;
    std::size_t Count;
};

template <class TMember>
struct TSettingOwner;
template <class TTool, class TMember>
struct TSettingOwner<TMember TTool::*> {
    using Type = TTool;
};

template <auto Get>
TSettingValue ReadSetting(const CAnyObject& object) {
    const auto& tool = static_cast<const typename TSettingOwner<decltype(Get)>::Type&>(object);
    TSettingValue value;
    if constexpr (std::is_same_v<std::decay_t<decltype(std::invoke(Get, tool))>, CString>) {
        value.Text = std::invoke(Get, tool);
    } else {
        value.Number = std::invoke(Get, tool);
    }
    return value;
}

template <auto Set>
void WriteSetting(CAnyObject& object, const TSettingValue& value) {
    using TTool = typename TSettingOwner<decltype(Set)>::Type;
    TTool& tool = static_cast<TTool&>(object);
    if constexpr (std::is_same_v<decltype(Set), void (TTool::*)(const char16_t*)>) {
        (tool.*Set)(value.Text.GetBuffer());
    } else if constexpr (std::is_same_v<decltype(Set), void (TTool::*)(bool)>) {
        (tool.*Set)(value.Number != 0);
    } else {
        (tool.*Set)(value.Number);
    }
}

/// \p Get is a getter or the field itself, \p Set the setter.
template <auto Get, auto Set>
constexpr TSettingAccess SettingAccess = {ReadSetting<Get>, WriteSetting<Set>};

/// Answers \p message when a row of \p settings knows its code. A text travels as an address, for which its
/// tool answers itself.
bool AnswerSetting(const TSettings& settings, CAnyObject& tool, CMessage& message);

/// Shared by the tools: marks what they keep on the device as stale.
constexpr std::int32_t InvalidateMessage = 10080;

}  // namespace zul
