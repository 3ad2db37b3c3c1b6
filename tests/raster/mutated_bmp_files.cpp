/// \file
/// `mutated_bmp_files [--count N] [--seed S] [--cap MIB]`: damages BMP files and hands them to everything
/// that reads them. It is meant to run under the sanitizers, which end it at the first finding; it fails by
/// itself when the process ever needed more memory than the cap. A seed and a number name a file: with
/// `--count 1 --first NUMBER` one is tried again.

#include <sys/resource.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "platform/software/images.h"
#include "tests/images/bmp_suite.h"
#include "tests/raster/raster_testing.h"
#include "zul/kernel/stream.h"
#include "zul/raster/dib_section.h"

namespace {

using namespace zultest;
using zul::CBitmap;
using zul::CDibSection;

class Damage {
public:
    Damage(std::uint64_t seed, std::uint64_t number) {
        std::seed_seq seeds{seed & 0xFFFFFFFF, seed >> 32, number & 0xFFFFFFFF, number >> 32};
        m_Random.seed(seeds);
    }

    std::uint32_t Any() { return static_cast<std::uint32_t>(m_Random()); }
    std::uint32_t Below(std::size_t end) { return Any() % static_cast<std::uint32_t>(end); }
    template <class T, std::size_t Count>
    T OneOf(const T (&values)[Count]) {
        return values[Below(Count)];
    }

    /// A file of the suite, or one of any header, depth and compression with random pixels.
    Bytes MakeFile() {
        static const std::vector<images::TFile> suite = images::MakeSuite();
        if (Below(2) == 0) return suite[Below(suite.size())].Bytes;
        constexpr DWORD Headers[] = {12, 40, 40, 40, 52, 56, 64, 108, 124},
                        Compressions[] = {0, 0, 0, 1, 2, 3, 6};
        const DWORD size = OneOf(Headers), compression = size == 12 ? 0 : OneOf(Compressions);
        const WORD depth = compression == 1 ? WORD{8} : compression == 2 ? WORD{4} : OneOf(Depths);
        BITMAPINFOHEADER header = Header(1 + static_cast<std::int32_t>(Below(40)),
                                         1 + static_cast<std::int32_t>(Below(40)), depth, 0, 0);
        header.biSize = size;
        header.biCompression = compression;
        const auto colors = static_cast<DWORD>(dib::FullColorCount(depth > 8 ? 16 : depth));
        const auto pixels = static_cast<std::size_t>(dib::RowsSize(header));
        if (Below(4) == 0) header.biHeight = -header.biHeight;
        if (Below(2) == 0) header.biSizeImage = static_cast<DWORD>(pixels);
        if (Below(3) == 0 && colors > 0) header.biClrUsed = 1 + Below(colors);
        Bytes packed = Packed(header, Noise((size > 40 ? size - 40 : 0) + 4 * colors + 12 + pixels, Any()));
        if (size == 12) {
            const WORD core[] = {static_cast<WORD>(header.biWidth),
                                 static_cast<WORD>(std::abs(header.biHeight)), 1, depth};
            std::memcpy(&packed[4], core, sizeof core);
        }
        return File(packed, 14 + size + 4 * (header.biClrUsed != 0 ? header.biClrUsed : colors));
    }

