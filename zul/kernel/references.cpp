#include "zul/kernel/references.h"

#include "zul/kernel/class_registry.h"
#include "zul/kernel/object_source.h"
#include "zul/kernel/object_table.h"
#include "zul/kernel/stream.h"

namespace zul {
namespace {

void Destroy(CAnyObject* object) {
    object->DoFinalize();
    delete object;
}

}  // namespace

// --- CControlCell ---

std::int64_t CControlCell::NeedId() {
    if (GetId() == 0) CObjectTable::Get().Add(this);
    return GetId();
}

void CControlCell::Release() {
    if (m_Holders.fetch_sub(1, std::memory_order_acq_rel) == 1) delete this;
}

void CControlCell::HoldStrongly() {
    Hold();
    m_References.fetch_add(1, std::memory_order_relaxed);
}

void CControlCell::ReleaseStrongly() {
    if (m_References.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        CAnyObject* object = GetInstance();
        // Disowned first: references that come and go while the object is being destroyed must not do it
        // again.
        if (object != nullptr && m_Owned.exchange(false)) Destroy(object);
    }
    Release();
}

void CControlCell::Empty() {
    m_Object.store(nullptr, std::memory_order_release);
    if (GetId() != 0) CObjectTable::Get().Remove(this);
}

// --- CAnyPtr ---

CAnyPtr& CAnyPtr::operator=(const CAnyPtr& other) {
    if (this != &other) DoSetInstance(other.DoGetInstance());
    return *this;
}

void CAnyPtr::DoSetInstance(const CAnyObject* object) {
    CControlCell* const old = m_Cell;
    m_Cell = object != nullptr ? object->GetControlCell() : nullptr;
    if (m_Cell != nullptr) m_Cell->Hold();
    if (old != nullptr) old->Release();
}

void CAnyPtr::Remove() {
    CAnyObject* const object = DoGetInstance();
    DoSetInstance(nullptr);
    if (object != nullptr) Destroy(object);
}

// --- CAbstractRef ---

CAbstractRef& CAbstractRef::operator=(const CAbstractRef& other) {
    if (this != &other) CopyFrom(other);
    return *this;
}

CAnyObject* CAbstractRef::DoGetInstance(CAnyFactory* factory, bool create) {
    CAnyObject* object = Resolve();
    if (object != nullptr || !create || factory == nullptr) return object;
    object = factory->CreateInstance();
    if (object == nullptr) return nullptr;
    DoAdoptInstance(object);
    object->DoInitialize();
    return object;
}

void CAbstractRef::DoSetInstance(const CAnyObject* object) {
    CControlCell* const cell = object != nullptr ? object->GetControlCell() : nullptr;
    m_Id = 0;
    SetCell(cell);
}

void CAbstractRef::DoAdoptInstance(CAnyObject* object) {
    try {
        DoSetInstance(object);
    } catch (...) {
        delete object;  // nobody else knows of it
        throw;
    }
    if (m_Cell != nullptr) m_Cell->Adopt();
}

CObjectID CAbstractRef::GetObjectID() const {
    if (m_Cell == nullptr) return CObjectID(m_Id);
    const std::int64_t id = m_Cell->GetId();
    return CObjectID(m_Cell->GetInstance() != nullptr || CObjectTable::IsSourceId(id) ? id : 0);
}

CAnyObject* CAbstractRef::Peek() const {
    CAnyObject* const object = m_Cell != nullptr ? m_Cell->GetInstance() : nullptr;
    return object != nullptr ? object : Find(false);
}

CAnyObject* CAbstractRef::Find(bool load) const {
    const std::int64_t id = GetObjectID().GetValue();
    if (id == 0) return nullptr;
    if (CControlCell* found = CObjectTable::Get().FindAndHold(id)) {
        SetCell(found);
        found->Release();
    } else if (CObjectSource* source = load ? CObjectTable::Get().FindSource(id) : nullptr) {
        const CAnyRef loaded = source->LoadLocal(source->ToLocalId(id));
        if (loaded.m_Cell != nullptr) SetCell(loaded.m_Cell);
    }
    return m_Cell != nullptr ? m_Cell->GetInstance() : nullptr;
}

void CAbstractRef::SetId(std::int64_t id) {
    SetCell(nullptr);
    m_Id = id;
    Peek();  // at once: an object that only references keep alive must stay
}

void CAbstractRef::CopyFrom(const CAbstractRef& other) {
    m_Id = other.m_Id;
    SetCell(other.m_Cell);
}

void CAbstractRef::SetCell(CControlCell* cell) const {
    CControlCell* const old = m_Cell;
    if (cell != nullptr) cell->HoldStrongly();
    m_Cell = cell;
    m_Typed = nullptr;
    if (old != nullptr) old->ReleaseStrongly();
}

// --- CAnyRef ---

bool CAnyRef::ObjectToBuffer(CStream* stream) {
    if (stream == nullptr) return false;
    const CAnyObject* const object = Peek();
    const std::int64_t id =
        object != nullptr ? stream->ToStoredId(object) : stream->ToStoredId(GetObjectID());
    if (!stream->Write(&id, sizeof id)) return false;
    if (object != nullptr) stream->OnReference(object);
    return true;
}

bool CAnyRef::ObjectFromBuffer(CStream* stream) {
    std::int64_t id = 0;
    const bool read = stream != nullptr && stream->Read(&id, sizeof id);
    SetId(read ? stream->FromStoredId(id) : 0);
    return read;
}

}  // namespace zul
