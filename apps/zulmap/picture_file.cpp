#include "apps/zulmap/picture_file.h"

#include <png.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <vector>

#include "apps/zulmap/tool_error.h"

namespace zulmap {
namespace {

/// A file that is removed again unless it was kept.
class PendingFile {
public:
    explicit PendingFile(const std::string& path)
        : m_Path(path),
          m_Name(path + "." + std::to_string(getpid()) + ".part"),
          m_File(std::fopen(m_Name.c_str(), "wb")) {
        if (m_File == nullptr) Fail(std::strerror(errno));
    }
    PendingFile(const PendingFile&) = delete;
    PendingFile& operator=(const PendingFile&) = delete;
    ~PendingFile() {
        if (m_File != nullptr) std::fclose(m_File);
        if (!m_Kept) std::remove(m_Name.c_str());
    }

    std::FILE* Get() const { return m_File; }

    void Write(const std::vector<std::uint8_t>& bytes) {
        if (std::fwrite(bytes.data(), 1, bytes.size(), m_File) != bytes.size()) Fail(std::strerror(errno));
    }

    void Keep() {
        // The last bytes reach the disk on closing, so this is where a full one shows.
        std::FILE* file = m_File;
        m_File = nullptr;
        if (std::fclose(file) != 0) Fail(std::strerror(errno));
        std::error_code error;
        std::filesystem::rename(m_Name, m_Path, error);
        if (error) Fail(error.message());
        m_Kept = true;
    }

    [[noreturn]] void Fail(const std::string& reason) const {
        throw ToolError(m_Path + " cannot be written: " + reason);
    }

private:
    std::string m_Path;
    std::string m_Name;
    std::FILE* m_File;
    bool m_Kept = false;
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

void WritePng(const PictureView& picture, PendingFile& file) {
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
void WriteBmp(const PictureView& picture, PendingFile& file) {
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
    PendingFile file(path);
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
