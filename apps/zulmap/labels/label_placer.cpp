#include "apps/zulmap/labels/label_placer.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "apps/zulmap/labels/inner_place.h"
#include "apps/zulmap/labels/label_text.h"
#include "apps/zulmap/path_cutting.h"
#include "zul/geometry/angle.h"
#include "zul/geometry/trigonometry.h"
#include "zul/kernel/numeric.h"
#include "zul/scaler/projective_scaler.h"

namespace zulmap {
namespace {

// Heights that fit the thing that is named, in points, and the side of a square of pixels that has as much
// ground.
constexpr std::int32_t kLeastHeight = 7;
constexpr std::int32_t kGreatestHeight = 15;
constexpr double kSmallGround = 30.0;
constexpr double kGroundForAPoint = 22.0;
constexpr std::int32_t kCommonHeight = 8;  ///< of names of points and lines

constexpr std::size_t kMostLines = 3;
constexpr std::size_t kFewLines = 2;

/// A text that could be smaller has so much room, in its own sizes.
constexpr double kComfort = 1.25;

/// A part that is smaller than this part of the biggest one does not stand for the whole.
constexpr double kSmallPart = 1.0 / 3.0;

/// The part of a line of text that is empty above the capitals and below the letters without a tail.
constexpr double kEmptyLine = 0.22;

// A label that does not fit into its area covers at least so much of it, and at most so much of the others,
// the latter where there is no room beside the area.
constexpr double kLeastOwn = 0.5;
constexpr double kLittleForeign = 0.05;
constexpr double kMostForeign = 0.15;
constexpr double kForeignBeside = 0.01;

// Pixels, at the magnification 1.
constexpr std::int32_t kGap = 1;             ///< between labels
constexpr std::int32_t kSignGap = 1;         ///< between a sign and its name
constexpr std::int32_t kStep = 2;            ///< of a label that looks for free ground
constexpr std::int32_t kFarthest = 60;       ///< that it goes
constexpr std::int32_t kTwinDistance = 300;  ///< of equal names of areas or lines
constexpr std::int32_t kLineGap = 1;         ///< between a line and its name
constexpr std::int32_t kShortestLine = 20;

/// Half the heights of its name by which a line may stray from the straight way along it.
constexpr double kStraight = 0.7;
constexpr int kStraightSteps = 8;

/// Signs on an area beyond this number cannot all be kept clear.
constexpr std::size_t kMostSigns = 100;

/// The sides of a sign, as Imhof prefers them ("Positioning Names on Maps", 1975).
constexpr TDoublePoint kSides[] = {{1.0, 0.0},  {1.0, -1.0}, {1.0, 1.0},   {-1.0, 0.0},
                                   {0.0, -1.0}, {0.0, 1.0},  {-1.0, -1.0}, {-1.0, 1.0}};

/// Parts of a line where a name may have its middle, the best first.
constexpr double kPlacesOnLine[] = {0.5, 0.42, 0.58, 0.34, 0.66, 0.26, 0.74};

TDoublePoint MiddleOf(const Box& box) {
    return {(box.minX + box.maxX) / 2.0, (box.minY + box.maxY) / 2.0};
}

TDoublePoint Between(const TDoublePoint& a, const TDoublePoint& b, double part) {
    return {a.X + (b.X - a.X) * part, a.Y + (b.Y - a.Y) * part};
}

double DistanceOf(const TDoublePoint& a, const TDoublePoint& b) {
    return std::hypot(b.X - a.X, b.Y - a.Y);
}

double LengthOf(const Path& path) {
    double length = 0.0;
    for (std::size_t i = 1; i < path.size(); ++i) {
        length += DistanceOf(path[i - 1], path[i]);
    }
    return length;
}

/// The point so far along a path.
TDoublePoint PointAt(const Path& path, double distance) {
    for (std::size_t i = 1; i < path.size(); ++i) {
        const double length = DistanceOf(path[i - 1], path[i]);
        if (distance < length) return Between(path[i - 1], path[i], std::max(0.0, distance) / length);
        distance -= length;
    }
    return path.back();
}

/// How far a stretch of a path strays from the straight way between its ends; infinite for one that goes
/// beyond the path's own.
double StrayOf(const Path& path, double start, double length) {
    const TDoublePoint from = PointAt(path, start);
    const TDoublePoint to = PointAt(path, start + length);
    const double straight = DistanceOf(from, to);
    if (start < 0.0 || straight < length / 2.0) return std::numeric_limits<double>::infinity();
    double stray = length - straight;
    for (int i = 1; i < kStraightSteps; ++i) {
        const TDoublePoint point = PointAt(path, start + length * i / kStraightSteps);
        const double across = (to.X - from.X) * (point.Y - from.Y) - (to.Y - from.Y) * (point.X - from.X);
        stray = std::max(stray, std::abs(across) / straight);
    }
    return stray;
}

/// The parts of an edge between which it lies within the box; empty when the first is the greater one.
std::pair<double, double> PartInside(const TDoublePoint& a, const TDoublePoint& b, const Box& box) {
    double from = 0.0;
    double to = 1.0;
    const auto cut = [&](double start, double way, double low, double high) {
        if (way == 0.0) {
            if (start < low || start > high) to = -1.0;
            return;
        }
        const double first = (low - start) / way;
        const double second = (high - start) / way;
        from = std::max(from, std::min(first, second));
        to = std::min(to, std::max(first, second));
    };
    cut(a.X, b.X - a.X, box.minX, box.maxX);
    cut(a.Y, b.Y - a.Y, box.minY, box.maxY);
    return {from, to};
}

/// The longest piece of a line within a box.
Path LongestRun(const Path& line, const Box& box) {
    Path longest;
    Path run;
    double length = 0.0;
    const auto finish = [&] {
        const double found = LengthOf(run);
        if (found > length) {
            length = found;
            longest = run;
        }
        run.clear();
    };
    for (std::size_t i = 1; i < line.size(); ++i) {
        const auto [from, to] = PartInside(line[i - 1], line[i], box);
        if (from > to) continue;
        if (from > 0.0) finish();
        if (run.empty()) run.push_back(Between(line[i - 1], line[i], from));
        run.push_back(Between(line[i - 1], line[i], to));
        if (to < 1.0) finish();
    }
    finish();
    return longest;
}

}  // namespace

LabelPlacer::LabelPlacer(MapContent& content, const MapStyle& style, zul::CCanvas& canvas, zul::TSize screen)
    : m_Content(content),
      m_Style(style),
      m_Canvas(canvas),
      m_Screen(screen),
      m_Ground{0.0, 0.0, static_cast<double>(screen.Width), static_cast<double>(screen.Height)},
      m_Writer(canvas, content.GetMap(), style),
      m_Plan(screen),
      m_Signs(screen),
      m_Taken(screen) {
    for (std::uint32_t layer = 0; layer < content.GetMap().layers.size(); ++layer) {
        m_Turns.emplace_back(m_Writer.GetFont(layer).angle);
    }
    const auto* perspective = dynamic_cast<const zul::CProjectiveScaler*>(canvas.GetScaler());
    if (perspective != nullptr) m_Ground.minY = perspective->GetHorizonY();
}

bool LabelPlacer::Place(const TimeSlice& slice) {
    while (m_Stage != Stage::Ready) {
        if (m_Item < CountItems()) {
            WorkOn(m_Item++);
        } else {
            m_Stage = static_cast<Stage>(static_cast<int>(m_Stage) + 1);
            m_Item = 0;
        }
        if (slice.IsOver()) break;
    }
    return m_Stage == Stage::Ready;
}

std::size_t LabelPlacer::CountItems() {
    switch (m_Stage) {
        case Stage::ShowAreas:
            return m_Content.GetAreas().size();
        case Stage::ShowPoints:
            return m_Content.GetPointFeatures().size();
        case Stage::ShowLines:
            return m_Content.GetLineFeatures().size();
        case Stage::Sort:
            return 1;
        case Stage::PlaceAreas:
            return m_Areas.size();
        case Stage::PlacePoints:
            return m_Points.size();
        case Stage::PlaceLines:
            return m_Lines.size();
        case Stage::Ready:
            break;
    }
    return 0;
}

void LabelPlacer::WorkOn(std::size_t item) {
    switch (m_Stage) {
        case Stage::ShowAreas:
            return ShowArea(m_Content.GetAreas()[item]);
        case Stage::ShowPoints:
            return ShowPoint(item);
        case Stage::ShowLines:
            return ShowLine(item);
        case Stage::Sort:
            return Sort();
        case Stage::PlaceAreas:
            return PlaceArea(m_Areas[item]);
        case Stage::PlacePoints:
            return PlacePoint(m_Points[item]);
        case Stage::PlaceLines:
            return PlaceLine(m_Lines[item]);
        case Stage::Ready:
            break;
    }
}

// --- what is on the screen ---

Path LabelPlacer::ToScreen(const zul::TPoint* points, std::size_t count, bool closed) {
    const zul::CScaler& scaler = *m_Canvas.GetScaler();
    auto mapped = static_cast<std::int32_t>(count);
    m_Mapped.resize(static_cast<std::size_t>(scaler.GetFigureRoom(mapped)) + 1);
    scaler.MapFigure(m_Mapped.data(), points, mapped, closed);
    Path path;
    path.reserve(static_cast<std::size_t>(mapped));
    for (std::int32_t i = 0; i < mapped; ++i) {
        const zul::TLongPoint& point = m_Mapped[static_cast<std::size_t>(i)];
        path.push_back({static_cast<double>(point.X), static_cast<double>(point.Y)});
    }
    return path;
}

void LabelPlacer::ShowArea(const MapContent::PlacedArea& area) {
    Part part{};
    for (const Ring& ring : area.rings) {
        if (ring.empty()) continue;
        Path cut = CutByBox(ToScreen(ring.data(), ring.size(), true), true, m_Ground);
        if (cut.empty()) continue;
        part.size += TwiceSignedArea(cut) / 2.0;
        for (const TDoublePoint& point : cut) {
            part.bounds.Include(point);
        }
        part.rings.push_back(std::move(cut));
    }
    if (part.rings.empty()) return;
    // Rows grow downwards; and in some files the outer ring is not the first.
    part.size = std::abs(part.size);
    const auto owner = static_cast<std::int32_t>(area.feature);
    m_Plan.Fill(part.rings, owner);
    if (m_Areas.empty() || m_Areas.back().owner != owner) {
        m_Areas.push_back({m_Content.GetMap().scheme.order[area.feature], owner, 0.0, {}});
    }
    m_Areas.back().size += part.size;
    m_Areas.back().parts.push_back(std::move(part));
}

void LabelPlacer::ShowPoint(std::size_t point) {
    const zul::CScaler& scaler = *m_Canvas.GetScaler();
    const zul::TPoint& place = m_Content.GetPoints()[point];
    if (!scaler.IsInFront(place.X, place.Y)) return;
    std::int32_t x = place.X;
    std::int32_t y = place.Y;
    m_Canvas.PreparePoint(x, y);
    const TDoublePoint pixel{x + 0.5, y + 0.5};
    if (pixel.X < m_Ground.minX || pixel.X > m_Ground.maxX || pixel.Y < m_Ground.minY ||
        pixel.Y > m_Ground.maxY) {
        return;
    }
    const zul::TSize sign = GetSignSize(m_Style);
    m_Signs.Add({pixel, {sign.Width / 2.0, sign.Height / 2.0}, Turn()});
    m_Points.push_back({m_Content.GetPointFeatures()[point], pixel});
}

void LabelPlacer::ShowLine(std::size_t line) {
    const std::uint32_t feature = m_Content.GetLineFeatures()[line];
    if (NameOf(feature).IsEmpty()) return;
    const zul::CPoints& points = m_Content.GetLines()[line];
    Path run = LongestRun(ToScreen(points.GetPoints(), points.GetCount(), false), m_Ground);
    const double length = LengthOf(run);
    if (length < Magnified(kShortestLine)) return;
    m_Lines.push_back({feature, std::move(run), length});
}

void LabelPlacer::Sort() {
    for (SeenArea& area : m_Areas) {
        std::stable_sort(area.parts.begin(), area.parts.end(),
                         [](const Part& a, const Part& b) { return a.size > b.size; });
    }
    std::stable_sort(m_Areas.begin(), m_Areas.end(),
                     [](const SeenArea& a, const SeenArea& b) { return a.size > b.size; });
    std::stable_sort(m_Lines.begin(), m_Lines.end(),
                     [](const SeenLine& a, const SeenLine& b) { return a.length > b.length; });
}

// --- common ground ---

std::uint32_t LabelPlacer::LayerOf(std::uint32_t feature) const {
    return m_Content.GetMap().features[feature].layer;
}

const zul::CString& LabelPlacer::NameOf(std::uint32_t feature) const {
    return m_Content.GetMap().features[feature].name;
}

std::vector<std::int32_t> LabelPlacer::HeightsFor(std::uint32_t feature, double size) const {
    if (FontOf(feature).height > 0) return {FontOf(feature).height};
    const double side = std::sqrt(std::max(0.0, size)) / m_Style.magnification;
    const auto most = std::clamp(kLeastHeight + zul::ToLong((side - kSmallGround) / kGroundForAPoint),
                                 kLeastHeight, kGreatestHeight);
    std::vector<std::int32_t> heights = {most};
    while (heights.back() > kLeastHeight) {
        heights.push_back(std::max(kLeastHeight, heights.back() * 5 / 6));
    }
    return heights;
}

std::int32_t LabelPlacer::HeightFor(std::uint32_t feature) const {
    return FontOf(feature).height > 0 ? FontOf(feature).height : kCommonHeight;
}

Label LabelPlacer::ComposeLine(std::uint32_t feature, std::int32_t height, const Turn& turn) {
    return m_Writer.Compose({NameOf(feature)}, LayerOf(feature), height, turn);
}

bool LabelPlacer::Add(const Label& label, const zul::CString& name, double apart) {
    const Box whole{0.0, 0.0, static_cast<double>(m_Screen.Width), static_cast<double>(m_Screen.Height)};
    TurnedBox outline = m_Writer.GetOutline(label);
    if (!whole.Contains(outline.GetBounds())) return false;
    outline.half.width += Magnified(kGap);
    outline.half.height += Magnified(kGap);
    if (!m_Taken.IsFree(outline)) return false;
    std::vector<TDoublePoint>& places = m_Places[name];
    const TDoublePoint& center = label.text.center;
    if (std::any_of(places.begin(), places.end(),
                    [&](const TDoublePoint& place) { return DistanceOf(place, center) < apart; })) {
        return false;
    }
    places.push_back(center);
    m_Taken.Add(outline);
    m_Labels.push_back(label);
    return true;
}

// --- areas ---

void LabelPlacer::PlaceArea(const SeenArea& area) {
    const zul::CString& name = NameOf(area.feature);
    if (name.IsEmpty()) return;
    const std::vector<std::int32_t> heights = HeightsFor(area.feature, area.parts.front().size);
    const std::vector<Part> parts = TurnBigParts(area);
    std::vector<Part> freeParts = parts;
    if (CutOutSigns(area, freeParts) && PlaceInside(area, freeParts, heights)) return;
    if (PlaceInside(area, parts, heights)) return;
    Label label = ComposeLine(area.feature, heights.back(), TurnOf(area.feature));
    const Box bounds = m_Writer.GetOutline(label).GetBounds();
    if (bounds.Width() > m_Screen.Width || bounds.Height() > m_Screen.Height) return;
    const Part& biggest = area.parts.front();
    const std::optional<InnerPlace> place = FindInnerPlace(biggest.rings, label.text.half, 0.0);
    label.text.center = place ? place->center : MiddleOf(biggest.bounds);
    if (PlaceAcross(area, label, kLittleForeign) || PlaceBeside(area, label)) return;
    PlaceAcross(area, label, kMostForeign);
}

std::vector<LabelPlacer::Part> LabelPlacer::TurnBigParts(const SeenArea& area) const {
    std::vector<Part> parts;
    for (const Part& part : area.parts) {
        if (part.size < area.parts.front().size * kSmallPart) break;
        parts.push_back(part);
        for (Path& ring : parts.back().rings) {
            std::transform(ring.begin(), ring.end(), ring.begin(), [this, &area](const TDoublePoint& point) {
                return TurnOf(area.feature).FromScreen(point);
            });
        }
    }
    return parts;
}

bool LabelPlacer::CutOutSigns(const SeenArea& area, std::vector<Part>& parts) const {
    bool hasSigns = false;
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const std::vector<TurnedBox> signs = m_Signs.FindNear(area.parts[i].bounds);
        if (signs.size() > kMostSigns) return false;
        for (const TurnedBox& sign : signs) {
            if (m_Plan.Under({sign.center, {1.0, 1.0}, Turn()}, area.owner).own == 0.0) continue;
            const TDoublePoint center = TurnOf(area.feature).FromScreen(sign.center);
            parts[i].rings.push_back({{center.X - sign.half.width, center.Y - sign.half.height},
                                      {center.X + sign.half.width, center.Y - sign.half.height},
                                      {center.X + sign.half.width, center.Y + sign.half.height},
                                      {center.X - sign.half.width, center.Y + sign.half.height}});
            hasSigns = true;
        }
    }
    return hasSigns;
}

