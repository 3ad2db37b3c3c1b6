/// \file
/// Characters of a font at one size, turned to one angle: their measures and their pictures.
///
/// Every thread has its own faces, measures and pictures. A map is drawn by one thread, a second one loads
/// what it needs once, and no lock or shared counter stands in the way of either. What a thread keeps is
/// bounded by TextSettings::cacheBytes.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <unordered_map>

#include "platform/software/context.h"
#include "platform/software/glyph_pages.h"
#include "platform/software/utf16.h"

struct FT_FaceRec_;
struct FT_LibraryRec_;
struct FT_Outline_;

namespace device {

/// A pen's place: a pixel, and how many quarters of one it stands right of and below its corner.
struct PenPlace {
    std::int64_t x = 0, y = 0;
    unsigned quarterX = 0, quarterY = 0;
};

/// Takes a run x0 <= x < x1 of row y with one coverage.
struct RunSink {
    void (*put)(void* target, std::int32_t y, std::int32_t x0, std::int32_t x1, std::uint8_t coverage);
    void* target;
};

struct GlyphKeeper;

/// What a strike is made for. Sizes are as in LOGFONTW.
struct StrikeKey {
    const Typeface* typeface = nullptr;
    std::int32_t height = 0, width = 0;
    int angle = 0;  ///< tenths of a degree, 0 to 3599
    bool hard = false;

    bool operator==(const StrikeKey& other) const {
        return typeface == other.typeface && height == other.height && width == other.width &&
               angle == other.angle && hard == other.hard;
    }
};

class Strike {
public:
    /// The calling thread's strike of a font; good until its next call. \p hard: without grey edges.
    /// Throws std::bad_alloc.
    static Strike& Of(const Font& font, bool hard);

    Strike(const StrikeKey& key, GlyphKeeper& keeper);
    ~Strike();
    Strike(const Strike&) = delete;
    Strike& operator=(const Strike&) = delete;

    const StrikeKey& Key() const { return m_Key; }
    std::int32_t Ascent() const { return m_Ascent; }
    std::int32_t CellHeight() const { return m_Ascent + m_Descent; }
    /// No picture reaches further from its pen than so many pixels.
    std::int32_t Reach() const { return 4 * (m_SizeX + m_SizeY) + 8; }
    /// The first row below the baseline of a line drawn under or (negative) through the text, and its rows.
    std::int32_t UnderlineTop() const { return m_UnderlineTop; }
    std::int32_t UnderlineRows() const { return m_UnderlineRows; }
    std::int32_t StrikeOutTop() const { return m_StrikeOutTop; }
    std::int32_t StrikeOutRows() const { return m_StrikeOutRows; }

    /// Never negative.
    std::int32_t Advance(char32_t character) {
        const std::uint32_t cell = CellOf(character, 0, 0);
        return AdvanceIn(PageOf(cell), cell, character);
    }
    /// Calls `take(end, advance)` for each character; \p end is where the next one begins.
    template <class Take>
    void ForAdvances(const char16_t* text, std::int64_t count, Take&& take);
    std::int64_t Width(const char16_t* text, std::int64_t count);
    /// Whether pictures are so small that they are kept.
    bool KeepsPictures() const;
    /// A kept picture; good until the next call. The quarters are 0 for a line that is not turned.
    const GlyphPicture& Picture(char32_t character, unsigned quarterX, unsigned quarterY) {
        const std::uint32_t cell = CellOf(character, quarterX, quarterY);
        const GlyphPicture* known = PageOf(cell).pictures[cell % GlyphPage::kCells].get();
        return known != nullptr ? *known : MakePicture(character, quarterX, quarterY);
    }
    /// Works out what of a character lies within \p bounds, and keeps nothing.
    void Render(char32_t character, const PenPlace& pen, const Box& bounds, const RunSink& sink);

    /// The page goes.
    void ForgetPage(std::uint32_t number);

private:
    static Strike& Choose(const Font& font, bool hard);

