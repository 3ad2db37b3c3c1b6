#include <SDL.h>

#include <cstddef>
#include <stdexcept>
#include <vector>

#include "bench/peers/peers.h"

namespace zulbench {
namespace {

struct Free {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
    void operator()(SDL_Renderer* renderer) const { SDL_DestroyRenderer(renderer); }
};

/// SDL's software renderer: thin lines, triangles. It puts its commands off.
class SdlPainter : public Painter {
public:
    SdlPainter()
        : m_Surface(SDL_CreateRGBSurfaceWithFormat(0, kWidth, kHeight, 32, SDL_PIXELFORMAT_RGB888)),
          m_Renderer(SDL_CreateSoftwareRenderer(m_Surface.get())) {
        if (!m_Renderer) throw std::runtime_error(SDL_GetError());
    }

    Side GetSide() const override { return Side::Peer; }
    const char* GetName() const override { return "SDL2"; }

    bool Prepare(const Line& line, COLORREF color, Shape shape) override {
        SDL_SetRenderDrawColor(m_Renderer.get(), GetRValue(color), GetGValue(color), GetBValue(color), 255);
        if (shape != Shape::Polyline) return shape == Shape::Triangle && line.width == 0;
        return line.width == 1 && !line.dashed && !line.inverting;
    }

    void Polyline(Figure& figure) override {
        static_assert(sizeof(SDL_Point) == sizeof(zul::TLongPoint));
        SDL_RenderDrawLines(m_Renderer.get(), reinterpret_cast<const SDL_Point*>(figure.device.data()),
                            static_cast<int>(figure.device.size()));
    }

    /// Triangles only.
    void Polygon(Figure& figure) override {
        const SDL_Color color{GetRValue(figure.fill), GetGValue(figure.fill), GetBValue(figure.fill), 255};
        for (const zul::TLongPoint at : figure.device) {
            m_Corners.push_back(
                {{static_cast<float>(at.X) + 0.5f, static_cast<float>(at.Y) + 0.5f}, color, {0.0f, 0.0f}});
        }
    }

    void Finish() override {
        if (!m_Corners.empty()) {
            SDL_RenderGeometry(m_Renderer.get(), nullptr, m_Corners.data(),
                               static_cast<int>(m_Corners.size()), nullptr, 0);
        }
        m_Corners.clear();
        SDL_RenderFlush(m_Renderer.get());
    }

    /// At once, past what was put off.
    void FillRect(const RECT& rect, COLORREF color) override {
        const SDL_Rect area{rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top};
        SDL_FillRect(m_Surface.get(), &area,
                     SDL_MapRGB(m_Surface->format, GetRValue(color), GetGValue(color), GetBValue(color)));
    }

    Picture GetPicture() override {
        Picture picture{kWidth, kHeight, {}};
        const auto* pixels = static_cast<const std::uint32_t*>(m_Surface->pixels);
        picture.pixels.assign(pixels, pixels + std::ptrdiff_t{kWidth} * kHeight);
        for (std::uint32_t& pixel : picture.pixels)
            pixel &= 0xFFFFFFu;
        return picture;
    }

private:
    std::unique_ptr<SDL_Surface, Free> m_Surface;
    std::unique_ptr<SDL_Renderer, Free> m_Renderer;
    std::vector<SDL_Vertex> m_Corners;
};

}  // namespace

std::shared_ptr<Painter> MakeSdlPainter() {
    return std::make_shared<SdlPainter>();
}

}  // namespace zulbench
