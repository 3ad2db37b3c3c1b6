// Counts what the test program allocates with `new`.
#pragma once

#include <cstdint>

std::uint64_t CountAllocations();
