/// \file
/// What is said when the device has no memory for a figure, from which callers would not otherwise learn that
/// something is missing. What a device refuses for other reasons stays silent.
#pragma once

#include "platform/gdi.h"
#include "zul/kernel/any_object.h"

namespace zul {

/// Reports, as error 3 of \p object, that the calling thread's last device error is one of memory, and
/// forgets it; not before, since a handler may look at it. \returns false when it is another.
inline bool ReportShortage(const CAnyObject* object, const char16_t* member) {
    if (::GetLastError() != ERROR_NOT_ENOUGH_MEMORY) return false;
    CAnyObject::RunError(ErrorFailed, CString::Format(u"The device has no memory <zul::%s()>", member),
                         object);
    ::SetLastError(ERROR_SUCCESS);
    return true;
}

/// \returns whether \p answer, of the device call just made, is none of failure.
template <class TAnswer>
bool IsDone(TAnswer answer, const CAnyObject* object, const char16_t* member) {
    if (answer) return true;
    ReportShortage(object, member);
    return false;
}

}  // namespace zul
