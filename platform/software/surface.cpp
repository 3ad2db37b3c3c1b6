#include "platform/software/surface.h"

namespace device {

std::optional<Format> FormatOfDepth(std::int64_t bitsPerPixel) {
    for (const Format format :
         {Format::Mono, Format::Indexed4, Format::Indexed8, Format::Rgb565, Format::Bgr24, Format::Bgrx32}) {
        if (BitsPerPixel(format) == bitsPerPixel) return format;
    }
    return std::nullopt;
}

}  // namespace device
