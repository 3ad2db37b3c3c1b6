/// \file
/// Characters of a font at one size, turned to one angle: their measures and their pictures.
///
/// Every thread has its own faces, measures and pictures. A map is drawn by one thread, a second one loads
/// what it needs once, and no lock or shared counter stands in the way of either. What a thread keeps of
/// pictures is bounded by TextSettings::cacheBytes; when it is full they are all dropped.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <unordered_map>

#include "platform/software/context.h"

struct FT_FaceRec_;
struct FT_LibraryRec_;
struct FT_Outline_;

namespace device {

/// A picture: a byte of coverage for each pixel.
struct Glyph {
    std::int32_t left = 0, top = 0;  ///< its first pixel, from the pixel on which the pen stands
    std::int32_t width = 0, height = 0;
    std::unique_ptr<std::uint8_t[]> coverage;  ///< null when the character shows nothing
};

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

    std::int32_t Advance(char32_t character) { return Look(character).advance; }
    /// Whether pictures are so small that they are kept.
    bool KeepsPictures() const;
    /// A kept picture; good until the next call for one.
    const Glyph& Picture(char32_t character, unsigned quarterX, unsigned quarterY);
    /// Works out what of a character lies within \p bounds, and keeps nothing.
    void Render(char32_t character, const PenPlace& pen, const Box& bounds, const RunSink& sink);

    void DropPictures();

private:
    static constexpr char32_t kDirect = 256;

    struct Character {
        FT_FaceRec_* face = nullptr;  ///< null: nothing to see, or a box
        std::uint32_t glyph = 0;
        std::int32_t advance = -1;  ///< -1: not looked up yet
        bool box = false;
        bool embolden = false, slant = false;
    };

    const Character& Look(char32_t character);
    Character Find(char32_t character);
    void Measure();
    /// Calls `use(outline)` with the character's outline, in 64ths of a pixel from the pen, y upwards. Not
    /// called for what shows nothing.
    template <class Use>
    void WithOutline(const Character& character, bool hinted, Use&& use);
    void Turn(FT_Outline_& outline, bool slant) const;
    Glyph Draw(const Character& character, unsigned quarterX, unsigned quarterY);

    StrikeKey m_Key;
    GlyphKeeper& m_Keeper;
    FT_FaceRec_* m_Face = nullptr;
    std::int32_t m_SizeX = 1, m_SizeY = 1;  ///< pixels an em
    std::int32_t m_Ascent = 0, m_Descent = 0;
    std::int32_t m_UnderlineTop = 1, m_UnderlineRows = 1, m_StrikeOutTop = 0, m_StrikeOutRows = 1;
    std::array<Character, kDirect> m_Direct;
    std::unordered_map<char32_t, Character> m_Others;
    std::array<const Glyph*, kDirect> m_DirectPictures{};  ///< those with the pen on a pixel's corner
    std::unordered_map<std::uint32_t, Glyph> m_Pictures;   ///< by character and quarters
};

/// The cosine and sine of tenths of a degree, exact at right angles.
struct Direction {
    double cosine, sine;
};
Direction DirectionOf(int tenths);

}  // namespace device
