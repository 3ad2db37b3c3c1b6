/// \file
/// Guards for what a drawing operation borrows from a device. An error handler of the host may throw anywhere
/// in between, so selections, raster operations and handles are put back by destructors.
#pragma once

#include <cstdint>
#include <utility>

#include "platform/gdi.h"

namespace zul {

/// Owns a device object until it is handed on. Deleting a stock object has no effect, so one may be held too.
template <class THandle>
class CMadeHandle {
public:
    explicit CMadeHandle(THandle handle) : m_Handle(handle) {}
    ~CMadeHandle() {
        if (m_Handle) ::DeleteObject(m_Handle);
    }
    CMadeHandle(const CMadeHandle&) = delete;
    CMadeHandle& operator=(const CMadeHandle&) = delete;

    THandle Get() const { return m_Handle; }
    /// Ends the ownership.
    THandle Take() { return std::exchange(m_Handle, nullptr); }

private:
    THandle m_Handle;
};

/// Keeps an object selected in a device; afterwards the displaced one is back. Null selects nothing.
class CSelection {
public:
    CSelection(HDC device, HGDIOBJ object)
        : m_Device(device), m_Previous(object ? ::SelectObject(device, object) : nullptr) {}
    ~CSelection() {
        if (m_Previous) ::SelectObject(m_Device, m_Previous);
    }
    CSelection(const CSelection&) = delete;
    CSelection& operator=(const CSelection&) = delete;

private:
    HDC m_Device;
    HGDIOBJ m_Previous;
};

/// Keeps a binary raster operation set on a device.
class CRopSelection {
public:
    CRopSelection(HDC device, int rop2) : m_Device(device), m_Previous(::SetROP2(device, rop2)) {}
    ~CRopSelection() {
        if (m_Previous) ::SetROP2(m_Device, m_Previous);
    }
    CRopSelection(const CRopSelection&) = delete;
    CRopSelection& operator=(const CRopSelection&) = delete;

private:
    HDC m_Device;
    int m_Previous;
};

/// Keeps a stretch mode set on a device.
class CStretchModeSelection {
public:
    CStretchModeSelection(HDC device, int mode)
        : m_Device(device), m_Previous(::SetStretchBltMode(device, mode)) {}
    ~CStretchModeSelection() {
        if (m_Previous) ::SetStretchBltMode(m_Device, m_Previous);
    }
    CStretchModeSelection(const CStretchModeSelection&) = delete;
    CStretchModeSelection& operator=(const CStretchModeSelection&) = delete;

private:
    HDC m_Device;
    int m_Previous;
};

/// Draws text in a colour of its own; afterwards in \p later.
class CTextColorSelection {
public:
    CTextColorSelection(HDC device, std::int32_t color, std::int32_t later)
        : m_Device(device), m_Later(later) {
        ::SetTextColor(device, static_cast<COLORREF>(color));
    }
    ~CTextColorSelection() { ::SetTextColor(m_Device, static_cast<COLORREF>(m_Later)); }
    CTextColorSelection(const CTextColorSelection&) = delete;
    CTextColorSelection& operator=(const CTextColorSelection&) = delete;

private:
    HDC m_Device;
    std::int32_t m_Later;
};

/// The screen's device for the time of a call.
class CScreenDevice {
public:
    CScreenDevice() : m_Device(::GetDC(nullptr)) {}
    ~CScreenDevice() {
        if (m_Device) ::ReleaseDC(nullptr, m_Device);
    }
    CScreenDevice(const CScreenDevice&) = delete;
    CScreenDevice& operator=(const CScreenDevice&) = delete;

    HDC Get() const { return m_Device; }

private:
    HDC m_Device;
};

}  // namespace zul
