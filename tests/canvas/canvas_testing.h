/// \file
/// What the tests of canvas, tools and bitmaps share: a small surface to draw on and ways to look at it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <string>
#include <vector>

#include "platform/gdi.h"
#include "platform/software/display.h"
#include "platform/software/trace.h"
#include "zul/canvas/canvas.h"
#include "zul/geometry/points.h"
#include "zul/kernel/client.h"

namespace zultest {

constexpr std::int32_t White = 0xFFFFFF;
constexpr std::int32_t Black = 0;
constexpr std::int32_t Red = 0x0000FF;
constexpr std::int32_t Green = 0x00FF00;
constexpr std::int32_t Blue = 0xFF0000;

/// '.' white, '#' black, 'r', 'g', 'b' the primaries, '?' any other colour.
inline char Letter(std::int32_t color) {
    constexpr std::int32_t Colors[] = {White, Black, Red, Green, Blue};
    return ".#rgb?"[std::find(std::begin(Colors), std::end(Colors), color) - std::begin(Colors)];
}

/// One string a row, so that a failed comparison shows the picture.
using Picture = std::vector<std::string>;

inline Picture PictureOf(zul::CCanvas& canvas, int width, int height) {
    Picture rows;
    for (int y = 0; y < height; ++y) {
        std::string row;
        for (int x = 0; x < width; ++x)
            row += Letter(canvas.GetPixel(x, y));
        rows.push_back(row);
    }
    return rows;
}

/// A white 32-bit surface with a canvas on it.
class Surface {
public:
    Surface(int width, int height) : m_Width(width), m_Height(height) {
        Bitmap.Create(width, height, 32, nullptr);
        Canvas.CreateMemoryCanvas();
        Canvas.AssignBitmap(&Bitmap);
        Wipe();
    }
    void Wipe() { ::PatBlt(Canvas.GetHandle(), 0, 0, m_Width, m_Height, WHITENESS); }
    Picture Look() { return PictureOf(Canvas, m_Width, m_Height); }
    Picture Blank() const { return Picture(static_cast<std::size_t>(m_Height), std::string(m_Width, '.')); }

    zul::CBitmap Bitmap;  // outlives the canvas that selects it
    zul::CCanvas Canvas;

private:
    int m_Width;
    int m_Height;
};

/// A scaler whose screen is \p size x \p size pixels over the map (0, 0)-(size * unit, size * unit): a pixel
/// is \p unit map units, and map y grows upwards.
inline void SetUpSquare(zul::CScaler& scaler, std::int32_t size, std::int32_t unit) {
    const zul::TLongRect bounds{0, 0, size * unit, size * unit};
    scaler.InitScaler(bounds, zul::TSize{size, size}, zul::TSize{size, size}, 40.0, 1.0, 0.001);
}

inline zul::CPoints List(const std::vector<zul::TPoint>& points) {
    zul::CPoints list(true);
    list.SetPoints(points.data(), static_cast<std::uint32_t>(points.size()));
    return list;
}

/// What reached the device with the last call of a name, without the device; empty when there was none.
using Numbers = std::vector<std::int64_t>;

inline Numbers Last(const device::Recorder& recorder, const char* name) {
    const device::RecordedCall* call = recorder.Last(name);
    return call ? Numbers(call->arguments.begin() + 1, call->arguments.end()) : Numbers{};
}

/// Keeps the reports of a scope.
class Reports : public zul::CErrorHandler {
public:
    Reports() : m_Scope(this) {}
    void OnError(const zul::TErrorReport& report) override { List.push_back(report); }
    /// "3: text" of the only report, or how many there were.
    std::string Only() const {
        if (List.size() != 1) return std::to_string(List.size()) + " reports";
        return std::to_string(List[0].Type) + ": " + List[0].Text.GetBufferAnsi();
    }

    std::vector<zul::TErrorReport> List;

private:
    zul::CErrorHandlerScope m_Scope;
};

/// Throws on every report of a scope.
class ThrowingScope {
public:
    ThrowingScope() : m_Scope(&m_Handler) {}

private:
    zul::CThrowingErrorHandler m_Handler;
    zul::CErrorHandlerScope m_Scope;
};

/// Leaves the device no room for further objects.
class FullDevice {
public:
    FullDevice() {
        while (const HBRUSH brush = ::CreateSolidBrush(0))
            m_Brushes.push_back(brush);
    }
    ~FullDevice() {
        for (const HBRUSH brush : m_Brushes)
            ::DeleteObject(brush);
    }
    /// Makes room for one object.
    void FreeOne() {
        ::DeleteObject(m_Brushes.back());
        m_Brushes.pop_back();
    }
    FullDevice(const FullDevice&) = delete;
    FullDevice& operator=(const FullDevice&) = delete;

private:
    std::vector<HBRUSH> m_Brushes;
};

/// The description of what is selected.
inline LOGPEN SelectedPen(zul::CCanvas& canvas) {
    LOGPEN description{};
    ::GetObjectW(::GetCurrentObject(canvas.GetHandle(), OBJ_PEN), sizeof description, &description);
    return description;
}
inline LOGBRUSH SelectedBrush(zul::CCanvas& canvas) {
    LOGBRUSH description{};
    ::GetObjectW(::GetCurrentObject(canvas.GetHandle(), OBJ_BRUSH), sizeof description, &description);
    return description;
}
inline LOGFONTW SelectedFont(zul::CCanvas& canvas) {
    LOGFONTW description{};
    ::GetObjectW(::GetCurrentObject(canvas.GetHandle(), OBJ_FONT), sizeof description, &description);
    return description;
}

}  // namespace zultest
