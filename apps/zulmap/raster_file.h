/// \file
/// BMP files: rasters with a place on the map, symbols and patterns.
#pragma once

#include <memory>
#include <string>

#include "apps/zulmap/map_data.h"
#include "zul/raster/dib_section.h"

namespace zulmap {

/// Whether a map of this name is a raster: its ending is .bmp or .dib, in either case.
bool IsRasterName(const std::string& path);

/// Reads a BMP of any kind into a section of 32 bits a pixel, the bottom row first.
/// \throws ToolError when there is no such file, when it is no BMP, cut short or larger than a gigabyte of
/// pixels
std::shared_ptr<zul::CDibSection> LoadPicture(const std::string& path);
/// The same from a bitmap in memory; \p path names it in complaints.
std::shared_ptr<zul::CDibSection> MakePicture(zul::CBitmap& source, const std::string& path);

/// A BMP that covers \p place, which is finite and has an inside.
/// \throws ToolError as LoadPicture, and for a place so far away that no map reaches it
Raster ReadRaster(const std::string& path, const Box& place);

/// A BMP placed by the world file beside it, which has its name and the ending .bpw, .bmpw or .wld, and six
/// lines: width of a pixel, two terms of a rotation, height of a pixel with a minus, x and y of the middle of
/// the upper left pixel. \throws ToolError when there is none, when it is malformed, turned or upside down
Raster ReadRaster(const std::string& path);

}  // namespace zulmap
