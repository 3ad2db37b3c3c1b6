/// \file
/// Stands in for the software device's display where the device is the system's own.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

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

/// The process's device objects, whose types the system does not tell. Where it keeps no count, what is
/// missing from a table that is full.
inline int LiveHandles(DWORD type = 0) {
    if (type != 0) return 0;
    const DWORD counted = ::GetGuiResources(::GetCurrentProcess(), GR_GDIOBJECTS);
    if (counted != 0) return static_cast<int>(counted);
    std::vector<HBRUSH> room;
    for (HBRUSH brush = ::CreateSolidBrush(0); brush != nullptr; brush = ::CreateSolidBrush(0))
        room.push_back(brush);
    for (const HBRUSH brush : room)
        ::DeleteObject(brush);
    return 0x10000 - static_cast<int>(room.size());
}

}  // namespace device
