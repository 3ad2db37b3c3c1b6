/// \file
/// The two surfaces of a drawing contest, and how alike they are.
#pragma once

#include <cairo.h>

#include <cstdint>
#include <memory>

#include "apps/zulmap/memory_picture.h"
#include "apps/zulmap/picture_file.h"

namespace zulbench {

/// Cairo's image surface, 32 bits a pixel, without antialiasing, with lines like a device's: one pixel wide,
/// and pixel (x, y) where coordinates say (x, y).
class CairoPicture {
public:
    CairoPicture(std::int32_t width, std::int32_t height);
    cairo_t* Get() const { return m_Cairo.get(); }
    zulmap::PictureView GetView() const;
    /// \p color has red in the low byte.
    void SetColor(std::int32_t color) const;

private:
    template <auto destroy>
    struct Destroy {
        template <typename T>
        void operator()(T* object) const {
            destroy(object);
        }
    };
    std::unique_ptr<cairo_surface_t, Destroy<cairo_surface_destroy>> m_Surface;
    std::unique_ptr<cairo_t, Destroy<cairo_destroy>> m_Cairo;
};

struct PicturePair {
    PicturePair(std::int32_t width, std::int32_t height) : ours(width, height), peer(width, height) {}
    /// Share of the pixels of either picture that have none of their colour within one pixel in the other.
    double Difference() const;

    zulmap::MemoryPicture ours;
    CairoPicture peer;
};

}  // namespace zulbench
