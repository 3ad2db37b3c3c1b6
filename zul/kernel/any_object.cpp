#include "zul/kernel/any_object.h"

#include <cstdlib>
#include <typeinfo>

#include "zul/kernel/client.h"
#include "zul/kernel/message.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/references.h"
#include "zul/kernel/stream.h"

namespace zul {

void CAnyObject::SetAsNotSerializable(bool excluded) {
    m_fNotSerializable = excluded;
}

bool CAnyObject::Clone(CAnyObject* target) {
    if (target == nullptr || target == this || typeid(*target) != typeid(*this)) return false;
    CMemoryStream stream;
    if (!ObjectToBuffer(&stream)) return false;
    stream.SetPosition(0);
    return target->ObjectFromBuffer(&stream);
}

bool CAnyObject::ObjectToBuffer(CStream*) {
    return true;
}
bool CAnyObject::ObjectFromBuffer(CStream*) {
    return true;
}

bool CAnyObject::DoSerialize(CStream* stream) {
    return stream != nullptr && (m_fNotSerializable || ObjectToBuffer(stream));
}

bool CAnyObject::DoUnserialize(CStream* stream) {
    return stream != nullptr && (m_fNotSerializable || ObjectFromBuffer(stream));
}

bool CAnyObject::GetInscription(CString&) {
    return false;
}
bool CAnyObject::SetInscription(const char16_t*) {
    return false;
}
std::uint32_t CAnyObject::GetPreferredSize() {
    return 0;
}
std::uint32_t CAnyObject::GetReservedSize() {
    return 0;
}
CAnyObject* CAnyObject::EnumSubObjects(TSubObjectIterator&, void*&, std::int32_t) {
    return nullptr;
}
void CAnyObject::DoRemoveFromDB() {}
void CAnyObject::DoCommitObject() {}
void CAnyObject::DoInitialize() {}
void CAnyObject::DoFinalize() {}
void CAnyObject::DoModify() {}
void CAnyObject::DoUnmodify() {}
bool CAnyObject::DoMessage(CMessage*) {
    return false;
}

CClient* CAnyObject::GetClient() {
    return CClient::Get();
}

void CAnyObject::RunError(TErrorType type, const CString& text, const CAnyObject* object) {
    CClient::Report({type, CString(), text, object});
}

bool CAnyObject::RunMessage(const CString& name, CAnyObject* target, std::int64_t* result,
                            std::int64_t param1, std::int64_t param2, std::int64_t param3,
                            std::int64_t param4) {
    if (target == nullptr) return false;
    CMessage message(name, param1, param2, param3, param4);
    const bool handled = target->DoMessage(&message);
    if (handled && result != nullptr) *result = message.GetResult();
    return handled;
}

void* CAnyObject::operator new(std::size_t size) noexcept {
    return std::malloc(size);
}
void* CAnyObject::operator new(std::size_t, void* place) noexcept {
    return place;
}
void* CAnyObject::operator new[](std::size_t size) noexcept {
    return std::malloc(size);
}
void CAnyObject::operator delete(void* storage) noexcept {
    std::free(storage);
}
void CAnyObject::operator delete(void*, void*) noexcept {}
void CAnyObject::operator delete[](void* storage) noexcept {
    std::free(storage);
}

CControlCell* CAnyObject::GetControlCell() const {
    CControlCell* cell = m_Cell.load(std::memory_order_acquire);
    if (cell != nullptr) return cell;
    // Two threads may refer to one shared object for the first time at once: the first cell stays.
    CControlCell* const made = new CControlCell(const_cast<CAnyObject*>(this));
    if (m_Cell.compare_exchange_strong(cell, made, std::memory_order_acq_rel)) return made;
    delete made;
    return cell;
}

void CAnyObject::Depart() {
    for (CModificator* bracket = m_OpenBracket; bracket != nullptr; bracket = bracket->m_Outer) {
        bracket->m_Object = nullptr;
    }
    if (CControlCell* cell = m_Cell.load(std::memory_order_acquire)) {
        cell->Empty();
        cell->Release();
    }
}

}  // namespace zul
