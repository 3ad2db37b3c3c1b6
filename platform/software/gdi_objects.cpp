/// \file
/// Contexts and selection: the calls that open, close, select, describe and delete.

#include <algorithm>
#include <cstring>
#include <exception>
#include <vector>

#include "platform/software/color.h"
#include "platform/software/context_object.h"
#include "platform/software/trace.h"

namespace device {

namespace {

/// Every stock object and the brush of every system colour, made once. They outlive all static objects.
struct Stock {
    Object* byIndex[DEFAULT_PALETTE + 1] = {};
    Brush* systemBrushes[kSystemColors] = {};
    Bitmap* bitmap = nullptr;

    Stock();
};

template <class T>
T* Keep(std::unique_ptr<T> object) {
    object->stock = true;
    T* kept = object.get();
    Publish(std::move(object));
    return kept;
}

Brush* KeepBrush(UINT style, COLORREF color) {
    auto brush = std::make_unique<Brush>();
    brush->style = style;
    brush->color = color;
    return Keep(std::move(brush));
}

Pen* KeepPen(int style, LONG width, COLORREF color) {
    auto pen = std::make_unique<Pen>();
    pen->style = style;
    pen->color = color;
    pen->description = {static_cast<UINT>(style), {width, 0}, color};
    return Keep(std::move(pen));
}

LOGFONTW SystemFontDescription() {
    LOGFONTW font{};
    font.lfHeight = 16;
    font.lfWidth = 7;
    font.lfWeight = FW_BOLD;
    font.lfPitchAndFamily = VARIABLE_PITCH | FF_SWISS;
    constexpr char16_t kName[] = u"System";
    std::copy(std::begin(kName), std::end(kName), font.lfFaceName);
    return font;
}

Palette* KeepDefaultPalette() {
    auto palette = std::make_unique<Palette>();
    for (int i = 0; i < kDefaultPaletteColors; ++i) {
        const COLORREF color = DefaultPaletteColor(i);
        palette->entries.push_back({GetRValue(color), GetGValue(color), GetBValue(color), 0});
    }
    return Keep(std::move(palette));
}

Stock::Stock() {
    byIndex[WHITE_BRUSH] = KeepBrush(BS_SOLID, RGB(255, 255, 255));
    byIndex[LTGRAY_BRUSH] = KeepBrush(BS_SOLID, RGB(192, 192, 192));
    byIndex[GRAY_BRUSH] = KeepBrush(BS_SOLID, RGB(128, 128, 128));
    byIndex[DKGRAY_BRUSH] = KeepBrush(BS_SOLID, RGB(64, 64, 64));
    byIndex[BLACK_BRUSH] = KeepBrush(BS_SOLID, RGB(0, 0, 0));
    byIndex[NULL_BRUSH] = KeepBrush(BS_NULL, 0);
    byIndex[WHITE_PEN] = KeepPen(PS_SOLID, 0, RGB(255, 255, 255));
    byIndex[BLACK_PEN] = KeepPen(PS_SOLID, 0, RGB(0, 0, 0));
    byIndex[NULL_PEN] = KeepPen(PS_NULL, 1, 0);
    byIndex[SYSTEM_FONT] = Keep(std::make_unique<Font>(SystemFontDescription()));
    byIndex[DEFAULT_PALETTE] = KeepDefaultPalette();
    for (int i = 0; i < kSystemColors; ++i)
        systemBrushes[i] = KeepBrush(BS_SOLID, SystemColor(i));
    auto made = std::make_unique<Bitmap>();
    made->surface = MakeSurface(made->pixels, 1, 1, Format::Mono, false);
    bitmap = Keep(std::move(made));
}

const Stock& TheStock() {
    static const Stock& stock = *new Stock;
    return stock;
}

/// Copies a description out; the bytes written, or 0 when there is not enough room.
template <class T>
int Describe(const T& description, int size, void* out) {
    if (out == nullptr) return sizeof(T);
    if (size < static_cast<int>(sizeof(T))) return Fail(ERROR_INVALID_PARAMETER);
    std::memcpy(out, &description, sizeof(T));
    return sizeof(T);
}

BITMAP DescribeBitmap(const Bitmap& bitmap) {
    const Surface& surface = bitmap.surface;
    const int bits = BitsPerPixel(surface.format);
    BITMAP result{};
    result.bmWidth = surface.width;
    result.bmHeight = surface.height;
    // Device-dependent rows are told in 16-bit steps, sections as they lie in memory.
    const std::int64_t step = bitmap.section ? 32 : 16;
    result.bmWidthBytes =
        static_cast<LONG>((std::int64_t{surface.width} * bits + step - 1) / step * step / 8);
    result.bmPlanes = 1;
    result.bmBitsPixel = static_cast<WORD>(bits);
    result.bmBits = bitmap.section ? bitmap.pixels.get() : nullptr;
    return result;
}

std::vector<Box> VisiblePart(const std::optional<PixelSet>& clip, const Surface& surface) {
    const PixelSet whole(surface.Bounds());
    return clip ? Intersection(*clip, whole).Boxes() : whole.Boxes();
}

bool CanSelect(const ContextObject& context, const Object& object) {
    switch (object.type) {
        case OBJ_PEN:
        case OBJ_BRUSH:
        case OBJ_FONT:
        case OBJ_PAL:
            return true;
        case OBJ_BITMAP:
            return context.IsMemory() && object.selections.load(std::memory_order_relaxed) == 0;
        default:
            return false;
    }
}

}  // namespace

Object* StockObject(int index) {
    if (index < 0 || index > DEFAULT_PALETTE) return nullptr;
    return TheStock().byIndex[index];
}

Brush* SystemBrush(int index) {
    if (index < 0 || index >= kSystemColors) return nullptr;
    return TheStock().systemBrushes[index];
}

Bitmap* DefaultBitmap() {
    return TheStock().bitmap;
}

Object* ContextObject::Exchange(Object* object) {
    if (object->type == OBJ_BITMAP && IsMemory()) TakePixelsOf(*static_cast<Bitmap*>(object));
    Object* previous = selected[object->type];
    selected[object->type] = object;
    Select(object);
    switch (object->type) {
        case OBJ_PEN:
            state.pen = static_cast<Pen*>(object);
            break;
        case OBJ_BRUSH:
            state.brush = static_cast<Brush*>(object);
            break;
        case OBJ_FONT:
            state.font = static_cast<Font*>(object);
            break;
        case OBJ_PAL:
            state.palette = static_cast<Palette*>(object);
            break;
        default:
            break;
    }
    return previous;
}

void ContextObject::TakePixelsOf(const Bitmap& bitmap) {
    if (!bitmap.stock) return SetSurface(bitmap.surface);
    Surface surface = bitmap.surface;
    surface.top = defaultPixel;
    try {
        SetSurface(surface);
    } catch (const std::exception&) {
        // A bitmap must be got out of a context whatever happens. The single pixel is not seen then.
        state.SetSurface(surface);
        state.SetVisible({});
        former = {};
    }
}

HGDIOBJ ContextObject::Replace(Object* object) {
    if (selected[object->type] == object) return object->handle;
    Object* previous = Exchange(object);
    const HGDIOBJ previousHandle = previous->handle;
    Deselect(previous);
    return previousHandle;
}

void ContextObject::SetClip(const PixelSet* set) {
    const bool isFormer =
        former.isKnown && (set != nullptr ? former.clip && *former.clip == *set : !former.clip);
    FormerClip next;
    if (isFormer) {
        next = std::move(former);
    } else {
        if (set != nullptr) next.clip = *set;
        next.visible = VisiblePart(next.clip, state.surface);
    }
    former = {true, std::move(clip), std::move(state.visible)};
    state.SetVisible(std::move(next.visible));
    clip = std::move(next.clip);
}

void ContextObject::SetSurface(const Surface& surface) {
    std::vector<Box> visible = VisiblePart(clip, surface);
    state.SetSurface(surface);
    state.SetVisible(std::move(visible));
    former = {};
}

ContextObject* FindContextObject(HDC dc) {
    Object* object = Find(dc);
    if (object == nullptr || (object->type != OBJ_MEMDC && object->type != OBJ_DC)) {
        return Fail(ERROR_INVALID_HANDLE);
    }
    return static_cast<ContextObject*>(object);
}

HDC OpenContext(DWORD type, std::shared_ptr<Device> device) {
    auto context = device == nullptr ? nullptr : MakeObject<ContextObject>(type);
    if (context == nullptr) return Fail(ERROR_NOT_ENOUGH_MEMORY);
    if (!context->IsMemory()) context->SetSurface(device->surface);
    context->device = std::move(device);
    for (const int index : {BLACK_PEN, WHITE_BRUSH, SYSTEM_FONT, DEFAULT_PALETTE}) {
        context->Exchange(StockObject(index));
    }
    context->Exchange(DefaultBitmap());
    return static_cast<HDC>(Publish(std::move(context)));
}

void CloseContext(ContextObject* context) {
    for (Object* object : context->selected) {
        if (object != nullptr) Deselect(object);
    }
    End(context);
}

}  // namespace device

