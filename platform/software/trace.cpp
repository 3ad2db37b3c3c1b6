#include "platform/software/trace.h"

#include <algorithm>
#include <utility>

namespace device {

namespace {

thread_local Recorder* t_Recorder = nullptr;

}  // namespace

Recorder::Recorder() : m_Outer(std::exchange(t_Recorder, this)) {
    trace::attached.fetch_add(1, std::memory_order_relaxed);
}

Recorder::~Recorder() {
    trace::attached.fetch_sub(1, std::memory_order_relaxed);
    t_Recorder = m_Outer;
}

int Recorder::Count(const char* name) const {
    return static_cast<int>(std::count_if(m_Calls.begin(), m_Calls.end(),
                                          [name](const RecordedCall& call) { return call.name == name; }));
}

const RecordedCall* Recorder::Last(const char* name) const {
    const auto found = std::find_if(m_Calls.rbegin(), m_Calls.rend(),
                                    [name](const RecordedCall& call) { return call.name == name; });
    return found == m_Calls.rend() ? nullptr : &*found;
}

namespace trace {

std::atomic<int> attached{0};

Recorder* Current() {
    return t_Recorder;
}

void Append(std::vector<std::int64_t>& out, const RECT* rect) {
    if (rect == nullptr) {
        out.insert(out.end(), 4, 0);
        return;
    }
    for (const LONG edge : {rect->left, rect->top, rect->right, rect->bottom})
        out.push_back(edge);
}

void Append(std::vector<std::int64_t>& out, TracedPoints list) {
    out.push_back(list.count);
    if (list.points == nullptr) return;
    for (int i = 0; i < list.count; ++i) {
        out.push_back(list.points[i].x);
        out.push_back(list.points[i].y);
    }
}

}  // namespace trace
}  // namespace device
