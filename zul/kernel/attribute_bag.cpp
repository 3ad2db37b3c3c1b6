#include "zul/kernel/attribute_bag.h"

#include "zul/kernel/message.h"

namespace zul {

bool CAttributeBag::DoMessage(CMessage* message) {
    if (message == nullptr || !message->IsNamed(u"GetAttributeValue")) return CAnyObject::DoMessage(message);
    const auto* const name = CMessage::ToPointer<const char16_t>(message->GetParam1());
    auto* const value = CMessage::ToPointer<CString>(message->GetParam2());
    if (name == nullptr || value == nullptr) return CAnyObject::DoMessage(message);
    const auto found = m_Values.find(name);
    if (found == m_Values.end()) return false;
    *value = found->second;
    return true;
}

}  // namespace zul
