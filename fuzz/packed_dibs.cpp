/// \file
/// Packed images in memory, sound and damaged, handed to everything that takes one: copied into bitmaps, as
/// their stored bytes, as a module's resource, as the header of a section.
///
/// An input is a packed image, whose last byte chooses who takes it.

#include <algorithm>
#include <iterator>
#include <vector>

#include "fuzz/frame/bitmap_use.h"
#include "fuzz/frame/bmp_mutation.h"
#include "fuzz/frame/fuzzing.h"
#include "platform/dib_header.h"
#include "platform/software/images.h"
#include "platform/software/resources.h"
#include "zul/raster/dib_section.h"
#include "zul/raster/image.h"

namespace {

using fuzz::Require;
using Bytes = std::vector<std::uint8_t>;

constexpr std::int64_t kMostBytes = 1 << 17;

/// A bitmap whose stored bytes are these, whatever they are.
template <class T>
class Stored : public T {
public:
    explicit Stored(const Bytes& bytes) {
        this->NeedBuffer()->Write(0, static_cast<std::uint32_t>(bytes.size()), bytes.data());
    }
};

template <class T>
void UseStored(const Bytes& bytes) {
    Stored<T> stored(bytes);
    fuzz::UseBitmap(stored);
}

template <class T>
void UseCopied(const Bytes& bytes) {
    T bitmap;
    if (!bitmap.Create(bytes.data(), static_cast<std::uint32_t>(bytes.size()))) return;
    Require(bitmap.GetDIBSize() <= static_cast<std::int64_t>(bytes.size()), "what was taken was there");
    fuzz::UseBitmap(bitmap);
    T same;
    Require(same.Create(static_cast<const void*>(bytes.data())), "a whole image needs no length");
}

template <class T>
void UseAsResource(const Bytes& bytes) {
    static int address;
    const auto module = reinterpret_cast<HMODULE>(&address);
    device::RegisterBitmapResource(module, MAKEINTRESOURCEW(7), bytes.data(), bytes.size());
    T bitmap;
    bitmap.Create(module, MAKEINTRESOURCEW(7));
    fuzz::UseBitmap(bitmap);
    device::RemoveBitmapResources(module);
}

/// The header alone, with as many colours behind it as the device may read; then what it says, by the calls
/// that take sizes.
void UseAsHeader(const Bytes& bytes) {
    Bytes info(sizeof(BITMAPINFOHEADER) + 256 * sizeof(RGBQUAD));
    std::copy_n(bytes.begin(), std::min(bytes.size(), info.size()), info.begin());
    const BITMAPINFOHEADER header = dib::ReadHeader(info.data());
    if (dib::Absolute(std::int64_t{header.biWidth} * header.biHeight) > kMostBytes / 4) return;
    void* pixels = nullptr;
    const HBITMAP section = ::CreateDIBSection(nullptr, reinterpret_cast<const BITMAPINFO*>(info.data()),
                                               DIB_RGB_COLORS, &pixels, nullptr, 0);
    Require((section != nullptr) == (pixels != nullptr), "a section has pixels");
    ::DeleteObject(section);

    const Bytes rows(static_cast<std::size_t>(kMostBytes), 0x5A);
    zul::CBitmap bitmap;
    bitmap.Create(header.biWidth, header.biHeight, header.biBitCount, rows.data());
    fuzz::UseBitmap(bitmap);
    zul::CDibSection sized;
    sized.Create(header.biWidth, header.biHeight, header.biBitCount, rows.data());
    fuzz::UseBitmap(sized);
}

}  // namespace

extern "C" std::size_t LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t mostSize,
                                               unsigned seed) {
    return fuzz::MutateBmp(data, size, mostSize, seed, false);
}

void fuzz::Run(const std::uint8_t* data, std::size_t size) {
    device::SetImageLimit(kMostBytes);
    const Bytes bytes(data, data + size);
    constexpr void (*kWays[])(const Bytes&) = {UseCopied<zul::CBitmap>,         UseCopied<zul::CDibSection>,
                                               UseStored<zul::CBitmap>,         UseStored<zul::CDibSection>,
                                               UseStored<zul::CImage>,          UseAsResource<zul::CBitmap>,
                                               UseAsResource<zul::CDibSection>, UseAsHeader};
    if (size > 0 && !IsSlow(data, size)) kWays[data[size - 1] % std::size(kWays)](bytes);
}
