/// \file
/// State of a context: modes, colours, the brush origin, and what its device can do.

#include <utility>

#include "platform/software/context_object.h"
#include "platform/software/trace.h"

using namespace device;

namespace {

/// The number by which the device tells that it follows the platform's fourth major version.
constexpr int kDriverVersion = 0x4000;
constexpr int DRIVERVERSION = 0;

/// Replaces a mode that lies between first and last; 0, and nothing changes, for another value.
int ExchangeMode(int& mode, int value, int first, int last) {
    if (value < first || value > last) return Fail(ERROR_INVALID_PARAMETER);
    return std::exchange(mode, value);
}

/// A printer tells its page in device pixels too; the display answers 0 to these.
int PhysicalFigure(const Device& device, int figure) {
    return device.printer ? figure : 0;
}

}  // namespace

int SetROP2(HDC dc, int rop2) {
    Trace("SetROP2", dc, rop2);
    Context* context = FindContext(dc);
    return context == nullptr ? 0 : ExchangeMode(context->rop2, rop2, R2_BLACK, R2_WHITE);
}

int GetROP2(HDC dc) {
    Trace("GetROP2", dc);
    const Context* context = FindContext(dc);
    return context == nullptr ? 0 : context->rop2;
}

int SetBkMode(HDC dc, int mode) {
    Trace("SetBkMode", dc, mode);
    Context* context = FindContext(dc);
    return context == nullptr ? 0 : ExchangeMode(context->backgroundMode, mode, TRANSPARENT, OPAQUE);
}

int GetBkMode(HDC dc) {
    Trace("GetBkMode", dc);
    const Context* context = FindContext(dc);
    return context == nullptr ? 0 : context->backgroundMode;
}

COLORREF SetBkColor(HDC dc, COLORREF color) {
    Trace("SetBkColor", dc, color);
    Context* context = FindContext(dc);
    return context == nullptr ? CLR_INVALID : std::exchange(context->backgroundColor, color);
}

COLORREF GetBkColor(HDC dc) {
    Trace("GetBkColor", dc);
    const Context* context = FindContext(dc);
    return context == nullptr ? CLR_INVALID : context->backgroundColor;
}

COLORREF SetTextColor(HDC dc, COLORREF color) {
    Trace("SetTextColor", dc, color);
    Context* context = FindContext(dc);
    return context == nullptr ? CLR_INVALID : std::exchange(context->textColor, color);
}

COLORREF GetTextColor(HDC dc) {
    Trace("GetTextColor", dc);
    const Context* context = FindContext(dc);
    return context == nullptr ? CLR_INVALID : context->textColor;
}

int SetStretchBltMode(HDC dc, int mode) {
    Trace("SetStretchBltMode", dc, mode);
    Context* context = FindContext(dc);
    return context == nullptr ? 0 : ExchangeMode(context->stretchMode, mode, BLACKONWHITE, HALFTONE);
}

int GetStretchBltMode(HDC dc) {
    Trace("GetStretchBltMode", dc);
    const Context* context = FindContext(dc);
    return context == nullptr ? 0 : context->stretchMode;
}

BOOL SetBrushOrgEx(HDC dc, int x, int y, POINT* previous) {
    Trace("SetBrushOrgEx", dc, x, y, previous);
    Context* context = FindContext(dc);
    if (context == nullptr) return FALSE;
    if (previous != nullptr) *previous = context->brushOrigin;
    context->brushOrigin = {x, y};
    return TRUE;
}

BOOL GetBrushOrgEx(HDC dc, POINT* origin) {
    Trace("GetBrushOrgEx", dc, origin);
    const Context* context = FindContext(dc);
    if (context == nullptr) return FALSE;
    if (origin == nullptr) return Fail(ERROR_INVALID_PARAMETER);
    *origin = context->brushOrigin;
    return TRUE;
}

int GetDeviceCaps(HDC dc, int index) {
    Trace("GetDeviceCaps", dc, index);
    const ContextObject* context = FindContextObject(dc);
    if (context == nullptr) return 0;
    const Device& device = *context->device;
    const DisplaySettings& settings = device.settings;
    switch (index) {
        case DRIVERVERSION:
            return kDriverVersion;
        case TECHNOLOGY:
            return device.printer ? DT_RASPRINTER : DT_RASDISPLAY;
        case HORZSIZE:
            return settings.widthMm;
        case VERTSIZE:
            return settings.heightMm;
        case HORZRES:
            return settings.width;
        case VERTRES:
            return settings.height;
        case BITSPIXEL:
            return settings.bitsPerPixel;
        case PLANES:
            return 1;
        case LOGPIXELSX:
            return settings.dpiX;
        case LOGPIXELSY:
            return settings.dpiY;
        case PHYSICALWIDTH:
            return PhysicalFigure(device, settings.width + 2 * settings.marginX);
        case PHYSICALHEIGHT:
            return PhysicalFigure(device, settings.height + 2 * settings.marginY);
        case PHYSICALOFFSETX:
            return PhysicalFigure(device, settings.marginX);
        case PHYSICALOFFSETY:
            return PhysicalFigure(device, settings.marginY);
        default:
            return 0;
    }
}
