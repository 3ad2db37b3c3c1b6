#include "apps/zulmap/raster_file.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string_view>

#include "apps/zulmap/tool_error.h"
#include "apps/zulmap/whole_file.h"
#include "zul/canvas/bitmap_canvas.h"
#include "zul/kernel/string.h"

namespace zulmap {
namespace {

namespace fs = std::filesystem;

constexpr std::int64_t kMostBytes = std::int64_t{1} << 30;

/// The lines of a world file.
enum WorldLine { PixelWidth, RotationDown, RotationAcross, PixelHeight, CenterX, CenterY, WorldLines };

std::string SmallEnding(const std::string& path) {
    std::string ending = fs::path(path).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    return ending;
}

std::string FindWorldFile(const std::string& path) {
    for (const char* ending : {".bpw", ".bmpw", ".wld", ".BPW", ".BMPW", ".WLD"}) {
        const std::string name = fs::path(path).replace_extension(ending).string();
        std::error_code ignored;
        if (fs::is_regular_file(name, ignored)) return name;
    }
    throw ToolError(path + " has no world file (.bpw, .bmpw or .wld) beside it; --raster " + path +
                    ",MINX,MINY,MAXX,MAXY places it too");
}

/// A number between blanks, with or without a plus.
bool ParseLine(std::string_view line, double& number) {
    constexpr std::string_view kBlanks = " \t\r";
    const std::size_t first = line.find_first_not_of(kBlanks);
    if (first == line.npos) return false;
    line = line.substr(first, line.find_last_not_of(kBlanks) + 1 - first);
    if (line.size() > 1 && line[0] == '+' && line[1] != '-') line.remove_prefix(1);
    const char* end = line.data() + line.size();
    const auto [stop, error] = std::from_chars(line.data(), end, number);
    return error == std::errc() && stop == end && std::isfinite(number);
}

Box ReadPlace(const std::string& path, std::int32_t width, std::int32_t height) {
    std::istringstream file(ReadFile(path));
    file.exceptions(std::ios::badbit);
    double numbers[WorldLines] = {};
    for (std::size_t i = 0; i < WorldLines; ++i) {
        std::string line;
        std::getline(file, line);
        if (!ParseLine(line, numbers[i])) {
            throw ToolError(path + ": line " + std::to_string(i + 1) + " is not a finite number");
        }
    }
    if (numbers[RotationDown] != 0.0 || numbers[RotationAcross] != 0.0) {
        throw ToolError(path + ": turned rasters are not drawn; lines 2 and 3 must be 0");
    }
    if (!(numbers[PixelWidth] > 0.0 && numbers[PixelHeight] < 0.0)) {
        throw ToolError(path + ": line 1 must lie above 0 and line 4 below it");
    }
    const double left = numbers[CenterX] - numbers[PixelWidth] / 2.0;
    const double top = numbers[CenterY] - numbers[PixelHeight] / 2.0;
    return {left, top + numbers[PixelHeight] * height, left + numbers[PixelWidth] * width, top};
}

/// The picture without its place.
Raster LoadRaster(const std::string& path) {
    Raster raster{LoadPicture(path), 0, 0, {}};
    raster.picture->GetSize(raster.width, raster.height);
    return raster;
}

Raster Placed(Raster raster, const Box& place, const std::string& source) {
    const auto isNear = [](double low, double high) {
        return low < high && std::abs(low) <= kFarthestCoordinate && std::abs(high) <= kFarthestCoordinate;
    };
    if (!isNear(place.minX, place.maxX) || !isNear(place.minY, place.maxY)) {
        throw ToolError(source + " places the raster out of reach");
    }
    raster.place = place;
    return raster;
}

}  // namespace

bool IsRasterName(const std::string& path) {
    const std::string ending = SmallEnding(path);
    return ending == ".bmp" || ending == ".dib";
}

std::shared_ptr<zul::CDibSection> LoadPicture(const std::string& path) {
    zul::CBitmap file;
    if (!file.Create(zul::CString(path.c_str()).GetBuffer())) {
        std::error_code ignored;
        throw ToolError(path +
                        (fs::exists(path, ignored) ? " cannot be read as a BMP picture" : ": no such file"));
    }
    return MakePicture(file, path);
}

std::shared_ptr<zul::CDibSection> MakePicture(zul::CBitmap& source, const std::string& path) {
    std::int32_t width = 0;
    std::int32_t height = 0;
    source.GetSize(width, height);
    if (std::int64_t{width} * height * 4 > kMostBytes) throw ToolError(path + " is too large a picture");
    auto picture = std::make_shared<zul::CDibSection>();
    picture->Create(width, height, 32, nullptr);
    if (picture->GetDIBBits() == nullptr) throw ToolError("there is no memory for " + path);
    zul::CBitmapCanvas(picture.get()).BitBlt(&source, 0, 0, width, height, 0, 0, zul::CBitmap::RopSourceCopy);
    return picture;
}

Raster ReadRaster(const std::string& path, const Box& place) {
    return Placed(LoadRaster(path), place, path);
}

Raster ReadRaster(const std::string& path) {
    Raster raster = LoadRaster(path);
    const std::string worldFile = FindWorldFile(path);
    const Box place = ReadPlace(worldFile, raster.width, raster.height);
    return Placed(std::move(raster), place, worldFile);
}

}  // namespace zulmap
