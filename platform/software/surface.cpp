#include "platform/software/surface.h"

namespace device {

int BitsPerPixel(Format format) {
    switch (format) {
        case Format::Mono:
            return 1;
        case Format::Indexed4:
            return 4;
        case Format::Indexed8:
            return 8;
        case Format::Rgb555:
        case Format::Rgb565:
            return 16;
        case Format::Bgr24:
            return 24;
        case Format::Bgrx32:
            return 32;
    }
    return 0;
}

std::optional<Format> FormatOfDepth(std::int64_t bitsPerPixel) {
    for (const Format format :
         {Format::Mono, Format::Indexed4, Format::Indexed8, Format::Rgb565, Format::Bgr24, Format::Bgrx32}) {
        if (BitsPerPixel(format) == bitsPerPixel) return format;
    }
    return std::nullopt;
}

}  // namespace device
