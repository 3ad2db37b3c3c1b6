#include "apps/zulmap/tool_settings.h"

#include <algorithm>
#include <charconv>
#include <cstddef>
#include <iterator>
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "apps/zulmap/tool_error.h"
#include "zul/kernel/numeric.h"
#include "zul/kernel/string.h"

namespace zulmap {
namespace {

constexpr std::int32_t kLongMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLongMin = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kColorMax = 0xFFFFFF;
constexpr std::string_view kSeparators = " \t,";

/// One key of a settings list, a number, a colour or (`text`) a word.
template <typename Settings>
struct Key {
    std::string_view name;
    std::int32_t Settings::*field;
    std::int32_t least;
    std::int32_t most;
    bool isColor;
    std::string Settings::*text = nullptr;
};

constexpr Key<PenSettings> kPenKeys[] = {
    {"type", &PenSettings::type, 0, 3, false},
    {"style", &PenSettings::style, 0, 42, false},
    {"width", &PenSettings::width, 0, 10000, false},
    {"color", &PenSettings::color, 0, kColorMax, true},
    {"extra", &PenSettings::extraColor, 0, kColorMax, true},
    {"dash", &PenSettings::dashLength, 0, 10000, false},
    {"end", &PenSettings::endType, kLongMin, kLongMax, false},
    {"scaled", &PenSettings::scaled, 0, 1, false},
};

constexpr Key<BrushSettings> kBrushKeys[] = {
    {"type", &BrushSettings::type, 0, 3, false},
    {"color", &BrushSettings::color, 0, kColorMax, true},
    {"pattern", nullptr, 0, 0, false, &BrushSettings::pattern},
};

constexpr Key<FontSettings> kFontKeys[] = {
    {"name", nullptr, 0, 0, false, &FontSettings::name},
    {"height", &FontSettings::height, 0, 1000000, false},
    {"color", &FontSettings::color, 0, kColorMax, true},
    {"halo", &FontSettings::halo, 0, 7, false},
    {"halocolor", &FontSettings::haloColor, 0, kColorMax, true},
    {"angle", &FontSettings::angle, -360, 360, false},
    {"framed", &FontSettings::framed, 0, 1, false},
    {"bold", &FontSettings::bold, 0, 1, false},
    {"italic", &FontSettings::italic, 0, 1, false},
    {"underline", &FontSettings::underline, 0, 1, false},
    {"strikeout", &FontSettings::strikeOut, 0, 1, false},
    {"scaled", &FontSettings::scaled, 0, 1, false},
};

constexpr Key<PageSettings> kPageKeys[] = {
    {"width", &PageSettings::width, 10, 5000, false},
    {"height", &PageSettings::height, 10, 5000, false},
    {"dpi", &PageSettings::dpi, 30, 2400, false},
    {"margin", &PageSettings::margin, 0, 500, false},
};

std::string Quoted(std::string_view text) {
    return "'" + std::string(text) + "'";
}

bool ParseWhole(std::string_view digits, int radix, std::int32_t& value) {
    const char* end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, radix);
    return error == std::errc() && stop == end;
}

bool ParseNumber(std::string_view text, std::int32_t& value) {
    const bool isHex = text.substr(0, 2) == "0x";
    if (isHex && text.substr(2, 1) == "-") return false;
    return ParseWhole(isHex ? text.substr(2) : text, isHex ? 16 : 10, value);
}

std::vector<std::string_view> Split(std::string_view text) {
    std::vector<std::string_view> parts;
    for (std::size_t begin = 0; (begin = text.find_first_not_of(kSeparators, begin)) != text.npos;) {
        std::size_t end = std::min(text.find_first_of(kSeparators, begin), text.size());
        const std::size_t quote = text.find("='", begin);
        if (quote < end) {
            end = std::min(text.find('\'', quote + 2), text.size() - 1) + 1;
        }
        parts.push_back(text.substr(begin, end - begin));
        begin = end;
    }
    return parts;
}

template <typename Settings, std::size_t N>
std::string KnownNames(const Key<Settings> (&keys)[N]) {
    std::string names;
    for (const Key<Settings>& key : keys) {
        names += (names.empty() ? "" : ", ") + std::string(key.name);
    }
    return names;
}

template <typename Settings, std::size_t N>
Settings Parse(std::string_view tool, std::string_view text, const Key<Settings> (&keys)[N],
               Settings settings) {
    const std::string prefix = std::string(tool) + ": ";
    bool seen[N] = {};
    for (const std::string_view part : Split(text)) {
        const std::size_t equals = part.find('=');
        if (equals == part.npos) throw ToolError(prefix + Quoted(part) + " is not of the form key=value");
        const std::string_view name = part.substr(0, equals);
        std::string_view value = part.substr(equals + 1);
        const auto key =
            std::find_if(std::begin(keys), std::end(keys), [&](const auto& row) { return row.name == name; });
        if (key == std::end(keys)) {
            throw ToolError(prefix + "unknown key " + Quoted(name) + "; known are " + KnownNames(keys));
        }
        bool& wasSeen = seen[key - std::begin(keys)];
        if (wasSeen) throw ToolError(prefix + Quoted(name) + " is given twice");
        wasSeen = true;
        if (!value.empty() && value.front() == '\'') {
            if (value.size() == 1 || value.back() != '\'') {
                throw ToolError(prefix + std::string(name) + " has no closing quote");
            }
            value = value.substr(1, value.size() - 2);
        }
        if (key->text != nullptr) {
            if (value.empty()) throw ToolError(prefix + std::string(name) + " is empty");
            settings.*(key->text) = value;
            continue;
        }

        std::int32_t number = 0;
        if (!(key->isColor ? ParseColor(value, number) : ParseNumber(value, number))) {
            throw ToolError(prefix + std::string(name) + " " + Quoted(value) +
                            (key->isColor ? " is not a colour such as #8a7866" : " is not a whole number"));
        }
        if (number < key->least || number > key->most) {
            throw ToolError(prefix + std::string(name) + " must lie between " + std::to_string(key->least) +
                            " and " + std::to_string(key->most));
        }
        settings.*(key->field) = number;
    }
    return settings;
}

template <typename Settings, std::size_t N>
Settings Limited(Settings settings, const Key<Settings> (&keys)[N]) {
    for (const Key<Settings>& key : keys) {
        if (key.text != nullptr) continue;
        std::int32_t& value = settings.*key.field;
        value = key.isColor ? value & kColorMax : std::clamp(value, key.least, key.most);
    }
    return settings;
}

}  // namespace

