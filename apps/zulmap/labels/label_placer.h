/// \file
/// Decides what is written on a map, and where.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include "apps/zulmap/labels/ground_plan.h"
#include "apps/zulmap/labels/label_writer.h"
#include "apps/zulmap/labels/turned_box.h"
#include "apps/zulmap/map_content.h"
#include "apps/zulmap/map_painter.h"
#include "apps/zulmap/time_slice.h"
#include "zul/canvas/canvas.h"

namespace zulmap {

/// Places the names of the features that a canvas shows, as many as there is room for. The labels overlap
/// neither each other, halos and frames included, nor the edge of the screen.
///
/// Areas come first, the one that shows most ground before the others; then points in the order of the map;
/// then lines, the longest first. Everything is worked out in pixels, from what is on the screen and nothing
/// else, so that a view has the same labels however it was come by.
///
/// - An area has its name where there is most room in the biggest part of it that is seen, on as few lines
///   and as large as it fits in, if possible beside the signs of points. One in which no size fits has it
///   where it covers next to nothing of any other area: across the area itself, or on the water beside it.
///   Otherwise it goes without.
/// - A point has its name beside its sign, free of the other signs.
/// - A line has its name along its middle, when it is long and straight enough there.
///
/// Features of the same name share a label where they lie close together.
class LabelPlacer {
public:
    /// The content is ready. \p canvas measures the text and has the scaler that shows \p screen; content,
    /// style and canvas stay as they are until all labels are placed.
    LabelPlacer(MapContent& content, const MapStyle& style, zul::CCanvas& canvas, zul::TSize screen);
    LabelPlacer(const LabelPlacer&) = delete;
    LabelPlacer& operator=(const LabelPlacer&) = delete;

    /// To be called until all are placed. \returns whether they are.
    bool Place(const TimeSlice& slice = {});
    /// In the order in which they were placed.
    const std::vector<Label>& GetLabels() const { return m_Labels; }

private:
    enum class Stage {
        ShowAreas,
        ShowPoints,
        ShowLines,
        Sort,
        PlaceAreas,
        PlacePoints,
        PlaceLines,
        Ready,
    };
    /// A part of an area's feature as it is seen.
    struct Part {
        std::vector<Path> rings;
        double size;  ///< square pixels
        Box bounds;
    };
    struct SeenArea {
        std::uint32_t feature;  ///< as the map counts
        std::int32_t owner;     ///< on the ground plan
        double size;            ///< of all parts
        std::vector<Part> parts;
    };
    struct SeenPoint {
        std::uint32_t feature;
        TDoublePoint pixel;
    };
    struct SeenLine {
        std::uint32_t feature;
        Path run;  ///< the longest piece of it on the screen
        double length;
    };

    std::size_t CountItems();
    void WorkOn(std::size_t item);
    const zul::CString& NameOf(std::uint32_t feature) const;
    std::uint32_t LayerOf(std::uint32_t feature) const;
    const FontSettings& FontOf(std::uint32_t feature) const { return m_Writer.GetFont(LayerOf(feature)); }
    const Turn& TurnOf(std::uint32_t feature) const { return m_Turns[LayerOf(feature)]; }
    std::int32_t Magnified(std::int32_t pixels) const { return pixels * m_Style.magnification; }

    void ShowArea(const MapContent::PlacedArea& area);
    Path ToScreen(const zul::TPoint* points, std::size_t count, bool closed);
    void ShowPoint(std::size_t point);
    void ShowLine(std::size_t line);
    void Sort();

    void PlaceArea(const SeenArea& area);
    /// \returns whether it did. \p parts: the big ones, as they lie along the axes of the label
    bool PlaceInside(const SeenArea& area, const std::vector<Part>& parts,
                     const std::vector<std::int32_t>& heights);
    bool PlaceInside(const SeenArea& area, const Part& part, Label label, double room);
    /// The parts of an area that may stand for it, along the axes of labels.
    std::vector<Part> TurnBigParts(const SeenArea& area) const;
    /// Makes holes of the signs on the parts. \returns whether there are any.
    bool CutOutSigns(const SeenArea& area, std::vector<Part>& parts) const;
    bool PlaceAcross(const SeenArea& area, const Label& label, double mostForeign);
    bool PlaceBeside(const SeenArea& area, Label label);
    void PlacePoint(const SeenPoint& point);
    void PlaceLine(const SeenLine& line);

    /// To be tried one after the other, the greatest first.
    std::vector<std::int32_t> HeightsFor(std::uint32_t feature, double size) const;
    /// For what has no size: one of the font's, else a common one.
    std::int32_t HeightFor(std::uint32_t feature) const;
    Label ComposeLine(std::uint32_t feature, std::int32_t height, const Turn& turn);
    /// Adds the label unless something is in its way, or one that says the same is less than \p apart away.
    bool Add(const Label& label, const zul::CString& name, double apart);

    MapContent& m_Content;
    const MapStyle& m_Style;
    zul::CCanvas& m_Canvas;
    zul::TSize m_Screen;
    Box m_Ground;  ///< the screen without the sky
    LabelWriter m_Writer;
    std::vector<Turn> m_Turns;  ///< of the layers' labels

    GroundPlan m_Plan;
    std::vector<SeenArea> m_Areas;
    std::vector<SeenPoint> m_Points;
    std::vector<SeenLine> m_Lines;
    BoxIndex m_Signs;
    BoxIndex m_Taken;
    std::map<zul::CString, std::vector<TDoublePoint>> m_Places;  ///< of the labels, by what they say
    std::vector<Label> m_Labels;
    std::vector<zul::TLongPoint> m_Mapped;  ///< scratch

    Stage m_Stage = Stage::ShowAreas;
    std::size_t m_Item = 0;  ///< the next of the stage
};

/// Writes on a map that is painted the labels that there is room for. Parameters as above.
void PaintLabels(MapContent& content, const MapStyle& style, zul::CCanvas& canvas, zul::TSize screen);

}  // namespace zulmap
