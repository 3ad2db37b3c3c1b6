/// \file
/// Views set up, navigated, resized, turned, stored and asked in any order.
///
/// The first byte of an input chooses: a walk of navigation on a sound view, after each of whose steps the
/// view must be consistent; or any method with arguments of all kinds, after which a view must come back from
/// its stored form, and asking must change nothing.

#include <algorithm>
#include <cstring>
#include <iterator>
#include <vector>

#include "fuzz/frame/fuzzing.h"
#include "tests/scaler/scaler_walk.h"
#include "zul/canvas/canvas.h"
#include "zul/geometry/rect.h"
#include "zul/kernel/message.h"

namespace {

using fuzz::Require;
using zul::CScaler;
using zul::TLongPoint;
using zul::TPoint;

constexpr int kNear = 3000;
constexpr int kMaxSteps = 100;
constexpr std::size_t kMaxPoints = 8;

class Program {
public:
    explicit Program(fuzz::Input& input) : m_Input(input) { SetUp(); }

    void Step() {
        using Method = void (Program::*)();
        static constexpr Method kSteps[] = {
            &Program::SetUp,      &Program::Resize,  &Program::ShowBox,     &Program::Turn,
            &Program::Navigate,   &Program::Scale,   &Program::Perspective, &Program::SendMessage,
            &Program::Store,      &Program::Bend,    &Program::Ask,         &Program::Ask,
            &Program::MapPoints,  &Program::MapList, &Program::MapList,     &Program::MapBack,
            &Program::MapFigures,
        };
        m_Scaler = m_Input.Flag() ? &m_Flat : &m_Projective;
        (this->*kSteps[m_Input.Below(std::size(kSteps))])();
    }

private:
    std::int32_t Number() { return m_Input.Number(kNear); }
    TLongPoint Spot() {
        const std::int32_t x = Number();
        return {x, Number()};
    }
    TPoint Point() {
        const TLongPoint spot = Spot();
        return zul::WrapToPoint(spot.X, spot.Y);
    }
    zul::TLongRect Rect() {
        const TLongPoint low = Spot(), high = Spot();
        return {low.X, low.Y, high.X, high.Y};
    }
    zul::CCanvas* Canvas() { return m_Input.Flag() ? &m_Canvas : nullptr; }

    // --- what changes a view ---

