/// \file
/// Contexts as the object calls see them: what is selected, and which device they belong to.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <utility>

#include "platform/software/context.h"
#include "platform/software/objects.h"
#include "platform/software/pixel_set.h"

namespace device {

/// A display or a printer page: its figures and its pixels.
struct Device {
    DisplaySettings settings;
    bool printer = false;
    PixelMemory memory;
    Surface surface;
    ColorTable colors;  ///< of an indexed surface; a palette may change them
};

struct Region final : Object {
    static constexpr DWORD kType = OBJ_REGION;
    explicit Region(PixelSet set) : Object(kType), pixels(std::move(set)) {}

    PixelSet pixels;
};

struct ContextObject final : Object {
    explicit ContextObject(DWORD contextType) : Object(contextType) {}

    Context state;
    std::shared_ptr<Device> device;
    /// As the caller set it, not cut to the surface; without a value everything is drawn.
    std::optional<PixelSet> clip;
    /// By OBJ_*: pen, brush, palette, font, bitmap.
    std::array<Object*, OBJ_MEMDC + 1> selected{};
    /// The clip before the present one and what was visible under it, so that putting it back needs no
    /// memory.
    struct FormerClip {
        bool isKnown = false;
        std::optional<PixelSet> clip;
        std::vector<Box> visible;
    } former;
    /// The pixel of the default bitmap, which many contexts have selected at once.
    alignas(4) std::uint8_t defaultPixel[4] = {};

    /// Only a memory context lets its bitmap be changed.
    bool IsMemory() const { return type == OBJ_MEMDC; }

    /// Selects an object of a kind that the context has; \returns the one selected before. Throws
    /// std::bad_alloc for a bitmap when memory is short, and then has changed nothing; not for the default
    /// one.
    Object* Exchange(Object* object);
    /// The same, and lets go of that one; \returns its handle.
    HGDIOBJ Replace(Object* object);
    /// Null takes the clip away. Throws std::bad_alloc when memory is short and then has changed nothing; the
    /// clip before the present one can always be had again, unless the surface changed.
    void SetClip(const PixelSet* set);
    /// Draws on other pixels under the same clip. Throws std::bad_alloc and then has changed nothing.
    void SetSurface(const Surface& surface);
    void TakePixelsOf(const Bitmap& bitmap);
    /// Gives the selected palette's colours to a surface that takes them from the device; \returns how many.
    std::uint32_t Realize();
};

/// The live context behind a handle; null, with the last error set, when there is none.
ContextObject* FindContextObject(HDC dc);

/// A context in its first state, drawing on the device itself or, as a memory context, on the default bitmap.
/// Null when memory is short or no device is given.
HDC OpenContext(DWORD type, std::shared_ptr<Device> device);
/// Deselects everything and ends the context.
void CloseContext(ContextObject* context);

/// The display as it is now; null when memory for it was short.
std::shared_ptr<Device> CurrentDisplay();

/// The stock object, or null for an index that is none.
Object* StockObject(int index);
/// The brush of a system colour, or null.
Brush* SystemBrush(int index);

}  // namespace device
