// Stores: everything that can be asked of one, and done to it.
#include <algorithm>

#include "tests/faults/files/file_faults.h"
#include "tests/store/store_testing.h"
#include "zul/kernel/buffer.h"

namespace faults {
namespace {

using namespace zul;

constexpr const char16_t* kFile = u"map.zul";
constexpr std::int32_t kNodes = 16;
constexpr TWorldBox kEverywhere{-1e9, -1e9, 1e9, 1e9};

/// A store with a head that links to nodes, which lie in a row, and everything in memory that a path works
/// with.
struct World {
    CStore store;
    CRef<CNode> head{};
    CNode added{1000};
    std::string answer{};

    CObjectID IdOf(std::size_t link) { return store.GetId(head->GetLink(link)); }
    void Load() {
        head = store.GetRoot<CNode>(u"head");
        for (std::size_t i = 0; head.IsExist() && i < kNodes; ++i)
            head->GetLink(i);
    }
};

void MakeStore() {
    RegisterNodes();
    CStore store;
    store.Open(kFile, CStore::Create);
    CNamedTransaction transaction;
    CNode head(500);
    for (std::int32_t i = 0; i < kNodes; ++i) {
        CNode node(i);
        const CObjectID id = store.Store(&node);
        store.Place(id, {double(i), 0, double(i), 1}, static_cast<std::uint32_t>(i % 3));
        head.Link(store.Load(id).Peek());
    }
    CAnyBuffer large;
    large.Resize(50000, false);
    store.SetRoot(u"large", &large);
    store.SetRoot(u"head", &head);
    transaction.Commit();
}

std::string Text(std::int64_t number) {
    return std::to_string(number) + " ";
}

/// A node and what it links to, by their values.
std::string Describe(CNode* node) {
    if (node == nullptr) return "none ";
    std::string text = Text(node->GetValue()) + ":";
    for (std::size_t i = 0; CNode* const link = node->GetLink(i); ++i)
        text += Text(link->GetValue());
    return text + "\n";
}

/// All that the file holds, as another reader finds it. Ids stay out: what is undone may have used some up.
std::string Contents() {
    CStore store;
    if (!store.Open(kFile, CStore::ReadOnly)) return "no store";
    std::string text = store.Check().GetBufferAnsi();
    text += Text(static_cast<std::int64_t>(store.GetCount()));
    for (const CString& name : store.GetRootNames())
        text += name.GetBufferAnsi() + std::string(" ") + Describe(store.GetRoot<CNode>(name).Get());
    std::vector<std::string> nodes;
    for (const CObjectID id : store.FindByClass(u"CNode"))
        nodes.push_back(Describe(store.Load<CNode>(id).Get()));
    std::sort(nodes.begin(), nodes.end());
    for (const std::string& node : nodes)
        text += node;
    for (const CObjectID id : store.FindInBox(kEverywhere))
        text += Text(store.Load<CNode>(id)->GetValue());
    return text;
}

using Act = bool (*)(World&);

/// \p isLoaded: whether everything is in memory before.
Path OnStore(const std::string& name, Act act, bool isLoaded, void (*prepare)(World&) = nullptr) {
    return {"store: " + name, [act, isLoaded, prepare] {
                MakeStore();
                const auto world = Held<World>();
                world->store.Open(kFile, CStore::ReadWrite);
                if (isLoaded) world->Load();
                if (prepare != nullptr) prepare(*world);
                const auto state = [world] {
                    return world->answer + Describe(world->head.Get()) + Describe(&world->added) + Contents();
                };
                const auto both = [world, act] { return act(*world) && TakeReports() == 0; };
                // What a path asks for may come in part.
                const auto kept = [world, isLoaded] {
                    if (!isLoaded) return Contents();
                    return Describe(world->head.Get()) + Describe(&world->added) + Contents();
                };
                return Run{both, state, kept, "", [world] { world->store.Close(); }};
            }};
}

/// A new file that cannot be opened stays: another process may have it open by now.
Path Opening(const std::string& name, const char16_t* file, CStore::TMode mode, bool isThere) {
    return {"store: " + name, [file, mode, isThere] {
                if (isThere) MakeStore();
                const auto act = [file, mode] {
                    CStore store;
                    return store.Open(file, mode) && store.GetCount() < 1000 && TakeReports() == 0;
                };
                const auto state = [file] {
                    CStore store;
                    const bool opens = store.Open(file, CStore::ReadOnly);
                    return opens && store.GetCount() > 0 ? Contents() : store.Check().GetBufferAnsi();
                };
                if (isThere) return Run{act, state};
                return Run{act, state, [state] { return std::filesystem::exists("new.zul") ? state() : ""; },
                           "./new.zul"};
            }};
}

/// A question, whose answer is right or comes with a report.
template <std::string (*Ask)(World&)>
bool Answers(World& world) {
    world.answer = Ask(world);
    return true;
}

template <class Container>
std::string TextOf(const Container& ids) {
    std::string text;
    for (const CObjectID& id : ids)
        text += Text(id.GetValue());
    return text;
}

std::string AskBox(World& world) {
    return TextOf(world.store.FindInBox({10, 0, 20, 1}, 1, 2));
}
std::string AskBounds(World& world) {
    TWorldBox box;
    const bool isThere = world.store.GetBounds(box);
    return std::to_string(isThere) + std::to_string(box.MaxX);
}
std::string AskClass(World& world) {
    return TextOf(world.store.FindByClass(u"CNode"));
}
std::string AskCount(World& world) {
    return Text(static_cast<std::int64_t>(world.store.GetCount()));
}
std::string AskNames(World& world) {
    std::string text;
    for (const CString& name : world.store.GetRootNames())
        text += name.GetBufferAnsi();
    return text;
}
std::string AskStored(World& world) {
    return Text(world.store.IsStored(CObjectID(3))) + Text(world.store.IsStored(CObjectID(3000)));
}
std::string AskObjects(World& world) {
    const CStoreReading reading(world.store);
    std::string text;
    for (const CObjectID id : world.store.FindInBox({0, 0, 10, 1}))
        text += Describe(world.store.Load<CNode>(id).Get());
    const auto large = world.store.GetRoot<CAnyBuffer>(u"large");
    return text + Text(large.IsExist() ? large->GetSize() : 0);
}

bool Change(World& world, bool commits) {
    CNamedTransaction transaction;
    world.head->SetValue(7);
    world.head->GetLink(3)->SetValue(8);
    bool isDone = !world.store.Store(&world.added).IsNull();
    {
        CEnclosedTransaction inner;
        world.head->GetLink(4)->SetValue(9);
        isDone = world.store.SetRoot(u"second", world.head->GetLink(4)) && isDone;
        isDone = inner.Commit() && isDone;
    }
    {
        CEnclosedTransaction undone;
        world.head->GetLink(5)->SetValue(10);
        world.store.Remove(world.IdOf(6));
        undone.Rollback();
    }
    if (commits && isDone) return transaction.Commit();
    transaction.Rollback();
    return isDone;
}

}  // namespace

std::vector<Path> StorePaths() {
    return {
        Opening("made", u"new.zul", CStore::Create, false),
        Opening("opened", kFile, CStore::ReadWrite, true),
        Opening("opened for reading", kFile, CStore::ReadOnly, true),
        OnStore(
            "objects loaded", [](World& world) { return world.Load(), true; }, false),
        OnStore("objects read in one state", Answers<AskObjects>, false),
        OnStore("box searched", Answers<AskBox>, false),
        OnStore("bounds", Answers<AskBounds>, false),
        OnStore("class searched", Answers<AskClass>, false),
        OnStore("count", Answers<AskCount>, false),
        OnStore("names", Answers<AskNames>, false),
        OnStore("is stored", Answers<AskStored>, false),
        OnStore(
            "checked", [](World& world) { return world.store.Check().IsEmpty(); }, false),
        OnStore(
            "object stored", [](World& world) { return !world.store.Store(&world.added).IsNull(); }, true),
        OnStore(
            "graph stored", [](World& world) { return !world.store.Store(&world.added).IsNull(); }, true,
            [](World& world) {
                for (std::int32_t i = 0; i < kNodes; ++i) {
                    auto* node = new CNode(2000 + i);
                    node->GetControlCell()->Adopt();
                    world.added.Link(node);
                }
            }),
        OnStore(
            "root set", [](World& world) { return world.store.SetRoot(u"added", &world.added); }, true),
        OnStore(
            "root removed", [](World& world) { return world.store.RemoveRoot(u"large"); }, true),
        OnStore(
            "object removed", [](World& world) { return world.store.Remove(world.IdOf(9)); }, true),
        OnStore(
            "placed",
            [](World& world) {
                return world.store.Place(world.IdOf(9), {5, 5, 6, 6});
            },
            true),
        OnStore(
            "place removed", [](World& world) { return world.store.RemovePlace(world.IdOf(9)); }, true),
        OnStore(
            "transaction committed", [](World& world) { return Change(world, true); }, true),
        OnStore(
            "transaction undone", [](World& world) { return Change(world, false); }, true),
        OnStore(
            "refreshed", [](World& world) { return world.store.Refresh(); }, true,
            [](World&) {
                CStore other;
                other.Open(kFile, CStore::ReadWrite);
                const auto head = other.GetRoot<CNode>(u"head");
                CNamedTransaction transaction;
                head->SetValue(77);
                head->GetLink(2)->SetValue(78);
                transaction.Commit();
            }),
        OnStore(
            "closed", [](World& world) { return static_cast<void>(world.store.Close()), true; }, true,
            [](World& world) { world.store.Store(&world.added); }),
    };
}

}  // namespace faults
