/// \file
/// Store files with damaged bytes, opened, asked for everything and written to.
///
/// An input is a list of changes to a sound file: three bytes say where, one how many, and those follow; a
/// place beyond the end cuts the file there, modulo its size.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzz/frame/fuzzing.h"
#include "zul/canvas/canvas.h"
#include "zul/kernel/collections.h"
#include "zul/kernel/transaction.h"
#include "zul/store/store.h"

namespace {

namespace fs = std::filesystem;

class File {
public:
    File() {
        zul::CStore store;
        store.Open(m_Path.u16string().c_str(), zul::CStore::Create);
        zul::CScaler scaler;
        zul::CCanvas canvas;
        canvas.SetScaler(&scaler);
        zul::CNamedTransaction transaction;
        store.SetRoot(u"canvas", &canvas);
        for (int i = 0; i < 100; ++i) {
            zul::CPen pen;
            pen.SetWidth(i);
            store.Place(store.Store(&pen), {double(i), 0, double(i + 2), 9},
                        static_cast<std::uint32_t>(i % 3));
        }
        transaction.Commit();
        store.Close();
        std::ifstream file(m_Path, std::ios::binary);
        m_Bytes.assign(std::istreambuf_iterator<char>(file), {});
    }

    std::u16string Damage(const std::uint8_t* data, std::size_t size) const {
        std::string bytes = m_Bytes;
        while (size >= 4) {
            const std::size_t place = data[0] | data[1] << 8 | data[2] << 16;
            const std::size_t count = std::min<std::size_t>({size - 4, data[3], 16});
            if (place >= bytes.size()) bytes.resize(place % (bytes.size() + 1));
            for (std::size_t i = 0; i < count && place + i < bytes.size(); ++i)
                bytes[place + i] = static_cast<char>(data[4 + i]);
            data += 4 + count;
            size -= 4 + count;
        }
        Forget();
        std::ofstream(m_Path, std::ios::binary) << bytes;
        return m_Path.u16string();
    }

private:
    void Forget() const {
        std::error_code ignored;
        for (const char* part : {"", "-wal", "-shm", "-journal"})
            fs::remove(m_Path.string() + part, ignored);
    }

    fs::path m_Path = fuzz::Scratch().Directory() / "store.zul";
    std::string m_Bytes;
};

void UseAll(zul::CStore& store) {
    store.Refresh();
    for (const zul::CString& name : store.GetRootNames())
        store.GetRoot(name);
    const zul::CRef<zul::CCanvas> canvas = store.GetRoot<zul::CCanvas>(u"canvas");
    if (canvas.IsExist()) canvas->GetScaler();
    for (const zul::CObjectID id : store.FindByClass(u"CPen"))
        store.Load(id);
    const auto found = store.FindInBox({0, 0, 50, 5}, 0, 1);
    zul::TWorldBox bounds;
    store.GetBounds(bounds);
    zul::CNamedTransaction transaction;
    zul::CPen added;
    const zul::CObjectID id = store.Store(&added);
    store.Place(id, {1, 1, 2, 2});
    if (!found.empty()) store.Remove(found.front());
    if (found.size() > 1 && store.IsStored(found.back())) store.RemovePlace(found.back());
    store.RemoveRoot(u"canvas");
    transaction.Commit();
}

}  // namespace

void fuzz::Run(const std::uint8_t* data, std::size_t size) {
    static const File file;
    const std::u16string path = file.Damage(data, size);
    zul::CStore store;
    if (store.Open(path.c_str(), size % 2 == 0 ? zul::CStore::ReadWrite : zul::CStore::ReadOnly))
        UseAll(store);
    store.Check();
}
