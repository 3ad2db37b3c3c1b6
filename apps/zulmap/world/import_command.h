/// \file
/// `zulmap import`: maps into a store.
#pragma once

#include <iosfwd>
#include <string>
#include <vector>

#include "apps/zulmap/map_data.h"

#include "apps/zulmap/map_data.h"

namespace zulmap {

struct ImportRequest {
    std::vector<std::string> maps;
    std::vector<std::string> rasters;  ///< see ParseRaster
    std::string output;                ///< ends in .zul
};

/// Reads the maps whole, with all that their features say about themselves, and puts them into the store in
/// place of the map that it had, in one transaction: whoever opens the file, even after the program was
/// killed, finds the old map or the new one. Says on \p report what there is.
/// \throws ToolError as ReadMaps does, and when the file cannot be written or is none of ours
void Import(const ImportRequest& request, std::ostream& report);

/// The second half of that: puts a map that was read, with its features' values, into the store \p output.
void StoreMap(const MapData& map, const std::string& output, std::ostream& report);

/// `zulmap info`: says what a store holds, after looking the whole file through.
/// \throws ToolError when something in it is damaged or missing
void ShowInfo(const std::string& path, std::ostream& report);

}  // namespace zulmap
