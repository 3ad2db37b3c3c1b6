/// \file
/// Regions and the clip: the platform's calls.

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <exception>
#include <limits>
#include <optional>
#include <utility>
#include <vector>

#include "platform/software/context_object.h"
#include "platform/software/extent.h"
#include "platform/software/trace.h"

using namespace device;

namespace {

int KindOf(std::int32_t boxes) {
    return boxes == 0 ? NULLREGION : boxes == 1 ? SIMPLEREGION : COMPLEXREGION;
}
int KindOf(const PixelSet& set) {
    return KindOf(set.CountBoxes());
}

Box OrderedBox(int left, int top, int right, int bottom) {
    return {std::min(left, right), std::min(top, bottom), std::max(left, right), std::max(top, bottom)};
}

Region* FindRegion(HRGN handle) {
    auto* const region = Find<Region>(handle);
    if (region == nullptr) SetError(ERROR_INVALID_HANDLE);
    return region;
}

HRGN PublishRegion(PixelSet set) {
    return static_cast<HRGN>(Publish(MakeObject<Region>(std::move(set))));
}

/// The rectangles of \p data; no value when it does not hold what its header says.
std::optional<std::vector<Box>> ReadBoxes(DWORD bytes, const RGNDATA* data) {
    RGNDATAHEADER header;
    if (data == nullptr || bytes < sizeof header) return std::nullopt;
    std::memcpy(&header, data, sizeof header);
    if (header.dwSize < sizeof header || header.dwSize > bytes || header.iType != RDH_RECTANGLES ||
        header.nCount > (bytes - header.dwSize) / sizeof(RECT)) {
        return std::nullopt;
    }
    std::vector<Box> boxes(header.nCount);
    const char* from = reinterpret_cast<const char*>(data) + header.dwSize;
    for (Box& box : boxes) {
        RECT rect;
        std::memcpy(&rect, from, sizeof rect);
        box = BoxOf(rect);
        from += sizeof rect;
    }
    return boxes;
}

void WriteBoxes(const std::vector<Box>& boxes, const RGNDATAHEADER& header, RGNDATA* data) {
    std::memcpy(data, &header, sizeof header);
    char* to = reinterpret_cast<char*>(data) + sizeof header;
    for (const Box& box : boxes) {
        const RECT rect = RectOf(box);
        std::memcpy(to, &rect, sizeof rect);
        to += sizeof rect;
    }
}

PixelSet Combined(const PixelSet& first, const PixelSet& second, int mode) {
    switch (mode) {
        case RGN_AND:
            return Intersection(first, second);
        case RGN_OR:
            return Union(first, second);
        case RGN_XOR:
            return SymmetricDifference(first, second);
        default:
            return Difference(first, second);
    }
}

}  // namespace

HRGN CreateRectRgn(int left, int top, int right, int bottom) {
    Trace("CreateRectRgn", left, top, right, bottom);
    return PublishRegion(PixelSet(OrderedBox(left, top, right, bottom)));
}

HRGN ExtCreateRegion(const XFORM* transform, DWORD bytes, const RGNDATA* data) {
    Trace("ExtCreateRegion", transform, bytes, data);
    return WithMemory([&]() -> HRGN {
        const auto boxes = transform == nullptr ? ReadBoxes(bytes, data) : std::nullopt;
        if (!boxes) return Fail(ERROR_INVALID_PARAMETER);
        return PublishRegion(PixelSet(*boxes));
    });
}

