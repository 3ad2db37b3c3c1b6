/// \file
/// `zulmap render`: from map files to a picture file.
#pragma once

#include <iosfwd>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "apps/zulmap/map_data.h"
#include "apps/zulmap/map_painter.h"
#include "apps/zulmap/map_reader.h"
#include "apps/zulmap/map_source.h"
#include "zul/geometry/coordinates.h"

namespace zulmap {

/// What maps to show and how, as it was typed.
struct MapRequest {
    std::vector<std::string> maps;
    std::vector<std::string> rasters;      ///< see ParseRaster
    std::optional<std::string> size;       ///< WIDTHxHEIGHT, pixels
    std::optional<std::string> pen;        ///< of every line, see ParsePen
    std::optional<std::string> coastPen;   ///< instead of `pen`, around areas
    std::optional<std::string> borderPen;  ///< instead of `pen`, between areas
    std::optional<std::string> linePen;    ///< instead of `pen`, for lines
    std::optional<std::string> brush;      ///< see ParseBrush
    std::optional<std::string> symbol;     ///< of points: a BMP file, and behind a comma RRGGBB to leave out
    std::optional<std::string> labels;     ///< the field that holds the features' names
    std::optional<std::string> font;       ///< of labels, see ParseFont
    std::optional<std::string> graticule;  ///< the map's units between two lines of a net
};

struct RenderRequest : MapRequest {
    std::string output;
    std::optional<std::string> box;     ///< minx,miny,maxx,maxy in the map's coordinates
    std::optional<std::string> center;  ///< x,y in the map's coordinates
    std::optional<std::string> scale;   ///< metres in a centimetre of the picture
    std::optional<std::string> angle;   ///< degrees, counter-clockwise
    std::optional<std::string> depth;   ///< metres, of a perspective view
    std::optional<std::string> page;    ///< instead of a size, see ParsePage
};

/// Loads the pictures of pattern and symbol. \throws ToolError for what the settings' parsers and LoadPicture
/// refuse, for a net whose step is not above 0, and for a font without labels
MapStyle ParseStyle(const MapRequest& request);
/// Each side 1 to 32000, at most 100 million pixels together. \throws ToolError
zul::TSize ParseSize(const std::string& text);
/// Finite, minima below maxima. \throws ToolError, about \p option
Box ParseBox(const std::string& text, const std::string& option = "bbox");
/// FILE,minx,miny,maxx,maxy. \throws ToolError as ParseBox
RasterFile ParseRaster(const std::string& text);
/// Reads maps and rasters, or opens a store. \throws ToolError when there is none of either, when a store is
/// not alone, and as ReadMaps and StoredMap do
std::unique_ptr<MapSource> OpenMaps(const MapRequest& request, const ReadProgress& progress);
/// Finite; brought to less than a full turn. \throws ToolError
double ParseAngle(const std::string& text);

/// Draws the maps and writes the picture. Says on \p report where it stands, how large it is and how long the
/// frame took; progress and the number of reported drawing errors go to standard error.
/// \throws ToolError when the picture cannot be made; then no file was made or changed
void Render(const RenderRequest& request, std::ostream& report);

}  // namespace zulmap
