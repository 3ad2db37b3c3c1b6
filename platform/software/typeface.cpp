#include "platform/software/typeface.h"

#include <fontconfig/fontconfig.h>
#if defined(__SANITIZE_ADDRESS__)
#define ZUL_LEAK_SEARCH
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZUL_LEAK_SEARCH
#endif
#endif
#if defined(ZUL_LEAK_SEARCH)
#include <sanitizer/lsan_interface.h>
#endif

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <tuple>
#include <utility>

#include "platform/software/display.h"
#include "platform/software/utf16.h"

namespace device {

namespace {

/// So many answers are kept; a program that asks for more different ones has them looked up again.
constexpr std::size_t kMostAnswers = 4096;
/// From this weight on a file that is no bold one is made bolder.
constexpr int kBoldWeight = 600;

struct DestroyPattern {
    void operator()(FcPattern* pattern) const { FcPatternDestroy(pattern); }
};
using Pattern = std::unique_ptr<FcPattern, DestroyPattern>;

/// Everything looked up so far. It outlives all static objects.
struct Found {
    std::mutex mutex;
    std::set<Typeface> faces;  ///< as many as the host has files and styles
    std::map<std::tuple<std::string, int, bool, int>, const Typeface*> byName;
    std::map<std::pair<const Typeface*, char32_t>, const Typeface*> byCharacter;
};

/// Reads the host's list of fonts.
void LoadFontList() {
#if defined(ZUL_LEAK_SEARCH)
    // The list keeps parts of itself as distances, which the search for lost memory does not follow.
    const __lsan::ScopedDisabler disabled;
#endif
    FcInit();
}

Found& TheFound() {
    static Found& found = *[] {
        LoadFontList();
        return new Found;
    }();
    return found;
}

std::string Utf8(const WCHAR* name) {
    std::int64_t length = 0;
    while (length < LF_FACESIZE && name[length] != 0)
        ++length;
    std::string text;
    for (std::int64_t at = 0; at < length;) {
        FcChar8 bytes[FC_UTF8_MAX_LEN];
        const int count = FcUcs4ToUtf8(NextCharacter(name, length, at), bytes);
        text.append(bytes, bytes + count);
    }
    return text;
}

/// Faces to fall back on, best first, by the family that the pitch-and-family byte tells.
struct Substitutes {
    const char* metric;
    const char* plain;
};
Substitutes SubstitutesOf(int pitchAndFamily) {
    if ((pitchAndFamily & 0xF0) == FF_MODERN || (pitchAndFamily & 3) == FIXED_PITCH) {
        return {"Liberation Mono", "DejaVu Sans Mono"};
    }
    if ((pitchAndFamily & 0xF0) == FF_ROMAN) return {"Liberation Serif", "DejaVu Serif"};
    return {"Liberation Sans", "DejaVu Sans"};
}

/// What fontconfig answers false to for want of memory.
void Need(FcBool done) {
    if (!done) throw std::bad_alloc();
}

void AddFamily(FcPattern* pattern, const char* name) {
    Need(FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(name)));
}

Pattern StylePattern(int weight, bool italic) {
    Pattern pattern(FcPatternCreate());
    Need(pattern != nullptr);
    Need(FcPatternAddInteger(pattern.get(), FC_WEIGHT, FcWeightFromOpenType(weight)));
    Need(FcPatternAddInteger(pattern.get(), FC_SLANT, italic ? FC_SLANT_ITALIC : FC_SLANT_ROMAN));
    Need(FcPatternAddBool(pattern.get(), FC_SCALABLE, FcTrue));
    Need(FcPatternAddBool(pattern.get(), FC_OUTLINE, FcTrue));
    return pattern;
}

/// Null on a host without fonts.
Pattern BestMatch(FcPattern* pattern) {
    Need(FcConfigSubstitute(nullptr, pattern, FcMatchPattern));
    FcDefaultSubstitute(pattern);
    FcResult result{};
    Pattern match(FcFontMatch(nullptr, pattern, &result));
    const FcFontSet* const all = FcConfigGetFonts(nullptr, FcSetSystem);
    Need(match != nullptr || all == nullptr || all->nfont == 0);
    return match;
}

/// The match's file, or none.
Typeface FaceOf(const Pattern& match, int weight, bool italic) {
    Typeface face;
    face.weight = weight;
    face.italic = italic;
    FcChar8* file = nullptr;
    FcBool outline = FcTrue;
    if (match == nullptr || FcPatternGetString(match.get(), FC_FILE, 0, &file) != FcResultMatch) return face;
    if (FcPatternGetBool(match.get(), FC_OUTLINE, 0, &outline) == FcResultMatch && !outline) return face;
    face.file = reinterpret_cast<const char*>(file);
    FcPatternGetInteger(match.get(), FC_INDEX, 0, &face.index);
    int number = 0;
    if (FcPatternGetInteger(match.get(), FC_WEIGHT, 0, &number) == FcResultMatch) {
        face.embolden = weight >= kBoldWeight && number < FC_WEIGHT_DEMIBOLD;
    }
    if (FcPatternGetInteger(match.get(), FC_SLANT, 0, &number) == FcResultMatch) {
        face.slant = italic && number == FC_SLANT_ROMAN;
    }
    return face;
}

const Typeface* Keep(Found& found, Typeface face) {
    return &*found.faces.insert(std::move(face)).first;
}

/// Whether the match has the character: the best of all may lack it.
bool HasCharacter(const Pattern& match, char32_t character) {
    FcCharSet* characters = nullptr;
    return match != nullptr &&
           FcPatternGetCharSet(match.get(), FC_CHARSET, 0, &characters) == FcResultMatch &&
           FcCharSetHasChar(characters, character);
}

}  // namespace