bool LabelPlacer::PlaceInside(const SeenArea& area, const std::vector<Part>& parts,
                              const std::vector<std::int32_t>& heights) {
    for (const std::int32_t height : heights) {
        const bool isLeast = height == heights.back();
        const auto measure = [&](const zul::CString& text) {
            return m_Writer.MeasureWidth(text, LayerOf(area.feature), height);
        };
        for (std::size_t count = 1; count <= (isLeast ? kMostLines : kFewLines); ++count) {
            const std::vector<zul::CString> lines = BreakName(NameOf(area.feature), count, measure);
            if (lines.empty()) break;
            const Label label = m_Writer.Compose(lines, LayerOf(area.feature), height, TurnOf(area.feature));
            if (std::any_of(parts.begin(), parts.end(), [&](const Part& part) {
                    return PlaceInside(area, part, label, isLeast ? 1.0 : kComfort);
                })) {
                return true;
            }
        }
    }
    return false;
}

bool LabelPlacer::PlaceInside(const SeenArea& area, const Part& part, Label label, double room) {
    HalfSize needed = label.text.half;
    if (FontOf(area.feature).framed != 0) {
        needed = m_Writer.GetOutline(label).half;
    } else {
        needed.width += Magnified(kGap);
        needed.height *= 1.0 - kEmptyLine / static_cast<double>(label.lines.size());
    }
    if (part.size < 4.0 * needed.width * needed.height) return false;
    const std::optional<InnerPlace> place = FindInnerPlace(part.rings, needed, room);
    if (!place) return false;
    label.text.center = TurnOf(area.feature).ToScreen(place->center);
    return Add(label, NameOf(area.feature), Magnified(kTwinDistance));
}

