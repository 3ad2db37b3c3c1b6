#include "tests/apps/png_picture.h"

#include <png.h>

Picture ReadPng(const std::filesystem::path& path) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_file(&image, path.c_str()) == 0) return {};
    image.format = PNG_FORMAT_RGB;
    std::vector<std::uint8_t> bytes(PNG_IMAGE_SIZE(image));
    if (png_image_finish_read(&image, nullptr, bytes.data(), 0, nullptr) == 0) return {};
    Picture picture{static_cast<int>(image.width), static_cast<int>(image.height), {}};
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        picture.pixels.push_back(std::uint32_t{bytes[i]} << 16 | std::uint32_t{bytes[i + 1]} << 8 |
                                 bytes[i + 2]);
    }
    return picture;
}
