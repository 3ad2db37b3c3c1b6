#include "apps/zulmap/view/label_layer.h"

#include <cmath>

#include "apps/zulmap/pixel_coordinates.h"
#include "zul/kernel/numeric.h"

namespace zulmap {
namespace {

/// Pixels by which letters may reach beyond the box of their text.
constexpr double kOverhang = 3.0;

}  // namespace

void LabelLayer::Follow(const std::optional<zul::TLongPoint>& shift) {
    m_Placer.reset();
    m_IsPlaced = false;
    if (!shift) m_Labels.clear();
    for (Label& label : m_Labels) {
        label.text.center.X += shift->X;
        label.text.center.Y += shift->Y;
    }
}

zul::CCanvas& LabelLayer::GetCanvas() {
    const zul::TSize screen = m_View.GetScreen();
    const bool fits = m_Picture && m_Picture->GetView().width == screen.Width &&
                      m_Picture->GetView().height == screen.Height;
    if (!fits) m_Picture = std::make_unique<MemoryPicture>(screen.Width, screen.Height);
    m_Picture->GetCanvas().SetScaler(m_Scaler.get());
    return m_Picture->GetCanvas();
}

std::vector<PixelRect> LabelLayer::Place(MapContent& content, const TimeSlice& slice) {
    if (!m_Placer) {
        const zul::TSize screen = m_View.GetScreen();
        m_Scaler = m_View.MakeScaler({0, 0, screen.Width, screen.Height});
        m_Placer = std::make_unique<LabelPlacer>(content, m_Style, GetCanvas(), screen);
    }
    if (!m_Placer->Place(slice)) return {};
    std::vector<PixelRect> changed;
    const auto addPlaces = [&] {
        for (const Label& label : m_Labels) {
            changed.push_back(PlaceOf(label));
        }
    };
    addPlaces();
    m_Labels = m_Placer->GetLabels();
    addPlaces();
    m_Placer.reset();
    m_IsPlaced = true;
    return changed;
}

PixelRect LabelLayer::PlaceOf(const Label& label) {
    const Box bounds = LabelWriter(GetCanvas(), m_View.GetMap(), m_Style).GetOutline(label).GetBounds();
    return {zul::ToLong(std::floor(bounds.minX - kOverhang)),
            zul::ToLong(std::floor(bounds.minY - kOverhang)), zul::ToLong(std::ceil(bounds.maxX + kOverhang)),
            zul::ToLong(std::ceil(bounds.maxY + kOverhang))};
}

void LabelLayer::Draw(MemoryPicture& map, const std::vector<PixelRect>& parts) {
    zul::CCanvas& canvas = GetCanvas();
    const PixelCoordinates pixels(canvas);
    LabelWriter writer(canvas, m_View.GetMap(), m_Style);
    for (const PixelRect& part : parts) {
        canvas.GetRegion().Create(part.MinX, part.MinY, part.MaxX, part.MaxY, &canvas,
                                  zul::CRegion::CombineReplace);
        canvas.BitBlt(part.MinX, part.MinY, part.MaxX - part.MinX, part.MaxY - part.MinY, &map.GetCanvas(),
                      part.MinX, part.MinY, zul::CBitmap::RopSourceCopy);
        for (const Label& label : m_Labels) {
            if (Overlap(PlaceOf(label), part)) writer.Draw(label);
        }
    }
}

}  // namespace zulmap