bool LabelPlacer::PlaceAcross(const SeenArea& area, const Label& label, double mostForeign) {
    const GroundPlan::Shares shares = m_Plan.Under(label.text, area.owner);
    return shares.own >= kLeastOwn && shares.foreign <= mostForeign &&
           Add(label, NameOf(area.feature), Magnified(kTwinDistance));
}

bool LabelPlacer::PlaceBeside(const SeenArea& area, Label label) {
    const TDoublePoint middle = label.text.center;
    const Box bounds = m_Writer.GetOutline(label).GetBounds();
    const TDoublePoint half{bounds.Width() / 2.0, bounds.Height() / 2.0};
    struct Candidate {
        TDoublePoint center;
        double way;
    };
    std::vector<Candidate> candidates;
    for (const TDoublePoint& side : kSides) {
        for (double way = 0.0; way <= Magnified(kFarthest); way += Magnified(kStep)) {
            label.text.center = {middle.X + side.X * (half.X + way), middle.Y + side.Y * (half.Y + way)};
            const GroundPlan::Shares shares = m_Plan.Under(m_Writer.GetOutline(label), area.owner);
            if (shares.own > 0.0) continue;
            // Right beside the area, or the name would be taken for that of another.
            if (shares.foreign <= kForeignBeside) candidates.push_back({label.text.center, way});
            break;
        }
    }
    std::stable_sort(candidates.begin(), candidates.end(),
                     [](const Candidate& a, const Candidate& b) { return a.way < b.way; });
    return std::any_of(candidates.begin(), candidates.end(), [&](const Candidate& candidate) {
        label.text.center = candidate.center;
        return Add(label, NameOf(area.feature), Magnified(kTwinDistance));
    });
}

