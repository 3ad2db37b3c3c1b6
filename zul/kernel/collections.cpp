#include "zul/kernel/collections.h"

#include <utility>

#include "zul/kernel/modificator.h"
#include "zul/kernel/stream.h"

namespace zul {

// --- CAnyArray ---

void CAnyArray::DoAppend(CAnyObject* object) {
    CAnyRef reference;
    reference.DoAdoptInstance(object);
    CModificator modificator(this);
    m_Items.push_back(reference);
}

CAnyObject* CAnyArray::DoGetInstance(std::uint32_t index) const {
    return index < m_Items.size() ? m_Items[index].DoGetInstance() : nullptr;
}

void CAnyArray::Clear() {
    if (m_Items.empty()) return;
    CModificator modificator(this);
    m_Items.clear();
}

bool CAnyArray::ObjectToBuffer(CStream* stream) {
    const std::uint32_t count = GetCount();
    if (stream == nullptr || !stream->Write(&count, sizeof count)) return false;
    for (CAnyRef& item : m_Items) {
        if (!item.ObjectToBuffer(stream)) return false;
    }
    return CAnyObject::ObjectToBuffer(stream);
}

bool CAnyArray::ObjectFromBuffer(CStream* stream) {
    // The old items stay until the new ones are found: the same objects may be among them.
    std::uint32_t count = 0;
    const bool fits = stream != nullptr && stream->Read(&count, sizeof count) &&
                      std::uint64_t{count} * 8 <= stream->GetRemaining();
    std::vector<CAnyRef> items(fits ? count : 0);
    for (CAnyRef& item : items)
        item.ObjectFromBuffer(stream);
    std::swap(items, m_Items);
    return fits && CAnyObject::ObjectFromBuffer(stream);
}

// --- CAnyDictionary ---

void CAnyDictionary::DoAppend(const CString& key, CAnyObject* object) {
    CAnyRef reference;
    reference.DoAdoptInstance(object);
    CModificator modificator(this);
    m_Items[key] = reference;
}

CAnyObject* CAnyDictionary::DoGetInstance(const CString& key) const {
    const auto found = m_Items.find(key);
    return found != m_Items.end() ? found->second.DoGetInstance() : nullptr;
}

void CAnyDictionary::Clear() {
    if (m_Items.empty()) return;
    CModificator modificator(this);
    m_Items.clear();
}

bool CAnyDictionary::ObjectToBuffer(CStream* stream) {
    const std::uint32_t count = GetCount();
    if (stream == nullptr || !stream->Write(&count, sizeof count)) return false;
    for (auto& [key, item] : m_Items) {
        if (!key.ObjectToBuffer(stream) || !item.ObjectToBuffer(stream)) return false;
    }
    return CAnyObject::ObjectToBuffer(stream);
}

bool CAnyDictionary::ObjectFromBuffer(CStream* stream) {
    std::map<CString, CAnyRef> items;  // as in the array
    std::uint32_t count = 0;
    bool whole = stream != nullptr && stream->Read(&count, sizeof count);
    for (std::uint32_t i = 0; whole && i < count; ++i) {
        CString key;
        CAnyRef item;
        whole = key.ObjectFromBuffer(stream) && item.ObjectFromBuffer(stream);
        if (whole) items[key] = item;
    }
    if (!whole) items.clear();
    std::swap(items, m_Items);
    return whole && CAnyObject::ObjectFromBuffer(stream);
}

std::uint32_t CAnyDictionary::GetPreferredSize() {
    std::uint32_t size = 4;
    for (const auto& [key, item] : m_Items)
        size += key.GetPreferredSize() + item.GetPreferredSize();
    return size;
}

}  // namespace zul
