#include "apps/zulmap/view/map_frame.h"

#include <utility>

namespace zulmap {
namespace {

/// Stale rectangles beyond this number are painted together with what lies between them.
constexpr std::size_t kMostStale = 8;

/// Pixels to the left and above that a part is drawn with. A coordinate halfway between two pixels is rounded
/// away from 0, so that the marks of an extended pen lie differently on either side of it; what reaches into
/// the part has to lie on one side.
constexpr std::int32_t kLead = MapView::kReach;

}  // namespace

MapFrame::Job::Job(const PixelRect& part, const MapView& view, MapContent& content, const MapStyle& style,
                   zul::CCanvas& frame)
    : place(part),
      lead(view.HasParts() ? kLead : 0),
      scaler(view.MakeScaler({part.MinX - lead, part.MinY - lead, part.MaxX, part.MaxY})),
      picture(part.MaxX - part.MinX + lead, part.MaxY - part.MinY + lead),
      painter(content, style, MakeCanvas(frame), picture.GetView().width, picture.GetView().height) {}

zul::CCanvas& MapFrame::Job::MakeCanvas(zul::CCanvas& frame) {
    zul::CCanvas& canvas = picture.GetCanvas();
    canvas.GetRegion().Create(lead, lead, picture.GetView().width, picture.GetView().height, &canvas,
                              zul::CRegion::CombineReplace);
    canvas.SetScaler(scaler.get());
    // Patterns go on where the scrolled picture has them.
    std::int32_t x = 0;
    std::int32_t y = 0;
    frame.GetBrush().GetOrigin(x, y);
    canvas.GetBrush().SetOrigin(x - place.MinX + lead, y - place.MinY + lead);
    return canvas;
}

MapFrame::MapFrame(const MapView& view, MapSource& source, const MapStyle& style)
    : m_View(view), m_Source(source), m_Style(style) {
    if (style.hasLabels) m_Labels.emplace(view, style);
    Follow({ViewChange::Kind::NewSpace, {}, {}});
    PrepareContent({});
}

PixelRect MapFrame::GetWhole() const {
    const PictureView picture = m_Picture->GetView();
    return {0, 0, picture.width, picture.height};
}

MemoryPicture& MapFrame::GetPicture() {
    if (!m_Labels) return *m_Picture;
    if (!m_Unlabelled.empty()) m_Labels->Draw(*m_Picture, std::exchange(m_Unlabelled, {}));
    return m_Labels->GetPicture();
}

std::vector<PixelRect> MapFrame::TakeDamage() {
    return std::exchange(m_Damage, {});
}

// --- the view moves ---

void MapFrame::Follow(const ViewChange& change) {
    if (change.kind == ViewChange::Kind::None) return;
    if (IsComplete()) m_WorkTime = {};
    if (change.kind == ViewChange::Kind::Shifted) {
        Shift(change.shift);
    } else {
        Redraw(change);
    }
    if (m_Labels) {
        const bool isOtherSpace = change.kind == ViewChange::Kind::NewSpace;
        m_Labels->Follow(isOtherSpace ? std::nullopt : std::optional(change.shift));
    }
    m_Damage.clear();
    m_Unlabelled.clear();
    AddDamage(GetWhole());
}

void MapFrame::Shift(zul::TLongPoint shift) {
    const PixelRect whole = GetWhole();
    m_Picture->GetCanvas().Scroll(shift.X, shift.Y, whole);
    for (PixelRect& part : std::exchange(m_Stale, {})) {
        AddStale(Shifted(part, shift));
    }
    const PixelRect kept = Intersect(whole, Shifted(whole, shift));
    AddStale({0, 0, kept.MinX, whole.MaxY});
    AddStale({kept.MaxX, 0, whole.MaxX, whole.MaxY});
    AddStale({kept.MinX, 0, kept.MaxX, kept.MinY});
    AddStale({kept.MinX, kept.MaxY, kept.MaxX, whole.MaxY});
    if (!m_Job) return;
    m_Job->place = Shifted(m_Job->place, shift);
    if (IsEmpty(Intersect(m_Job->place, whole))) m_Job.reset();
}

void MapFrame::Redraw(const ViewChange& change) {
    if (change.kind == ViewChange::Kind::NewSpace) {
        m_Job.reset();
        m_Content.reset();
    } else if (m_Job) {
        // It goes on, as a better preview; all of the frame stays stale.
        m_Job->place = Shifted(m_Job->place, change.shift);
        m_Job->isPreview = true;
    }
    ShowPreview(change.preview);
    // A tile of a pattern begins where the space does; with the scrolled picture it moves along.
    std::int32_t x = 0;
    std::int32_t y = 0;
    if (m_View.HasParts()) m_View.GetScaler().MapToScreen(0, 0, x, y);
    m_Picture->GetCanvas().GetBrush().SetOrigin(x, y);
    m_Stale = {GetWhole()};
}

void MapFrame::ShowPreview(const std::optional<PixelRect>& place) {
    const zul::TSize screen = m_View.GetScreen();
    const std::unique_ptr<MemoryPicture> former =
        std::exchange(m_Picture, std::make_unique<MemoryPicture>(screen.Width, screen.Height));
    zul::CCanvas& canvas = m_Picture->GetCanvas();
    PaintGround(canvas, screen.Width, screen.Height);
    if (!former || !place) return;
    const PictureView size = former->GetView();
    canvas.StretchBlt(place->MinX, place->MinY, place->MaxX - place->MinX, place->MaxY - place->MinY,
                      &former->GetCanvas(), 0, 0, size.width, size.height, zul::CBitmap::RopSourceCopy);
}

void MapFrame::AddStale(const PixelRect& part) {
    const PixelRect seen = Intersect(part, GetWhole());
    if (!IsEmpty(seen)) m_Stale.push_back(seen);
}

void MapFrame::AddDamage(const PixelRect& part) {
    const PixelRect seen = Intersect(part, GetWhole());
    if (IsEmpty(seen)) return;
    m_Damage.push_back(seen);
    if (m_Labels) m_Unlabelled.push_back(seen);
}

// --- the frame follows ---

bool MapFrame::Work(const TimeSlice& slice) {
    if (IsComplete()) return true;
    const auto start = std::chrono::steady_clock::now();
    do {
        WorkOnce(slice);
    } while (!IsComplete() && !slice.IsOver());
    m_WorkTime += std::chrono::steady_clock::now() - start;
    return IsComplete();
}

bool MapFrame::PrepareContent(const TimeSlice& slice) {
    if (!m_Content) {
        const MapSpace& space = m_View.GetSpace();
        m_Content = std::make_unique<MapContent>(m_Source.Read(space.GetHeld()), space, m_Style.graticule);
    }
    return m_Content->Prepare(slice);
}

void MapFrame::WorkOnce(const TimeSlice& slice) {
    if (!PrepareContent(slice)) return;
    if (m_Stale.empty()) return PlaceLabels(slice);
    if (!m_Job) StartJob();
    if (m_Job->painter.Paint(slice)) FinishJob();
}

void MapFrame::PlaceLabels(const TimeSlice& slice) {
    for (const PixelRect& part : m_Labels->Place(*m_Content, slice)) {
        AddDamage(part);
    }
}

void MapFrame::StartJob() {
    PixelRect part = m_View.HasParts() ? m_Stale.front() : GetWhole();
    // Strips that a drag uncovers one after the other make one rectangle.
    for (const PixelRect& other : m_Stale) {
        const PixelRect both = Unite(part, other);
        if (m_Stale.size() > kMostStale || AreaOf(both) <= AreaOf(part) + AreaOf(other)) part = both;
    }
    m_Job = std::make_unique<Job>(part, m_View, *m_Content, m_Style, m_Picture->GetCanvas());
}

void MapFrame::FinishJob() {
    const std::unique_ptr<Job> job = std::move(m_Job);
    const PixelRect& place = job->place;
    m_Picture->GetCanvas().BitBlt(place.MinX, place.MinY, place.MaxX - place.MinX, place.MaxY - place.MinY,
                                  &job->picture.GetCanvas(), job->lead, job->lead,
                                  zul::CBitmap::RopSourceCopy);
    m_PaintedPixels += AreaOf(place);
    AddDamage(place);
    if (job->isPreview) return;
    for (const PixelRect& part : std::exchange(m_Stale, {})) {
        if (IsEmpty(Intersect(part, place)) || !IsEqual(Intersect(part, place), part))
            m_Stale.push_back(part);
    }
}

}  // namespace zulmap
