#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "apps/zulmap/map_content.h"
#include "apps/zulmap/map_data.h"
#include "apps/zulmap/map_painter.h"
#include "apps/zulmap/picture_file.h"

namespace fresh {

using Pixels = std::vector<std::uint32_t>;

Pixels PixelsOf(const zulmap::PictureView& picture);

/// Draws a view at once and in one piece, from the numbers that MapView::Describe() gives of it and with the
/// library's own scalers.
class Renderer {
public:
    /// \p firstView  of the viewer's whole map, which decided on its colours
    Renderer(const zulmap::MapData& map, const zulmap::MapStyle& style, const std::string& firstView);

    Pixels Draw(const std::string& view);

private:
    const zulmap::MapData& m_Map;
    const zulmap::MapStyle& m_Style;
    zulmap::MapScheme m_Scheme;
};

}  // namespace fresh
