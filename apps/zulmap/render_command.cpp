#include "apps/zulmap/render_command.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <iomanip>
#include <ostream>
#include <string_view>

#include "apps/zulmap/labels/label_placer.h"
#include "apps/zulmap/map_content.h"
#include "apps/zulmap/map_sight.h"
#include "apps/zulmap/memory_picture.h"
#include "apps/zulmap/picture_file.h"
#include "apps/zulmap/printer_page.h"
#include "apps/zulmap/raster_file.h"
#include "apps/zulmap/tool_error.h"
#include "apps/zulmap/tool_report.h"
#include "apps/zulmap/tool_settings.h"
#include "apps/zulmap/world/stored_map.h"

namespace zulmap {
namespace {

constexpr std::int64_t kGreatestPattern = 8192;  ///< pixels a side
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

/// A file, and behind a comma the colour that is left out; without one it is that of the first pixel.
Symbol ReadSymbol(const std::string& text) {
    const std::size_t comma = text.rfind(',');
    Symbol symbol;
    if (comma != text.npos) {
        const std::string color = text.substr(comma + 1);
        if (!ParseColor(color, symbol.holes) && !ParseColor("#" + color, symbol.holes)) {
            throw ToolError("symbol '" + text + "': '" + color + "' is not a colour such as ff00ff");
        }
    }
    symbol.picture = LoadPicture(text.substr(0, comma));
    if (comma == text.npos) symbol.holes = symbol.picture->GetBitmapMaskColor();
    return symbol;
}

/// What is drawn on: a screen's picture or, when a page is asked for, the printer's.
class Target {
public:
    Target(const std::optional<PageSettings>& page, zul::TSize size) {
        if (page) {
            m_Page.emplace(*page);
        } else {
            m_Picture.emplace(size.Width, size.Height);
        }
    }

