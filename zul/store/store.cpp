#include "zul/store/store.h"

#include "zul/store/store_session.h"

namespace zul {

CStore::CStore() = default;
CStore::~CStore() = default;

// --- the file ---

bool CStore::Open(const char16_t* path, TMode mode) {
    Close();
    auto session = std::make_unique<CStoreSession>();
    if (!session->Open(path, mode)) return false;
    m_Session = std::move(session);
    return true;
}

void CStore::Close() {
    m_Session.reset();
}

bool CStore::IsReady(const char16_t* member) const {
    if (m_Session != nullptr) return true;
    CAnyObject::RunError(ErrorFailed, CString::Format(u"No store is open <zul::CStore::%s()>", member));
    return false;
}

bool CStore::IsReadOnly() const {
    return m_Session != nullptr && m_Session->IsReadOnly();
}
void CStore::SetBusyTimeout(std::int32_t milliseconds) {
    if (IsReady(u"SetBusyTimeout")) m_Session->SetBusyTimeout(milliseconds);
}
CString CStore::Check() {
    return IsReady(u"Check") ? m_Session->Check() : CString(u"no store is open");
}

// --- objects ---

CObjectID CStore::Store(CAnyObject* object) {
    return CObjectID(IsReady(u"Store") ? m_Session->Store(object, u"Store") : 0);
}
CAnyRef CStore::Load(CObjectID id) {
    return IsReady(u"Load") ? m_Session->Load(m_Session->ToLocal(id)) : CAnyRef();
}
CObjectID CStore::GetId(const CAnyObject* object) const {
    return CObjectID(m_Session != nullptr ? m_Session->GetLocalId(object) : 0);
}
bool CStore::IsStored(CObjectID id) {
    return IsReady(u"IsStored") && m_Session->HasRow(m_Session->ToLocal(id));
}
bool CStore::Remove(CObjectID id) {
    return IsReady(u"Remove") && m_Session->Remove(m_Session->ToLocal(id));
}
std::uint64_t CStore::GetCount() {
    return IsReady(u"GetCount") ? m_Session->GetCount() : 0;
}
std::vector<CObjectID> CStore::FindByClass(const CString& name) {
    return IsReady(u"FindByClass") ? m_Session->FindByClass(name) : std::vector<CObjectID>();
}

// --- roots ---

bool CStore::SetRoot(const CString& name, CAnyObject* object) {
    return IsReady(u"SetRoot") && m_Session->SetRoot(name, object);
}
CAnyRef CStore::GetRoot(const CString& name) {
    return IsReady(u"GetRoot") ? m_Session->Load(m_Session->FindRoot(name)) : CAnyRef();
}
bool CStore::RemoveRoot(const CString& name) {
    return IsReady(u"RemoveRoot") && m_Session->RemoveRoot(name);
}
std::vector<CString> CStore::GetRootNames() {
    return IsReady(u"GetRootNames") ? m_Session->GetRootNames() : std::vector<CString>();
}

// --- the spatial index ---

bool CStore::Place(CObjectID id, const TWorldBox& box, std::uint32_t layer) {
    return IsReady(u"Place") && m_Session->Place(m_Session->ToLocal(id), box, layer);
}
bool CStore::RemovePlace(CObjectID id) {
    return IsReady(u"RemovePlace") && m_Session->RemovePlace(m_Session->ToLocal(id));
}
std::vector<CObjectID> CStore::FindInBox(const TWorldBox& box, std::uint32_t firstLayer,
                                         std::uint32_t lastLayer) {
    if (!IsReady(u"FindInBox")) return {};
    return m_Session->FindInBox(box, firstLayer, lastLayer);
}
bool CStore::GetBounds(TWorldBox& box, std::uint32_t firstLayer, std::uint32_t lastLayer) {
    return IsReady(u"GetBounds") && m_Session->GetBounds(box, firstLayer, lastLayer);
}

// --- upkeep ---

bool CStore::Refresh() {
    return IsReady(u"Refresh") && m_Session->Refresh();
}
std::size_t CStore::Collect() {
    return IsReady(u"Collect") ? m_Session->Collect() : 0;
}
const TStoreCounts& CStore::GetCounts() const {
    static const TStoreCounts None;
    return m_Session != nullptr ? m_Session->GetCounts() : None;
}

// --- CStoreReading ---

CStoreReading::CStoreReading(CStore& store) {
    if (store.m_Session != nullptr && store.m_Session->BeginReading()) m_Session = store.m_Session.get();
}
CStoreReading::~CStoreReading() {
    if (m_Session != nullptr) m_Session->EndReading();
}

}  // namespace zul