    void SetUp() {
        const zul::TLongRect bounds = Rect();
        const TLongPoint screen = Spot(), unwrapped = Spot();
        const double resolution = m_Input.Real(90), metres = m_Input.Real(9), fraction = m_Input.Real(1);
        m_Scaler->InitScaler(bounds, {screen.X, screen.Y}, {unwrapped.X, unwrapped.Y}, resolution, metres,
                             fraction);
    }
    void Resize() {
        m_Scaler->SetScreenSize(Number(), Number());
        if (m_Input.Flag()) m_Scaler->SetMaximumUnwrappedSize(Number(), Number());
    }
    void ShowBox() {
        const zul::TLongRect box = Rect();
        if (m_Input.Below(4) == 0) {
            m_Scaler->SetMapBounds(box.MinX, box.MinY, box.MaxX, box.MaxY);
        } else {
            m_Scaler->SetVisibleBox(box.MinX, box.MinY, box.MaxX, box.MaxY, m_Input.Flag());
        }
    }
    void Turn() {
        m_Scaler->SetRotationAngle(m_Input.Real(360));
        if (m_Input.Flag()) m_Scaler->SetBaseScale();
    }
    void Navigate() {
        zul::TLongRect rect = Rect();
        const TPoint point = Point();
        const TLongPoint asked{rect.MinX, rect.MinY};
        switch (m_Input.Below(6)) {
            case 0:
                m_Scaler->Scroll(Canvas(), rect.MinX, rect.MinY);
                break;
            case 1:
                m_Scaler->ScrollInMapCoords(Canvas(), rect.MinX, rect.MinY);
                break;
            case 2:
                m_Scaler->Zoom(rect.MinX, rect.MinY, rect.MaxX, rect.MaxY, m_Input.Flag());
                break;
            case 3:
                m_Scaler->CenterMap(asked.X, asked.Y);
                break;
            case 4:
                m_Scaler->PlaceToCenter(Canvas(), point.X, point.Y);
                break;
            default:
                m_Scaler->CheckVisible();
        }
    }
    void Scale() {
        switch (m_Input.Below(4)) {
            case 0:
                return m_Scaler->SetMinScale(m_Input.Real(9000));
            case 1:
                return m_Scaler->SetMaxScale(m_Input.Real(9000));
            case 2:
                return Print(Number());
            default:
                m_Scaler->ClearPrinterScaleFactor();
        }
    }
    void Print(std::int32_t factor) {
        m_GreatestRatio = std::max(m_GreatestRatio, factor);
        m_Scaler->SetPrinterScaleFactor(factor);
    }
    void Perspective() {
        const TPoint corners[] = {Point(), Point(), Point(), Point()};
        switch (m_Input.Below(5)) {
            case 0:
                return m_Projective.InitPerspective(m_Input.Flag() ? corners : nullptr);
            case 1:
                return m_Projective.SetHorizonFraction(m_Input.Real(1));
            case 2:
                return m_Projective.SetInscriptionClippingFraction(m_Input.Real(1));
            case 3:
                return m_Projective.SetSlopeDepth(Number());
            default:
                m_Scaler->SetReviewDepth(Number(), m_Input.Flag() ? corners : nullptr);
        }
    }
    void SendMessage() {
        constexpr std::int32_t kScales[] = {10069, 10070, 10071, 10072, 10073};
        double scale = m_Input.Real(9000);
        zul::CMessage message(m_Input.OneOf(kScales), reinterpret_cast<std::intptr_t>(&scale));
        m_Scaler->DoMessage(&message);
        zul::TLongRect rect = Rect();
        zul::CMessage bounds(m_Input.Flag() ? 10077 : 10078, reinterpret_cast<std::intptr_t>(&rect));
        m_Scaler->DoMessage(&bounds);
    }
    void Store() {
        zul::CMemoryStream stream;
        m_Scaler->ObjectToBuffer(&stream);
        zul::CMemoryStream part(stream.GetBuffer(),
                                m_Input.Below(4) == 0 ? std::size_t(m_Input.Below(96)) : stream.GetSize());
        CScaler* const other = m_Input.Flag() ? &m_Flat : static_cast<CScaler*>(&m_Projective);
        other->ObjectFromBuffer(&part);
        if (part.GetSize() == stream.GetSize())
            Require(zul::StoredFormOf(*other) == zul::StoredFormOf(*m_Scaler), "a stored view comes back");
        m_Flat.ApplyScaler(&m_Projective);
    }
    /// Fields as a hostile file has them.
    void Bend() {
        zul::TStoredScaler stored = zul::StoredFormOf(*m_Scaler);
        double* const fields[] = {
            &stored.metresInSm,   &stored.k,        &stored.baseFraction, &stored.pixelsPerSm,
            &stored.metresInUnit, &stored.minScale, &stored.maxScale};
        *m_Input.OneOf(fields) = m_Input.Real(kNear);
        if (m_Input.Flag()) stored.box = Rect();
        if (m_Input.Flag()) stored.bounds = Rect();
        if (m_Input.Flag()) stored.left = Number();
        if (m_Input.Flag()) stored.bottom = Number();
        zul::Restore(*m_Scaler, stored);
    }

    // --- what does not ---

