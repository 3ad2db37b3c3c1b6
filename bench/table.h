/// \file
/// The table of speed as text.
#pragma once

#include <string>
#include <vector>

#include "bench/runner.h"

namespace zulbench {

enum class TableForm { Text, Markdown, Json };

/// A row for each timing; JSON gives every time in nanoseconds a unit.
std::string Format(const std::vector<Timing>& timings, TableForm form);

}  // namespace zulbench
