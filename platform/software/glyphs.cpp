#include "platform/software/glyphs.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_ADVANCES_H
#include FT_MODULE_H
#include FT_OUTLINE_H
#include FT_TRUETYPE_TABLES_H

#include <algorithm>
#include <cmath>
#include <functional>
#include <iterator>
#include <limits>
#include <map>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "platform/software/font_memory.h"
#include "platform/software/typeface.h"

namespace device {

namespace {

/// Larger sizes are taken for this one: the rasteriser's coordinates end soon after.
constexpr std::int32_t kMostPixels = 8192;
/// Pictures of larger sizes are drawn anew each time, and only what is visible of them.
constexpr std::int32_t kMostKeptPixels = 128;
/// A thread keeps the measures of so many sizes, angles and styles.
constexpr std::size_t kMostStrikes = 128;
/// The cell that the platform gives to a font of height 0.
constexpr std::int32_t kDefaultCell = 16;
/// Where no file tells: shares of the em in thousandths.
constexpr std::int32_t kBoxAscent = 905, kBoxDescent = 212, kBoxAdvance = 600;
/// So many characters that its face lacks are remembered by a strike.
constexpr std::size_t kMostElsewhere = 4096;

std::int32_t Scale(std::int64_t value, std::int64_t numerator, std::int64_t denominator) {
    const std::int64_t product = value * numerator;
    const std::int64_t half = product < 0 ? -denominator / 2 : denominator / 2;
    return static_cast<std::int32_t>((product + half) / denominator);
}

/// Shows nothing, and where fonts have no such character takes no room either.
bool IsInvisible(char32_t c) {
    return (c >= 0x200B && c <= 0x200F) || (c >= 0x202A && c <= 0x202E) || (c >= 0x2060 && c <= 0x2064) ||
           (c >= 0xFE00 && c <= 0xFE0F) || c == 0xFEFF;
}
bool IsBlank(char32_t c) {
    return c == 0x20 || c == 0xA0 || (c >= 0x2000 && c <= 0x200A) || c == 0x3000;
}

struct DoneLibrary {
    void operator()(FT_Library library) const { FT_Done_Library(library); }
};
struct DoneFace {
    void operator()(FT_Face face) const { FT_Done_Face(face); }
};

}  // namespace

namespace {

/// The strike that the thread used last, and for which font: most calls want it again.
struct LastStrike {
    std::uint64_t serial;  ///< of the font; 0: none
    bool hard;
    Strike* strike;
};
// Small enough for the room that every program keeps for libraries, where it is reached without a call.
__attribute__((tls_model("initial-exec"))) thread_local LastStrike t_last{0, false, nullptr};

}  // namespace

/// What a thread keeps.
struct GlyphKeeper {
    struct KeyHash {
        std::size_t operator()(const StrikeKey& key) const {
            std::size_t hash = std::hash<const void*>()(key.typeface);
            for (const std::int32_t part : {key.height, key.width, key.angle, key.hard ? 1 : 0})
                hash = hash * 31 + static_cast<std::uint32_t>(part);
            return hash;
        }
    };
    struct KeptStrike {
        std::uint64_t lastUse = 0;
        std::unique_ptr<Strike> strike;
    };

    FontMemory memory;
    std::unique_ptr<FT_LibraryRec_, DoneLibrary> library;
    std::map<std::pair<std::string, int>, std::unique_ptr<FT_FaceRec_, DoneFace>> faces;
    GlyphPages pages;
    std::unordered_map<StrikeKey, KeptStrike, KeyHash> strikes;  // go before the pages
    std::uint64_t uses = 0;

    ~GlyphKeeper() { t_last = {}; }

    /// To be called before a strike is asked for. Begins anew when memory was short. Throws std::bad_alloc.
    void Prepare() {
        if (library != nullptr && !memory.IsShort()) return;
        t_last = {};
        strikes.clear();
        faces.clear();
        library.reset();
        memory.Reset();
        FT_Library made = nullptr;
        if (FT_New_Library(memory.ForFreeType(), &made) != 0) throw std::bad_alloc();
        library.reset(made);
        FT_Add_Default_Modules(made);
        FT_Set_Default_Properties(made);
        memory.Check();
    }

