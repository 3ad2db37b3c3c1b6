/// \file
/// Transactions: changes that are kept together or undone together.
#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "zul/kernel/export.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/object_image.h"

namespace zul {

class CObjectSource;

/// On whose behalf a transaction runs.
class CPredefinedUser {
public:
    /// A name for logs; null is an empty one.
    CPredefinedUser(const char16_t* name = u"system") : m_Name(name) {}
    const CString& GetName() const { return m_Name; }

private:
    CString m_Name;
};

/// Collects the changes that its thread makes while it is the innermost open one, with the stored form that
/// each changed object had before. Begins when constructed. Transactions end in the reverse order of their
/// beginning; one that is destroyed while open is rolled back, the ones inside it first. A changed object
/// that belongs to its references stays until the transaction ends; one of the caller that dies before takes
/// its changes along.
class ZUL_KERNEL_API CTransaction {
public:
    virtual ~CTransaction();
    CTransaction(const CTransaction&) = delete;
    CTransaction& operator=(const CTransaction&) = delete;

    bool IsOpen() const { return m_Open; }  ///< Until it is committed or rolled back.
    /// The calling thread's innermost open transaction, or null.
    static CTransaction* GetCurrent();

    /// The changes in their order.
    const std::vector<TModification>& GetRecords() const { return m_Records; }

    /// Keeps the changes: inside another transaction they become part of it, else each changed object that
    /// still lives is written to the stores that it lives in, or that its owner does when it is a member of
    /// another object, and gets `DoCommitObject`. \returns false when this is not the innermost open
    /// transaction, and when a store could not keep the changes, which has been reported: everything is
    /// rolled back then, and also before an exception (std::bad_alloc, or one of the error handler) goes on.
    /// All or nothing holds for each store; of several an earlier one may keep its part.
    bool Commit();

    /// Gives each changed object that still lives its former state through `ObjectFromBuffer`, then calls
    /// `DoUnmodify`. Objects excluded from persistence keep their changes. \returns false as `Commit` does.
    /// Where an object needs memory to get its former state and there is none, std::bad_alloc comes and the
    /// transaction stays open, to be rolled back again when there is some; its destructor reports that and
    /// gives up.
    bool Rollback();

    // --- for stores ---

    /// Lets a store take part in this transaction and those around it, unless it does already. \returns false
    /// when the store cannot.
    bool Enlist(CObjectSource* source);
    /// Whether this transaction or one around it knows the object's former state and brings it back itself.
    bool HasImageOf(const CAnyObject* object) const;
    /// The store takes part in the calling thread's transactions no more.
    static void Dismiss(CObjectSource* source);

protected:
    CTransaction();

private:
    friend class CModificator;

    /// \returns true when there was none of this object yet.
    bool TakeImage(CAnyObject* object);
    /// Makes room for the records of brackets that are open.
    void ReserveRecord();
    void DropImage(const CAnyObject* object);
    bool IsInnermost() const { return m_Open && GetCurrent() == this; }
    void Leave();
    bool SaveChanges();
    bool CommitSources();
    bool KeepChanges();
    void PrepareHandOver(CTransaction& outer);
    void HandOver(CTransaction& outer);
    /// What Rollback does. Without a further chance an object that finds no memory keeps its change.
    void UndoAll(bool isLastChance);
    void Forget();

    CTransaction* m_Enclosing = nullptr;
    bool m_Open = true;
    bool m_IsIncomplete = false;  // a change could not be recorded: it can only be undone
    std::vector<TModification> m_Records;
    std::vector<CObjectImage> m_Images;  // in the order of the first changes
    using TImagePlaces = std::unordered_map<const CControlCell*, std::size_t>;
    TImagePlaces m_ImageOf;
    std::vector<CObjectSource*> m_Sources;  // that take part
};

/// A transaction with a name, for logs and messages.
class CNamedTransaction : public CTransaction {
public:
    /// Begins; what it was given can be asked for.
    explicit CNamedTransaction(const char16_t* name = u"", const CPredefinedUser& user = CPredefinedUser())
        : m_Name(name), m_User(user) {}
    const CString& GetName() const { return m_Name; }
    const CPredefinedUser& GetUser() const { return m_User; }

private:
    CString m_Name;
    CPredefinedUser m_User;
};

/// A step inside another transaction, undone by itself or together with it.
class CEnclosedTransaction : public CTransaction {
public:
    /// Begins; what it was given can be asked for.
    explicit CEnclosedTransaction(const CPredefinedUser& user = CPredefinedUser()) : m_User(user) {}
    const CPredefinedUser& GetUser() const { return m_User; }

private:
    CPredefinedUser m_User;
};

}  // namespace zul