using namespace device;

HDC CreateCompatibleDC(HDC dc) {
    Trace("CreateCompatibleDC", dc);
    const ContextObject* model = dc != nullptr ? FindContextObject(dc) : nullptr;
    if (dc != nullptr && model == nullptr) return nullptr;
    return WithMemory(
        [&] { return OpenContext(OBJ_MEMDC, model != nullptr ? model->device : CurrentDisplay()); });
}

BOOL DeleteDC(HDC dc) {
    Trace("DeleteDC", dc);
    ContextObject* context = FindContextObject(dc);
    if (context == nullptr) return FALSE;
    if (!context->IsMemory() && !context->device->printer) return Fail(ERROR_INVALID_HANDLE);
    CloseContext(context);
    return TRUE;
}

HDC GetDC(HWND window) {
    Trace("GetDC", window);
    if (window != nullptr) return Fail(ERROR_INVALID_HANDLE);
    return WithMemory([] { return OpenContext(OBJ_DC, CurrentDisplay()); });
}

int ReleaseDC(HWND window, HDC dc) {
    Trace("ReleaseDC", window, dc);
    ContextObject* context = FindContextObject(dc);
    if (context == nullptr || context->IsMemory() || context->device->printer) return 0;
    CloseContext(context);
    return 1;
}

