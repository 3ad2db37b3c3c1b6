#include "bench/painter.h"
#include "platform/gdi.h"
#include "zul/canvas/device_points.h"

namespace zulbench {
namespace {

/// Through CCanvas, as an application draws.
class ClassesPainter : public Painter {
public:
    explicit ClassesPainter(WORD bits) : m_Bits(bits), m_Surface(kWidth, kHeight, bits) {}

    Side GetSide() const override { return m_Bits == 32 ? Side::Classes : Side::Classes16; }
    bool Prepare(const Line& line, COLORREF color, Shape /*shape*/) override {
        zul::CCanvas& canvas = m_Surface.GetCanvas();
        const auto type = line.width == 0 ? zul::CPen::PenNone
                          : line.dashed   ? zul::CPen::PenDashed
                                          : zul::CPen::PenSolid;
        const COLORREF ink = line.inverting ? RGB(255, 255, 255) : color;
        canvas.GetPen().Create(type, 0, line.width, static_cast<std::int32_t>(ink), 0, 0, 0);
        canvas.GetBackground().SetRop(line.inverting ? zul::CBackground::RopXor : zul::CBackground::RopCopy);
        return true;
    }
    void Polyline(Figure& figure) override { m_Surface.GetCanvas().Polyline(&figure.map); }
    void Polygon(Figure& figure) override {
        zul::CCanvas& canvas = m_Surface.GetCanvas();
        canvas.GetBrush().SetColor(static_cast<std::int32_t>(figure.fill));
        canvas.Polygon(&figure.map);
    }
    void FillRect(const RECT& rect, COLORREF color) override {
        zul::CCanvas& canvas = m_Surface.GetCanvas();
        canvas.GetBrush().SetColor(static_cast<std::int32_t>(color));
        canvas.FillRect(rect.left, rect.top, rect.right, rect.bottom, nullptr);
    }
    Picture GetPicture() override { return m_Surface.GetPicture(); }

private:
    WORD m_Bits;
    Surface m_Surface;
};

/// Through the calls of the device, as an application without the library draws.
class DevicePainter : public Painter {
public:
    explicit DevicePainter(std::shared_ptr<Surface> surface)
        : m_Surface(std::move(surface)), m_Device(m_Surface->GetDevice()) {
        ::SetBkMode(m_Device, TRANSPARENT);
    }
    ~DevicePainter() override {
        ::SelectObject(m_Device, ::GetStockObject(BLACK_PEN));
        ::SelectObject(m_Device, ::GetStockObject(WHITE_BRUSH));
        ::DeleteObject(m_Pen);
        ::DeleteObject(m_Brush);
    }

    Side GetSide() const override { return Side::Device; }
    bool Prepare(const Line& line, COLORREF color, Shape /*shape*/) override {
        const int style = line.width == 0 ? PS_NULL : line.dashed ? PS_DASH : PS_SOLID;
        const HPEN pen = ::CreatePen(style, line.width, line.inverting ? RGB(255, 255, 255) : color);
        ::SelectObject(m_Device, pen);
        ::DeleteObject(m_Pen);
        m_Pen = pen;
        ::SetROP2(m_Device, line.inverting ? R2_XORPEN : R2_COPYPEN);
        return true;
    }
    void Polyline(Figure& figure) override {
        ::Polyline(m_Device, zul::DevicePoints(figure.device.data()), static_cast<int>(figure.device.size()));
    }
    void Polygon(Figure& figure) override {
        TakeBrush(figure.fill);
        ::Polygon(m_Device, zul::DevicePoints(figure.device.data()), static_cast<int>(figure.device.size()));
    }
    void FillRect(const RECT& rect, COLORREF color) override {
        TakeBrush(color);
        ::FillRect(m_Device, &rect, m_Brush);
    }
    Picture GetPicture() override { return m_Surface->GetPicture(); }

private:
    void TakeBrush(COLORREF color) {
        if (m_Brush && color == m_Color) return;
        const HBRUSH brush = ::CreateSolidBrush(color);
        ::SelectObject(m_Device, brush);
        ::DeleteObject(m_Brush);
        m_Brush = brush;
        m_Color = color;
    }

    std::shared_ptr<Surface> m_Surface;
    HDC m_Device;
    HPEN m_Pen = nullptr;
    HBRUSH m_Brush = nullptr;
    COLORREF m_Color = 0;
};

}  // namespace

Painters OurPainters() {
    return {std::make_shared<ClassesPainter>(WORD{32}), MakeDevicePainter(std::make_shared<Surface>()),
            std::make_shared<ClassesPainter>(WORD{16})};
}

std::shared_ptr<Painter> MakeDevicePainter(std::shared_ptr<Surface> surface) {
    return std::make_shared<DevicePainter>(std::move(surface));
}

}  // namespace zulbench
