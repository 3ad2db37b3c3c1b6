#include "apps/zulmap/render_command.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iomanip>
#include <ostream>
#include <string_view>

#include "apps/zulmap/map_content.h"
#include "apps/zulmap/map_reader.h"
#include "apps/zulmap/map_sight.h"
#include "apps/zulmap/memory_picture.h"
#include "apps/zulmap/picture_file.h"
#include "apps/zulmap/tool_error.h"
#include "apps/zulmap/tool_report.h"
#include "apps/zulmap/tool_settings.h"

namespace zulmap {
namespace {

constexpr std::int32_t kMostPixelsASide = 32000;
constexpr std::int64_t kMostPixels = 100'000'000;
constexpr std::int32_t kDefaultWidth = 1600;
constexpr std::int32_t kDefaultHeight = 800;

template <typename Number>
bool ParseNumber(std::string_view text, Number& number) {
    const char* end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end;
}

/// Parts a list at its commas and reads every part; false unless there are exactly \p N finite numbers.
template <std::size_t N>
bool ParseNumbers(std::string_view text, double (&numbers)[N]) {
    for (std::size_t i = 0; i < N; ++i) {
        const std::size_t comma = text.find(',');
        if ((comma == text.npos) != (i + 1 == N)) return false;
        if (!ParseNumber(text.substr(0, comma), numbers[i]) || !std::isfinite(numbers[i])) return false;
        if (comma != text.npos) text.remove_prefix(comma + 1);
    }
    return true;
}

/// \p what names the number in the complaint.
double ParsePositive(const std::string& what, const std::string& text) {
    double number[1] = {};
    if (!ParseNumbers(text, number) || number[0] <= 0.0) {
        throw ToolError(what + " '" + text + "' is not a number above 0");
    }
    return number[0];
}

TDoublePoint ParsePoint(const std::string& text) {
    double numbers[2] = {};
    if (!ParseNumbers(text, numbers)) throw ToolError("center '" + text + "' is not two finite numbers x,y");
    return {numbers[0], numbers[1]};
}

SightRequest ReadSight(const RenderRequest& request) {
    SightRequest sight;
    if (request.box && (request.center || request.scale)) {
        throw ToolError("bbox says where and how large, so center and scale cannot be given with it");
    }
    if (request.box) sight.box = ParseBox(*request.box);
    if (request.center) sight.center = ParsePoint(*request.center);
    if (request.scale) sight.scale = ParsePositive("scale", *request.scale);
    if (request.depth) sight.depth = ParsePositive("perspective", *request.depth);
    if (request.angle) sight.degrees = ParseAngle(*request.angle);
    return sight;
}

}  // namespace

MapStyle ParseStyle(const MapRequest& request) {
    MapStyle style;
    if (request.pen) style.pen = ParsePen(*request.pen);
    if (request.coastPen) style.coastPen = ParsePen(*request.coastPen);
    if (request.borderPen) style.borderPen = ParsePen(*request.borderPen);
    if (request.linePen) style.linePen = ParsePen(*request.linePen);
    if (request.brush) style.brush = ParseBrush(*request.brush);
    if (request.graticule) style.graticule = ParsePositive("graticule", *request.graticule);
    return style;
}

zul::TSize ParseSize(const std::string& text) {
    const std::string_view view = text;
    const std::size_t cross = view.find('x');
    zul::TSize size{};
    if (cross == view.npos || !ParseNumber(view.substr(0, cross), size.Width) ||
        !ParseNumber(view.substr(cross + 1), size.Height)) {
        throw ToolError("size '" + text + "' is not of the form 1600x800");
    }
    const bool fits = size.Width >= 1 && size.Height >= 1 && size.Width <= kMostPixelsASide &&
                      size.Height <= kMostPixelsASide &&
                      std::int64_t{size.Width} * size.Height <= kMostPixels;
    if (!fits) {
        throw ToolError("size '" + text + "' is out of range: 1 to " + std::to_string(kMostPixelsASide) +
                        " pixels a side, at most " + std::to_string(kMostPixels) + " together");
    }
    return size;
}

Box ParseBox(const std::string& text) {
    double sides[4] = {};
    if (!ParseNumbers(text, sides)) {
        throw ToolError("bbox '" + text + "' is not four finite numbers minx,miny,maxx,maxy");
    }
    const Box box{sides[0], sides[1], sides[2], sides[3]};
    if (!(box.minX < box.maxX && box.minY < box.maxY)) {
        throw ToolError("bbox '" + text + "' is empty: its minima must lie below its maxima");
    }
    return box;
}

double ParseAngle(const std::string& text) {
    double angle[1] = {};
    if (!ParseNumbers(text, angle)) throw ToolError("rotation '" + text + "' is not a finite number");
    return std::fmod(angle[0], 360.0);
}

void Render(const RenderRequest& request, std::ostream& report) {
    // What was typed is judged whole before anything is read.
    PictureFormatOf(request.output);
    const zul::TSize size =
        request.size ? ParseSize(*request.size) : zul::TSize{kDefaultWidth, kDefaultHeight};
    const SightRequest sightRequest = ReadSight(request);
    const MapStyle style = ParseStyle(request);

    CountingErrorHandler errors;
    const zul::CErrorHandlerScope errorScope(&errors);
    std::chrono::duration<double, std::milli> frame{};
    {
        const ProgressLine progress;
        const MapData map = ReadMaps(request.maps, [&](const std::string& path, std::size_t count) {
            progress.ShowReading(path, count);
        });
        progress.Show("arranging " + std::to_string(map.features.size()) + " features");
        const Sight sight = MakeSight(map, sightRequest, size);
        MapContent content(map, sight.space, style.graticule);
        content.Prepare();

        progress.Show("drawing");
        MemoryPicture picture(size.Width, size.Height);
        picture.GetCanvas().SetScaler(sight.scaler.get());
        const auto start = std::chrono::steady_clock::now();
        MapPainter(content, style, picture.GetCanvas(), size.Width, size.Height).Paint();
        frame = std::chrono::steady_clock::now() - start;

        progress.Show("writing " + request.output);
        WritePicture(request.output, picture.GetView());
    }
    errors.Tell();
    report << request.output << ' ' << size.Width << 'x' << size.Height << ' ' << std::fixed
           << std::setprecision(1) << frame.count() << " ms\n";
}

}  // namespace zulmap
