/// \file
/// Stands in for the software device's trace where the device is the system's own, which records nothing. A
/// test that attaches a recorder fails there; the ones that do are named in `tests/windows/host_only.cmake`.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/gdi.h"

namespace device {

struct RecordedCall {
    std::string name;
    std::vector<std::int64_t> arguments;
};

class Recorder {
public:
    Recorder();
    const std::vector<RecordedCall>& Calls() const { return m_Calls; }
    int Count(const char* name) const;
    const RecordedCall* Last(const char* name) const;
    void Clear() {}

private:
    std::vector<RecordedCall> m_Calls;
};

}  // namespace device
