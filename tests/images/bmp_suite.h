/// \file
/// BMP files of every kind that users have, and of those they should not have, each with the picture it
/// shows.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace images {

/// Good files keep to the rules, questionable ones break them but can be shown, bad ones show nothing.
enum class TGrade { Good, Questionable, Bad };

struct TFile {
    TGrade Grade;
    std::string Name;
    std::vector<std::uint8_t> Bytes;
    int Width = 0, Height = 0;
    /// 0x00RRGGBB, rows from the top; none: the file must be refused.
    std::vector<std::uint32_t> Picture;
};

/// The whole suite, the same each time.
std::vector<TFile> MakeSuite();

}  // namespace images
