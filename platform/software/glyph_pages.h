/// \file
/// What a thread keeps of the characters that it drew, and how that stays within its bound.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/software/glyph_picture.h"

namespace device {

class Strike;

/// Measures and pictures of characters of a strike that follow one another.
struct GlyphPage {
    static constexpr std::uint32_t kCells = 256;

    GlyphPage(Strike& strike, std::uint32_t pageNumber) : owner(strike), number(pageNumber) {
        advances.fill(-1);
    }

    Strike& owner;
    const std::uint32_t number;
    bool used = true;  ///< since the cache last looked
    std::size_t bytes = sizeof(GlyphPage);
    std::array<std::int32_t, kCells> advances;  ///< -1: not looked up yet
    std::array<std::unique_ptr<GlyphPicture>, kCells> pictures;
};

/// All pages of a thread. When they would exceed TextSettings::cacheBytes, pages go that were not used since
/// the cache last came by. Should one page alone exceed them, its pictures go.
class GlyphPages {
public:
    /// A page more, without any measure or picture. Throws std::bad_alloc.
    GlyphPage& Make(Strike& owner, std::uint32_t number);
    /// Puts a picture into its page.
    void Keep(GlyphPage& page, std::uint32_t cell, std::unique_ptr<GlyphPicture> picture);
    void DropPagesOf(const Strike& owner);

private:
    /// \p kept stays.
    void MakeRoom(std::size_t added, const GlyphPage* kept);
    void Drop(std::size_t index);

    std::vector<std::unique_ptr<GlyphPage>> m_Pages;
    std::size_t m_Hand = 0;   ///< the page that is looked at next
    std::size_t m_Bytes = 0;  ///< of all pages
};

}  // namespace device
