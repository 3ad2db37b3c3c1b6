// What the store's tests have done in other processes.
//
//     store_worker draw FILE      prints a hash of the picture that the canvas in the file draws
//     store_worker fill FILE      adds batches of nodes, one transaction each, until it is killed
//     store_worker watch FILE N   reads the pair of nodes until N different states were seen; fails when
//                                 it sees half of one
#include <cstdio>
#include <cstdlib>
#include <set>
#include <string_view>

#include "tests/store/drawn_canvas.h"
#include "tests/store/store_testing.h"

namespace zul {
namespace {

int Draw(const char16_t* path) {
    CStore store;
    if (!store.Open(path, CStore::ReadOnly)) return 1;
    const CRef<CCanvas> canvas = store.GetRoot<CCanvas>(u"canvas");
    const CRef<CPalette> palette = store.GetRoot<CPalette>(u"palette");
    if (!canvas.IsExist() || !palette.IsExist()) return 1;
    std::printf("%016llx\n", static_cast<unsigned long long>(HashOfPicture(*canvas.Get(), palette.Get())));
    return 0;
}

int Fill(const char16_t* path) {
    CStore store;
    if (!store.Open(path, CStore::Create)) return 1;
    for (std::size_t batch = store.GetRootNames().size();; ++batch) {
        CNamedTransaction transaction(u"batch");
        CNode head(BatchSize);
        for (std::int32_t i = 0; i < BatchSize; ++i) {
            CNode node(i);
            const CObjectID id = store.Store(&node);
            store.Place(id, {double(i), double(batch), double(i), double(batch)});
            head.Link(store.Load(id).Peek());
        }
        if (!store.SetRoot(CString::Format(u"batch %d", static_cast<std::int32_t>(batch)), &head)) return 1;
        if (!transaction.Commit()) return 1;
    }
}

int Watch(const char16_t* path, int wanted) {
    CStore store;
    if (!store.Open(path, CStore::ReadOnly)) return 1;
    std::set<std::int32_t> seen;
    while (static_cast<int>(seen.size()) < wanted) {
        const CStoreReading reading(store);
        const CRef<CNode> first = store.GetRoot<CNode>(u"first");
        const CRef<CNode> second = store.GetRoot<CNode>(u"second");
        if (!first.IsExist() || !second.IsExist() || first->GetValue() != -second->GetValue()) return 3;
        seen.insert(first->GetValue());
    }
    return 0;
}

}  // namespace
}  // namespace zul

int main(int argc, char** argv) {
    using namespace zul;
    if (argc < 3) return 2;
    AutoRegister();
    RegisterNodes();
    const std::string_view task = argv[1];
    const CString path(argv[2]);
    if (task == "draw") return Draw(path.GetBuffer());
    if (task == "fill") return Fill(path.GetBuffer());
    if (task == "watch" && argc == 4) return Watch(path.GetBuffer(), std::atoi(argv[3]));
    return 2;
}