    /// To be called after calls of FreeType, before their results are used. Throws std::bad_alloc.
    void Settle() {
        if (memory.IsShort()) t_last = {};
        memory.Check();
    }

    /// Null when there is no such file, or it is no font of outlines.
    FT_Face FaceOf(const Typeface& typeface) {
        if (typeface.file.empty()) return nullptr;
        const auto [place, fresh] = faces.try_emplace({typeface.file, typeface.index});
        if (fresh) {
            FT_Face face = nullptr;
            if (FT_New_Face(library.get(), typeface.file.c_str(), typeface.index, &face) == 0) {
                place->second.reset(face);
                if (!FT_IS_SCALABLE(face) || face->units_per_EM == 0) place->second.reset();
            }
            Settle();
        }
        return place->second.get();
    }

    Strike& StrikeOf(const StrikeKey& key) {
        auto known = strikes.find(key);
        if (known == strikes.end()) {
            if (strikes.size() >= kMostStrikes) DropOldStrikes();
            auto strike = std::make_unique<Strike>(key, *this);
            known = strikes.emplace(key, KeptStrike{0, std::move(strike)}).first;
        }
        known->second.lastUse = ++uses;
        return *known->second.strike;
    }

    /// Drops the half that was not used for longest, so that it need not be done for each.
    void DropOldStrikes() {
        t_last = {};
        std::vector<std::uint64_t> times;
        for (const auto& [key, kept] : strikes)
            times.push_back(kept.lastUse);
        const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
        std::nth_element(times.begin(), middle, times.end());
        for (auto kept = strikes.begin(); kept != strikes.end();)
            kept = kept->second.lastUse < *middle ? strikes.erase(kept) : std::next(kept);
    }
};

Direction DirectionOf(int tenths) {
    constexpr double kTenth = 3.14159265358979323846 / 1800;
    switch (tenths) {
        case 0:
            return {1, 0};
        case 900:
            return {0, 1};
        case 1800:
            return {-1, 0};
        case 2700:
            return {0, -1};
        default:
            return {std::cos(tenths * kTenth), std::sin(tenths * kTenth)};
    }
}

Strike& Strike::Of(const Font& font, bool hard) {
    if (t_last.serial == font.serial && t_last.hard == hard) return *t_last.strike;
    return Choose(font, hard);
}

Strike& Strike::Choose(const Font& font, bool hard) {
    thread_local GlyphKeeper keeper;
    const Typeface* typeface = font.typeface.load(std::memory_order_acquire);
    if (typeface == nullptr) {
        typeface = &MatchTypeface(font.description);
        font.typeface.store(typeface, std::memory_order_release);
    }
    keeper.Prepare();
    const LOGFONTW& asked = font.description;
    const int angle = static_cast<int>(FloorModulo(asked.lfEscapement, 3600));
    Strike& strike = keeper.StrikeOf({typeface, asked.lfHeight, asked.lfWidth, angle, hard});
    if (!keeper.memory.IsShort()) t_last = {font.serial, hard, &strike};
    return strike;
}

Strike::Strike(const StrikeKey& key, GlyphKeeper& keeper)
    : m_Key(key),
      m_Keeper(keeper),
      m_Face(keeper.FaceOf(*key.typeface)),
      m_QuarterBits(key.angle != 0 ? 4 : 0) {
    Measure();
}

Strike::~Strike() {
    m_Keeper.pages.DropPagesOf(*this);
}

void Strike::Measure() {
    std::int64_t em = 1000, ascent = kBoxAscent, descent = kBoxDescent, average = kBoxAdvance;
    std::int64_t under = -100, underRows = 50, strikeOut = 300, strikeRows = 50;
    if (m_Face != nullptr) {
        em = m_Face->units_per_EM;
        ascent = m_Face->ascender;
        descent = -m_Face->descender;
        average = m_Face->max_advance_width / 2;
        under = m_Face->underline_position;
        underRows = m_Face->underline_thickness;
        strikeOut = ascent / 3;
        strikeRows = underRows;
        const auto* table = static_cast<const TT_OS2*>(FT_Get_Sfnt_Table(m_Face, FT_SFNT_OS2));
        if (table != nullptr && table->version != 0xFFFF && table->usWinAscent + table->usWinDescent > 0) {
            ascent = table->usWinAscent;
            descent = table->usWinDescent;
            average = table->xAvgCharWidth;
            strikeOut = table->yStrikeoutPosition;
            strikeRows = table->yStrikeoutSize;
        }
    }
    const std::int64_t cell = std::max<std::int64_t>(ascent + descent, 1);
    const auto pixels = [](std::int64_t value) {
        return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, 1, kMostPixels));
    };
    const std::int64_t height = m_Key.height == 0 ? kDefaultCell : m_Key.height;
    m_SizeY = pixels(height < 0 ? -height : (height * em + cell / 2) / cell);
    const std::int64_t width = std::abs(std::int64_t{m_Key.width});
    m_SizeX = width == 0 || average <= 0 ? m_SizeY : pixels((width * em + average / 2) / average);
    m_Ascent = Scale(ascent, m_SizeY, em);
    m_Descent = std::max(Scale(descent, m_SizeY, em), 1 - m_Ascent);
    m_UnderlineRows = std::max(Scale(underRows, m_SizeY, em), 1);
    m_UnderlineTop = Scale(-under - underRows / 2, m_SizeY, em);
    m_StrikeOutRows = std::max(Scale(strikeRows, m_SizeY, em), 1);
    m_StrikeOutTop = -Scale(strikeOut, m_SizeY, em);
}

