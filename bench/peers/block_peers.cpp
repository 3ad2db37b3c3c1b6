#include "bench/blocks.h"

#include <agg_rendering_buffer.h>
#include <pixman.h>
#include <SDL.h>

#include <cstddef>
#include <memory>

namespace zulbench {
namespace {

constexpr int kStride = kWidth * 4;

struct Drop {
    void operator()(SDL_Surface* surface) const { SDL_FreeSurface(surface); }
    void operator()(pixman_image_t* image) const { pixman_image_unref(image); }
};

std::shared_ptr<SDL_Surface> SdlSurface(std::uint32_t* pixels) {
    return {SDL_CreateRGBSurfaceWithFormatFrom(pixels, kWidth, kHeight, 32, kStride, SDL_PIXELFORMAT_RGB888),
            Drop{}};
}

std::shared_ptr<pixman_image_t> PixmanImage(std::uint32_t* pixels) {
    return {pixman_image_create_bits(PIXMAN_x8r8g8b8, kWidth, kHeight, pixels, kStride), Drop{}};
}

BlockPeer SdlPeer(Block block, std::uint32_t* source, std::uint32_t* target) {
    const std::shared_ptr<SDL_Surface> from = SdlSurface(source), to = SdlSurface(target);
    SDL_SetSurfaceBlendMode(from.get(), SDL_BLENDMODE_NONE);
    if (block == Block::Keyed) {
        SDL_SetColorKey(from.get(), SDL_TRUE, 0);
        return {"SDL2", [from, to] {
                    SDL_Rect area{0, 0, kKeyedSide, kKeyedSide};
                    SDL_BlitSurface(from.get(), &area, to.get(), &area);
                }};
    }
    if (block == Block::Stretch) {
        return {"SDL2", [from, to] {
                    SDL_Rect quarter{0, 0, kWidth / 2, kHeight / 2};
                    SDL_BlitScaled(from.get(), &quarter, to.get(), nullptr);
                }};
    }
    return {"SDL2", [from, to] { SDL_BlitSurface(from.get(), nullptr, to.get(), nullptr); }};
}

BlockPeer PixmanPeer(Block block, std::uint32_t* source, std::uint32_t* target) {
    const std::shared_ptr<pixman_image_t> from = PixmanImage(source), to = PixmanImage(target);
    if (block == Block::Keyed) {
        // It knows no key: what shows is known beforehand.
        const std::shared_ptr<pixman_image_t> mask(
            pixman_image_create_bits(PIXMAN_a8, kKeyedSide, kKeyedSide, nullptr, 0), Drop{});
        auto* shown = reinterpret_cast<std::uint8_t*>(pixman_image_get_data(mask.get()));
        for (std::int32_t y = 0; y < kKeyedSide; ++y)
            for (std::int32_t x = 0; x < kKeyedSide; ++x)
                *shown++ = source[std::ptrdiff_t{y} * kWidth + x] != 0 ? 255 : 0;
        return {"pixman", [from, mask, to] {
                    pixman_image_composite32(PIXMAN_OP_OVER, from.get(), mask.get(), to.get(), 0, 0, 0, 0, 0,
                                             0, kKeyedSide, kKeyedSide);
                }};
    }
    if (block == Block::Stretch) {
        pixman_transform_t halve;
        pixman_transform_init_scale(&halve, pixman_fixed_1 / 2, pixman_fixed_1 / 2);
        pixman_image_set_transform(from.get(), &halve);
        pixman_image_set_filter(from.get(), PIXMAN_FILTER_NEAREST, nullptr, 0);
    }
    return {"pixman", [from, to] {
                pixman_image_composite32(PIXMAN_OP_SRC, from.get(), nullptr, to.get(), 0, 0, 0, 0, 0, 0,
                                         kWidth, kHeight);
            }};
}

BlockPeer AggPeer(std::uint32_t* source, std::uint32_t* target) {
    const auto buffer = [](std::uint32_t* pixels) {
        return agg::rendering_buffer(reinterpret_cast<agg::int8u*>(pixels), kWidth, kHeight, kStride);
    };
    return {"AGG", [from = buffer(source), to = buffer(target)]() mutable { to.copy_from(from); }};
}

}  // namespace

std::vector<BlockPeer> BlockPeers(Block block, std::uint32_t* source, std::uint32_t* target) {
    if (block == Block::Invert) return {};  // none of them inverts by a picture
    std::vector<BlockPeer> peers{SdlPeer(block, source, target), PixmanPeer(block, source, target)};
    if (block == Block::Copy) peers.push_back(AggPeer(source, target));
    return peers;
}

}  // namespace zulbench
