/// \file
/// Vector files of every format that GDAL knows, read into memory.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

#include "apps/zulmap/map_data.h"

namespace zulmap {

/// Told every few hundred features which file is being read and how many features of it are in.
using ReadProgress = std::function<void(const std::string& path, std::size_t features)>;

/// A BMP and what it covers, in the map's coordinates.
struct RasterFile {
    std::string path;
    Box place;
};

/// Reads all layers of all files, and BMP files with a world file beside them; then \p rasters, which lie on
/// top of those. Rasters are taken to be in the map's system. Curves become lines, collections are taken
/// apart, layers without geometry are skipped, and so are points that are not finite. Files in different
/// reference systems are brought into the system of the first one that names any; a file that names none is
/// taken as it is. Degrees are cut at the antimeridian.
///
/// \throws ToolError when a file cannot be opened, breaks off, or when nothing in all of them can be drawn.
MapData ReadMaps(const std::vector<std::string>& paths, const ReadProgress& progress,
                 const std::vector<RasterFile>& rasters = {});

}  // namespace zulmap
