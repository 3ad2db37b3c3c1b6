// The device's image loader, held against every file of the suite.
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include "platform/software/images.h"
#include "platform/software/resources.h"
#include "tests/images/bmp_suite.h"

namespace {

using images::TFile;
using images::TGrade;

/// The picture of a bitmap, 0x00RRGGBB, rows from the top.
std::vector<std::uint32_t> PictureOf(HBITMAP bitmap, int width, int height) {
    const HDC dc = CreateCompatibleDC(nullptr);
    const HGDIOBJ before = SelectObject(dc, bitmap);
    std::vector<std::uint32_t> picture;
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const COLORREF color = GetPixel(dc, x, y);
            picture.push_back((color & 0xFF) << 16 | (color & 0xFF00) | color >> 16);
        }
    }
    SelectObject(dc, before);
    DeleteDC(dc);
    return picture;
}

/// What a call gave: the picture, or nothing for a null handle. Ends the bitmap.
std::vector<std::uint32_t> Outcome(HANDLE loaded, const TFile& file) {
    const auto bitmap = static_cast<HBITMAP>(loaded);
    if (bitmap == nullptr) return {};
    BITMAP description{};
    GetObjectW(bitmap, sizeof description, &description);
    const bool sized =
        file.Picture.empty() || (description.bmWidth == file.Width && description.bmHeight == file.Height);
    EXPECT_TRUE(sized) << description.bmWidth << " x " << description.bmHeight;
    auto picture = PictureOf(bitmap, description.bmWidth, description.bmHeight);
    DeleteObject(bitmap);
    return picture;
}

class BmpSuite : public ::testing::Test {
protected:
    void SetUp() override {
        m_Folder =
            std::filesystem::temp_directory_path() / ("bmp-suite-" + std::to_string(std::random_device{}()));
        std::filesystem::create_directories(m_Folder);
    }
    void TearDown() override { std::filesystem::remove_all(m_Folder); }

    std::u16string Write(const TFile& file) const {
        const std::filesystem::path path = m_Folder / "image.bmp";
        std::ofstream(path, std::ios::binary)
            .write(reinterpret_cast<const char*>(file.Bytes.data()),
                   static_cast<std::streamsize>(file.Bytes.size()));
        return path.u16string();
    }

    std::filesystem::path m_Folder;
};

TEST_F(BmpSuite, FilesShowTheirPicturesOrAreRefused) {
    int grades[3] = {};
    for (const TFile& file : images::MakeSuite()) {
        SCOPED_TRACE(file.Name);
        ++grades[static_cast<int>(file.Grade)];
        const std::u16string path = Write(file);
        EXPECT_EQ(Outcome(LoadImageW(nullptr, path.c_str(), IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION), file),
                  file.Picture);
        EXPECT_EQ(Outcome(LoadImageW(nullptr, path.c_str(), IMAGE_BITMAP, 0, 0, 0), file), file.Picture);
    }
    EXPECT_GE(grades[0], 40);
    EXPECT_GE(grades[1], 15);
    EXPECT_GE(grades[2], 40);
}

TEST_F(BmpSuite, RowsMayLieBeyondTwoGibibytes) {
    TFile file = images::MakeSuite().front();
    const std::uint32_t rows = file.Bytes[10], far = 0xA0000000;
    const std::vector<std::uint8_t> moved(file.Bytes.begin() + rows, file.Bytes.end());
    std::memcpy(&file.Bytes[10], &far, sizeof far);
    const std::u16string path = Write(file);
    std::fstream bytes(std::filesystem::path(path), std::ios::binary | std::ios::in | std::ios::out);
    bytes.seekp(far).write(reinterpret_cast<const char*>(moved.data()),
                           static_cast<std::streamsize>(moved.size()));
    bytes.close();
    EXPECT_EQ(Outcome(LoadImageW(nullptr, path.c_str(), IMAGE_BITMAP, 0, 0, 0), file), file.Picture);
}

TEST_F(BmpSuite, ResourcesShowTheSamePictures) {
    const auto module = reinterpret_cast<HMODULE>(std::uintptr_t{0x1000});
    for (const TFile& file : images::MakeSuite()) {
        // The rows of a resource follow its colours; nothing says that they lie elsewhere.
        if (file.Grade == TGrade::Bad || file.Name == "gap-before-rows") continue;
        SCOPED_TRACE(file.Name);
        ASSERT_TRUE(device::RegisterBitmapResource(module, u"Picture", file.Bytes.data(), file.Bytes.size()));
        const HANDLE loaded = LoadImageW(module, u"pICTURE", IMAGE_BITMAP, 0, 0, 0);
        EXPECT_EQ(Outcome(loaded, file), file.Picture);
    }
    device::RemoveBitmapResources(module);
    EXPECT_EQ(LoadImageW(module, u"Picture", IMAGE_BITMAP, 0, 0, 0), nullptr);
}

TEST_F(BmpSuite, BlackAndWhiteStaysOneBitAndSizesAreMet) {
    TFile file = images::MakeSuite().front();  // one bit
    for (std::size_t i = 0; i < 8; ++i)
        file.Bytes[54 + i] = i < 4 ? 0 : 0xFF;
    const std::u16string path = Write(file);
    const auto bitmap = static_cast<HBITMAP>(LoadImageW(nullptr, path.c_str(), IMAGE_BITMAP, 26, 14, 0));
    BITMAP description{};
    ASSERT_NE(GetObjectW(bitmap, sizeof description, &description), 0);
    EXPECT_EQ(description.bmBitsPixel, 1);
    const auto picture = PictureOf(bitmap, description.bmWidth, description.bmHeight);
    ASSERT_EQ(picture.size(), 26u * 14u);
    for (std::size_t i = 0; i < picture.size(); ++i) {
        const bool bright = file.Picture[i / 52 * 13 + i % 26 / 2] == 0xF0C010;
        ASSERT_EQ(picture[i], bright ? 0xFFFFFFu : 0u) << i;
    }
    DeleteObject(bitmap);
    EXPECT_EQ(LoadImageW(nullptr, path.c_str(), IMAGE_BITMAP + 1, 0, 0, 0), nullptr);
    EXPECT_EQ(LoadImageW(nullptr, path.c_str(), IMAGE_BITMAP, -1, 0, 0), nullptr);
    EXPECT_EQ(LoadImageW(nullptr, nullptr, IMAGE_BITMAP, 0, 0, 0), nullptr);
    EXPECT_EQ(LoadImageW(nullptr, MAKEINTRESOURCEW(7), IMAGE_BITMAP, 0, 0, 0), nullptr);
    const auto module = reinterpret_cast<HMODULE>(std::uintptr_t{0x1000});
    EXPECT_EQ(LoadImageW(module, MAKEINTRESOURCEW(7), IMAGE_BITMAP, 0, 0, LR_LOADFROMFILE), nullptr);
    EXPECT_EQ(LoadImageW(nullptr, u"no such file.bmp", IMAGE_BITMAP, 0, 0, 0), nullptr);
}

}  // namespace