GlyphPage* Strike::FarPage(std::uint32_t number) const {
    const auto known = m_FarPages.find(number);
    return known == m_FarPages.end() ? nullptr : known->second;
}

GlyphPage& Strike::MakePage(std::uint32_t number) {
    // The place comes first: after that only the page itself can fail, and a place without one is no harm.
    GlyphPage*& place = number < kDirectPages ? m_Pages[number] : m_FarPages[number];
    place = &m_Keeper.pages.Make(*this, number);
    return *place;
}

void Strike::ForgetPage(std::uint32_t number) {
    if (number < kDirectPages) {
        m_Pages[number] = nullptr;
    } else {
        m_FarPages.erase(number);
    }
}

std::int64_t Strike::Width(const char16_t* text, std::int64_t count) {
    std::int64_t width = 0;
    ForAdvances(text, count, [&width](std::int64_t, std::int32_t advance) { width += advance; });
    return width;
}

Strike::Character Strike::Find(char32_t character) {
    const std::uint32_t glyph = m_Face == nullptr ? 0 : FT_Get_Char_Index(m_Face, character);
    if (glyph != 0) return Describe(m_Face, *m_Key.typeface, glyph, character);
    if (IsInvisible(character)) return {};
    const auto known = m_Elsewhere.find(character);
    if (known != m_Elsewhere.end()) return known->second;
    if (m_Elsewhere.size() >= kMostElsewhere) m_Elsewhere.clear();
    return m_Elsewhere[character] = FindElsewhere(character);
}

Strike::Character Strike::FindElsewhere(char32_t character) {
    const Typeface* other = character < 0x20 ? nullptr : MatchCharacter(*m_Key.typeface, character);
    FT_Face face = other == nullptr ? nullptr : m_Keeper.FaceOf(*other);
    const std::uint32_t glyph = face == nullptr ? 0 : FT_Get_Char_Index(face, character);
    if (glyph != 0) return Describe(face, *other, glyph, character);
    return Describe(m_Face, *m_Key.typeface, 0, character);
}

Strike::Character Strike::Describe(FT_FaceRec_* face, const Typeface& typeface, std::uint32_t glyph,
                                   char32_t character) const {
    Character found;
    FT_Fixed units = 0;
    const bool known = face != nullptr && FT_Get_Advance(face, glyph, FT_LOAD_NO_SCALE, &units) == 0;
    m_Keeper.Settle();
    if (!known) {
        found.box = !IsBlank(character);
        found.advance = Scale(kBoxAdvance, m_SizeX, 1000);
        return found;
    }
    found.face = face;
    found.glyph = glyph;
    found.embolden = typeface.embolden;
    found.slant = typeface.slant;
    found.advance = std::max(Scale(units, m_SizeX, face->units_per_EM), 0);
    if (found.embolden && found.advance > 0) ++found.advance;
    return found;
}