    struct Character {
        FT_FaceRec_* face = nullptr;  ///< null: nothing to see, or a box
        std::uint32_t glyph = 0;
        std::int32_t advance = 0;
        bool box = false;
        bool embolden = false, slant = false;
    };

    /// Characters are told apart by their pens' quarters where lines are turned.
    std::uint32_t CellOf(char32_t character, unsigned quarterX, unsigned quarterY) const {
        return static_cast<std::uint32_t>(character) << m_QuarterBits | quarterX << 2 | quarterY;
    }
    GlyphPage& PageOf(std::uint32_t cell) {
        const std::uint32_t number = cell / GlyphPage::kCells;
        GlyphPage* page = number < kDirectPages ? m_Pages[number] : FarPage(number);
        if (page == nullptr) page = &MakePage(number);
        page->used = true;
        return *page;
    }
    GlyphPage* FarPage(std::uint32_t number) const;
    GlyphPage& MakePage(std::uint32_t number);
    std::int32_t AdvanceIn(GlyphPage& page, std::uint32_t cell, char32_t character) {
        std::int32_t& advance = page.advances[cell % GlyphPage::kCells];
        if (advance < 0) advance = Find(character).advance;
        return advance;
    }
    const GlyphPicture& MakePicture(char32_t character, unsigned quarterX, unsigned quarterY);

    Character Find(char32_t character);
    Character FindElsewhere(char32_t character);
    Character Describe(FT_FaceRec_* face, const Typeface& typeface, std::uint32_t glyph,
                       char32_t character) const;
    void Measure();
    /// Calls `use(outline)` with the character's outline, in 64ths of a pixel from the pen, y upwards. Not
    /// called for what shows nothing.
    template <class Use>
    void WithOutline(const Character& character, bool hinted, Use&& use);
    void Turn(FT_Outline_& outline, bool slant) const;
    GlyphPicture Draw(const Character& character, unsigned quarterX, unsigned quarterY);

    static constexpr std::uint32_t kDirectPages = 256;

    StrikeKey m_Key;
    GlyphKeeper& m_Keeper;
    FT_FaceRec_* m_Face = nullptr;
    std::int32_t m_SizeX = 1, m_SizeY = 1;  ///< pixels an em
    std::int32_t m_Ascent = 0, m_Descent = 0;
    std::int32_t m_UnderlineTop = 1, m_UnderlineRows = 1, m_StrikeOutTop = 0, m_StrikeOutRows = 1;
    unsigned m_QuarterBits;
    std::array<GlyphPage*, kDirectPages> m_Pages{};
    std::unordered_map<std::uint32_t, GlyphPage*> m_FarPages;  ///< of greater numbers
    std::unordered_map<char32_t, Character> m_Elsewhere;       ///< that the face lacks
};

template <class Take>
inline void Strike::ForAdvances(const char16_t* text, std::int64_t count, Take&& take) {
    // Most characters stand in the first page or in that of the one before. No page holds halves of surrogate
    // pairs, so they always go the far way.
    GlyphPage* page = m_Pages[0];
    if (page != nullptr) page->used = true;
    const unsigned bits = m_QuarterBits;
    for (std::int64_t at = 0; at < count;) {
        if (page != nullptr) {
            const std::uint32_t first = page->number * GlyphPage::kCells;
            for (; at < count; ++at) {
                const std::uint32_t place = (std::uint32_t{text[at]} << bits) - first;
                if (place >= GlyphPage::kCells || page->advances[place] < 0) break;
                take(at + 1, page->advances[place]);
            }
            if (at == count) return;
        }
        std::int64_t next = at;  // a variable whose address is passed does not stay in a register
        const char32_t character = NextCharacter(text, count, next);
        const std::uint32_t cell = CellOf(character, 0, 0);
        page = &PageOf(cell);
        at = next;
        take(at, AdvanceIn(*page, cell, character));
    }
}

/// The cosine and sine of tenths of a degree, exact at right angles.
struct Direction {
    double cosine, sine;
};
Direction DirectionOf(int tenths);

}  // namespace device
