/// \file
/// The picture of a view, kept up to date while the view moves.
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "apps/zulmap/map_content.h"
#include "apps/zulmap/map_painter.h"
#include "apps/zulmap/map_source.h"
#include "apps/zulmap/memory_picture.h"
#include "apps/zulmap/time_slice.h"
#include "apps/zulmap/view/label_layer.h"
#include "apps/zulmap/view/map_view.h"
#include "apps/zulmap/view/pixel_rect.h"

namespace zulmap {

/// Draws what a view shows, a slice of time after the other, and only what is not there yet.
///
/// What is stale is a list of rectangles. Each is painted on a picture of its own and put into the frame when
/// it is complete, so that the frame never shows half a map. When the view is scrolled meanwhile, frame,
/// stale rectangles and the one in the making move along: nothing that was painted is lost.
class MapFrame {
public:
    /// All outlive the frame. What the view shows at first is prepared at once.
    /// \throws ToolError when the net of \p style would have too many lines, and as MapSource::Read does; so
    /// does Work
    MapFrame(const MapView& view, MapSource& source, const MapStyle& style);

    /// To be told of every change of the view. Until the new picture is there the frame shows the old one as
    /// well as it fits.
    void Follow(const ViewChange& change);
    /// \returns whether the frame shows the view.
    bool Work(const TimeSlice& slice = {});
    bool IsComplete() const { return m_Stale.empty() && (!m_Labels || m_Labels->IsPlaced()); }

    /// The canvas of the map without its labels, on whose brush the patterns hang.
    zul::CCanvas& GetMapCanvas() { return m_Picture->GetCanvas(); }
    MemoryPicture& GetPicture();
    /// What changed in the picture since the last call; whole rectangles.
    std::vector<PixelRect> TakeDamage();
    /// Time that the work on the last complete frame took, or on the present one up to now.
    std::chrono::duration<double, std::milli> GetWorkTime() const { return m_WorkTime; }
    /// Pixels painted since the frame was made, each time that they were.
    std::int64_t GetPaintedPixels() const { return m_PaintedPixels; }

private:
    /// A part of the frame in the making.
    struct Job {
        PixelRect place;
        std::int32_t lead;  ///< pixels of the picture that come before the place, on either axis
        std::unique_ptr<zul::CScaler> scaler;
        MemoryPicture picture;
        MapPainter painter;
        bool isPreview = false;  ///< the view is no longer what it draws

        Job(const PixelRect& part, const MapView& view, MapContent& content, const MapStyle& style,
            zul::CCanvas& frame);
        /// Ready to be painted on.
        zul::CCanvas& MakeCanvas(zul::CCanvas& frame);
    };

    PixelRect GetWhole() const;
    void Shift(zul::TLongPoint shift);
    void Redraw(const ViewChange& change);
    void ShowPreview(const std::optional<PixelRect>& place);
    void AddStale(const PixelRect& part);
    void AddDamage(const PixelRect& part);
    bool PrepareContent(const TimeSlice& slice);
    void WorkOnce(const TimeSlice& slice);
    void PlaceLabels(const TimeSlice& slice);
    void StartJob();
    void FinishJob();

    const MapView& m_View;
    MapSource& m_Source;
    const MapStyle& m_Style;
    std::unique_ptr<MemoryPicture> m_Picture;  ///< of the map
    std::optional<LabelLayer> m_Labels;
    std::vector<PixelRect> m_Unlabelled;  ///< what the labels' picture has to take over
    std::unique_ptr<MapContent> m_Content;
    std::unique_ptr<Job> m_Job;  ///< its place, as far as it is seen, is stale too
    std::vector<PixelRect> m_Stale;
    std::vector<PixelRect> m_Damage;
    std::chrono::duration<double, std::milli> m_WorkTime{};
    std::int64_t m_PaintedPixels = 0;
};

}  // namespace zulmap