// --- points and lines ---

void LabelPlacer::PlacePoint(const SeenPoint& point) {
    const zul::CString& name = NameOf(point.feature);
    if (name.IsEmpty()) return;
    Label label = ComposeLine(point.feature, HeightFor(point.feature), TurnOf(point.feature));
    const Box bounds = m_Writer.GetOutline(label).GetBounds();
    const zul::TSize sign = GetSignSize(m_Style);
    const TDoublePoint way{(sign.Width + bounds.Width()) / 2.0 + Magnified(kSignGap),
                           (sign.Height + bounds.Height()) / 2.0 + Magnified(kSignGap)};
    // Two names of one point lie no farther apart.
    const double around = 2.0 * std::hypot(way.X, way.Y) + 1.0;
    for (const TDoublePoint& side : kSides) {
        label.text.center = {point.pixel.X + side.X * way.X, point.pixel.Y + side.Y * way.Y};
        if (m_Signs.IsFree(m_Writer.GetOutline(label)) && Add(label, name, around)) return;
    }
}

void LabelPlacer::PlaceLine(const SeenLine& line) {
    Label label = ComposeLine(line.feature, HeightFor(line.feature), TurnOf(line.feature));
    const double width = 2.0 * label.text.half.width;
    if (line.length < width) return;
    const double away = label.text.half.height + Magnified(kLineGap);
    for (const double part : kPlacesOnLine) {
        const TDoublePoint from = PointAt(line.run, line.length * part - width / 2.0);
        const TDoublePoint to = PointAt(line.run, line.length * part + width / 2.0);
        if (StrayOf(line.run, line.length * part - width / 2.0, width) > kStraight * label.text.half.height) {
            continue;
        }
        const double slope = (from.Y - to.Y) / (to.X - from.X);
        label.text.turn = Turn(zul::CAngle::RadianToDegree(zul::Arctangent(slope)));
        const TDoublePoint above = label.text.turn.ToScreen({0.0, -away});
        const TDoublePoint middle = Between(from, to, 0.5);
        label.text.center = {middle.X + above.X, middle.Y + above.Y};
        if (Add(label, NameOf(line.feature), Magnified(kTwinDistance))) return;
    }
}

void PaintLabels(MapContent& content, const MapStyle& style, zul::CCanvas& canvas, zul::TSize screen) {
    LabelPlacer placer(content, style, canvas, screen);
    placer.Place();
    LabelWriter writer(canvas, content.GetMap(), style);
    for (const Label& label : placer.GetLabels()) {
        writer.Draw(label);
    }
}

}  // namespace zulmap
