#include "platform/software/trace.h"

#include <gtest/gtest.h>

namespace device {

Recorder::Recorder() {
    ADD_FAILURE() << "the system's device has no trace";
}
int Recorder::Count(const char*) const {
    return 0;
}
const RecordedCall* Recorder::Last(const char*) const {
    return nullptr;
}

}  // namespace device
