/// \file
/// The labels over the picture of a view.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "apps/zulmap/labels/label_placer.h"
#include "apps/zulmap/labels/label_writer.h"
#include "apps/zulmap/map_content.h"
#include "apps/zulmap/map_painter.h"
#include "apps/zulmap/memory_picture.h"
#include "apps/zulmap/time_slice.h"
#include "apps/zulmap/view/map_view.h"
#include "apps/zulmap/view/pixel_rect.h"

namespace zulmap {

/// Keeps a copy of the view's picture with the labels on it. A label may lie anywhere on the view, so that
/// what comes in at a side may move one at the other: labels are not scrolled with the picture, but placed
/// anew for every view. Until they are, those of the view before go along with the map.
class LabelLayer {
public:
    /// \p view and \p style outlive the layer.
    LabelLayer(const MapView& view, const MapStyle& style) : m_View(view), m_Style(style) {}

    /// The view changed; the labels that there are move along. None: they are of no use any more.
    void Follow(const std::optional<zul::TLongPoint>& shift);
    /// Places the labels of the view. \p content is ready and stays until they are placed or the view
    /// changes. \returns what has to be drawn anew, empty until they are placed.
    std::vector<PixelRect> Place(MapContent& content, const TimeSlice& slice);
    bool IsPlaced() const { return m_IsPlaced; }

    /// Copies these parts of \p map and writes the labels on them. \p map is all of the view's picture.
    void Draw(MemoryPicture& map, const std::vector<PixelRect>& parts);
    /// As of the last Draw().
    MemoryPicture& GetPicture() { return *m_Picture; }

private:
    PixelRect PlaceOf(const Label& label);
    zul::CCanvas& GetCanvas();

    const MapView& m_View;
    const MapStyle& m_Style;
    std::unique_ptr<MemoryPicture> m_Picture;
    std::unique_ptr<zul::CScaler> m_Scaler;  ///< of the labels
    std::unique_ptr<LabelPlacer> m_Placer;
    std::vector<Label> m_Labels;
    bool m_IsPlaced = false;
};

}  // namespace zulmap