DWORD GetRegionData(HRGN handle, DWORD bytes, RGNDATA* data) {
    Trace("GetRegionData", handle, bytes, data);
    const Region* const region = FindRegion(handle);
    if (region == nullptr) return 0;
    const auto count = static_cast<std::uint32_t>(region->pixels.CountBoxes());
    const std::uint64_t size = std::uint64_t{count} * sizeof(RECT);
    const std::uint64_t whole = sizeof(RGNDATAHEADER) + size;
    const bool fits = whole <= (data != nullptr ? bytes : std::numeric_limits<DWORD>::max());
    if (!fits) {
        SetError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    if (data == nullptr) return static_cast<DWORD>(whole);
    return WithMemory([&]() -> DWORD {
        const RGNDATAHEADER header{sizeof header, RDH_RECTANGLES, count, static_cast<DWORD>(size),
                                   RectOf(region->pixels.Bounds())};
        WriteBoxes(region->pixels.Boxes(), header, data);
        return static_cast<DWORD>(whole);
    });
}

int CombineRgn(HRGN target, HRGN first, HRGN second, int mode) {
    Trace("CombineRgn", target, first, second, mode);
    Region* const result = FindRegion(target);
    const Region* const a = FindRegion(first);
    const Region* const b = mode == RGN_COPY ? a : FindRegion(second);
    if (result == nullptr || a == nullptr || b == nullptr) return ERROR;
    if (mode < RGN_AND || mode > RGN_COPY) return Fail(ERROR_INVALID_PARAMETER);
    return WithMemory([&] {
        result->pixels = mode == RGN_COPY ? a->pixels : Combined(a->pixels, b->pixels, mode);
        return KindOf(result->pixels);
    });
}

int OffsetRgn(HRGN handle, int dx, int dy) {
    Trace("OffsetRgn", handle, dx, dy);
    Region* const region = FindRegion(handle);
    if (region == nullptr) return ERROR;
    return WithMemory([&] {
        region->pixels.Move(dx, dy);
        return KindOf(region->pixels);
    });
}

BOOL PtInRegion(HRGN handle, int x, int y) {
    Trace("PtInRegion", handle, x, y);
    const Region* const region = FindRegion(handle);
    return region != nullptr && region->pixels.Has(x, y) ? TRUE : FALSE;
}

int GetRgnBox(HRGN handle, RECT* box) {
    Trace("GetRgnBox", handle, box);
    const Region* const region = FindRegion(handle);
    if (region == nullptr) return ERROR;
    if (box == nullptr) return Fail(ERROR_INVALID_PARAMETER);
    *box = RectOf(region->pixels.Bounds());
    return KindOf(region->pixels);
}

int SelectClipRgn(HDC dc, HRGN handle) {
    Trace("SelectClipRgn", dc, handle);
    ContextObject* const context = FindContextObject(dc);
    if (context == nullptr) return ERROR;
    const Region* const region = handle != nullptr ? FindRegion(handle) : nullptr;
    if (handle != nullptr && region == nullptr) return ERROR;
    return WithMemory([&] {
        context->SetClip(region != nullptr ? &region->pixels : nullptr);
        return region != nullptr ? KindOf(region->pixels) : SIMPLEREGION;
    });
}

int GetClipRgn(HDC dc, HRGN handle) {
    Trace("GetClipRgn", dc, handle);
    const ContextObject* const context = FindContextObject(dc);
    if (context == nullptr) return -1;
    if (!context->clip) return 0;
    Region* const region = FindRegion(handle);
    if (region == nullptr) return -1;
    try {
        region->pixels = *context->clip;
        return 1;
    } catch (const std::exception&) {
        SetError(ERROR_NOT_ENOUGH_MEMORY);
        return -1;
    }
}

int GetClipBox(HDC dc, RECT* box) {
    Trace("GetClipBox", dc, box);
    const Context* const context = FindContext(dc);
    if (context == nullptr) return ERROR;
    if (box == nullptr) return Fail(ERROR_INVALID_PARAMETER);
    *box = RectOf(context->clip.bounds);
    return KindOf(context->clip.count);
}

int ExcludeClipRect(HDC dc, int left, int top, int right, int bottom) {
    Trace("ExcludeClipRect", dc, left, top, right, bottom);
    ContextObject* const context = FindContextObject(dc);
    if (context == nullptr) return ERROR;
    return WithMemory([&] {
        PixelSet whole(context->state.surface.Bounds());
        const PixelSet rect(OrderedBox(left, top, right, bottom));
        const PixelSet rest = Difference(context->clip ? *context->clip : whole, rect);
        context->SetClip(&rest);
        return KindOf(*context->clip);
    });
}
