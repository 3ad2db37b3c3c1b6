/// \file
/// Loading images: the platform's call.

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <memory>
#include <new>
#include <vector>

#include "platform/crt.h"
#include "platform/dib_header.h"
#include "platform/software/blit.h"
#include "platform/software/context_object.h"
#include "platform/software/resources.h"
#include "platform/software/section.h"
#include "platform/software/trace.h"

using namespace device;

namespace {

struct FileCloser {
    void operator()(std::FILE* file) const { std::fclose(file); }
};

/// A whole file; empty when there is none or it is larger than any image.
std::vector<std::uint8_t> ReadFile(LPCWSTR path) {
    const std::unique_ptr<std::FILE, FileCloser> file(zul_wfopen(path, u"rb"));
    if (file == nullptr || std::fseek(file.get(), 0, SEEK_END) != 0) return {};
    const std::int64_t size = std::ftell(file.get());
    if (size <= 0 || size > dib::kSizeLimit || std::fseek(file.get(), 0, SEEK_SET) != 0) return {};
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
    if (std::fread(bytes.data(), 1, bytes.size(), file.get()) != bytes.size()) return {};
    return bytes;
}

/// The image of a header at \p bytes, whose rows start \p offset bytes behind it, as a section; null when it
/// is not whole or of a kind that cannot be read.
std::unique_ptr<Bitmap> ReadImage(const std::uint8_t* bytes, std::int64_t size, std::int64_t offset) {
    if (size < dib::kHeaderSize) return nullptr;
    const BITMAPINFOHEADER header = dib::ReadHeader(bytes);
    if (!dib::IsSectionHeader(header) || header.biCompression != BI_RGB) return nullptr;
    const std::int64_t rows = dib::RowsSize(header);
    if (offset < dib::kHeaderSize || offset > size || rows > size - offset) return nullptr;
    SectionInfo info{};
    info.header = header;
    const std::int64_t colors = std::min(dib::ColorCount(header), dib::FullColorCount(header.biBitCount));
    const std::int64_t held = std::min(4 * colors, offset - dib::kHeaderSize) / 4;
    std::memcpy(info.colors, bytes + dib::kHeaderSize, static_cast<std::size_t>(4 * held));
    info.header.biClrUsed = 0;
    auto bitmap = MakeSection(reinterpret_cast<const BITMAPINFO*>(&info));
    if (bitmap != nullptr) std::memcpy(bitmap->pixels.get(), bytes + offset, static_cast<std::size_t>(rows));
    return bitmap;
}

std::unique_ptr<Bitmap> ReadFileImage(const std::vector<std::uint8_t>& bytes) {
    const auto size = static_cast<std::int64_t>(bytes.size());
    if (size < dib::kFileHeaderSize || (bytes[0] | bytes[1] << 8) != dib::kFileType) return nullptr;
    std::uint32_t offset;
    std::memcpy(&offset, &bytes[10], sizeof offset);
    return ReadImage(bytes.data() + dib::kFileHeaderSize, size - dib::kFileHeaderSize,
                     offset - dib::kFileHeaderSize);
}

std::unique_ptr<Bitmap> ReadResourceImage(const std::vector<std::uint8_t>& bytes) {
    const auto size = static_cast<std::int64_t>(bytes.size());
    if (size < dib::kHeaderSize) return nullptr;
    return ReadImage(bytes.data(), size, dib::BitsOffset(dib::ReadHeader(bytes.data())));
}

bool IsBlackAndWhite(const Surface& surface) {
    if (surface.format != Format::Mono || surface.table == nullptr) return false;
    return surface.table->colors[0] == 0 && surface.table->colors[1] == 0xFFFFFF;
}

/// The image in a bitmap like the display; one of black and white stays one bit deep.
std::unique_ptr<Bitmap> LikeDisplay(const Bitmap& image) {
    const std::shared_ptr<const Device> display = CurrentDisplay();
    if (display == nullptr) return nullptr;
    const Surface& from = image.surface;
    const Format format = IsBlackAndWhite(from) ? Format::Mono : display->surface.format;
    auto bitmap = MakeBitmap(from.width, from.height, format, false);
    if (bitmap == nullptr) return nullptr;
    Context source, target;
    source.SetSurface(from);
    target.SetSurface(bitmap->surface);
    target.SetVisible({bitmap->surface.Bounds()});
    CopyPixels(target, from.Bounds(), source, 0, 0, Rop3::FromCode(SRCCOPY));
    return bitmap;
}

}  // namespace

HANDLE LoadImageW(HINSTANCE module, LPCWSTR name, UINT type, int width, int height, UINT flags) try {
    Trace("LoadImageW", module, name, type, width, height, flags);
    if (type != IMAGE_BITMAP || width != 0 || height != 0) return Fail(ERROR_INVALID_PARAMETER);
    std::unique_ptr<Bitmap> image;
    if (module == nullptr || (flags & LR_LOADFROMFILE) != 0) {
        if (!IS_INTRESOURCE(name)) image = ReadFileImage(ReadFile(name));
    } else if (const ResourceBytes bytes = FindBitmapResource(module, name)) {
        image = ReadResourceImage(*bytes);
    }
    if (image == nullptr) return Fail(ERROR_INVALID_PARAMETER);
    if ((flags & LR_CREATEDIBSECTION) == 0) image = LikeDisplay(*image);
    return Publish(std::move(image));
} catch (const std::bad_alloc&) {
    return Fail(ERROR_NOT_ENOUGH_MEMORY);
}