    /// Runs \p ask, which must change nothing.
    template <class Question>
    void Unchanged(Question&& ask) {
        const zul::TStoredScaler before = zul::StoredFormOf(*m_Scaler);
        ask();
        Require(zul::StoredFormOf(*m_Scaler) == before, "asking changes nothing");
    }
    void Ask() {
        Unchanged([&] {
            zul::TLongRect rect = Rect();
            std::int32_t a = Number(), b = Number();
            m_Scaler->GetQueryRect(rect, a);
            rect = Rect();
            m_Scaler->PrepareQueryRect(rect, b);
            m_Scaler->GetScrollParams(a, b, m_Input.Flag());
            Require(m_Scaler->GetRatio() <= m_GreatestRatio, "a ratio is per mille, or a printer's factor");
            m_Scaler->GetPercentRatio(Number());
            m_Scaler->GetMetersInSm(Number());
            m_Scaler->IsDepthVisible(Number());
            m_Scaler->GetScreenToVisibleAt(Number(), Number());
            zul::CRect bounds(0, 0, 0, 0);
            m_Scaler->GetMapBounds(bounds);
            TPoint near{}, far{};
            m_Projective.GetViewLine(near, far);
            m_Scaler->TestPoint(Number(), Number());
            zul::TCoord x = 0, y = 0;
            Require((m_Scaler->HitTest(Number(), Number(), x, y) & ~15) == 0, "a hit has four bits");
        });
    }
    void MapPoints() {
        Unchanged([&] {
            const TLongPoint spot = Spot();
            TLongPoint out{};
            m_Scaler->MapToScreen(spot.X);
            m_Scaler->ScreenToMap(spot.X);
            m_Scaler->MapToScreen(spot.X, spot.Y, out.X, out.Y);
            const TPoint point = zul::WrapToPoint(spot.X, spot.Y);
            m_Scaler->MapToScreenEx(point.X, point.Y, out.X, out.Y);
            zul::TCoord x = 0, y = 0;
            m_Scaler->ScreenToMap(spot.X, spot.Y, x, y);
            m_Scaler->ScreenToMapEx(spot.X, spot.Y, x, y);
            out = spot;
            m_Scaler->ScreenToMapL(out.X, out.Y);
            out = spot;
            m_Scaler->ScreenToMapEx(out.X, out.Y);
        });
    }
    std::vector<TPoint> Points() {
        std::vector<TPoint> points(std::size_t(m_Input.Below(kMaxPoints)));
        for (TPoint& point : points)
            point = Point();
        return points;
    }
    /// A whole list maps as its points do.
    void MapList() {
        Unchanged([&] {
            const std::vector<TPoint> in = Points();
            using Method = void (CScaler::*)(TLongPoint*, const TPoint*, std::int32_t&) const;
            constexpr Method kMethods[] = {&CScaler::MapToScreen, &CScaler::MapToScreenTrunc,
                                           &CScaler::MapToScreenEx, &CScaler::MapForDrawing};
            for (const Method method : kMethods) {
                std::vector<TLongPoint> out(in.size());
                auto count = static_cast<std::int32_t>(in.size());
                (m_Scaler->*method)(out.data(), in.data(), count);
                Require(count >= 0 && std::size_t(count) <= in.size(), "a list does not grow");
                if (method != kMethods[0]) continue;
                for (std::size_t i = 0; i < in.size(); ++i) {
                    TLongPoint alone{in[i].X, in[i].Y};
                    m_Scaler->MapToScreen(in[i].X, in[i].Y, alone.X, alone.Y);
                    Require(alone == out[i], "a list maps as its points do");
                }
                count = -1;
                (m_Scaler->*method)(nullptr, nullptr, count);
            }
        });
    }
    void MapBack() {
        Unchanged([&] {
            std::vector<TLongPoint> spots(std::size_t(m_Input.Below(kMaxPoints)));
            for (TLongPoint& spot : spots)
                spot = Spot();
            const auto count = static_cast<std::int32_t>(spots.size());
            std::vector<TLongPoint> same = spots, turned = spots;
            m_Scaler->ScreenToMap(static_cast<void*>(same.data()), count);
            m_Scaler->ScreenToMapEx(turned.data(), count);
            m_Projective.ScreenToMap(spots.data(), count);
            m_Scaler->TestPoints(same.data(), count);
        });
    }
    void MapFigures() {
        Unchanged([&] {
            const std::vector<TPoint> in = Points();
            auto count = static_cast<std::int32_t>(in.size());
            const std::int32_t room = m_Scaler->GetFigureRoom(count);
            std::vector<TLongPoint> out(static_cast<std::size_t>(room));
            m_Scaler->MapFigure(out.data(), in.data(), count, m_Input.Flag());
            Require(count <= room, "a figure fits the room that was told");
            TLongPoint a = Spot(), b = Spot();
            const bool visible = m_Scaler->IsInFront(a.X, a.Y) || m_Scaler->IsInFront(b.X, b.Y);
            Require(m_Scaler->CutSegment(a, b) == visible, "a segment is cut when a part of it is in front");
        });
    }

    fuzz::Input& m_Input;
    CScaler m_Flat;
    zul::CProjectiveScaler m_Projective;
    zul::CCanvas m_Canvas;
    CScaler* m_Scaler = &m_Flat;
    std::int32_t m_GreatestRatio = 1000;
};

void Walk(fuzz::Input& input) {
    const auto pick = [&input](std::int32_t low, std::int32_t high) {
        return low + input.Below(high - low + 1);
    };
    zul::CWalk walk(pick, Require);
    for (int step = 0; step < kMaxSteps && input.IsLeft(); ++step)
        walk.Step();
}

}  // namespace

void fuzz::Run(const std::uint8_t* data, std::size_t size) {
    Input input(data, size);
    if (input.Flag()) return Walk(input);
    Program program(input);
    for (int step = 0; step < kMaxSteps && input.IsLeft(); ++step)
        program.Step();
}
