#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <vector>

struct Picture {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;  ///< 0xRRGGBB, top row first

    std::uint32_t At(int x, int y) const { return pixels.at(static_cast<std::size_t>(y * width + x)); }
};

/// Empty when the file cannot be read.
Picture ReadPng(const std::filesystem::path& path);
