/// \file
/// Vector files of every format that GDAL knows, read into memory.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "apps/zulmap/map_data.h"
#include "apps/zulmap/tool_error.h"

namespace zulmap {

/// Told every few hundred features which file is being read and how many features of it are in.
using ReadProgress = std::function<void(const std::string& path, std::size_t features)>;

/// A BMP and what it covers, in the map's coordinates.
struct RasterFile {
    std::string path;
    Box place;
};

/// What to read of features beside their geometry.
struct FieldRequest {
    std::optional<std::string> name;  ///< the field that holds their names, in capitals or small letters
    bool withValues = false;          ///< all fields, as text
};

/// Reads all layers of all files, and BMP files with a world file beside them; then \p rasters, which lie on
/// top of those. Rasters are taken to be in the map's system. Curves become lines, collections are taken
/// apart, layers without geometry are skipped, and so are points that are not finite. Files in different
/// reference systems are brought into the system of the first one that names any; a file that names none is
/// taken as it is. Degrees are cut at the antimeridian.
///
/// Layers without the field of the names have none. See TidyName for what becomes of them.
///
/// \throws ToolError when a file cannot be opened, breaks off, when nothing in all of them can be drawn, and
/// when no layer has the field; the text then lists those that there are.
MapData ReadMaps(const std::vector<std::string>& paths, const ReadProgress& progress,
                 const std::vector<RasterFile>& rasters = {}, const FieldRequest& request = {});

/// Reads rasters and lays them on top of the map.
void AddRasters(MapData& map, const std::vector<RasterFile>& rasters);

/// A field of the layer, in capitals or small letters; -1 when there is none.
int FindField(const MapLayer& layer, const std::string& name);
/// Lists the fields that there are.
ToolError UnknownField(const MapFacts& map, const std::string& field);

constexpr std::size_t kLongestName = 256;

/// A name as it is written on a map: on one line, without blanks to spare, control characters being blanks.
/// Empty when it has more than kLongestName characters and so is no label.
zul::CString TidyName(const char* text);

}  // namespace zulmap
