/// \file
/// scene_difference BEFORE.ppm EXPECTED.ppm GOT.ppm [OUT]
///
/// Judges two pictures of a scene that was drawn on BEFORE: prints "near:" or "differ:", how many pixels
/// differ and which is the first. With OUT it writes OUT-expected.png, OUT-got.png and OUT-difference.png,
/// red where they differ.
#include <png.h>

#include <cstdio>
#include <string>

#include "tests/scenes/difference.h"

namespace {

using scenes::TDifference;
using scenes::TPicture;

bool Load(TPicture& picture, const char* path) {
    std::FILE* const file = std::fopen(path, "rb");
    if (file == nullptr) return false;
    const bool header = std::fscanf(file, "P6 %d %d 255", &picture.Width, &picture.Height) == 2 &&
                        std::fgetc(file) == '\n' && picture.Width > 0 && picture.Width < 10000 &&
                        picture.Height > 0 && picture.Height < 10000;
    if (header) picture.Bytes.resize(static_cast<std::size_t>(picture.Width * picture.Height) * 3);
    const bool read =
        header && std::fread(picture.Bytes.data(), 1, picture.Bytes.size(), file) == picture.Bytes.size();
    std::fclose(file);
    return read;
}

bool Save(const TPicture& picture, const std::string& path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.Width);
    image.height = static_cast<png_uint_32>(picture.Height);
    image.format = PNG_FORMAT_RGB;
    return png_image_write_to_file(&image, path.c_str(), 0, picture.Bytes.data(), 0, nullptr) != 0;
}

/// The expected picture, pale, with the differing pixels in red.
TPicture Marked(const TPicture& expected, const TPicture& got) {
    TPicture marked = expected;
    std::uint8_t* pixel = marked.Bytes.data();
    for (int y = 0; y < expected.Height; ++y) {
        for (int x = 0; x < expected.Width; ++x, pixel += 3) {
            const bool same = expected.SameAt(x, y, got, x, y);
            for (int channel = 0; channel < 3; ++channel) {
                const int mark = channel == 0 ? 255 : 0;
                pixel[channel] = static_cast<std::uint8_t>(same ? pixel[channel] / 4 + 190 : mark);
            }
        }
    }
    return marked;
}

bool SameSize(const TPicture& a, const TPicture& b) {
    return a.Width == b.Width && a.Height == b.Height;
}

}  // namespace

int main(int argc, char** argv) {
    TPicture before, expected, got;
    if (argc < 4 || argc > 5 || !Load(before, argv[1]) || !Load(expected, argv[2]) || !Load(got, argv[3]) ||
        !SameSize(before, expected) || !SameSize(expected, got)) {
        std::fprintf(stderr, "scene_difference BEFORE.ppm EXPECTED.ppm GOT.ppm [OUT]\n");
        return 2;
    }
    if (argc == 5) {
        const std::string out = argv[4];
        if (!Save(expected, out + "-expected.png") || !Save(got, out + "-got.png") ||
            !Save(Marked(expected, got), out + "-difference.png")) {
            std::fprintf(stderr, "cannot write %s\n", out.c_str());
            return 1;
        }
    }
    const TDifference difference = scenes::Compare(before, expected, got);
    if (difference.Differing == 0) {
        std::printf("differ: the colours are equal, unused bits or indices of the same colour are not\n");
    } else {
        std::printf("%s: %d pixels, %d were drawn, first (%d, %d)\n", difference.IsNear() ? "near" : "differ",
                    difference.Differing, difference.Drawn, difference.FirstX, difference.FirstY);
    }
    return 0;
}
