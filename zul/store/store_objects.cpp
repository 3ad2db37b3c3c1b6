#include <optional>
#include <string>

#include "zul/kernel/buffer.h"
#include "zul/kernel/class_registry.h"
#include "zul/kernel/object_image.h"
#include "zul/kernel/transaction.h"
#include "zul/store/store_session.h"
#include "zul/store/store_step.h"

namespace zul {
namespace {

CString Describe(const char16_t* what, std::int64_t id, const CString* name) {
    return CString::Format(u"%s %d of class %s", what, id, name != nullptr ? name->GetBuffer() : u"unknown");
}

void ReportDamage(std::int64_t id, const CString* name, const char16_t* why) {
    CAnyObject::RunError(ErrorFailed, CString::Format(u"Can't load %s: %s <zul::CStore::Load()>",
                                                      Describe(u"object", id, name), why));
}

/// So that what is noted after a change of the file cannot fail.
void NeedRoom(std::vector<std::int64_t>& list) {
    if (list.size() == list.capacity()) list.reserve(2 * list.size() + 16);
}

}  // namespace

// --- writing ---

std::int64_t CStoreSession::Store(CAnyObject* object, const char16_t* member) {
    if (object == nullptr || !object->IsSerializable()) {
        CAnyObject::RunError(
            ErrorFailed, CString::Format(u"There is nothing to store <zul::CStore::%s()>", member), object);
        return 0;
    }
    CStoreStep step(*this);
    return step.End(step.IsReady() && StoreGraph(object)) ? GetLocalId(object) : 0;
}

bool CStoreSession::Save(CAnyObject* object) {
    if (!object->IsSerializable()) return true;
    // What was changed and then removed is not to come back.
    const std::optional<bool> row = m_Removed.empty() ? true : FindRow(GetLocalId(object));
    return row && (!*row || StoreGraph(object));
}

bool CStoreSession::StoreGraph(CAnyObject* root) {
    const std::int64_t firstId = m_NextId;
    bool isStored = false;
    const CFinally settle([&] {
        m_Reached.clear();
        m_Visited.clear();
        if (!isStored) WithdrawNewIds(firstId);
    });
    m_Root = root;
    m_FirstOfGraph = firstId;
    if (NeedId(root) == 0 || !Serialize(root)) return false;
    if (m_Reached.empty()) {
        isStored = WriteRow(root);
        return isStored;
    }
    // Many rows: they come together or not at all.
    CEnclosedTransaction together;
    if (!together.Enlist(this) || !WriteRow(root)) return false;
    for (std::size_t i = 0; i < m_Reached.size(); ++i) {
        CAnyObject* const object = m_Reached[i].Peek();
        if (!Serialize(object) || !WriteRow(object)) return false;
    }
    isStored = together.Commit();
    return isStored;
}

std::int64_t CStoreSession::NeedId(CAnyObject* object) {
    if (const std::int64_t known = GetLocalId(object)) return known;
    if (CClass::GetName(object) == nullptr) {
        CAnyObject::RunError(ErrorFailed, u"The object's class is not registered <zul::CStore::Store()>",
                             object);
        return 0;
    }
    if (m_NextId > MaxLocalId) {
        CAnyObject::RunError(ErrorFailed, u"The store has no more ids <zul::CStore::Store()>", object);
        return 0;
    }
    Assign(object, m_NextId);
    return m_NextId++;
}

std::int64_t CStoreSession::Reach(CAnyObject* object) {
    if (!object->IsSerializable()) return 0;
    const std::int64_t id = NeedId(object);
    if (id == 0) m_HasGap = true;
    if (id != 0 && object != m_Root && m_Visited.insert(object).second) m_Reached.emplace_back(object);
    return id;
}

bool CStoreSession::Serialize(CAnyObject* object) {
    m_Writer.Clear();
    m_HasGap = false;
    const bool isWritten = object->DoSerialize(&m_Writer);
    if (m_HasGap) return false;
    if (isWritten) return true;
    CAnyObject::RunError(ErrorFailed,
                         CString::Format(u"Can't store %s: it does not write itself <zul::CStore::Store()>",
                                         Describe(u"object", GetLocalId(object), CClass::GetName(object))),
                         object);
    return false;
}

bool CStoreSession::WriteRow(CAnyObject* object) {
    const CString* const name = CClass::GetName(object);
    const std::int64_t classId = name != nullptr ? NeedClass(*name) : 0;
    if (classId == 0) return false;
    // The engine has undone everything by itself after a grave error.
    if (!m_Database.HasTransaction()) return Fail(u"The transaction is lost", u"Store");
    const std::int64_t id = GetLocalId(object);
    const bool isNew = id >= m_FirstOfGraph;
    NeedRoom(m_Updated);
    if (!CQuery(m_Database, isNew ? m_InsertObject : m_ReplaceObject)
             .Bind(1, id)
             .Bind(2, classId)
             .BindBytes(3, m_Writer.GetBuffer(), m_Writer.GetSize())
             .Run()) {
        return Fail(u"Can't store an object", u"Store");
    }
    if (id < m_Levels.back().FirstId) m_Updated.push_back(id);
    ++m_Counts.ObjectsWritten;
    m_Counts.BytesWritten += m_Writer.GetSize();
    return true;
}

std::int64_t CStoreSession::NeedClass(const CString& name) {
    const auto known = m_ClassIds.find(&name);
    if (known != m_ClassIds.end()) return known->second;
    CStatement insert("INSERT OR IGNORE INTO classes(name) VALUES(?)");
    CStatement select("SELECT id FROM classes WHERE name=?");
    if (!CQuery(m_Database, insert).BindText(1, name.GetBufferAnsi()).Run()) {
        Fail(u"Can't store a class", u"Store");
        return 0;
    }
    CQuery query(m_Database, select);
    query.BindText(1, name.GetBufferAnsi());
    if (!query.Next() || query.GetInteger(0) <= 0) {
        Fail(u"Can't store a class", u"Store");
        return 0;
    }
    return m_ClassIds[&name] = query.GetInteger(0);
}

bool CStoreSession::Remove(std::int64_t id) {
    if (!HasRow(id)) return false;
    CAnyRef object = LoadLocal(id);
    if (object.Peek() != nullptr) object.Peek()->DoRemoveFromDB();
    NeedRoom(m_Removed);
    CStoreStep step(*this, true);
    CStatement roots("DELETE FROM roots WHERE object=?");
    bool isDone = step.IsReady();
    for (CStatement* each : {&m_DeleteObject, &m_DeleteBox, &roots})
        isDone = isDone &&
                 (CQuery(m_Database, *each).Bind(1, id).Run() || Fail(u"Can't remove an object", u"Remove"));
    if (isDone) m_Removed.push_back(id);
    return step.End(isDone);
}

// --- reading ---

std::int64_t CStoreSession::ToLocal(CObjectID id) const {
    const std::int64_t value = id.GetValue();
    return value > 0 && value <= MaxLocalId ? value : ToLocalId(value);
}

CAnyRef CStoreSession::Load(std::int64_t id) {
    // An object that was removed may still be in memory under its id, until that is final.
    if (!m_Removed.empty() && !HasRow(id)) return {};
    return LoadLocal(id);
}

CAnyRef CStoreSession::LoadLocal(std::int64_t id) {
    CAnyRef found = FindInMemory(id);
    if (found.Peek() != nullptr || id <= 0 || m_Damaged.count(id) != 0) return found;
    if (m_LoadDepth == MaxLoadDepth) {
        CAnyObject::RunError(ErrorFailed, u"Objects load each other without end <zul::CStore::Load()>");
        return {};
    }
    std::string& bytes = m_LoadBytes[m_LoadDepth];
    std::int64_t classId = 0;
    {
        CQuery query(m_Database, m_SelectObject);
        query.Bind(1, id);
        if (!query.Next()) {
            if (!query.IsDone()) Fail(u"Can't load an object", u"Load");
            return {};
        }
        classId = query.GetInteger(0);
        bytes = query.GetBytes(1);
    }
    const CString* name = nullptr;
    return FindClass(classId, name) ? MakeObject(id, name, bytes) : CAnyRef();
}

CAnyRef CStoreSession::MakeObject(std::int64_t id, const CString* name, const std::string& bytes) {
    CAnyRef made;
    made.DoAdoptInstance(name != nullptr ? CClass::Create(*name) : nullptr);
    CAnyObject* const object = made.Peek();
    NeedMemory(object != nullptr || name == nullptr || CClass::GetFactory(*name) == nullptr);
    bool isWhole = false;
    const std::uint64_t faults = m_Faults;
    if (object != nullptr) {
        Assign(object, id);
        ++m_LoadDepth;
        const CFinally settle([&] {
            --m_LoadDepth;
            if (!isWhole) Withdraw(id);
        });
        CStoreReader reader(*this, bytes);
        isWhole = object->DoUnserialize(&reader) && reader.WasWhole();
    }
    if (isWhole) {
        ++m_Counts.ObjectsRead;
        m_Counts.BytesRead += bytes.size();
        return made;
    }
    // An object that needs others may come next time if they could not be read.
    if (m_Faults == faults) m_Damaged.insert(id);
    ReportDamage(id, name, object != nullptr ? u"its bytes are damaged" : u"it is not registered");
    return {};
}

bool CStoreSession::ReadRow(std::int64_t id, std::optional<std::string>& bytes) {
    CQuery query(m_Database, m_SelectObject);
    if (query.Bind(1, id).Next()) bytes = query.GetBytes(1);
    return bytes || query.IsDone() || Fail(u"Can't read an object again", u"Load");
}

bool CStoreSession::ReadAgain(CAnyObject* object, const std::string& bytes) {
    CStoreReader reader(*this, bytes);
    if (object->DoUnserialize(&reader) && reader.WasWhole()) return true;
    ReportDamage(GetLocalId(object), CClass::GetName(object), u"its bytes are damaged");
    return false;
}

bool CStoreSession::FindClass(std::int64_t classId, const CString*& name) {
    const auto known = m_ClassNames.find(classId);
    if (known != m_ClassNames.end()) {
        name = &known->second;
        return true;
    }
    CStatement statement("SELECT name FROM classes WHERE id=?");
    CQuery query(m_Database, statement);
    if (!query.Bind(1, classId).Next()) return query.IsDone() || Fail(u"Can't load an object", u"Load");
    name = &m_ClassNames.emplace(classId, std::string(query.GetBytes(0)).c_str()).first->second;
    return true;
}

std::optional<bool> CStoreSession::FindRow(std::int64_t id) {
    CQuery query(m_Database, m_HasObject);
    if (query.Bind(1, id).Next()) return true;
    if (query.IsDone()) return false;
    Fail(u"Can't look for an object", u"Load");
    return std::nullopt;
}

std::uint64_t CStoreSession::GetCount() {
    const auto count = m_Database.Ask("SELECT count(*) FROM objects");
    if (!count) Fail(u"Can't count the objects", u"GetCount");
    return static_cast<std::uint64_t>(count.value_or(0));
}

std::vector<CObjectID> CStoreSession::FindByClass(const CString& name) {
    CStatement statement(
        "SELECT id FROM objects WHERE class=(SELECT id FROM classes WHERE name=?) ORDER BY id");
    CQuery query(m_Database, statement);
    query.BindText(1, name.GetBufferAnsi());
    std::vector<CObjectID> found;
    while (query.Next())
        found.emplace_back(query.GetInteger(0));
    if (!query.IsDone()) Fail(u"Can't look for objects", u"FindByClass");
    return found;
}

// --- roots ---

bool CStoreSession::SetRoot(const CString& name, CAnyObject* object) {
    if (name.IsEmpty()) {
        CAnyObject::RunError(ErrorFailed, u"A root needs a name <zul::CStore::SetRoot()>", object);
        return false;
    }
    CStoreStep step(*this, true);
    const std::int64_t id = step.IsReady() ? Store(object, u"SetRoot") : 0;
    CStatement statement("INSERT OR REPLACE INTO roots VALUES(?, ?)");
    const bool isSet =
        id != 0 && (CQuery(m_Database, statement).BindText(1, name.GetBufferAnsi()).Bind(2, id).Run() ||
                    Fail(u"Can't name an object", u"SetRoot"));
    return step.End(isSet);
}

std::int64_t CStoreSession::FindRoot(const CString& name) {
    CQuery query(m_Database, m_SelectRoot);
    if (query.BindText(1, name.GetBufferAnsi()).Next()) return query.GetInteger(0);
    if (!query.IsDone()) Fail(u"Can't look for a name", u"GetRoot");
    return 0;
}

bool CStoreSession::RemoveRoot(const CString& name) {
    if (FindRoot(name) == 0) return false;
    CStoreStep step(*this);
    CStatement statement("DELETE FROM roots WHERE name=?");
    return step.End(step.IsReady() &&
                    (CQuery(m_Database, statement).BindText(1, name.GetBufferAnsi()).Run() ||
                     Fail(u"Can't remove a name", u"RemoveRoot")));
}

std::vector<CString> CStoreSession::GetRootNames() {
    CStatement statement("SELECT name FROM roots ORDER BY name");
    CQuery query(m_Database, statement);
    std::vector<CString> names;
    while (query.Next())
        names.emplace_back(std::string(query.GetBytes(0)).c_str());
    if (!query.IsDone()) Fail(u"Can't list the names", u"GetRootNames");
    return names;
}

// --- upkeep ---

bool CStoreSession::Refresh() {
    if (m_Database.HasTransaction() || !BeginReading()) return false;
    const CFinally end([this] { EndReading(); });
    std::int64_t version = 0;
    {
        CQuery query(m_Database, m_SelectDataVersion);
        if (!query.Next()) return Fail(u"Can't look for news", u"Refresh");
        version = query.GetInteger(0);
    }
    if (version == m_DataVersion) return false;
    // All is read before anything changes.
    struct TNews {
        CObjectImage Before;
        std::int64_t Id;
        std::optional<std::string> Row;
    };
    std::vector<TNews> news;
    for (const CAnyRef& each : GetObjectsInMemory()) {
        const std::int64_t id = GetLocalId(each.Peek());
        if (id == 0) continue;
        news.push_back({CObjectImage(each.Peek()), id, {}});
        if (!ReadRow(id, news.back().Row)) return false;
    }
    m_Damaged.clear();
    m_ClassIds.clear();
    m_ClassNames.clear();
    bool isDone = false;
    const CFinally undo([&] {
        const auto attempt = [](const auto& step) {
            try {
                step();
            } catch (...) {
                // What finds no memory stays as it is now; the next Refresh reads it again.
            }
        };
        if (isDone) return;
        for (const TNews& each : news) {
            if (!each.Row && each.Before.GetObject() != nullptr)
                attempt([&] { Assign(each.Before.GetObject(), each.Id); });
        }
        for (TNews& each : news)
            attempt([&] { each.Before.PutBack(); });
    });
    for (const TNews& each : news) {
        if (!each.Row) Withdraw(each.Id);
    }
    for (TNews& each : news) {
        CAnyObject* const object = each.Before.GetObject();
        if (each.Row && object != nullptr && !ReadAgain(object, *each.Row)) each.Before.PutBack();
    }
    isDone = true;
    m_DataVersion = version;
    return true;
}

std::size_t CStoreSession::Collect() {
    // Trial deletion: what is left of an object's references when those from other loaded objects are taken
    // off comes from outside, and whatever can be reached from such an object stays. (D. F. Bacon and V. T.
    // Rajan, Concurrent Cycle Collection in Reference Counted Systems, 2001.)
    struct TNode {
        std::uint32_t Held = 0;  // by this list, and by other loaded objects
        bool Stays = false;
        std::vector<const CAnyObject*> Targets;
    };
    std::vector<CAnyRef> objects = GetObjectsInMemory();
    std::unordered_map<const CAnyObject*, TNode> nodes;
    for (CAnyRef& each : objects) {
        const CAnyObject* const object = each.Peek();
        if (object != nullptr && object->GetControlCell()->IsAdopted()) ++nodes[object].Held;
    }
    for (auto& [object, node] : nodes) {
        CReferenceLister lister;
        const_cast<CAnyObject*>(object)->DoSerialize(&lister);
        node.Targets = lister.TakeFound();
        for (const CAnyObject* target : node.Targets) {
            const auto found = nodes.find(target);
            if (found != nodes.end()) ++found->second.Held;
        }
    }
    std::vector<const CAnyObject*> staying;
    for (auto& [object, node] : nodes) {
        node.Stays = object->GetControlCell()->GetReferenceCount() > node.Held;
        if (node.Stays) staying.push_back(object);
    }
    while (!staying.empty()) {
        const auto targets = std::move(nodes[staying.back()].Targets);
        staying.pop_back();
        for (const CAnyObject* target : targets) {
            const auto found = nodes.find(target);
            if (found == nodes.end() || found->second.Stays) continue;
            found->second.Stays = true;
            staying.push_back(target);
        }
    }
    std::size_t gone = 0;
    for (const auto& [object, node] : nodes) {
        if (node.Stays) continue;
        CAnyPtr(object).Remove();
        ++gone;
    }
    return gone;
}

}  // namespace zul
