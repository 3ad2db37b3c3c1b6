#include "zul/store/store_streams.h"

#include <cstring>

#include "zul/kernel/object_table.h"
#include "zul/kernel/references.h"
#include "zul/store/store_session.h"

namespace zul {

// --- CStoreWriter ---

std::int64_t CStoreWriter::ToStoredId(const CAnyObject* object) {
    return m_Session.Reach(const_cast<CAnyObject*>(object));
}

std::int64_t CStoreWriter::ToStoredId(const CObjectID& id) {
    if (const std::int64_t local = m_Session.ToLocalId(id.GetValue())) return local;
    // Of another store: what is stored here must lead to something here.
    CObjectSource* const source = CObjectTable::Get().FindSource(id.GetValue());
    if (source == nullptr) return 0;
    CAnyRef loaded = source->LoadLocal(source->ToLocalId(id.GetValue()));
    CAnyObject* const object = loaded.Peek();
    return object != nullptr ? m_Session.Reach(object) : 0;
}

// --- CStoreReader ---

bool CStoreReader::Read(void* data, std::uint32_t size) {
    if (size == 0) return true;
    if (size > m_Rest.size()) {
        m_Rest = {};
        m_WasShort = true;
        return false;
    }
    if (data == nullptr) return false;
    std::memcpy(data, m_Rest.data(), size);
    m_Rest.remove_prefix(size);
    return true;
}

std::int64_t CStoreReader::FromStoredId(std::int64_t stored) {
    return m_Session.ToProcessId(stored);
}

}  // namespace zul
