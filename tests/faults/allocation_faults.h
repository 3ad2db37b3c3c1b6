// Allocations of this program that fail on demand: the C library's and the C++ ones, whoever makes them.
#pragma once

#include <cstdint>

namespace faults {

enum class Failing {
    One,   ///< the n-th allocation only
    Rest,  ///< the n-th and all after it
};

/// Makes allocations of the calling thread fail, the first of them being number \p nth from now, until
/// Disarm.
///
/// Excepted are those that nobody can decline: the C runtime ends the program when it finds no memory for a
/// thread's variables or for the list of their destructors.
void Arm(std::uint64_t nth, Failing failing);
/// \returns how many have failed since.
std::uint64_t Disarm();

/// Blocks that the program holds.
std::int64_t LiveBlocks();

}  // namespace faults
