/// \file
/// BMP files, sound and damaged, handed to everything that reads them: the device's and the library's calls,
/// from a file, from a module's resource, as an image of the system directory.
///
/// An input is a file, whose last byte chooses the class that reads it. From a resource it must look as from
/// disk, and what a section saves it must find again.

#include <cstddef>
#include <cstring>
#include <iterator>
#include <string>

#include "fuzz/frame/bitmap_use.h"
#include "fuzz/frame/bmp_mutation.h"
#include "fuzz/frame/fuzzing.h"
#include "platform/dib_header.h"
#include "platform/software/images.h"
#include "platform/software/resources.h"
#include "zul/kernel/client.h"
#include "zul/raster/dib_section.h"
#include "zul/raster/image.h"

namespace {

using fuzz::Require;

/// What a section shows, null for none. Deletes it.
std::string Picture(HANDLE handle) {
    const auto section = static_cast<HBITMAP>(handle);
    BITMAP bitmap{};
    if (::GetObjectW(section, sizeof bitmap, &bitmap) == 0) return {};
    std::string picture(reinterpret_cast<const char*>(&bitmap), offsetof(BITMAP, bmBits));
    picture.append(static_cast<const char*>(bitmap.bmBits),
                   static_cast<std::size_t>(bitmap.bmWidthBytes) * static_cast<std::size_t>(bitmap.bmHeight));
    ::DeleteObject(section);
    return picture;
}

/// Whether the rows stand where a resource, which has no file header to say it, has them.
bool StandsAsResource(const std::uint8_t* file, std::size_t size) {
    if (size < 54 || file[0] != 'B' || file[1] != 'M') return false;
    const BITMAPINFOHEADER header = dib::ReadHeader(file + dib::kFileHeaderSize);
    std::uint32_t rows;
    std::memcpy(&rows, file + 10, sizeof rows);
    return header.biSize == dib::kHeaderSize && header.biCompression == BI_RGB &&
           rows == dib::kFileHeaderSize + dib::BitsOffset(header);
}

void ReadByDevice(const std::u16string& path, HMODULE module, bool asResource) {
    const auto load = [&](HMODULE from, const char16_t* name, UINT flags) {
        return ::LoadImageW(from, name, IMAGE_BITMAP, 0, 0, flags);
    };
    const std::string shown = Picture(load(nullptr, path.c_str(), LR_CREATEDIBSECTION));
    const std::string same = Picture(load(module, u"bmp", LR_CREATEDIBSECTION));
    Require(same == shown || !asResource, "a resource looks as its file");
    zul::CBitmap likeDisplay;
    likeDisplay.AttachHandle(static_cast<HBITMAP>(load(nullptr, path.c_str(), LR_DEFAULTCOLOR)));
    Require((likeDisplay.GetHandle() != nullptr) == !shown.empty(), "a file can be read or not");
    fuzz::UseBitmap(likeDisplay);
    ::DeleteObject(likeDisplay.DetachHandle());
}

template <class T>
void ReadFromFile(const char16_t* path, HMODULE) {
    T bitmap;
    bitmap.Create(path);
    fuzz::UseBitmap(bitmap);
}

template <class T>
void ReadFromModule(const char16_t*, HMODULE module) {
    T bitmap;
    bitmap.Create(module, u"bmp");
    fuzz::UseBitmap(bitmap);
}

/// At other sizes than its own.
void ReadResized(const char16_t* path, HMODULE module) {
    for (const int side : {1, 7, -30}) {
        for (const UINT flags : {LR_DEFAULTCOLOR, LR_CREATEDIBSECTION}) {
            ::DeleteObject(static_cast<HGDIOBJ>(::LoadImageW(nullptr, path, IMAGE_BITMAP, side, 0, flags)));
            ::DeleteObject(static_cast<HGDIOBJ>(::LoadImageW(module, u"bmp", IMAGE_BITMAP, 9, side, flags)));
        }
    }
}

void ReadImage(const char16_t*, HMODULE) {
    ReadFromFile<zul::CImage>(u"input", nullptr);
}

void SaveAndLoad(const fuzz::ScratchFile& scratch) {
    zul::CDibSection section, same;
    section.Create(scratch.Wide().c_str());
    if (section.GetHandle() == nullptr || section.GetImageSize() > 1 << 18) return;
    section.SetPixel(3, 1, -1);
    Require(section.SaveToFile(scratch.Wide().c_str()), "a section is saved");
    const std::string saved = scratch.Bytes();
    same.Create(scratch.Wide().c_str());
    Require(same.SaveToFile(scratch.Wide().c_str()) && scratch.Bytes() == saved,
            "a saved section comes back");
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t mostSize,
                                               unsigned seed) {
    return fuzz::MutateBmp(data, size, mostSize, seed, true);
}

void fuzz::Run(const std::uint8_t* data, std::size_t size) {
    if (size > 14 && IsSlow(data + 14, size - 14)) return;
    const ScratchFile& scratch = Scratch();
    static int moduleAddress;
    const auto module = reinterpret_cast<HMODULE>(&moduleAddress);
    device::SetImageLimit(1 << 17);
    zul::CClient::SetSysDBDir(scratch.Directory().u16string().c_str());
    scratch.Fill(std::string(data, data + size));
    Require(device::RegisterBitmapResource(module, u"bmp", data, size) || data == nullptr,
            "a resource is registered");

    ReadByDevice(scratch.Wide(), module, StandsAsResource(data, size));
    constexpr void (*kReaders[])(const char16_t*, HMODULE) = {ReadFromFile<zul::CBitmap>,
                                                              ReadFromModule<zul::CBitmap>,
                                                              ReadFromFile<zul::CDibSection>,
                                                              ReadFromModule<zul::CDibSection>,
                                                              ReadImage,
                                                              ReadResized};
    kReaders[size > 0 ? data[size - 1] % std::size(kReaders) : 0](scratch.Wide().c_str(), module);
    SaveAndLoad(scratch);
    device::RemoveBitmapResources(module);
}
