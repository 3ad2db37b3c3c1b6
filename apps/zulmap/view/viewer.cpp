#include "apps/zulmap/view/viewer.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <sstream>

namespace zulmap {
namespace {

constexpr double kWheelFactor = 1.25;
constexpr int kMostWheelSteps = 20;
constexpr double kKeyFactor = 1.5;
constexpr double kTurn = 15.0;
constexpr std::int32_t kScrollPart = 8;  ///< of the screen

/// A band of fewer pixels than this on both sides was a slip of the hand.
constexpr std::int32_t kLeastBand = 4;

std::string Milliseconds(double time) {
    std::ostringstream text;
    text << std::fixed << std::setprecision(1) << time << " ms";
    return text.str();
}

/// The sides of a band, each a pixel wide.
std::vector<PixelRect> SidesOf(const PixelRect& r) {
    return {{r.MinX, r.MinY, r.MaxX, r.MinY + 1},
            {r.MinX, r.MaxY - 1, r.MaxX, r.MaxY},
            {r.MinX, r.MinY, r.MinX + 1, r.MaxY},
            {r.MaxX - 1, r.MinY, r.MaxX, r.MaxY}};
}

}  // namespace

Viewer::Viewer(MapSource& source, const MapStyle& style, zul::TSize screen)
    : m_View(source.GetFacts(), screen),
      m_Frame(m_View, source, style),
      m_Screen(std::make_unique<MemoryPicture>(screen.Width, screen.Height)) {}

// --- keys ---

const std::vector<Viewer::KeyAction>& Viewer::GetKeyActions() {
    static const std::vector<KeyAction> actions = {
        {{"left"}, "scroll; so do right, up and down", [](Viewer& v) { v.ScrollBy(1, 0); }},
        {{"right"}, nullptr, [](Viewer& v) { v.ScrollBy(-1, 0); }},
        {{"up"}, nullptr, [](Viewer& v) { v.ScrollBy(0, 1); }},
        {{"down"}, nullptr, [](Viewer& v) { v.ScrollBy(0, -1); }},
        {{"+", "=", "keypad +"}, "show more detail", [](Viewer& v) { v.ZoomBy(kKeyFactor); }},
        {{"-", "keypad -"}, "show less detail", [](Viewer& v) { v.ZoomBy(1.0 / kKeyFactor); }},
        {{"home", "0"}, "show the whole map", [](Viewer& v) { v.Follow(v.m_View.ShowWhole()); }},
        {{"r"},
         "turn by 15 degrees counter-clockwise",
         [](Viewer& v) { v.Follow(v.m_View.TurnTo(v.m_View.GetAngle() + kTurn)); }},
        {{"e"},
         "turn by 15 degrees clockwise",
         [](Viewer& v) { v.Follow(v.m_View.TurnTo(v.m_View.GetAngle() - kTurn)); }},
        {{"n"}, "north up again", [](Viewer& v) { v.Follow(v.m_View.TurnTo(0.0)); }},
        {{"p"},
         "perspective on or off",
         [](Viewer& v) { v.Follow(v.m_View.SetPerspective(!v.m_View.IsPerspective())); }},
        {{"."},
         "perspective: see farther",
         [](Viewer& v) { v.Follow(v.m_View.SetDepth(v.m_View.GetDepth() + 0.5)); }},
        {{","},
         "perspective: see less far",
         [](Viewer& v) { v.Follow(v.m_View.SetDepth(v.m_View.GetDepth() - 0.5)); }},
        {{"i"}, "from now on no more detail than this", [](Viewer& v) { v.m_View.LimitDetail(); }},
        {{"u"}, "from now on no more of the map than this", [](Viewer& v) { v.m_View.LimitOverview(); }},
        {{"c"}, "clear both limits", [](Viewer& v) { v.m_View.ClearLimits(); }},
        {{"o"}, "scale, position and time on or off", [](Viewer& v) { v.m_HasOverlays = !v.m_HasOverlays; }},
        {{"h", "f1"}, "this list on or off", [](Viewer& v) { v.m_HasHelp = !v.m_HasHelp; }},
        {{"escape"}, "give up a drag or a band", [](Viewer& v) { v.Abandon(); }},
        {{"q"}, "quit", [](Viewer& v) { v.m_IsDone = true; }},
    };
    return actions;
}

std::vector<std::string> Viewer::DescribeKeys() {
    std::vector<std::string> lines = {"drag     move the map",
                                      "         with shift or the right button: zoom to what it spans",
                                      "wheel    zoom"};
    for (const KeyAction& action : GetKeyActions()) {
        if (action.description == nullptr) continue;
        std::string line = action.keys.front();
        line.resize(std::max<std::size_t>(line.size() + 1, 9), ' ');
        lines.push_back(line + action.description);
    }
    return lines;
}

void Viewer::PressKey(const std::string& key) {
    for (const KeyAction& action : GetKeyActions()) {
        if (std::find(action.keys.begin(), action.keys.end(), key) != action.keys.end()) action.act(*this);
    }
}

// --- inputs ---

void Viewer::Handle(const ViewInput& input) {
    switch (input.kind) {
        case ViewInput::Kind::Press:
            return Press(input);
        case ViewInput::Kind::Release:
            return Release(input);
        case ViewInput::Kind::Move:
            return Move(input.at);
        case ViewInput::Kind::Leave:
            m_Pointer.reset();
            return;
        case ViewInput::Kind::Wheel: {
            const int steps = std::clamp(input.steps, -kMostWheelSteps, kMostWheelSteps);
            if (steps != 0) Follow(m_View.ZoomAt(input.at, std::pow(kWheelFactor, steps)));
            return;
        }
        case ViewInput::Kind::Key:
            return PressKey(input.key);
        case ViewInput::Kind::Resize:
            if (input.size.Width < 1 || input.size.Height < 1) return;
            Abandon();
            return Follow(m_View.Resize(input.size));
        case ViewInput::Kind::Abandon:
            return Abandon();
        case ViewInput::Kind::Quit:
            m_IsDone = true;
            return;
    }
}

void Viewer::Press(const ViewInput& input) {
    Abandon();
    m_Pointer = input.at;
    if (input.button == ViewInput::Button::Left) {
        m_Grip = input.at;
    } else {
        m_Band = Band{input.at, input.at};
    }
}

void Viewer::Move(zul::TLongPoint at) {
    m_Pointer = at;
    if (m_Grip) {
        const ViewChange change = m_View.Drag(*m_Grip, at, m_Frame.GetMapCanvas());
        // At the edge of the map the pointer goes on alone, and takes the map along again where it left it.
        m_Grip = zul::TLongPoint{m_Grip->X + change.shift.X, m_Grip->Y + change.shift.Y};
        Follow(change);
    }
    if (m_Band) {
        const zul::TSize screen = m_View.GetScreen();
        m_Band->to = {std::clamp(at.X, 0, screen.Width - 1), std::clamp(at.Y, 0, screen.Height - 1)};
    }
}

void Viewer::Release(const ViewInput& input) {
    Move(input.at);
    const std::optional<Band> band = m_Band;
    Abandon();
    if (!band) return;
    const bool isBand = std::abs(band->from.X - band->to.X) >= kLeastBand ||
                        std::abs(band->from.Y - band->to.Y) >= kLeastBand;
    if (isBand) Follow(m_View.ZoomTo(band->from, band->to));
}

void Viewer::Abandon() {
    m_Grip.reset();
    m_Band.reset();
}

zul::TLongPoint Viewer::GetMiddle() const {
    const zul::TSize screen = m_View.GetScreen();
    return {screen.Width / 2, screen.Height / 2};
}

void Viewer::ScrollBy(std::int32_t x, std::int32_t y) {
    const zul::TSize screen = m_View.GetScreen();
    const zul::TLongPoint middle = GetMiddle();
    const zul::TLongPoint to{middle.X + x * (screen.Width / kScrollPart),
                             middle.Y + y * (screen.Height / kScrollPart)};
    Follow(m_View.Drag(middle, to, m_Frame.GetMapCanvas()));
}

void Viewer::ZoomBy(double factor) {
    Follow(m_View.ZoomAt(GetMiddle(), factor));
}

// --- the screen ---

std::vector<Panel> Viewer::MakePanels() const {
    const zul::TSize screen = m_View.GetScreen();
    std::vector<Panel> panels;
    if (m_HasOverlays) {
        panels.push_back(MakeScalePanel(m_View));
        if (m_Pointer && m_View.HasGround(*m_Pointer))
            panels.push_back(MakePositionPanel(m_View, *m_Pointer));
        const std::string time =
            IsComplete() ? Milliseconds(m_Frame.GetWorkTime().count()) : std::string("drawing");
        panels.push_back(MakePanel({time}, 0, Corner::UpperRight, screen));
    }
    if (m_HasHelp) panels.push_back(MakePanel(DescribeKeys(), 0, Corner::UpperLeft, screen));
    return panels;
}

std::vector<PixelRect> Viewer::Compose() {
    std::vector<PixelRect> damage = m_Frame.TakeDamage();
    const PictureView frame = GetMapPicture();
    const PixelRect whole{0, 0, frame.width, frame.height};
    if (GetScreen().width != frame.width || GetScreen().height != frame.height) {
        m_Screen = std::make_unique<MemoryPicture>(frame.width, frame.height);
        m_ShownPanels.clear();
        m_ShownBand.reset();
    }

    std::vector<Panel> panels = MakePanels();
    const auto addMissing = [&damage](const std::vector<Panel>& from, const std::vector<Panel>& in) {
        for (const Panel& panel : from) {
            if (std::find(in.begin(), in.end(), panel) == in.end()) damage.push_back(panel.place);
        }
    };
    addMissing(m_ShownPanels, panels);
    addMissing(panels, m_ShownPanels);
    if (damage.empty() && m_Band == m_ShownBand) return {};

    // The copy beneath the band is put right before anything else; a band drawn twice is gone.
    std::vector<PixelRect> changed;
    const auto invert = [this, &changed](const std::optional<Band>& band) {
        if (!band) return;
        for (const PixelRect& side : SidesOf(InvertBand(*band))) {
            changed.push_back(side);
        }
    };
    invert(m_ShownBand);
    // A panel is drawn whole: what touches it makes all of it new, and so on for one that overlaps it.
    std::vector<bool> isDrawn(panels.size(), false);
    for (bool isMore = !damage.empty(); isMore;) {
        isMore = false;
        for (std::size_t i = 0; i < panels.size(); ++i) {
            const auto touches = [&](const PixelRect& part) { return Overlap(part, panels[i].place); };
            if (isDrawn[i] || std::none_of(damage.begin(), damage.end(), touches)) continue;
            damage.push_back(panels[i].place);
            isDrawn[i] = isMore = true;
        }
    }
    for (const PixelRect& part : damage) {
        CopyFromFrame(part);
    }
    for (std::size_t i = 0; i < panels.size(); ++i) {
        if (isDrawn[i]) DrawPanel(m_Screen->GetCanvas(), panels[i]);
    }
    m_ShownPanels = std::move(panels);
    invert(m_Band);
    m_ShownBand = m_Band;

    changed.insert(changed.end(), damage.begin(), damage.end());
    for (PixelRect& part : changed) {
        part = Intersect(part, whole);
    }
    changed.erase(std::remove_if(changed.begin(), changed.end(), IsEmpty), changed.end());
    return changed;
}

void Viewer::CopyFromFrame(const PixelRect& part) {
    m_Screen->GetCanvas().BitBlt(part.MinX, part.MinY, part.MaxX - part.MinX, part.MaxY - part.MinY,
                                 &m_Frame.GetPicture().GetCanvas(), part.MinX, part.MinY,
                                 zul::CBitmap::RopSourceCopy);
}

PixelRect Viewer::InvertBand(const Band& band) {
    const zul::TLongPoint low{std::min(band.from.X, band.to.X), std::min(band.from.Y, band.to.Y)};
    const zul::TLongPoint high{std::max(band.from.X, band.to.X), std::max(band.from.Y, band.to.Y)};
    m_Screen->GetCanvas().XorRectangle(low, high, true, false);
    return {low.X, low.Y, high.X + 1, high.Y + 1};
}

}  // namespace zulmap
