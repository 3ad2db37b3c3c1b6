#include "tests/apps/fresh_picture.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <memory>

#include "apps/zulmap/labels/label_placer.h"
#include "apps/zulmap/map_sight.h"
#include "apps/zulmap/memory_picture.h"
#include "zul/scaler/projective_scaler.h"

namespace fresh {
namespace {

struct Sight {
    TDoublePoint center{};
    double unit = 0.0;
    double reach = 0.0;
    zul::TLongRect box{};
    double angle = 0.0;
    double depth = 0.0;
    zul::TSize screen{};
};

Sight Read(const std::string& view) {
    Sight s;
    const int read = std::sscanf(
        view.c_str(), "space %lf %lf %lf reach %lf box %d %d %d %d angle %lf depth %lf screen %d %d",
        &s.center.X, &s.center.Y, &s.unit, &s.reach, &s.box.MinX, &s.box.MinY, &s.box.MaxX, &s.box.MaxY,
        &s.angle, &s.depth, &s.screen.Width, &s.screen.Height);
    EXPECT_EQ(read, 12) << view;
    return s;
}

std::unique_ptr<zul::CScaler> MakeScaler(const Sight& sight, double metresInUnit) {
    std::unique_ptr<zul::CScaler> scaler;
    auto projective = std::make_unique<zul::CProjectiveScaler>();
    zul::CProjectiveScaler& perspective = *projective;
    if (sight.depth > 0.0) {
        scaler = std::move(projective);
    } else {
        scaler = std::make_unique<zul::CScaler>();
    }
    scaler->InitScaler(sight.box, sight.screen, sight.screen, zulmap::kPixelsPerSm, metresInUnit, 0.0);
    if (sight.depth > 0.0) {
        const double height = sight.box.MaxY - sight.box.MinY;
        perspective.SetHorizonFraction(zulmap::kSky);
        perspective.SetSlopeDepth(static_cast<std::int32_t>(sight.depth * height * metresInUnit + 0.5));
    }
    if (sight.angle != 0.0) scaler->SetRotationAngle(sight.angle);
    return scaler;
}

}  // namespace

Pixels PixelsOf(const zulmap::PictureView& picture) {
    return {picture.pixels, picture.pixels + static_cast<std::ptrdiff_t>(picture.width) * picture.height};
}

Pixels Renderer::Draw(const std::string& view) {
    Sight sight = Read(view);
    const std::unique_ptr<zul::CScaler> labelScaler = MakeScaler(sight, sight.unit * m_Map->metresInUnit);
    zulmap::MapContent content(m_Map, zulmap::MapSpace::Around(sight.center, sight.unit, sight.reach),
                               m_Style.graticule);
    content.Prepare();
    // A flat view is cut out of a picture of more ground: what lies on its edges is drawn as anything else.
    const zul::TSize size = sight.screen;
    const bool isFlat = sight.angle == 0.0 && sight.depth == 0.0;
    const std::int32_t border = isFlat ? 150 : 0;
    const std::int32_t units = border * ((sight.box.MaxX - sight.box.MinX) / size.Width);
    sight.box = {sight.box.MinX - units, sight.box.MinY - units, sight.box.MaxX + units,
                 sight.box.MaxY + units};
    sight.screen = {size.Width + 2 * border, size.Height + 2 * border};

    const std::unique_ptr<zul::CScaler> scaler = MakeScaler(sight, sight.unit * m_Map->metresInUnit);
    zulmap::MemoryPicture picture(sight.screen.Width, sight.screen.Height);
    picture.GetCanvas().SetScaler(scaler.get());
    std::int32_t x = 0;
    std::int32_t y = 0;
    if (isFlat) scaler->MapToScreen(0, 0, x, y);
    picture.GetCanvas().GetBrush().SetOrigin(x, y);
    zulmap::MapPainter(content, m_Style, picture.GetCanvas(), sight.screen.Width, sight.screen.Height)
        .Paint();
    zulmap::MemoryPicture part(size.Width, size.Height);
    part.GetCanvas().BitBlt(0, 0, size.Width, size.Height, &picture.GetCanvas(), border, border,
                            zul::CBitmap::RopSourceCopy);
    part.GetCanvas().SetScaler(labelScaler.get());
    if (m_Style.hasLabels) zulmap::PaintLabels(content, m_Style, part.GetCanvas(), size);
    return PixelsOf(part.GetView());
}

}  // namespace fresh
