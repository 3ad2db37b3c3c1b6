/// \file
/// Lets a test see which calls reached the device, and with which arguments.
///
/// Every entry point of the device starts with `Trace("Name", arguments...)`. With no recorder attached
/// anywhere that costs one relaxed load.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include "platform/gdi.h"

namespace device {

/// One call. Handles and pointers stand as their values, a rectangle as its four edges, a point list as its
/// count and then x and y of each point.
struct RecordedCall {
    std::string name;
    std::vector<std::int64_t> arguments;
};

/// Records the device calls of the thread that made it, from construction to destruction. Recorders of one
/// thread nest: the innermost hears.
class ZUL_PLATFORM_API Recorder {
public:
    Recorder();
    ~Recorder();
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    const std::vector<RecordedCall>& Calls() const { return m_Calls; }
    /// How many calls of this name were made.
    int Count(const char* name) const;
    /// The last call of this name; null when there was none.
    const RecordedCall* Last(const char* name) const;
    void Clear() { m_Calls.clear(); }

    void Add(RecordedCall call) { m_Calls.push_back(std::move(call)); }

private:
    std::vector<RecordedCall> m_Calls;
    Recorder* m_Outer;
};

/// A point list as an argument of Trace.
struct TracedPoints {
    const POINT* points;
    int count;
};

namespace trace {

extern std::atomic<int> attached;

/// The calling thread's innermost recorder, or null.
Recorder* Current();

template <class T>
inline void Append(std::vector<std::int64_t>& out, T value) {
    if constexpr (std::is_pointer_v<T>) {
        out.push_back(static_cast<std::int64_t>(reinterpret_cast<std::intptr_t>(value)));
    } else {
        out.push_back(static_cast<std::int64_t>(value));
    }
}
void Append(std::vector<std::int64_t>& out, const RECT* rect);
void Append(std::vector<std::int64_t>& out, TracedPoints list);
inline void Append(std::vector<std::int64_t>& out, RECT* rect) {
    Append(out, static_cast<const RECT*>(rect));
}

template <class... Arguments>
void Record(Recorder& recorder, const char* name, const Arguments&... arguments) {
    RecordedCall call;
    call.name = name;
    (Append(call.arguments, arguments), ...);
    recorder.Add(std::move(call));
}

}  // namespace trace

/// Records one call of the device. Entry points call it first and never call one another.
template <class... Arguments>
inline void Trace(const char* name, const Arguments&... arguments) {
    if (trace::attached.load(std::memory_order_relaxed) == 0) return;
    if (Recorder* recorder = trace::Current()) trace::Record(*recorder, name, arguments...);
}

}  // namespace device