void Strike::Turn(FT_Outline& outline, bool slant) const {
    constexpr FT_Fixed kOne = 0x10000, kSlant = 0x3333;
    if (slant) {
        const FT_Matrix shear{kOne, kSlant, 0, kOne};
        FT_Outline_Transform(&outline, &shear);
    }
    if (m_Key.angle == 0) return;
    const Direction direction = DirectionOf(m_Key.angle);
    const auto cosine = static_cast<FT_Fixed>(std::lround(direction.cosine * kOne));
    const auto sine = static_cast<FT_Fixed>(std::lround(direction.sine * kOne));
    const FT_Matrix turn{cosine, -sine, sine, cosine};
    FT_Outline_Transform(&outline, &turn);
}

template <class Use>
void Strike::WithOutline(const Character& character, bool hinted, Use&& use) {
    if (character.box) {
        // A frame: the outer ring one way round, the inner one the other way.
        const FT_Pos w = m_SizeX * 64, h = m_SizeY * 64, pen = std::max<FT_Pos>(64, h / 16);
        const FT_Pos left = w * 8 / 100, right = w * 52 / 100, top = h * 70 / 100;
        FT_Vector points[8] = {{left, 0},
                               {left, top},
                               {right, top},
                               {right, 0},
                               {left + pen, pen},
                               {right - pen, pen},
                               {right - pen, top - pen},
                               {left + pen, top - pen}};
        char tags[8];
        std::fill(std::begin(tags), std::end(tags), static_cast<char>(FT_CURVE_TAG_ON));
        short ends[2] = {3, 7};
        const bool hollow = right - left > 2 * pen && top > 2 * pen;
        FT_Outline outline{};
        outline.n_contours = hollow ? 2 : 1;
        outline.n_points = hollow ? 8 : 4;
        outline.points = points;
        outline.tags = tags;
        outline.contours = ends;
        Turn(outline, false);
        use(outline);
        return;
    }
    const FT_Face face = character.face;
    if (face == nullptr) return;
    const FT_Int32 hints = !hinted      ? FT_LOAD_NO_HINTING
                           : m_Key.hard ? FT_LOAD_TARGET_MONO
                                        : FT_LOAD_TARGET_LIGHT;
    const bool loaded =
        FT_Set_Pixel_Sizes(face, static_cast<FT_UInt>(m_SizeX), static_cast<FT_UInt>(m_SizeY)) == 0 &&
        FT_Load_Glyph(face, character.glyph, FT_LOAD_NO_BITMAP | hints) == 0;
    m_Keeper.Settle();
    if (!loaded || face->glyph->format != FT_GLYPH_FORMAT_OUTLINE || face->glyph->outline.n_points == 0) {
        return;
    }
    FT_Outline& outline = face->glyph->outline;
    if (character.embolden) FT_Outline_Embolden(&outline, std::max<FT_Pos>(64, m_SizeY * 64 / 24));
    Turn(outline, character.slant);
    use(outline);
    m_Keeper.Settle();
}

bool Strike::KeepsPictures() const {
    return std::max(m_SizeX, m_SizeY) <= kMostKeptPixels;
}

