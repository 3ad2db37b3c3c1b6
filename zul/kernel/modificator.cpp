#include "zul/kernel/modificator.h"

#include <new>

#include "zul/kernel/class_registry.h"
#include "zul/kernel/modification_state.h"
#include "zul/kernel/transaction.h"

namespace zul {
namespace {

thread_local TModificationState g_State;
TObservers g_Observers;

}  // namespace

TModificationState& GetModificationState() {
    return g_State;
}
TObservers& GetObservers() {
    return g_Observers;
}

void CModificator::Clear() {
    m_Settled = true;
    CAnyObject* const object = m_Object;
    if (object == nullptr) return;
    Unlink();
    if (!m_Records) return;
    if (m_Imaged == nullptr || m_Imaged != g_State.Current) return object->DoUnmodify();
    const CAnyRef kept(object);  // the image may be the last to hold it
    m_Imaged->DropImage(object);
    object->DoUnmodify();
}

void CModificator::Attribute(CAnyObject* object) {
    if (object != nullptr && !m_Settled) Open(object);
}

void CModificator::Open(CAnyObject* object) {
    m_Settled = true;
    m_Object = object;
    m_Outer = object->m_OpenBracket;
    object->m_OpenBracket = this;
    m_Records = m_Outer == nullptr;
    if (!m_Records) return;
    try {
        if (g_State.Current != nullptr) {
            // Here, where the change can still be declined: the end of a bracket has no such choice.
            object->GetControlCell()->NeedId();
            g_State.Current->ReserveRecord();
            if (g_State.Current->TakeImage(object)) m_Imaged = g_State.Current;
        }
        object->DoModify();
    } catch (...) {
        Unlink();
        throw;
    }
}

void CModificator::Close() {
    CAnyObject* const object = m_Object;
    Unlink();
    if (!m_Records) return;
    ++g_State.Count;
    if (g_State.Current != nullptr || GetObservers().Any.load(std::memory_order_relaxed)) Record(object);
}

void CModificator::Record(CAnyObject* object) const {
    TModification modification;
    modification.Sequence = g_State.Count;
    modification.HasValues = m_HasValues;
    modification.OldValue = m_OldValue;
    modification.NewValue = m_NewValue;
    try {
        modification.Id = CObjectID(object->GetControlCell()->NeedId());
        if (const CString* name = CClass::GetName(object)) modification.Class = *name;
        if (g_State.Current != nullptr) g_State.Current->m_Records.push_back(modification);
    } catch (const std::bad_alloc&) {
        // The change is made. Observers hear of it, if without a name; a transaction that lacks it may not
        // stay.
        if (g_State.Current != nullptr) g_State.Current->m_IsIncomplete = true;
    }
    const auto& list = GetObservers().List;
    // By index: an observer may leave, or bring another, while it is told. When it left, the next one stands
    // in its place.
    for (std::size_t i = 0; i < list.size();) {
        CModificationObserver* const observer = list[i];
        observer->OnModified(modification);
        if (i < list.size() && list[i] == observer) ++i;
    }
}

}  // namespace zul
