/// \file
/// Plain values in stored forms.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "zul/kernel/stream.h"

namespace zulmap {

/// Numbers, as they lie in memory.
template <class... Values>
bool WriteValues(zul::CStream& stream, const Values&... values) {
    return (stream.Write(&values, sizeof values) && ...);
}

/// \returns false when the stream ended before.
template <class... Values>
bool ReadValues(zul::CStream& stream, Values&... values) {
    return (stream.Read(&values, sizeof values) && ...);
}

bool WriteText(zul::CStream& stream, const std::string& text);
bool ReadText(zul::CStream& stream, std::string& text);
bool WriteTexts(zul::CStream& stream, const std::vector<std::string>& texts);
bool ReadTexts(zul::CStream& stream, std::vector<std::string>& texts);

}  // namespace zulmap