GlyphPicture Strike::Draw(const Character& character, unsigned quarterX, unsigned quarterY) {
    GlyphPicture picture;
    WithOutline(character, m_Key.angle == 0, [&](FT_Outline& outline) {
        FT_Outline_Translate(&outline, quarterX * 16, -static_cast<FT_Pos>(quarterY * 16));
        FT_BBox box;
        FT_Outline_Get_CBox(&outline, &box);
        const FT_Pos left = box.xMin >> 6, bottom = box.yMin >> 6;
        const FT_Pos width = ((box.xMax + 63) >> 6) - left, height = ((box.yMax + 63) >> 6) - bottom;
        if (width <= 0 || height <= 0 || width > 2 * Reach() || height > 2 * Reach()) return;
        FT_Outline_Translate(&outline, -left * 64, -bottom * 64);
        const auto size = static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
        std::vector<std::uint8_t> coverage(size), bits;
        FT_Bitmap bitmap{};
        bitmap.rows = static_cast<unsigned>(height);
        bitmap.width = static_cast<unsigned>(width);
        if (m_Key.hard) {
            bitmap.pitch = static_cast<int>((width + 7) / 8);
            bits.resize(static_cast<std::size_t>(bitmap.pitch * height));
            bitmap.buffer = bits.data();
            bitmap.pixel_mode = FT_PIXEL_MODE_MONO;
        } else {
            bitmap.pitch = static_cast<int>(width);
            bitmap.buffer = coverage.data();
            bitmap.num_grays = 256;
            bitmap.pixel_mode = FT_PIXEL_MODE_GRAY;
        }
        if (FT_Outline_Get_Bitmap(m_Keeper.library.get(), &outline, &bitmap) != 0) return;
        for (std::size_t i = 0; m_Key.hard && i < size; ++i) {
            const std::size_t x = i % bitmap.width, y = i / bitmap.width;
            const unsigned byte = bits[y * static_cast<std::size_t>(bitmap.pitch) + x / 8];
            coverage[i] = (byte >> (7 - x % 8) & 1u) != 0 ? 255 : 0;
        }
        const Box bounds{static_cast<std::int32_t>(left), static_cast<std::int32_t>(-bottom - height),
                         static_cast<std::int32_t>(left + width), static_cast<std::int32_t>(-bottom)};
        picture = GlyphPicture(bounds, coverage.data());
    });
    return picture;
}

const GlyphPicture& Strike::MakePicture(char32_t character, unsigned quarterX, unsigned quarterY) {
    const std::uint32_t cell = CellOf(character, quarterX, quarterY);
    auto picture = std::make_unique<GlyphPicture>(Draw(Find(character), quarterX, quarterY));
    const GlyphPicture& kept = *picture;
    m_Keeper.pages.Keep(PageOf(cell), cell % GlyphPage::kCells, std::move(picture));
    return kept;
}

namespace {

/// Where the rasteriser's rows, counted upwards, lie on the surface.
struct RasterTarget {
    const RunSink& sink;
    Box bounds;
    bool hard;
};

void TakeSpans(int row, int count, const FT_Span* spans, void* user) {
    const auto& target = *static_cast<const RasterTarget*>(user);
    for (const FT_Span* span = spans; span != spans + count; ++span) {
        const std::uint8_t coverage = !target.hard ? span->coverage : span->coverage >= 128 ? 255 : 0;
        const std::int32_t x0 = target.bounds.left + span->x;
        if (coverage != 0) {
            target.sink.put(target.sink.target, target.bounds.bottom - 1 - row, x0, x0 + span->len, coverage);
        }
    }
}

}  // namespace

void Strike::Render(char32_t character, const PenPlace& pen, const Box& bounds, const RunSink& sink) {
    WithOutline(Find(character), false, [&](FT_Outline& outline) {
        FT_Outline_Translate(&outline, pen.quarterX * 16, -static_cast<FT_Pos>(pen.quarterY * 16));
        FT_BBox box;
        FT_Outline_Get_CBox(&outline, &box);
        const auto cut = [](std::int64_t value) {
            using Limits = std::numeric_limits<std::int32_t>;
            return static_cast<std::int32_t>(std::clamp<std::int64_t>(value, Limits::min(), Limits::max()));
        };
        const Box reach{cut(pen.x + (box.xMin >> 6)), cut(pen.y - (box.yMax >> 6) - 1),
                        cut(pen.x + (box.xMax >> 6) + 1), cut(pen.y - (box.yMin >> 6))};
        const Box seen = Intersect(reach, bounds);
        if (seen.IsEmpty()) return;
        FT_Outline_Translate(&outline, static_cast<FT_Pos>((pen.x - seen.left) * 64),
                             static_cast<FT_Pos>((seen.bottom - pen.y) * 64));
        RasterTarget target{sink, seen, m_Key.hard};
        FT_Raster_Params params{};
        params.flags = FT_RASTER_FLAG_AA | FT_RASTER_FLAG_DIRECT | FT_RASTER_FLAG_CLIP;
        params.gray_spans = TakeSpans;
        params.user = &target;
        params.clip_box = {0, 0, seen.right - seen.left, seen.bottom - seen.top};
        FT_Outline_Render(m_Keeper.library.get(), &outline, &params);
    });
}

}  // namespace device
