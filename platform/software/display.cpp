#include "platform/software/display.h"

#include <exception>
#include <limits>
#include <mutex>

#include "platform/software/color.h"
#include "platform/software/context_object.h"

namespace device {

namespace {

/// The present display. It outlives every static object of a program that still draws when it ends.
struct Present {
    std::mutex mutex;
    std::shared_ptr<Device> display;
};

bool IsValid(const DisplaySettings& settings) {
    constexpr int kWidestMargin = 100000;
    const auto fits = [](std::int32_t size, int margin) {
        return margin >= 0 && margin <= kWidestMargin &&
               size <= std::numeric_limits<std::int32_t>::max() - 2 * kWidestMargin;
    };
    return settings.dpiX > 0 && settings.dpiY > 0 && settings.widthMm >= 0 && settings.heightMm >= 0 &&
           fits(settings.width, settings.marginX) && fits(settings.height, settings.marginY);
}

std::shared_ptr<Device> MakeDevice(const DisplaySettings& settings, bool printer) try {
    const std::optional<Format> format = FormatOfDepth(settings.bitsPerPixel);
    if (!IsValid(settings) || !format) return nullptr;
    const auto made = std::make_shared<Device>();
    made->settings = settings;
    made->printer = printer;
    made->surface = MakeSurface(made->memory, settings.width, settings.height, *format, false);
    if (made->surface.top == nullptr) return nullptr;
    if (*format == Format::Indexed4 || *format == Format::Indexed8) {
        made->colors = DeviceColors(*format);
        made->surface.table = &made->colors;
    }
    return made;
} catch (const std::exception&) {
    return nullptr;
}

Present& ThePresent() {
    static Present& present = *new Present;
    return present;
}

}  // namespace

bool SetDisplay(const DisplaySettings& settings) {
    std::shared_ptr<Device> made = MakeDevice(settings, false);
    if (made == nullptr) return false;
    Present& present = ThePresent();
    const std::lock_guard<std::mutex> lock(present.mutex);
    present.display = std::move(made);
    return true;
}

DisplaySettings GetDisplay() {
    const std::shared_ptr<Device> display = CurrentDisplay();
    return display == nullptr ? DisplaySettings{} : display->settings;
}

HDC CreatePrinterPage(const DisplaySettings& page) {
    std::shared_ptr<Device> made = MakeDevice(page, true);
    if (made != nullptr) {
        const Surface& surface = made->surface;
        const std::uint32_t white = PixelMask(surface.format);
        const Ink paper = MakeSolidInk(surface, {0, white});
        paper.box(paper, surface.Bounds());
    }
    return OpenContext(OBJ_DC, std::move(made));
}

std::shared_ptr<Device> CurrentDisplay() {
    Present& present = ThePresent();
    const std::lock_guard<std::mutex> lock(present.mutex);
    if (present.display == nullptr) present.display = MakeDevice(DisplaySettings{}, false);
    return present.display;
}

}  // namespace device
