/// \file
/// What the drawing tools share: settings that record their changes, stored fields, tables of message codes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <type_traits>

#include "zul/kernel/any_object.h"
#include "zul/kernel/message.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/numeric.h"
#include "zul/kernel/stream.h"

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

/// The two messages of one setting: \p Code asks for it, the next code sets it.
template <class TTool>
struct TSettingMessages {
    std::int32_t Code;
    std::int32_t (TTool::*Get)() const;
    void (TTool::*Set)(std::int32_t);
};

/// Answers \p message when a row of \p table knows its code.
template <class TTool, std::size_t Rows>
bool AnswerSetting(const TSettingMessages<TTool> (&table)[Rows], TTool& tool, CMessage& message) {
    const std::int32_t code = message.GetCode();
    for (const TSettingMessages<TTool>& row : table) {
        if (code == row.Code) {
            message.SetResult((tool.*row.Get)());
            return true;
        }
        if (code == row.Code + 1) {
            (tool.*row.Set)(WrapToLong(message.GetParam1()));
            return true;
        }
    }
    return false;
}

/// Shared by the tools: marks what they keep on the device as stale.
constexpr std::int32_t InvalidateMessage = 10080;

}  // namespace zul
