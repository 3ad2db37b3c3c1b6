/// \file
/// scene_difference EXPECTED.ppm GOT.ppm OUT
///
/// Writes OUT-expected.png, OUT-got.png and OUT-difference.png, red where the pictures differ, and prints how
/// many pixels do and which is the first.
#include <png.h>

#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

namespace {

struct TPicture {
    int Width = 0, Height = 0;
    std::vector<unsigned char> Bytes;  ///< red, green, blue; rows from the top
};

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

}  // namespace

int main(int argc, char** argv) {
    TPicture expected, got;
    if (argc != 4 || !Load(expected, argv[1]) || !Load(got, argv[2]) || expected.Width != got.Width ||
        expected.Height != got.Height) {
        std::fprintf(stderr, "scene_difference EXPECTED.ppm GOT.ppm OUT\n");
        return 2;
    }
    TPicture difference = expected;
    int count = 0, first = -1;
    for (int i = 0; i < expected.Width * expected.Height; ++i) {
        unsigned char* const pixel = &difference.Bytes[static_cast<std::size_t>(i) * 3];
        const bool differs = std::memcmp(pixel, &got.Bytes[static_cast<std::size_t>(i) * 3], 3) != 0;
        if (differs && count++ == 0) first = i;
        for (int channel = 0; channel < 3; ++channel)
            pixel[channel] =
                static_cast<unsigned char>(differs ? (channel == 0 ? 255 : 0) : pixel[channel] / 4 + 190);
    }
    const std::string out = argv[3];
    if (!Save(expected, out + "-expected.png") || !Save(got, out + "-got.png") ||
        !Save(difference, out + "-difference.png")) {
        std::fprintf(stderr, "cannot write %s\n", out.c_str());
        return 1;
    }
    if (count == 0) {
        std::printf("the colours are equal: only unused bits or indices of the same colour differ\n");
    } else {
        std::printf("%d pixels differ, first (%d, %d)\n", count, first % expected.Width,
                    first / expected.Width);
    }
    return 0;
}
