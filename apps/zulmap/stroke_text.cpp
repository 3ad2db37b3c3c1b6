#include "apps/zulmap/stroke_text.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "zul/kernel/numeric.h"

namespace zulmap {
namespace {

/// The grid that the signs stand on; a step is a sixth of the height.
constexpr std::int64_t kRows = 6;
constexpr std::int64_t kColumns = 4;
constexpr std::int64_t kAdvance = kColumns + 2;
constexpr std::int32_t kLeastHeight = 2;

/// Strokes are parted by blanks; each is a list of grid points, column and row, the row counted from the top.
struct Sign {
    char character;
    std::string_view strokes;
};

constexpr Sign kSigns[] = {
    {'A', "0602204246 0444"},
    {'B', "06003041423303 3344453606"},
    {'C', "4130100105163645"},
    {'D', "00062644422000"},
    {'E', "40000646 0333"},
    {'F', "400006 0333"},
    {'G', "41301001051636454323"},
    {'H', "0006 4046 0343"},
    {'I', "1030 2026 1636"},
    {'J', "4045361605"},
    {'K', "0006 400346"},
    {'L', "000646"},
    {'M', "0600224046"},
    {'N', "06004640"},
    {'O', "100105163645413010"},
    {'P', "06003041423303"},
    {'Q', "100105163645413010 2446"},
    {'R', "06003041423303 2346"},
    {'S', "413010010213334445361605"},
    {'T', "0040 2026"},
    {'U', "000516364540"},
    {'V', "002640"},
    {'W', "0016233640"},
    {'X', "0046 4006"},
    {'Y', "002340 2326"},
    {'Z', "00400646"},
    {'0', "100105163645413010 1432"},
    {'1', "112026 1636"},
    {'2', "01103041420646"},
    {'3', "01103041423313 334445361605"},
    {'4', "36300444"},
    {'5', "400002324345361605"},
    {'6', "4130100105163645443303"},
    {'7', "0040412326"},
    {'8', "13020110304142331304051636454433"},
    {'9', "0516364541301001021343"},
    {'.', "2526"},
    {',', "2516"},
    {':', "2122 2425"},
    {';', "2122 2416"},
    {'-', "1333"},
    {'+', "0343 2125"},
    {'=', "0242 0444"},
    {'/', "0640"},
    {'%', "0640 0010110100 3545463635"},
    {'(', "30212536"},
    {')', "10212516"},
    {'_', "0646"},
    {'\'', "2022"},
};

constexpr std::size_t kMostPoints = 20;

std::string_view StrokesOf(char character) {
    if (character >= 'a' && character <= 'z') character = static_cast<char>(character - 'a' + 'A');
    const auto* sign = std::find_if(std::begin(kSigns), std::end(kSigns),
                                    [character](const Sign& s) { return s.character == character; });
    return sign == std::end(kSigns) ? std::string_view{} : sign->strokes;
}

/// Pixels of \p steps of the grid, rounded.
std::int64_t Pixels(std::int64_t steps, std::int32_t height) {
    return (steps * (height - 1) + kRows / 2) / kRows;
}

void DrawStroke(zul::CCanvas& canvas, std::int64_t left, std::int64_t top, std::string_view stroke,
                std::int32_t height) {
    std::array<zul::TLongPoint, kMostPoints> points{};
    std::int32_t count = 0;
    for (; stroke.size() >= 2; stroke.remove_prefix(2)) {
        points[static_cast<std::size_t>(count++)] = {
            zul::SaturateToLong(left + Pixels(stroke[0] - '0', height)),
            zul::SaturateToLong(top + Pixels(stroke[1] - '0', height))};
    }
    // A line does not draw its last pixel, so it goes on to a pixel that is not wanted.
    const zul::TLongPoint last = points[static_cast<std::size_t>(count - 1)];
    points[static_cast<std::size_t>(count++)] = {zul::SaturateToLong(std::int64_t{last.X} + 1), last.Y};
    canvas.Polyline(points.data(), count);
}

}  // namespace

void DrawStrokeText(zul::CCanvas& canvas, zul::TLongPoint position, std::string_view text,
                    std::int32_t height) {
    if (height < kLeastHeight) return;
    canvas.GetPen().Validate(&canvas);
    canvas.GetBackground().Validate(&canvas);
    std::int64_t left = position.X;
    for (const char character : text) {
        std::string_view strokes = StrokesOf(character);
        while (!strokes.empty()) {
            const std::size_t end = std::min(strokes.find(' '), strokes.size());
            DrawStroke(canvas, left, position.Y, strokes.substr(0, end), height);
            strokes.remove_prefix(std::min(end + 1, strokes.size()));
        }
        left += Pixels(kAdvance, height);
    }
}

std::int32_t GetStrokeTextWidth(std::string_view text, std::int32_t height) {
    if (text.empty() || height < kLeastHeight) return 0;
    const auto gaps = static_cast<std::int64_t>(text.size()) - 1;
    return zul::SaturateToLong(gaps * Pixels(kAdvance, height) + Pixels(kColumns, height) + 1);
}

}  // namespace zulmap
