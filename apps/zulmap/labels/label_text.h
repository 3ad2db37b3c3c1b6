/// \file
/// How a name is broken into lines.
#pragma once

#include <functional>
#include <vector>

#include "zul/kernel/string.h"

namespace zulmap {

/// Pixels.
using MeasureText = std::function<double(const zul::CString& text)>;

/// A name on \p count lines, the longest as short as can be; broken at blanks, and behind hyphens. Empty
/// when the name has too few words.
std::vector<zul::CString> BreakName(const zul::CString& name, std::size_t count, const MeasureText& measure);

}  // namespace zulmap
