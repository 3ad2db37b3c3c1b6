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

/// A file of the device's times, a line each: nanoseconds, row.
/// \throws std::runtime_error when it cannot be written
void WriteDeviceTimes(const std::string& path, const std::vector<Timing>& timings);
/// Takes them over as the times elsewhere. \throws std::runtime_error when the file cannot be read
void ReadDeviceTimes(const std::string& path, std::vector<Timing>& timings);

}  // namespace zulbench
