/// \file
/// A viewer without a window: inputs go in, a picture of the screen comes out.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "apps/zulmap/map_painter.h"
#include "apps/zulmap/map_source.h"
#include "apps/zulmap/memory_picture.h"
#include "apps/zulmap/time_slice.h"
#include "apps/zulmap/view/map_frame.h"
#include "apps/zulmap/view/map_view.h"
#include "apps/zulmap/view/panel.h"
#include "apps/zulmap/view/view_input.h"

namespace zulmap {

/// Moves a view as its user wants, keeps the frame up to date in slices of time, and lays scale, position and
/// a rubber band over a copy of it, so that a scrolled frame holds nothing but the map.
class Viewer {
public:
    /// \p source, of a map that is not empty, and \p style outlive the viewer.
    Viewer(MapSource& source, const MapStyle& style, zul::TSize screen);

    /// What the keys do, a line for each.
    static std::vector<std::string> DescribeKeys();

    void Handle(const ViewInput& input);
    /// \returns whether the map is drawn completely.
    bool Work(const TimeSlice& slice = {}) { return m_Frame.Work(slice); }
    bool IsComplete() const { return m_Frame.IsComplete(); }
    bool IsDone() const { return m_IsDone; }
    bool HasOverlays() const { return m_HasOverlays; }
    bool HasHelp() const { return m_HasHelp; }

    /// Brings the screen up to date. \returns the rectangles that changed.
    std::vector<PixelRect> Compose();
    /// With everything that lies over the map, as of the last Compose().
    PictureView GetScreen() const { return m_Screen->GetView(); }
    /// The map alone.
    PictureView GetMapPicture() { return m_Frame.GetPicture().GetView(); }

    const MapView& GetView() const { return m_View; }
    const MapFrame& GetFrame() const { return m_Frame; }

private:
    struct KeyAction {
        std::vector<std::string> keys;  ///< the first is the one to tell
        const char* description;        ///< null: told with another one
        void (*act)(Viewer& viewer);
    };
    struct Band {
        zul::TLongPoint from;
        zul::TLongPoint to;

        bool operator==(const Band& other) const { return from == other.from && to == other.to; }
    };

    static const std::vector<KeyAction>& GetKeyActions();
    void Follow(const ViewChange& change) { m_Frame.Follow(change); }
    void Press(const ViewInput& input);
    void Move(zul::TLongPoint at);
    void Release(const ViewInput& input);
    void PressKey(const std::string& key);
    void ScrollBy(std::int32_t x, std::int32_t y);
    void ZoomBy(double factor);
    void Abandon();
    zul::TLongPoint GetMiddle() const;
    std::vector<Panel> MakePanels() const;
    void CopyFromFrame(const PixelRect& part);
    /// \returns the pixels within its outline and on it.
    PixelRect InvertBand(const Band& band);

    MapView m_View;
    MapFrame m_Frame;
    bool m_IsDone = false;
    bool m_HasOverlays = true;
    bool m_HasHelp = false;

    std::optional<zul::TLongPoint> m_Pointer;
    std::optional<zul::TLongPoint>
        m_Grip;                  ///< while the map is dragged: the pixel of the place that was gripped
    std::optional<Band> m_Band;  ///< while one is drawn

    std::unique_ptr<MemoryPicture> m_Screen;
    std::vector<Panel> m_ShownPanels;
    std::optional<Band> m_ShownBand;
};

}  // namespace zulmap