    /// Changes a few bytes, numbers of the headers, or the length.
    void Mutate(Bytes& file) {
        if (file.empty()) return;
        constexpr std::uint32_t Numbers[] = {
            0,  1,  2,   3,   4,   8,     12,    16,     24,         40,         54,        64,
            96, 99, 124, 255, 256, 32767, 65535, 0x8000, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};
        for (std::uint32_t left = Below(5); left > 0; --left) {
            const std::size_t place = Below(std::min<std::size_t>(file.size(), Below(2) == 0 ? 60 : 2000));
            if (Below(3) == 0) {
                file[place] = static_cast<std::uint8_t>(Any());
            } else {
                const std::uint32_t number = Below(6) == 0 ? Any() : OneOf(Numbers);
                std::memcpy(&file[place], &number,
                            std::min<std::size_t>(1u << Below(3), file.size() - place));
            }
        }
        if (Below(4) == 0) file.resize(1 + Below(file.size()));
    }

private:
    std::mt19937 m_Random;
};

void Use(CBitmap& bitmap, Damage& damage) {
    std::int32_t width, height;
    bitmap.GetSize(width, height);
    Surface target(20, 20);
    bitmap.DoPaint(&target.Canvas, nullptr);
    bitmap.StretchBlt(&target.Canvas, 0, 0, 20, 20, 0, 0, width, height, CBitmap::RopSourceCopy);
    bitmap.Transparent(&target.Canvas, 3, 3, 9, 9, 0, 0, width, height,
                       static_cast<std::int32_t>(damage.Below(99)));
    zul::CMemoryStream stream;
    bitmap.ObjectToBuffer(&stream);
}

void Try(const zul::CScratchPath& path, Damage& damage) {
    Bytes file = damage.MakeFile();
    damage.Mutate(file);
    std::filesystem::remove(path.Get());  // to write anew is faster than to overwrite
    Put(path, file);
    for (const UINT flags : {LR_DEFAULTCOLOR, LR_CREATEDIBSECTION}) {
        CBitmap loaded;
        const HANDLE handle = ::LoadImageW(nullptr, path.Wide().c_str(), IMAGE_BITMAP, 0, 0, flags);
        loaded.AttachHandle(static_cast<HBITMAP>(handle));
        if (handle != nullptr) Use(loaded, damage);
        ::DeleteObject(handle);
    }
    CDibSection section;
    section.Create(path.Wide().c_str());
    section.SetPixel(static_cast<std::int32_t>(damage.Below(50)), static_cast<std::int32_t>(damage.Below(50)),
                     -1);
    Use(section, damage);
    if (file.size() < 15) return;
    // The bytes behind the file header are a packed image: exactly as long as they are, so that a step beyond
    // shows.
    const Bytes packed(file.begin() + 14, file.end());
    CBitmap bitmap;
    if (bitmap.Create(packed.data(), static_cast<std::uint32_t>(packed.size()))) Use(bitmap, damage);
    if (packed.size() >= 40 &&
        dib::TotalSize(dib::ReadHeader(packed.data())) <= static_cast<std::int64_t>(packed.size())) {
        bitmap.Create(static_cast<const void*>(packed.data()));
    }
    // Read back as a section, the same bytes are pixels without a handle.
    zul::CMemoryStream stream;
    bitmap.ObjectToBuffer(&stream);
    stream.SetPosition(0);
    CDibSection stored;
    stored.ObjectFromBuffer(&stream);
    for (const std::int32_t place : {0, 7, 1000, INT32_MAX})
        stored.SetPixel(place, place / 2, stored.GetPixel(place, place / 3));
    // A header may announce a gigabyte, and the file would have it.
    const std::int64_t rows = std::int64_t{stored.GetRowSize()} * stored.GetHeight();
    if (dib::Absolute(rows) < 1 << 20) stored.SaveToFile(path.Wide().c_str());
}

class Silent : public zul::CErrorHandler {
    void OnError(const zul::TErrorReport&) override {}
};

}  // namespace

int main(int argc, char** argv) {
    std::uint64_t count = 2000, seed = 1, first = 0, capMib = 2048;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string_view name = argv[i];
        std::uint64_t* const value = name == "--count"   ? &count
                                     : name == "--seed"  ? &seed
                                     : name == "--first" ? &first
                                     : name == "--cap"   ? &capMib
                                                         : nullptr;
        if (value == nullptr)
            return std::fprintf(stderr, "mutated_bmp_files: unknown option %s\n", argv[i]), 2;
        *value = std::strtoull(argv[i + 1], nullptr, 10);
    }
    device::SetImageLimit(std::int64_t{16} << 20);
    Silent silent;
    const zul::CErrorHandlerScope scope(&silent);
    const zul::CScratchPath path;
    const int before = device::LiveHandles();
    for (std::uint64_t number = first; number < first + count; ++number) {
        Damage damage(seed, number);
        Try(path, damage);
        if (device::LiveHandles() == before) continue;
        return std::fprintf(stderr, "file %llu of seed %llu leaks\n", static_cast<unsigned long long>(number),
                            static_cast<unsigned long long>(seed)),
               1;
    }
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto peak = static_cast<std::uint64_t>(usage.ru_maxrss) / 1024;
    std::printf("%llu files, at most %llu MiB\n", static_cast<unsigned long long>(count),
                static_cast<unsigned long long>(peak));
    return peak <= capMib ? 0 : 1;
}
