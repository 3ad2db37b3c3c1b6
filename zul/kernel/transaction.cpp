#include "zul/kernel/transaction.h"

#include <algorithm>
#include <exception>
#include <map>
#include <new>
#include <unordered_set>
#include <utility>

#include "zul/kernel/class_registry.h"
#include "zul/kernel/modification_state.h"
#include "zul/kernel/object_source.h"
#include "zul/kernel/object_table.h"

namespace zul {
namespace {

/// Finds the stored object that another one is a member of: the one whose storage it lies in. Looks over the
/// objects in memory once, and only when somebody asks.
class COwnerFinder {
public:
    CAnyObject* Find(const CAnyObject* member) {
        if (!m_Filled) Fill();
        const auto after = m_ByAddress.upper_bound(AddressOf(member));
        if (after == m_ByAddress.begin()) return nullptr;
        CAnyObject* const owner = std::prev(after)->second.Peek();
        const CString* const name = CClass::GetName(owner);
        if (name == nullptr) return nullptr;
        return AddressOf(member) - AddressOf(owner) < CClass::GetSize(*name) ? owner : nullptr;
    }

private:
    static std::uintptr_t AddressOf(const CAnyObject* object) {
        return reinterpret_cast<std::uintptr_t>(dynamic_cast<const void*>(object));
    }
    void Fill() {
        m_Filled = true;
        for (CAnyRef& object : CObjectTable::Get().GetObjectsOf(0)) {
            if (object.Peek() != nullptr) m_ByAddress.emplace(AddressOf(object.Peek()), object);
        }
    }

