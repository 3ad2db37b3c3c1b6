#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
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
    Renderer(std::shared_ptr<const zulmap::MapData> map, const zulmap::MapStyle& style)
        : m_Map(std::move(map)), m_Style(style) {}

    Pixels Draw(const std::string& view);

private:
    std::shared_ptr<const zulmap::MapData> m_Map;
    const zulmap::MapStyle& m_Style;
};

}  // namespace fresh
