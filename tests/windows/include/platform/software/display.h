/// \file
/// Stands in for the software device's display where the device is the system's own.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>

#include "platform/gdi.h"

namespace device {

struct DisplaySettings {
    std::int32_t width = 0, height = 0;
    int bitsPerPixel = 0;
    int dpiX = 0, dpiY = 0;
    int widthMm = 0, heightMm = 0;
    bool smoothText = true;
};

inline DisplaySettings GetDisplay() {
    const HDC screen = ::GetDC(nullptr);
    const auto ask = [screen](int index) { return ::GetDeviceCaps(screen, index); };
    const DisplaySettings answer{ask(HORZRES),    ask(VERTRES),  ask(BITSPIXEL), ask(LOGPIXELSX),
                                 ask(LOGPIXELSY), ask(HORZSIZE), ask(VERTSIZE),  true};
    ::ReleaseDC(nullptr, screen);
    return answer;
}

/// The screen is as it is.
inline bool SetDisplay(const DisplaySettings&) {
    ADD_FAILURE() << "the system's display cannot be settled";
    return false;
}

/// There is no printer to ask.
inline HDC CreatePrinterPage(const DisplaySettings&) {
    ADD_FAILURE() << "the system's device makes no printer pages";
    return nullptr;
}

/// The process's device objects, as far as the system tells: where it keeps no count, 0 each time, and then a
/// test that compares two counts says nothing about leaks here.
inline int LiveHandles() {
    return static_cast<int>(::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS));
}

}  // namespace device
