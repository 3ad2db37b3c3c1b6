// The object store, when memory runs out: its engine's allocations fail like all others.
#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <random>

#include "tests/faults/memory_faults.h"
#include "tests/faults/stored_state.h"
#include "zul/canvas/canvas.h"
#include "zul/kernel/domain.h"
#include "zul/kernel/library.h"
#include "zul/kernel/transaction.h"
#include "zul/store/store.h"

namespace faults {
namespace {

using namespace zul;
namespace fs = std::filesystem;

/// A folder that goes with its owner.
struct TFolder {
    TFolder() { fs::create_directories(Path); }
    ~TFolder() { fs::remove_all(Path); }
    const fs::path Path =
        fs::temp_directory_path() / ("zul-store-faults-" + std::to_string(std::random_device()()));
};

/// A store with a canvas that refers to others, and a number that has a place.
class CStored : public CStage {
public:
    CStored() {
        m_Store.Open(GetPath().c_str(), CStore::Create);
        m_Canvas.SetScaler(&m_Scaler);
        m_Canvas.SetGradient(&m_Gradient);
        m_Canvas.GetFont().SetName(u"A name that is too long for a short text");
        m_Store.SetRoot(u"canvas", &m_Canvas);
        m_Store.SetRoot(u"number", &Number);
        m_Store.Place(m_Store.GetId(&Number), {1, 1, 5, 5}, 3);
    }
    std::string State() override {
        // What the file holds tells another that opens it.
        CStore other;
        std::string text;
        if (fs::exists(GetPath()) && other.Open(GetPath().c_str(), CStore::ReadOnly)) {
            for (const CString& name : other.GetRootNames()) {
                CAnyRef root = other.GetRoot(name);
                text += std::string(name.GetBufferAnsi()) + ' ' + StateOf({root.DoGetInstance()});
            }
            text += std::to_string(other.GetCount()) + other.Check().GetBufferAnsi() + ' ';
            for (const CObjectID id : other.FindInBox({0, 0, 10, 10}))
                text += std::to_string(id.GetValue()) + ' ';
        }
        return text + StateOf({&Number, &Further, &m_Canvas});
    }
    std::string Picture() override { return Answer; }
    void Wipe() override { Answer.clear(); }

    std::u16string GetPath() const { return (m_Folder.Path / "store.zul").u16string(); }

    CStore& Store() { return m_Store; }
    /// What another process would: news of two objects, and one is gone.
    void WriteElsewhere() {
        CStore other;
        other.Open(GetPath().c_str(), CStore::ReadWrite);
        CRef<CInteger> number = other.GetRoot<CInteger>(u"number");
        CRef<CCanvas> canvas = other.GetRoot<CCanvas>(u"canvas");
        number->SetValue(99);
        canvas->GetFont().SetName(u"Another name that is too long for a short text");
        other.Store(number.Get());
        other.Store(canvas.Get());
        other.Remove(other.GetId(canvas->GetScaler()));
    }

    std::string Answer;
    CInteger Number{5}, Further{6};

private:
    TFolder m_Folder;
    CStore m_Store;
    CScaler m_Scaler;
    CGradient m_Gradient;
    CCanvas m_Canvas;
};

const struct {
    const char* Name;
    bool (*Call)(CStored&);
    void (*Prepare)(CStored&) = [](CStored&) {};
    bool KeepsState = true;
    std::uint64_t Step = 1;
} StoreCalls[] = {
    {"open a new store", [](CStored& s) { return s.Store().Open(s.GetPath().c_str(), CStore::Create); },
     [](CStored& s) {
         s.Store().Close();
         fs::remove(s.GetPath());
     },
     false,  // a store that was made stays, empty
     17},
    {"open a store", [](CStored& s) { return s.Store().Open(s.GetPath().c_str(), CStore::ReadWrite); },
     [](CStored& s) { s.Store().Close(); }, true, 7},
    {"store again", [](CStored& s) { return !s.Store().Store(&s.Number).IsNull(); }},
    {"store a graph",
     [](CStored& s) {
         CCanvas canvas;
         CGradient gradient;
         canvas.SetGradient(&gradient);
         return s.Store().SetRoot(u"another canvas", &canvas);
     }},
    {"load",
     [](CStored& s) {
         CStore other;
         if (!other.Open(s.GetPath().c_str(), CStore::ReadOnly)) return false;
         CRef<CCanvas> canvas = other.GetRoot<CCanvas>(u"canvas");
         if (!canvas.IsExist()) return false;
         s.Answer += canvas->GetScaler() != nullptr ? "scaler " : "";
         s.Answer += canvas->GetFont().GetName() == nullptr ? "" : "font ";
         return true;
     }},
    {"find",
     [](CStored& s) {
         for (const CObjectID id : s.Store().FindInBox({0, 0, 10, 10}))
             s.Answer += std::to_string(id.GetValue()) + ' ';
         for (const CObjectID id : s.Store().FindByClass(u"CInteger"))
             s.Answer += std::to_string(id.GetValue()) + ' ';
         for (const CString& name : s.Store().GetRootNames())
             s.Answer += name.GetBufferAnsi();
         TWorldBox box;
         s.Answer += s.Store().GetBounds(box) ? std::to_string(box.MaxX) : "";
         s.Answer += std::to_string(s.Store().GetCount()) + s.Store().Check().GetBufferAnsi();
         return true;
     }},
    {"remove", [](CStored& s) { return s.Store().Remove(s.Store().GetId(&s.Number)); }},
    {"place",
     [](CStored& s) {
         return s.Store().Place(s.Store().GetId(&s.Number), {7, 7, 8, 8}, 4);
     }},
    {"take a place away", [](CStored& s) { return s.Store().RemovePlace(s.Store().GetId(&s.Number)); }},
    {"take a name away", [](CStored& s) { return s.Store().RemoveRoot(u"number"); }},
    {"commit",
     [](CStored& s) {
         CNamedTransaction transaction(u"a name that is not short");
         s.Number.SetValue(77);
         return !s.Store().Store(&s.Further).IsNull() && transaction.Commit();
     }},
    {"commit steps",
     [](CStored& s) {
         CNamedTransaction transaction(u"outer");
         s.Number.SetValue(77);
         {
             CEnclosedTransaction undone;
             s.Number.SetValue(78);
             if (s.Store().Store(&s.Further).IsNull()) return false;
         }
         return s.Store().SetRoot(u"further", &s.Further) && s.Store().Remove(s.Store().GetId(&s.Number)) &&
                transaction.Commit();
     }},
    {"refresh", [](CStored& s) { return s.Store().Refresh(); }, [](CStored& s) { s.WriteElsewhere(); }},
    {"read within one state",
     [](CStored& s) {
         CStoreReading reading(s.Store());
         s.Answer += std::to_string(s.Store().GetCount());
         return true;
     }},
};

TEST(MemoryFaults, OfTheStore) {
    AutoRegister();
    std::vector<TPath> paths;
    for (const auto& row : StoreCalls) {
        const auto make = [&row] {
            auto stage = std::make_unique<CStored>();
            row.Prepare(*stage);
            return stage;
        };
        paths.push_back({row.Name, make,
                         [&row](CStage& stage) { return row.Call(static_cast<CStored&>(stage)); },
                         row.KeepsState, row.Step});
    }
    FailEachAllocation(paths);
}

}  // namespace
}  // namespace faults