HGDIOBJ SelectObject(HDC dc, HGDIOBJ handle) {
    Trace("SelectObject", dc, handle);
    ContextObject* context = FindContextObject(dc);
    if (context == nullptr) return nullptr;
    Object* object = Find(handle);
    if (object == nullptr) return Fail(ERROR_INVALID_HANDLE);
    const bool already = object->type < context->selected.size() && context->selected[object->type] == object;
    if (!already && !CanSelect(*context, *object)) return Fail(ERROR_INVALID_PARAMETER);
    return WithMemory([&] { return context->Replace(object); });
}

HGDIOBJ GetCurrentObject(HDC dc, UINT type) {
    Trace("GetCurrentObject", dc, type);
    const ContextObject* context = FindContextObject(dc);
    if (context == nullptr) return nullptr;
    if (type >= context->selected.size() || context->selected[type] == nullptr) {
        return Fail(ERROR_INVALID_PARAMETER);
    }
    return context->selected[type]->handle;
}

BOOL DeleteObject(HGDIOBJ handle) {
    Trace("DeleteObject", handle);
    Object* object = Find(handle);
    if (object == nullptr || object->type == OBJ_DC || object->type == OBJ_MEMDC) {
        return Fail(ERROR_INVALID_HANDLE);
    }
    if (object->stock) return TRUE;
    if (object->selections.load(std::memory_order_acquire) > 0) {
        object->doomed = true;
    } else {
        End(object);
    }
    return TRUE;
}

HGDIOBJ GetStockObject(int index) {
    Trace("GetStockObject", index);
    return WithMemory([&]() -> HGDIOBJ {
        const Object* object = StockObject(index);
        if (object == nullptr) return Fail(ERROR_INVALID_PARAMETER);
        return object->handle;
    });
}

DWORD GetObjectType(HGDIOBJ handle) {
    Trace("GetObjectType", handle);
    const Object* object = Find(handle);
    if (object != nullptr) return object->type;
    SetError(ERROR_INVALID_HANDLE);
    return 0;
}

int GetObjectW(HGDIOBJ handle, int size, void* description) {
    Trace("GetObjectW", handle, size, description);
    if (const auto* bitmap = Find<Bitmap>(handle)) {
        return Describe(DescribeBitmap(*bitmap), size, description);
    }
    if (const auto* pen = Find<Pen>(handle)) return Describe(pen->description, size, description);
    if (const auto* brush = Find<Brush>(handle)) {
        return Describe(LOGBRUSH{brush->style, brush->color, brush->hatch}, size, description);
    }
    if (const auto* font = Find<Font>(handle)) return Describe(font->description, size, description);
    if (const auto* palette = Find<Palette>(handle)) {
        return Describe(static_cast<WORD>(palette->entries.size()), size, description);
    }
    return Fail(ERROR_INVALID_HANDLE);
}

HBRUSH GetSysColorBrush(int index) {
    Trace("GetSysColorBrush", index);
    return WithMemory([&]() -> HBRUSH {
        const Brush* brush = SystemBrush(index & ~SYS_COLOR_INDEX_FLAG);
        if (brush == nullptr) return Fail(ERROR_INVALID_PARAMETER);
        return static_cast<HBRUSH>(brush->handle);
    });
}

COLORREF GetSysColor(int index) {
    Trace("GetSysColor", index);
    return SystemColor(index & ~SYS_COLOR_INDEX_FLAG);
}