    bool m_Filled = false;
    std::map<std::uintptr_t, CAnyRef> m_ByAddress;
};

}  // namespace

CTransaction::CTransaction() : m_Enclosing(GetModificationState().Current) {
    GetModificationState().Current = this;
}

CTransaction::~CTransaction() {
    while (m_Open && GetCurrent() != nullptr) {
        try {
            GetCurrent()->UndoAll(true);
        } catch (...) {
            // The error was reported when it was thrown; a destructor has nobody else to tell.
        }
    }
}

CTransaction* CTransaction::GetCurrent() {
    return GetModificationState().Current;
}

bool CTransaction::Commit() {
    if (!IsInnermost()) return false;
    bool isKept = false;
    try {
        isKept = KeepChanges();
    } catch (...) {
        Rollback();
        throw;
    }
    if (!isKept) {
        Rollback();
        return false;
    }
    Leave();
    if (m_Enclosing != nullptr) {
        HandOver(*m_Enclosing);
    } else {
        for (CObjectImage& image : m_Images) {
            if (CAnyObject* object = image.GetObject()) object->DoCommitObject();
        }
    }
    Forget();
    return true;
}

bool CTransaction::KeepChanges() {
    if (m_IsIncomplete) {
        CAnyObject::RunError(ErrorFailed,
                             u"A change was not recorded: no memory <zul::CTransaction::Commit()>");
        return false;
    }
    // What comes after the stores' consent must not fail.
    if (m_Enclosing != nullptr) PrepareHandOver(*m_Enclosing);
    return (m_Enclosing != nullptr || SaveChanges()) && CommitSources();
}

bool CTransaction::SaveChanges() {
    COwnerFinder owners;
    std::unordered_set<const CAnyObject*> saved;
    for (std::size_t i = 0; i < m_Images.size(); ++i) {
        CAnyObject* object = m_Images[i].GetObject();
        if (object == nullptr) continue;
        auto sources = CObjectTable::Get().FindSourcesOf(*object->GetControlCell());
        if (sources.empty()) {
            object = owners.Find(object);
            if (object == nullptr) continue;
            sources = CObjectTable::Get().FindSourcesOf(*object->GetControlCell());
        }
        if (!saved.insert(object).second) continue;
        for (CObjectSource* source : sources) {
            if (!Enlist(source) || !source->Save(object)) return false;
        }
    }
    return true;
}

bool CTransaction::CommitSources() {
    while (!m_Sources.empty()) {
        if (!m_Sources.back()->OnCommit()) return false;
        m_Sources.pop_back();
    }
    return true;
}

void CTransaction::PrepareHandOver(CTransaction& outer) {
    outer.m_Records.reserve(outer.m_Records.size() + m_Records.size());
    outer.m_Images.reserve(outer.m_Images.size() + m_Images.size());
    outer.m_ImageOf.reserve(outer.m_ImageOf.size() + m_ImageOf.size());
}

/// Allocates nothing after its preparation.
void CTransaction::HandOver(CTransaction& outer) {
    for (TModification& record : m_Records)
        outer.m_Records.push_back(std::move(record));
    for (CObjectImage& image : m_Images) {
        const CAnyObject* const object = image.GetObject();
        auto entry =
            object != nullptr ? m_ImageOf.extract(object->GetControlCell()) : TImagePlaces::node_type();
        if (entry.empty()) continue;
        entry.mapped() = outer.m_Images.size();
        // Where the outer transaction has an image already, that one is the older.
        if (outer.m_ImageOf.insert(std::move(entry)).inserted) outer.m_Images.push_back(std::move(image));
    }
}

bool CTransaction::Rollback() {
    if (!IsInnermost()) return false;
    UndoAll(false);
    return true;
}

void CTransaction::UndoAll(bool isLastChance) {
    Leave();
    std::exception_ptr failure;
    bool isShort = false;
    // Whatever fails, the others get their state back all the same.
    const auto attempt = [&](const auto& step) {
        try {
            step();
        } catch (const std::bad_alloc&) {
            isShort = true;
        } catch (...) {
            if (!failure) failure = std::current_exception();
        }
    };
    for (auto image = m_Images.rbegin(); image != m_Images.rend(); ++image)
        attempt([&] { image->PutBack(); });
    if (isShort && !isLastChance) {
        m_Open = true;
        GetModificationState().Current = this;
        throw std::bad_alloc();
    }
    const bool isLost = isShort;
    for (CObjectSource* source : m_Sources)
        attempt([&] { source->OnRollback(*this); });
    for (auto image = m_Images.rbegin(); image != m_Images.rend(); ++image) {
        if (CAnyObject* const object = image->GetObject()) attempt([&] { object->DoUnmodify(); });
    }
    Forget();
    if (isLost) {
        CAnyObject::RunError(ErrorFailed,
                             u"Changes stay in memory: none is left <zul::CTransaction::Rollback()>");
    }
    if (failure) std::rethrow_exception(failure);
    if (isShort) throw std::bad_alloc();
}

bool CTransaction::Enlist(CObjectSource* source) {
    if (std::find(m_Sources.begin(), m_Sources.end(), source) != m_Sources.end()) return true;
    if (m_Enclosing != nullptr && !m_Enclosing->Enlist(source)) return false;
    m_Sources.reserve(m_Sources.size() + 1);
    if (!source->OnBegin()) return false;
    m_Sources.push_back(source);
    return true;
}

bool CTransaction::HasImageOf(const CAnyObject* object) const {
    return m_ImageOf.count(object->GetControlCell()) != 0 ||
           (m_Enclosing != nullptr && m_Enclosing->HasImageOf(object));
}

void CTransaction::Dismiss(CObjectSource* source) {
    for (CTransaction* each = GetCurrent(); each != nullptr; each = each->m_Enclosing) {
        auto& sources = each->m_Sources;
        sources.erase(std::remove(sources.begin(), sources.end(), source), sources.end());
    }
}

bool CTransaction::TakeImage(CAnyObject* object) {
    const CControlCell* const cell = object->GetControlCell();
    if (m_ImageOf.count(cell) != 0) return false;
    CObjectImage image(object);
    m_Images.push_back(std::move(image));
    m_ImageOf.emplace(cell, m_Images.size() - 1);
    return true;
}

void CTransaction::ReserveRecord() {
    constexpr std::size_t MostOpen = 64;  // brackets within each other; beyond that a record may be missed
    if (m_Records.capacity() - m_Records.size() < MostOpen)
        m_Records.reserve(2 * m_Records.size() + MostOpen);
}

void CTransaction::DropImage(const CAnyObject* object) {
    const auto found = m_ImageOf.find(object->GetControlCell());
    if (found == m_ImageOf.end()) return;
    CObjectImage dropped;  // goes last: what it kept alive may die with it
    std::swap(dropped, m_Images[found->second]);
    m_ImageOf.erase(found);
}

void CTransaction::Leave() {
    m_Open = false;
    GetModificationState().Current = m_Enclosing;
}

void CTransaction::Forget() {
    m_Sources.clear();
    m_ImageOf.clear();
    // What they kept alive may die with them, and must not find them half gone.
    const std::vector<CObjectImage> images = std::move(m_Images);
    m_Images.clear();
}

}  // namespace zul
