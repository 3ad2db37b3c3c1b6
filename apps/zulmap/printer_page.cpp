#include "apps/zulmap/printer_page.h"

#include <algorithm>
#include <cmath>

#include "apps/zulmap/tool_error.h"
#include "platform/software/display.h"

namespace zulmap {
namespace {

constexpr double kMmInInch = 25.4;

}  // namespace

PrinterPage::PrinterPage(const PageSettings& settings) {
    const auto toPixels = [&settings](std::int32_t mm) {
        return static_cast<std::int32_t>(std::lround(mm / kMmInInch * settings.dpi));
    };
    device::DisplaySettings page;
    page.marginX = page.marginY = toPixels(settings.margin);
    page.width = toPixels(settings.width) - 2 * page.marginX;
    page.height = toPixels(settings.height) - 2 * page.marginY;
    page.widthMm = settings.width - 2 * settings.margin;
    page.heightMm = settings.height - 2 * settings.margin;
    page.dpiX = page.dpiY = settings.dpi;
    CheckPictureSize({toPixels(settings.width), toPixels(settings.height)}, "page");
    if (page.width < 1 || page.height < 1) throw ToolError("page: the margins leave no pixel between them");
    const HDC printer = device::CreatePrinterPage(page);
    if (printer == nullptr) throw ToolError("there is no memory for a page of that size");
    m_Canvas.AttachToDevice(printer, false, true, true);
}

zul::TSize PrinterPage::GetPrintableSize() const {
    zul::TSize size{};
    m_Canvas.GetResolution(size.Width, size.Height);
    return size;
}

zul::TSize PrinterPage::GetPaperSize() const {
    zul::TSize size{};
    m_Canvas.GetPhysicalSize(size.Width, size.Height);
    return size;
}

double PrinterPage::GetPixelsPerSm() const {
    return m_Canvas.GetDPI() * kPixelsPerSm / kScreenDpi;
}

std::int32_t PrinterPage::GetMagnification() const {
    return std::max(1, static_cast<std::int32_t>(std::lround(m_Canvas.GetDPI() / kScreenDpi)));
}

void PrinterPage::CopyTo(MemoryPicture& paper) {
    const PictureView sheet = paper.GetView();
    const zul::TSize printed = GetPrintableSize();
    std::int32_t x = 0;
    std::int32_t y = 0;
    m_Canvas.GetPhysicalOffset(x, y);
    zul::CBrush white;
    paper.GetCanvas().FillRect(0, 0, sheet.width, sheet.height, &white);
    paper.GetCanvas().BitBlt(x, y, printed.Width, printed.Height, &m_Canvas, 0, 0,
                             zul::CBitmap::RopSourceCopy);
}

}  // namespace zulmap
