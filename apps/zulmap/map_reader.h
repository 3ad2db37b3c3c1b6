/// \file
/// Vector files of every format that GDAL knows, read into memory.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
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
/// \p nameField  the field that holds the features' names, in capitals or small letters; layers without it
/// have none. Runs of blanks and control characters in a name become one blank; a name of more than
/// kLongestName characters is no label and left out.
///
/// \throws ToolError when a file cannot be opened, breaks off, when nothing in all of them can be drawn, and
/// when no layer has the field; the text then lists those that there are.
MapData ReadMaps(const std::vector<std::string>& paths, const ReadProgress& progress,
                 const std::vector<RasterFile>& rasters = {},
                 const std::optional<std::string>& nameField = {});

constexpr std::size_t kLongestName = 256;

}  // namespace zulmap
