#include "apps/zulmap/picture_file.h"

#include <png.h>

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdio>
#include <filesystem>
#include <utility>
#include <vector>

#include "apps/zulmap/tool_error.h"
#include "apps/zulmap/whole_file.h"

namespace zulmap {
namespace {

/// The open file of a picture.
class PictureFile {
public:
    explicit PictureFile(const std::string& path)
        : m_Place(path), m_File(std::fopen(m_Place.GetName().c_str(), "wb")) {
        if (m_File == nullptr) m_Place.Fail();
    }
    ~PictureFile() {
        if (m_File != nullptr) std::fclose(m_File);
    }
    PictureFile(const PictureFile&) = delete;
    PictureFile& operator=(const PictureFile&) = delete;

    std::FILE* Get() const { return m_File; }
    [[noreturn]] void Fail(const std::string& reason) const { m_Place.Fail(reason); }

    void Write(const std::vector<std::uint8_t>& bytes) {
        if (std::fwrite(bytes.data(), 1, bytes.size(), m_File) != bytes.size()) m_Place.Fail();
    }
    void Keep() {
        // The last bytes reach the disk on closing, so this is where a full one shows.
        if (std::fclose(std::exchange(m_File, nullptr)) != 0) m_Place.Fail();
        m_Place.Keep();
    }

private:
    PendingFile m_Place;
    std::FILE* m_File;
};

enum class ByteOrder { RedFirst, BlueFirst };

/// Appends one row as three bytes a pixel.
void AppendRow(const PictureView& picture, std::int32_t row, ByteOrder order,
               std::vector<std::uint8_t>& bytes) {
    const std::uint32_t* pixel =
        picture.pixels + static_cast<std::ptrdiff_t>(row) * static_cast<std::ptrdiff_t>(picture.width);
    for (std::int32_t x = 0; x < picture.width; ++x, ++pixel) {
        const auto red = static_cast<std::uint8_t>(*pixel >> 16);
        const auto blue = static_cast<std::uint8_t>(*pixel);
        bytes.push_back(order == ByteOrder::RedFirst ? red : blue);
        bytes.push_back(static_cast<std::uint8_t>(*pixel >> 8));
        bytes.push_back(order == ByteOrder::RedFirst ? blue : red);
    }
}

std::size_t RowBytes(const PictureView& picture) {
    return static_cast<std::size_t>(picture.width) * 3;
}

void WritePng(const PictureView& picture, PictureFile& file) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(RowBytes(picture) * static_cast<std::size_t>(picture.height));
    for (std::int32_t row = 0; row < picture.height; ++row) {
        AppendRow(picture, row, ByteOrder::RedFirst, bytes);
    }
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(picture.width);
    image.height = static_cast<png_uint_32>(picture.height);
    image.format = PNG_FORMAT_RGB;
    if (png_image_write_to_stdio(&image, file.Get(), 0, bytes.data(), 0, nullptr) == 0) {
        file.Fail(image.message);
    }
}

void AppendLittleEndian(std::uint32_t value, int byteCount, std::vector<std::uint8_t>& bytes) {
    for (int i = 0; i < byteCount; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

/// 24 bits a pixel, bottom row first: the form that every reader knows.
void WriteBmp(const PictureView& picture, PictureFile& file) {
    constexpr std::uint32_t kHeaders = 54;
    const std::size_t stride = (RowBytes(picture) + 3) / 4 * 4;
    const auto imageBytes = static_cast<std::uint32_t>(stride * static_cast<std::size_t>(picture.height));

    struct Field {
        std::uint32_t value;
        int bytes;
    };
    const Field fields[] = {
        {0x4D42, 2},                                      // "BM"
        {kHeaders + imageBytes, 4},                       // size of the file
        {0, 4},                                           // reserved
        {kHeaders, 4},                                    // where the pixels begin
        {40, 4},                                          // size of the second header
        {static_cast<std::uint32_t>(picture.width), 4},   //
        {static_cast<std::uint32_t>(picture.height), 4},  //
        {1, 2},                                           // planes
        {24, 2},                                          // bits a pixel
        {0, 4},                                           // not compressed
        {imageBytes, 4},                                  //
        {3780, 4},                                        // pixels a metre across, 96 an inch
        {3780, 4},                                        // and down
        {0, 4},                                           // colours in the table
        {0, 4},                                           // and those that matter
    };
    std::vector<std::uint8_t> bytes;
    bytes.reserve(kHeaders + imageBytes);
    for (const Field& field : fields) {
        AppendLittleEndian(field.value, field.bytes, bytes);
    }
    for (std::int32_t row = picture.height - 1; row >= 0; --row) {
        AppendRow(picture, row, ByteOrder::BlueFirst, bytes);
        bytes.resize(bytes.size() + (stride - RowBytes(picture)));
    }
    file.Write(bytes);
}

}  // namespace

PictureFormat PictureFormatOf(const std::string& path) {
    std::string ending = std::filesystem::path(path).extension().string();
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
    if (ending == ".png") return PictureFormat::Png;
    if (ending == ".bmp") return PictureFormat::Bmp;
    throw ToolError(path + ": the name of the picture must end in .png or .bmp");
}

void WritePicture(const std::string& path, const PictureView& picture) {
    const PictureFormat format = PictureFormatOf(path);
    PictureFile file(path);
    switch (format) {
        case PictureFormat::Png:
            WritePng(picture, file);
            break;
        case PictureFormat::Bmp:
            WriteBmp(picture, file);
            break;
    }
    file.Keep();
}

}  // namespace zulmap
