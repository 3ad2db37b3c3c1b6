#include "zul/kernel/transaction.h"

#include <exception>
#include <utility>

#include "zul/kernel/modification_state.h"

namespace zul {

CTransaction::CTransaction() : m_Enclosing(GetModificationState().Current) {
    GetModificationState().Current = this;
}

CTransaction::~CTransaction() {
    while (m_Open && GetCurrent() != nullptr) {
        try {
            GetCurrent()->Rollback();
        } catch (...) {
            // The error was reported when it was thrown; a destructor has nobody else to tell.
        }
    }
}

CTransaction* CTransaction::GetCurrent() {
    return GetModificationState().Current;
}

bool CTransaction::Commit() {
    if (!Leave()) return false;
    if (m_Enclosing == nullptr) {
        for (TImage& image : m_Images) {
            if (CAnyObject* object = image.Object.DoGetInstance()) object->DoCommitObject();
        }
        return true;
    }
    CTransaction& outer = *m_Enclosing;
    outer.m_Records.insert(outer.m_Records.end(), m_Records.begin(), m_Records.end());
    for (TImage& image : m_Images) {
        const CAnyObject* const object = image.Object.DoGetInstance();
        // Where the outer transaction has an image already, that one is the older.
        if (object != nullptr &&
            outer.m_ImageOf.emplace(object->GetControlCell(), outer.m_Images.size()).second) {
            outer.m_Images.push_back(std::move(image));
        }
    }
    return true;
}

bool CTransaction::Rollback() {
    if (!Leave()) return false;
    std::exception_ptr failure;
    for (auto image = m_Images.rbegin(); image != m_Images.rend(); ++image) {
        CAnyObject* const object = image->Object.DoGetInstance();
        if (object == nullptr) continue;
        try {
            image->Bytes.SetPosition(0);
            object->DoUnserialize(&image->Bytes);
            object->DoUnmodify();
        } catch (...) {
            // The other objects get their state back all the same.
            if (!failure) failure = std::current_exception();
        }
    }
    if (failure) std::rethrow_exception(failure);
    return true;
}

bool CTransaction::TakeImage(CAnyObject* object) {
    const CControlCell* const cell = object->GetControlCell();
    if (m_ImageOf.count(cell) != 0) return false;
    TImage image;
    image.Object.DoSetInstance(object);
    object->DoSerialize(&image.Bytes);
    m_Images.push_back(std::move(image));
    m_ImageOf.emplace(cell, m_Images.size() - 1);
    return true;
}

void CTransaction::DropImage(const CAnyObject* object) {
    const auto found = m_ImageOf.find(object->GetControlCell());
    if (found == m_ImageOf.end()) return;
    TImage dropped;  // goes last: what it kept alive may die with it
    std::swap(dropped, m_Images[found->second]);
    m_ImageOf.erase(found);
}

bool CTransaction::Leave() {
    if (!m_Open || GetCurrent() != this) return false;
    m_Open = false;
    GetModificationState().Current = m_Enclosing;
    return true;
}

}  // namespace zul
