#include "zul/kernel/object_source.h"

#include "zul/kernel/object_table.h"
#include "zul/kernel/transaction.h"

namespace zul {

CObjectSource::CObjectSource() : m_Space(CObjectTable::Get().AddSource(this)) {}

CObjectSource::~CObjectSource() {
    CTransaction::Dismiss(this);
    CObjectTable::Get().RemoveSource(m_Space);
}

std::int64_t CObjectSource::GetLocalId(const CAnyObject* object) const {
    if (object == nullptr) return 0;
    return CObjectTable::Get().FindIdIn(*object->GetControlCell(), m_Space) & MaxLocalId;
}

void CObjectSource::Assign(CAnyObject* object, std::int64_t localId) {
    CObjectTable::Get().Assign(object->GetControlCell(), ToProcessId(localId));
}

void CObjectSource::Withdraw(std::int64_t localId) {
    CObjectTable::Get().Withdraw(ToProcessId(localId));
}

CAnyRef CObjectSource::FindInMemory(std::int64_t localId) const {
    CControlCell* const cell = CObjectTable::Get().FindAndHold(ToProcessId(localId));
    if (cell == nullptr) return {};
    CAnyRef found(cell->GetInstance());
    cell->Release();
    return found;
}

std::vector<CAnyRef> CObjectSource::GetObjectsInMemory() const {
    return CObjectTable::Get().GetObjectsOf(m_Space);
}

}  // namespace zul