bool Typeface::operator<(const Typeface& other) const {
    return std::tie(file, index, embolden, slant, weight, italic) <
           std::tie(other.file, other.index, other.embolden, other.slant, other.weight, other.italic);
}

const Typeface& MatchTypeface(const LOGFONTW& description) {
    const int asked = description.lfWeight == FW_DONTCARE ? FW_NORMAL : description.lfWeight;
    const int weight = (std::clamp(asked, 100, 900) + 50) / 100 * 100;
    const bool italic = description.lfItalic != 0, files = GetTextSettings().fontFiles;
    std::string name = files ? Utf8(description.lfFaceName) : std::string();
    Found& found = TheFound();
    const std::lock_guard<std::mutex> lock(found.mutex);
    if (!files) {
        Typeface none;
        none.weight = weight;
        none.italic = italic;
        return *Keep(found, none);
    }
    if (found.byName.size() >= kMostAnswers) found.byName.clear();
    const Typeface*& answer = found.byName[{name, weight, italic, description.lfPitchAndFamily}];
    if (answer == nullptr) {
        const Pattern pattern = StylePattern(weight, italic);
        if (!name.empty()) AddFamily(pattern.get(), name.c_str());
        const Substitutes substitutes = SubstitutesOf(description.lfPitchAndFamily);
        AddFamily(pattern.get(), substitutes.metric);
        AddFamily(pattern.get(), substitutes.plain);
        answer = Keep(found, FaceOf(BestMatch(pattern.get()), weight, italic));
    }
    return *answer;
}

const Typeface* MatchCharacter(const Typeface& typeface, char32_t character) {
    if (typeface.file.empty()) return nullptr;
    Found& found = TheFound();
    const std::lock_guard<std::mutex> lock(found.mutex);
    if (found.byCharacter.size() >= kMostAnswers) found.byCharacter.clear();
    const auto known = found.byCharacter.find({&typeface, character});
    if (known != found.byCharacter.end()) return known->second;
    const Pattern pattern = StylePattern(typeface.weight, typeface.italic);
    FcCharSet* wanted = FcCharSetCreate();
    Need(wanted != nullptr);
    const bool complete =
        FcCharSetAddChar(wanted, character) && FcPatternAddCharSet(pattern.get(), FC_CHARSET, wanted);
    FcCharSetDestroy(wanted);
    Need(complete);
    const Pattern match = BestMatch(pattern.get());
    Typeface face = FaceOf(match, typeface.weight, typeface.italic);
    const bool usable = HasCharacter(match, character) && !face.file.empty();
    const Typeface* answer = usable ? Keep(found, std::move(face)) : nullptr;
    found.byCharacter[{&typeface, character}] = answer;
    return answer;
}

}  // namespace device