    zul::CCanvas& GetCanvas() { return m_Page ? m_Page->GetCanvas() : m_Picture->GetCanvas(); }
    zul::TSize GetSize() const {
        if (m_Page) return m_Page->GetPrintableSize();
        return {m_Picture->GetView().width, m_Picture->GetView().height};
    }
    double GetPixelsPerSm() const { return m_Page ? m_Page->GetPixelsPerSm() : kPixelsPerSm; }
    std::int32_t GetMagnification() const { return m_Page ? m_Page->GetMagnification() : 1; }
    /// With the paper around what was drawn.
    PictureView Finish() {
        if (m_Page) {
            const zul::TSize paper = m_Page->GetPaperSize();
            m_Picture.emplace(paper.Width, paper.Height);
            m_Page->CopyTo(*m_Picture);
        }
        return m_Picture->GetView();
    }

private:
    std::optional<PrinterPage> m_Page;
    std::optional<MemoryPicture> m_Picture;
};

/// Lets what is measured in pixels look as large as on a screen; a pattern beyond all measure stays as it is.
void Magnify(MapStyle& style, std::int32_t magnification) {
    style.magnification = magnification;
    if (!style.pattern || magnification == 1) return;
    zul::TSize size{};
    style.pattern->GetSize(size.Width, size.Height);
    const std::int64_t width = std::int64_t{size.Width} * magnification;
    const std::int64_t height = std::int64_t{size.Height} * magnification;
    if (width > kGreatestPattern || height > kGreatestPattern) return;
    style.pattern.reset(
        style.pattern->Stretch(static_cast<std::int32_t>(width), static_cast<std::int32_t>(height)));
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
    if (style.brush && !style.brush->pattern.empty()) style.pattern = LoadPicture(style.brush->pattern);
    if (request.symbol) style.symbol = ReadSymbol(*request.symbol);
    if (request.font && !request.labels) throw ToolError("a font is for labels: --labels FIELD is missing");
    style.hasLabels = request.labels.has_value();
    if (request.font) style.font = ParseFont(*request.font);
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
    CheckPictureSize(size, "size");
    return size;
}

Box ParseBox(const std::string& text, const std::string& option) {
    double sides[4] = {};
    if (!ParseNumbers(text, sides)) {
        throw ToolError(option + " '" + text + "' is not four finite numbers minx,miny,maxx,maxy");
    }
    const Box box{sides[0], sides[1], sides[2], sides[3]};
    if (!(box.minX < box.maxX && box.minY < box.maxY)) {
        throw ToolError(option + " '" + text + "' is empty: its minima must lie below its maxima");
    }
    return box;
}

RasterFile ParseRaster(const std::string& text) {
    // A name may have commas too.
    std::size_t comma = text.size();
    for (int i = 0; i < 4 && comma != text.npos && comma > 0; ++i) {
        comma = text.rfind(',', comma - 1);
    }
    if (comma == text.npos || comma == 0) {
        throw ToolError("raster '" + text + "' is not of the form FILE,minx,miny,maxx,maxy");
    }
    return {text.substr(0, comma), ParseBox(text.substr(comma + 1), "raster")};
}

std::unique_ptr<MapSource> OpenMaps(const MapRequest& request, const ReadProgress& progress) {
    std::vector<RasterFile> rasters;
    for (const std::string& raster : request.rasters) {
        rasters.push_back(ParseRaster(raster));
    }
    if (request.maps.empty() && rasters.empty()) throw ToolError("no maps are given");
    if (std::none_of(request.maps.begin(), request.maps.end(), IsStoreName)) {
        return std::make_unique<LoadedMap>(ReadMaps(request.maps, progress, rasters, {request.labels}));
    }
    if (request.maps.size() > 1)
        throw ToolError("a stored map is shown alone: no other can be given with it");
    return std::make_unique<StoredMap>(request.maps.front(), request.labels, rasters);
}

double ParseAngle(const std::string& text) {
    double angle[1] = {};
    if (!ParseNumbers(text, angle)) throw ToolError("rotation '" + text + "' is not a finite number");
    return std::fmod(angle[0], 360.0);
}

void Render(const RenderRequest& request, std::ostream& report) {
    // What was typed is judged whole before anything is read.
    PictureFormatOf(request.output);
    if (request.page && request.size) throw ToolError("a page has a size of its own: --page or --size");
    const zul::TSize size =
        request.size ? ParseSize(*request.size) : zul::TSize{kDefaultWidth, kDefaultHeight};
    const std::optional<PageSettings> page =
        request.page ? std::optional(ParsePage(*request.page)) : std::nullopt;
    SightRequest sightRequest = ReadSight(request);
    MapStyle style = ParseStyle(request);

    CountingErrorHandler errors;
    const zul::CErrorHandlerScope errorScope(&errors);
    std::chrono::duration<double, std::milli> frame{};
    PictureView picture;
    std::uint64_t rows = 0;
    Target target(page, size);
    {
        const ProgressLine progress;
        const std::unique_ptr<MapSource> source = OpenMaps(
            request, [&](const std::string& path, std::size_t count) { progress.ShowReading(path, count); });
        const zul::TSize shown = target.GetSize();
        sightRequest.pixelsPerSm = target.GetPixelsPerSm();
        const Sight sight = MakeSight(source->GetFacts(), sightRequest, shown);
        const std::shared_ptr<const MapData> map = source->Read(sight.space.GetHeld());
        rows = source->GetRowsRead();
        progress.Show("arranging " + std::to_string(map->features.size()) + " features");
        MapContent content(map, sight.space, style.graticule);
        content.Prepare();

        progress.Show("drawing");
        Magnify(style, target.GetMagnification());
        zul::CCanvas& canvas = target.GetCanvas();
        canvas.SetScaler(sight.scaler.get());
        const auto start = std::chrono::steady_clock::now();
        MapPainter(content, style, canvas, shown.Width, shown.Height).Paint();
        if (style.hasLabels) PaintLabels(content, style, canvas, shown);
        frame = std::chrono::steady_clock::now() - start;

        errors.NeedMemory();
        progress.Show("writing " + request.output);
        picture = target.Finish();
        WritePicture(request.output, picture);
    }
    errors.Tell();
    report << request.output << ' ' << picture.width << 'x' << picture.height << ' ' << std::fixed
           << std::setprecision(1) << frame.count() << " ms";
    if (rows > 0) report << ", " << rows << " rows read";
    report << '\n';
}

}  // namespace zulmap