bool ParseColor(std::string_view text, std::int32_t& color) {
    const std::size_t mark = text.substr(0, 1) == "#" ? 1 : text.substr(0, 2) == "0x" ? 2 : 0;
    const std::string_view digits = text.substr(mark);
    std::int32_t value = 0;
    // The test of the first digit keeps a sign out.
    if (mark == 0 || digits.size() != 6 || digits[0] == '-' || !ParseWhole(digits, 16, value)) return false;
    color = Color(value);
    return true;
}

PenSettings ParsePen(std::string_view text, PenSettings settings) {
    const std::int32_t style = settings.style;
    settings = Parse("pen", text, kPenKeys, settings);
    if (settings.style != style && settings.type != zul::CPen::PenExtended) {
        throw ToolError("pen: a style needs type=3");
    }
    return settings;
}

void UsePen(zul::CPen& pen, const PenSettings& settings) {
    pen.Create(static_cast<zul::CPen::TPenType>(settings.type), settings.style, settings.width,
               settings.color, settings.endType, settings.dashLength, settings.extraColor);
    pen.SetScaled(settings.scaled != 0);
}

BrushSettings ParseBrush(std::string_view text, BrushSettings settings) {
    settings = Parse("brush", text, kBrushKeys, std::move(settings));
    const bool isPattern = settings.type == zul::CBrush::BrushPattern;
    if (settings.type > zul::CBrush::BrushSolid && !isPattern) {
        throw ToolError("brush: type must be 0 (none), 1 (solid) or 3 (pattern)");
    }
    if (isPattern == settings.pattern.empty()) {
        throw ToolError("brush: type=3 and pattern=FILE go together");
    }
    return settings;
}

FontSettings ParseFont(std::string_view text, FontSettings settings) {
    settings = Parse("font", text, kFontKeys, std::move(settings));
    if (settings.scaled != 0 && settings.height == 0) {
        throw ToolError("font: scaled=1 needs a height in metres");
    }
    return settings;
}

void UseFont(zul::CFont& font, const FontSettings& settings, std::int32_t height, double degrees) {
    const zul::CString name(settings.name.c_str());
    font.SetName(name.GetBuffer());
    font.SetHeight(height);
    font.SetTextColor(settings.color);
    font.SetOreolColor(settings.haloColor);
    font.SetAngle(zul::RoundToLong(degrees * 10.0));
    const struct {
        std::int32_t isOn;
        std::int32_t style;
    } styles[] = {
        {settings.bold, zul::CFont::StyleBold},
        {settings.italic, zul::CFont::StyleItalic},
        {settings.underline, zul::CFont::StyleUnderlined},
        {settings.strikeOut, zul::CFont::StyleStrikedOut},
        {settings.scaled, zul::CFont::StyleScaled},
    };
    std::int32_t style = settings.halo;
    for (const auto& row : styles) {
        if (row.isOn != 0) style |= row.style;
    }
    font.SetStyle(style);
}

PenSettings SettingsOf(const zul::CPen& pen) {
    return Limited({pen.GetType(), pen.GetStyle(), pen.GetWidth(), pen.GetColor(), pen.GetExtraColor(),
                    pen.GetDashLength(), pen.GetEndType(), pen.IsScaled() ? 1 : 0},
                   kPenKeys);
}

BrushSettings SettingsOf(const zul::CBrush& brush) {
    return Limited(BrushSettings{brush.GetType(), brush.GetColor()}, kBrushKeys);
}

FontSettings SettingsOf(zul::CFont& font) {
    const zul::CString name(font.GetName());
    return Limited(
        FontSettings{name.GetBufferAnsi(), font.GetHeight(), font.GetTextColor(), font.GetOreol(),
                     font.GetOreolColor(), font.GetAngle() / 10, font.GetFramed(), font.GetBold(),
                     font.GetItalic(), font.GetUnderlined(), font.GetStrikedOut(), font.IsScaled()},
        kFontKeys);
}

PageSettings ParsePage(std::string_view text, PageSettings settings) {
    settings = Parse("page", text, kPageKeys, settings);
    if (2 * settings.margin >= std::min(settings.width, settings.height)) {
        throw ToolError("page: the margins leave no paper between them");
    }
    return settings;
}

}  // namespace zulmap
