/// \file
/// Attributes by name, for hosts that have no reader of their own for them.
#pragma once

#include <map>

#include "zul/kernel/any_object.h"

namespace zul {

/// Answers the message "GetAttributeValue": parameter 1 is the attribute's name (`const char16_t*`),
/// parameter 2 receives its value (`CString*`). An unknown attribute, or a null address, is not handled.
class ZUL_KERNEL_API CAttributeBag : public CAnyObject {
public:
    /// Replaces the value that the name has.
    void SetAttribute(const CString& name, const CString& value) { m_Values[name] = value; }
    bool DoMessage(CMessage* message) override;

private:
    std::map<CString, CString> m_Values;
};

}  // namespace zul
