/// \file
/// Calls on files that fail on order. The kernel hands every such call of the process to a handler here,
/// whoever makes it: the C library, SQLite, GDAL, a call of ours. Nothing has to be linked or named for it.
#pragma once

#include <string>

namespace faults {

enum class Kind {
    None,   ///< nothing fails; calls are counted
    Once,   ///< the n-th call fails, and all others work
    Ever,   ///< the n-th and all after it fail: the device is gone
    Full,   ///< of the calls that want room the n-th and all after it find none: the disk is full
    Short,  ///< of the reads and writes the n-th moves half of its bytes; after such a write the disk is full
};

/// What came of it.
struct Record {
    unsigned calls = 0;   ///< that the kind counts
    unsigned failed = 0;  ///< or were cut short
    bool kept = false;    ///< a file was to be removed and could not be
    std::string first;    ///< that failed: its name and its file
};

/// Looks at the calls on files below \p folder, which is also the working directory of relative names. For
/// the rest of the process's life. \returns false when the system does not allow it.
bool WatchFiles(const std::string& folder);
void Arm(Kind kind, unsigned n);
Record Disarm();

}  // namespace faults
