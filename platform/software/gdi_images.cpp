/// \file
/// Loading images: the platform's call.
#include <exception>
#include <memory>
#include <new>
#include <utility>

#include "platform/crt.h"
#include "platform/software/blit.h"
#include "platform/software/bmp_reader.h"
#include "platform/software/context_object.h"
#include "platform/software/resources.h"
#include "platform/software/section.h"
#include "platform/software/trace.h"

using namespace device;

namespace {

/// A context of the loader's own, to convert pixels on.
void Convert(const Bitmap& from, Bitmap& to) {
    Context source, target;
    source.SetSurface(from.surface);
    target.SetSurface(to.surface);
    target.SetVisible({to.surface.Bounds()});
    const Rop3 copy = Rop3::FromCode(SRCCOPY);
    const Surface &old = from.surface, &now = to.surface;
    if (old.width == now.width && old.height == now.height) {
        CopyPixels(target, now.Bounds(), source, 0, 0, copy);
        return;
    }
    target.stretchMode = COLORONCOLOR;
    const StretchAxis columns(0, now.width, 0, old.width, old.width);
    const StretchAxis rows(0, now.height, 0, old.height, old.height);
    if (!StretchPixels(target, columns, rows, source, copy)) throw std::bad_alloc();
}

bool IsBlackAndWhite(const Bitmap& image) {
    const ColorTable* const table = image.surface.table;
    return image.surface.format == Format::Mono && table != nullptr && table->colors[0] == 0 &&
           table->colors[1] == RGB(255, 255, 255);
}

/// The image in another size, still as it is stored.
std::unique_ptr<Bitmap> Resized(const Bitmap& image, std::int32_t width, std::int32_t height) {
    auto made = MakeBitmap(width, height, image.surface.format, true);
    if (made == nullptr) return nullptr;
    made->section = true;
    if (image.surface.table != nullptr && !OwnTable(*made, *image.surface.table)) return nullptr;
    Convert(image, *made);
    return made;
}

/// The image as a bitmap like the display.
std::unique_ptr<Bitmap> Displayed(const Bitmap& image, std::int32_t width, std::int32_t height) {
    if (IsBlackAndWhite(image)) {
        auto made = MakeBitmap(width, height, Format::Mono, false);
        if (made == nullptr) return nullptr;
        // Both have the same two colours meanwhile, so that bits keep their values.
        made->surface.table = image.surface.table;
        Convert(image, *made);
        made->surface.table = nullptr;
        return made;
    }
    const std::shared_ptr<const Device> display = CurrentDisplay();
    if (display == nullptr) return nullptr;
    auto made = MakeBitmap(width, height, display->surface.format, false);
    if (made != nullptr) Convert(image, *made);
    return made;
}

std::unique_ptr<Bitmap> ReadResource(HMODULE module, LPCWSTR name) {
    const ResourceBytes bytes = FindBitmapResource(module, name);
    if (bytes == nullptr) return nullptr;
    MemorySource source(bytes->data(), bytes->size());
    return ReadBmp(source, false);
}

std::unique_ptr<Bitmap> ReadFile(LPCWSTR path) {
    FileSource source(zul_wfopen(path, u"rb"));
    return ReadBmp(source, true);
}

std::unique_ptr<Bitmap> Load(HINSTANCE module, LPCWSTR name, int width, int height, UINT flags) {
    const bool fromFile = module == nullptr || (flags & LR_LOADFROMFILE) != 0;
    if (fromFile && IS_INTRESOURCE(name)) return nullptr;
    std::unique_ptr<Bitmap> image = fromFile ? ReadFile(name) : ReadResource(module, name);
    if (image == nullptr) return nullptr;
    if (width == 0) width = image->surface.width;
    if (height == 0) height = image->surface.height;
    if ((flags & LR_CREATEDIBSECTION) == 0) return Displayed(*image, width, height);
    const bool asIs = width == image->surface.width && height == image->surface.height;
    return asIs ? std::move(image) : Resized(*image, width, height);
}

}  // namespace

HANDLE LoadImageW(HINSTANCE module, LPCWSTR name, UINT type, int width, int height, UINT flags) try {
    Trace("LoadImageW", module, name, type, width, height, flags);
    if (type != IMAGE_BITMAP || name == nullptr || width < 0 || height < 0)
        return Fail(ERROR_INVALID_PARAMETER);
    std::unique_ptr<Bitmap> bitmap = Load(module, name, width, height, flags);
    if (bitmap == nullptr) return Fail(ERROR_INVALID_PARAMETER);
    return Publish(std::move(bitmap));
} catch (const std::exception&) {
    return Fail(ERROR_NOT_ENOUGH_MEMORY);
}
