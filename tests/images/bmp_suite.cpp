#include "tests/images/bmp_suite.h"

#include <algorithm>
#include <functional>
#include <utility>

namespace images {

namespace {

using TBytes = std::vector<std::uint8_t>;
using TMasks = std::vector<std::uint32_t>;

/// Headers and what follows them; every figure can be set wrong.
struct TRecipe {
    int Width = 13, Height = 7, Depth = 24;
    std::uint32_t HeaderSize = 40;
    std::uint32_t Compression = 0;
    std::uint32_t SizeImage = 0;
    std::uint32_t ColorsUsed = 0;
    int Planes = 1;
    int Entries = -1;          ///< colours in the file; -1: as many as the header says
    TMasks Masks;              ///< as written, in the header or behind it
    TBytes Code;               ///< in place of rows
    std::int64_t Offset = -1;  ///< of the rows as stated; -1: where they are
    int Gap = 0;               ///< bytes before the rows
};

void Put(TBytes& out, std::uint64_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        out.push_back(static_cast<std::uint8_t>(value >> 8 * i));
}

int FullCount(int depth) {
    return depth <= 8 ? 1 << depth : 0;
}

int ColorCount(const TRecipe& recipe) {
    return recipe.ColorsUsed != 0 ? static_cast<int>(recipe.ColorsUsed) : FullCount(recipe.Depth);
}

/// The n-th colour of every table, 0x00RRGGBB; depth 1 has two that are neither black nor white.
std::uint32_t TableColor(int depth, int n) {
    if (depth == 1) return n == 0 ? 0x203040 : 0xF0C010;
    const auto i = static_cast<std::uint32_t>(depth == 4 ? n * 17 : n);
    return i << 16 | (255 - i) << 8 | (i * 7 & 255);
}

/// The stored value of a pixel, x and y from the top left.
std::uint32_t Stored(int depth, int x, int y) {
    const auto mixed = static_cast<std::uint32_t>(x * 0x9E3779 + y * 0x85EBCA + 0x1B5) * 0x2545F491u;
    return depth == 32 ? mixed : mixed >> 5 & ((1u << depth) - 1);
}

/// A channel's 8 bits: the mask's bits as a text, written over and over.
std::uint32_t Channel(std::uint32_t pixel, std::uint32_t mask) {
    std::vector<bool> bits;
    for (int bit = 31; bit >= 0; --bit) {
        if (mask >> bit & 1) bits.push_back((pixel >> bit & 1) != 0);
    }
    std::uint32_t value = 0;
    for (std::size_t i = 0; !bits.empty() && i < 8; ++i)
        value = value << 1 | (bits[i % bits.size()] ? 1 : 0);
    return value;
}

TMasks MasksOf(const TRecipe& recipe) {
    if (!recipe.Masks.empty()) return recipe.Masks;
    return recipe.Depth == 16 ? TMasks{0x7C00, 0x3E0, 0x1F} : TMasks{0xFF0000, 0xFF00, 0xFF};
}

std::uint32_t Shown(const TRecipe& recipe, std::uint32_t stored) {
    if (recipe.Depth <= 8) {
        const int known = std::min(recipe.Entries < 0 ? ColorCount(recipe) : recipe.Entries, 256);
        return static_cast<int>(stored) < known ? TableColor(recipe.Depth, static_cast<int>(stored)) : 0;
    }
    const TMasks masks = MasksOf(recipe);
    return Channel(stored, masks[0]) << 16 | Channel(stored, masks[1]) << 8 | Channel(stored, masks[2]);
}

TBytes Rows(const TRecipe& recipe) {
    TBytes out;
    const int height = std::abs(recipe.Height);
    for (int line = 0; line < height; ++line) {
        const int y = recipe.Height > 0 ? height - 1 - line : line;
        std::uint32_t gathered = 0;
        int bits = 0;
        for (int x = 0; x < recipe.Width; ++x) {
            const std::uint32_t pixel = Stored(recipe.Depth, x, y);
            if (recipe.Depth >= 8) {
                Put(out, pixel, recipe.Depth / 8);
                continue;
            }
            gathered = gathered << recipe.Depth | pixel;
            bits += recipe.Depth;
            if (bits == 8 || x + 1 == recipe.Width) {
                Put(out, gathered << (8 - bits), 1);
                gathered = 0;
                bits = 0;
            }
        }
        out.resize((out.size() + 3) / 4 * 4);
    }
    return out;
}

TBytes Headers(const TRecipe& recipe) {
    TBytes out;
    Put(out, recipe.HeaderSize, 4);
    if (recipe.HeaderSize == 12) {
        Put(out, static_cast<std::uint64_t>(recipe.Width), 2);
        Put(out, static_cast<std::uint64_t>(recipe.Height), 2);
        Put(out, static_cast<std::uint64_t>(recipe.Planes), 2);
        Put(out, static_cast<std::uint64_t>(recipe.Depth), 2);
        return out;
    }
    Put(out, static_cast<std::uint64_t>(recipe.Width), 4);
    Put(out, static_cast<std::uint64_t>(recipe.Height), 4);
    Put(out, static_cast<std::uint64_t>(recipe.Planes), 2);
    Put(out, static_cast<std::uint64_t>(recipe.Depth), 2);
    for (const std::uint32_t figure :
         {recipe.Compression, recipe.SizeImage, 2835u, 2835u, recipe.ColorsUsed, 0u})
        Put(out, figure, 4);
    for (const std::uint32_t mask : recipe.Masks)
        Put(out, mask, 4);
    if (recipe.HeaderSize > out.size() && recipe.HeaderSize <= 124) out.resize(recipe.HeaderSize);
    return out;
}

TBytes Build(const TRecipe& recipe) {
    TBytes body = Headers(recipe);
    const int entries = recipe.Entries < 0 ? ColorCount(recipe) : recipe.Entries;
    for (int i = 0; i < entries; ++i)
        Put(body, TableColor(recipe.Depth, i), recipe.HeaderSize == 12 ? 3 : 4);
    body.resize(body.size() + static_cast<std::size_t>(recipe.Gap), 0xEE);
    const std::size_t offset = 14 + body.size();
    const TBytes rows = recipe.Code.empty() ? Rows(recipe) : recipe.Code;
    body.insert(body.end(), rows.begin(), rows.end());
    TBytes file{'B', 'M'};
    Put(file, 14 + body.size(), 4);
    Put(file, 0, 4);
    Put(file, recipe.Offset < 0 ? offset : static_cast<std::uint64_t>(recipe.Offset), 4);
    file.insert(file.end(), body.begin(), body.end());
    return file;
}

std::vector<std::uint32_t> Picture(const TRecipe& recipe) {
    std::vector<std::uint32_t> out;
    for (int y = 0; y < std::abs(recipe.Height); ++y) {
        for (int x = 0; x < recipe.Width; ++x)
            out.push_back(Shown(recipe, Stored(recipe.Depth, x, y)));
    }
    return out;
}

class CSuite {
public:
    using TChange = std::function<void(TBytes&)>;

    /// The picture is what the recipe's own rows show; \p change is for the finished bytes.
    void Shows(TGrade grade, const std::string& name, const TRecipe& recipe, const TChange& change = {}) {
        Add(grade, name, Changed(recipe, change), recipe, Picture(recipe));
    }
    /// The code of runs shows these numbers of colours, rows from the top.
    void Runs(TGrade grade, const char* name, TRecipe recipe, TBytes code, const TBytes& numbers) {
        recipe.Compression = recipe.Depth == 8 ? 1 : 2;
        recipe.Code = std::move(code);
        recipe.SizeImage = static_cast<std::uint32_t>(recipe.Code.size());
        std::vector<std::uint32_t> picture;
        for (const std::uint8_t number : numbers)
            picture.push_back(TableColor(recipe.Depth, number));
        Add(grade, name, Build(recipe), recipe, std::move(picture));
    }
    void Refused(const char* name, const TRecipe& recipe, const TChange& change = {}) {
        m_Files.push_back({TGrade::Bad, name, Changed(recipe, change), 0, 0, {}});
    }
    std::vector<TFile> Take() { return std::move(m_Files); }

private:
    static TBytes Changed(const TRecipe& recipe, const TChange& change) {
        TBytes bytes = Build(recipe);
        if (change) change(bytes);
        return bytes;
    }
    void Add(TGrade grade, const std::string& name, TBytes bytes, const TRecipe& recipe,
             std::vector<std::uint32_t> picture) {
        m_Files.push_back(
            {grade, name, std::move(bytes), recipe.Width, std::abs(recipe.Height), std::move(picture)});
    }

    std::vector<TFile> m_Files;
};

TRecipe OfDepth(int depth, int width = 13, int height = 7) {
    TRecipe recipe;
    recipe.Depth = depth;
    recipe.Width = width;
    recipe.Height = height;
    return recipe;
}
TRecipe Masked(int depth, TMasks masks, std::uint32_t headerSize = 40) {
    TRecipe recipe = OfDepth(depth);
    recipe.Compression = 3;
    recipe.Masks = std::move(masks);
    recipe.HeaderSize = headerSize;
    return recipe;
}
TRecipe WithHeader(int depth, std::uint32_t headerSize) {
    TRecipe recipe = OfDepth(depth);
    recipe.HeaderSize = headerSize;
    return recipe;
}
template <class T>
TRecipe With(TRecipe recipe, T TRecipe::*member, T value) {
    recipe.*member = value;
    return recipe;
}

void AddDepths(CSuite& suite) {
    for (const int depth : {1, 4, 8, 16, 24, 32}) {
        const std::string name = std::to_string(depth);
        suite.Shows(TGrade::Good, "depth-" + name, OfDepth(depth));
        suite.Shows(TGrade::Good, "down-" + name, OfDepth(depth, 13, -7));
        suite.Shows(TGrade::Good, "slim-" + name, OfDepth(depth, 1, 9));
        suite.Shows(TGrade::Good, "wide-" + name, OfDepth(depth, 131, 1));
    }
}

void AddTablesAndHeaders(CSuite& suite) {
    using R = TRecipe;
    const auto good = TGrade::Good;
    suite.Shows(good, "table-of-1", With(OfDepth(1), &R::ColorsUsed, 1u));
    suite.Shows(good, "table-of-5", With(OfDepth(4), &R::ColorsUsed, 5u));
    suite.Shows(good, "table-of-200", With(OfDepth(8), &R::ColorsUsed, 200u));
    suite.Shows(good, "table-of-256", With(OfDepth(8), &R::ColorsUsed, 256u));
    suite.Shows(good, "table-beside-true-colour", With(OfDepth(24), &R::ColorsUsed, 5u));
    suite.Shows(good, "gap-before-rows", With(OfDepth(8), &R::Gap, 22));
    suite.Shows(good, "core-1", WithHeader(1, 12));
    suite.Shows(good, "core-4", WithHeader(4, 12));
    suite.Shows(good, "core-8", WithHeader(8, 12));
    suite.Shows(good, "core-24", WithHeader(24, 12));
    suite.Shows(good, "header-64", WithHeader(8, 64));
    suite.Shows(good, "v4-8", WithHeader(8, 108));
    suite.Shows(good, "v4-24", WithHeader(24, 108));
    suite.Shows(good, "v5-16", WithHeader(16, 124));
    suite.Shows(good, "v5-32", WithHeader(32, 124));
    suite.Shows(good, "masks-555", Masked(16, {0x7C00, 0x3E0, 0x1F}));
    suite.Shows(good, "masks-565", Masked(16, {0xF800, 0x7E0, 0x1F}));
    suite.Shows(good, "masks-444", Masked(16, {0xF00, 0xF0, 0xF}));
    suite.Shows(good, "masks-321", Masked(16, {0x38, 0x6, 0x1}));
    suite.Shows(good, "masks-bgr", Masked(32, {0xFF, 0xFF00, 0xFF0000}));
    suite.Shows(good, "masks-888-high", Masked(32, {0xFF000000, 0xFF0000, 0xFF00}));
    suite.Shows(good, "masks-101010", Masked(32, {0x3FF00000, 0xFFC00, 0x3FF}));
    suite.Shows(good, "masks-in-52", Masked(32, {0xFF, 0xFF00, 0xFF0000}, 52));
    suite.Shows(good, "masks-in-56", Masked(16, {0xF00, 0xF0, 0xF, 0xF000}, 56));
    suite.Shows(good, "masks-in-v4", Masked(16, {0xF800, 0x7E0, 0x1F, 0}, 108));
    suite.Shows(good, "masks-in-v5", Masked(32, {0xFF0000, 0xFF00, 0xFF, 0xFF000000}, 124));
    suite.Shows(good, "masks-with-alpha",
                With(Masked(16, {0xF00, 0xF0, 0xF, 0xF000}), &R::Compression, std::uint32_t{6}));
}

void AddRuns(CSuite& suite) {
    const auto good = TGrade::Good, odd = TGrade::Questionable;
    const TRecipe bytes = OfDepth(8, 4, 3), nibbles = OfDepth(4, 5, 2);
    const TBytes rows8{9, 9, 9, 9, 1, 2, 3, 4, 5, 5, 6, 6};
    suite.Runs(good, "runs-8", bytes, {2, 5, 2, 6, 0, 0, 0, 4, 1, 2, 3, 4, 0, 0, 4, 9, 0, 1}, rows8);
    suite.Runs(good, "runs-8-odd-literal", bytes, {0, 3, 7, 8, 9, 0, 1, 1, 0, 0, 4, 2, 0, 0, 4, 3, 0, 1},
               {3, 3, 3, 3, 2, 2, 2, 2, 7, 8, 9, 1});
    suite.Runs(good, "runs-8-moved", bytes, {1, 5, 0, 2, 2, 1, 1, 6, 0, 2, 0, 1, 0, 1},
               {0, 0, 0, 0, 0, 0, 0, 6, 5, 0, 0, 0});
    suite.Runs(good, "runs-4", nibbles, {5, 0x12, 0, 0, 0, 5, 0x34, 0x56, 0x70, 0, 0, 1},
               {3, 4, 5, 6, 7, 1, 2, 1, 2, 1});
    suite.Runs(good, "runs-4-joined", nibbles, {3, 0xAB, 2, 0xCD, 0, 0, 1, 0xE0, 4, 0xF1, 0, 1},
               {14, 15, 1, 15, 1, 10, 11, 10, 12, 13});
    suite.Runs(odd, "runs-past-the-edge", bytes, {9, 5, 0, 0, 9, 6, 0, 0, 9, 7, 0, 1},
               {7, 7, 7, 7, 6, 6, 6, 6, 5, 5, 5, 5});
    suite.Runs(odd, "runs-past-the-top", bytes, {4, 5, 0, 0, 4, 6, 0, 0, 4, 7, 0, 0, 4, 8, 0, 1},
               {7, 7, 7, 7, 6, 6, 6, 6, 5, 5, 5, 5});
    suite.Runs(odd, "runs-without-end", bytes, {4, 5, 0, 0, 4, 6, 0, 0, 4, 7, 0, 0},
               {7, 7, 7, 7, 6, 6, 6, 6, 5, 5, 5, 5});
    suite.Runs(odd, "runs-moved-outside", bytes, {4, 5, 0, 2, 200, 200, 4, 6, 0, 1},
               {0, 0, 0, 0, 0, 0, 0, 0, 5, 5, 5, 5});
    suite.Runs(odd, "runs-ended-early", bytes, {4, 5, 0, 1}, {0, 0, 0, 0, 0, 0, 0, 0, 5, 5, 5, 5});
}

void AddQuestionable(CSuite& suite) {
    using R = TRecipe;
    const auto odd = TGrade::Questionable;
    suite.Shows(odd, "no-offset", With(OfDepth(8), &R::Offset, std::int64_t{0}));
    suite.Shows(odd, "image-size-small", With(OfDepth(24), &R::SizeImage, 5u));
    suite.Shows(odd, "image-size-huge", With(OfDepth(24), &R::SizeImage, 0x7FFFFFFFu));
    suite.Shows(odd, "image-size-negative", With(OfDepth(8), &R::SizeImage, 0xFFFFFFF0u));
    suite.Shows(odd, "table-of-300", With(OfDepth(8), &R::ColorsUsed, 300u));
    suite.Shows(odd, "file-size-wrong", OfDepth(24), [](TBytes& bytes) { bytes[2] = bytes[3] = 0xFF; });
    suite.Shows(odd, "reserved-used", OfDepth(24), [](TBytes& bytes) { bytes[6] = bytes[9] = 0xFF; });
    suite.Shows(odd, "rubbish-behind", OfDepth(24),
                [](TBytes& bytes) { bytes.resize(bytes.size() + 1000, 0xAB); });
    suite.Shows(odd, "last-padding-missing", OfDepth(24), [](TBytes& bytes) { bytes.pop_back(); });
    suite.Shows(odd, "one-mask-missing", Masked(16, {0xF800, 0, 0x1F}));
    suite.Shows(odd, "masks-overlapping", Masked(16, {0xFF00, 0xFF0, 0xFF}));
}

void AddBad(CSuite& suite) {
    using R = TRecipe;
    const TRecipe plain = OfDepth(24);
    for (const std::size_t length : {0, 1, 2, 13, 14, 18, 53, 54})
        suite.Refused("cut", plain, [length](TBytes& bytes) { bytes.resize(length); });
    suite.Refused("cut-in-a-row", plain, [](TBytes& bytes) { bytes.resize(bytes.size() - 2); });
    suite.Refused("cut-in-the-table", OfDepth(8), [](TBytes& bytes) { bytes.resize(100); });
    suite.Refused("cut-in-the-masks", Masked(16, {0xF800, 0x7E0, 0x1F}),
                  [](TBytes& bytes) { bytes.resize(60); });
    suite.Refused("wrong-magic", plain, [](TBytes& bytes) { bytes[1] = 'A'; });
    for (const int planes : {0, 2})
        suite.Refused("planes", With(plain, &R::Planes, planes));
    for (const int depth : {0, 2, 3, 5, 15, 31, 64, 0xFFFF}) {
        suite.Refused("depth", plain, [depth](TBytes& bytes) {
            bytes[28] = static_cast<std::uint8_t>(depth);
            bytes[29] = static_cast<std::uint8_t>(depth >> 8);
        });
    }
    const auto sized = [](std::size_t at, std::uint32_t value) {
        return [at, value](TBytes& bytes) {
            for (std::size_t i = 0; i < 4; ++i)
                bytes[at + i] = static_cast<std::uint8_t>(value >> 8 * i);
        };
    };
    for (const std::uint32_t width : {0u, 0xFFFFFFF3u, 0x80000000u, 0x7FFFFFFFu, 0x10000u})
        suite.Refused("width", plain, sized(18, width));
    for (const std::uint32_t height : {0u, 8u, 0x80000000u, 0x80000001u, 0x7FFFFFFFu, 0x10000u})
        suite.Refused("height", plain, sized(22, height));
    for (const std::uint32_t size : {0u, 11u, 13u, 39u, 41u, 128u, 0x7FFFFFFFu, 0xFFFFFFFFu})
        suite.Refused("header-size", plain, sized(14, size));
    for (const std::uint32_t compression : {1u, 2u, 3u, 4u, 5u, 6u, 7u, 99u, 0xFFFFFFFFu})
        suite.Refused("compression", plain, sized(30, compression));
    for (const std::uint32_t offset : {0x300u, 0x7FFFFFFFu, 0xFFFFFFFFu})
        suite.Refused("offset", plain, sized(10, offset));
    suite.Refused("table-of-billions", With(OfDepth(8), &R::Offset, std::int64_t{0}), sized(46, 0xFFFFFFFF));
    suite.Refused("masks-none", Masked(16, {0, 0, 0}));
    suite.Refused("masks-with-holes", Masked(16, {0xF800, 0x550, 0x1F}));
    suite.Refused("masks-too-wide", Masked(16, {0xFF0000, 0xFF00, 0xFF}));
    suite.Refused("masks-in-64", Masked(16, {0xF800, 0x7E0, 0x1F}, 64));
    TRecipe runs = OfDepth(8, 4, 3);
    runs.Compression = 1;
    runs.Code = {4, 5, 0, 0, 4, 6};
    suite.Refused("runs-cut", runs);
    runs.Code = {4, 5, 0, 9, 1, 2};
    suite.Refused("runs-cut-in-literal", runs);
    runs.Code = {4, 5, 0, 2};
    suite.Refused("runs-cut-in-move", runs);
    runs.Code = {4, 5, 0, 1};
    suite.Refused("runs-of-wrong-depth", With(runs, &R::Depth, 4));
    suite.Refused("runs-from-the-top", With(runs, &R::Height, -3));
    suite.Refused("runs-for-gigabytes", With(With(runs, &R::Width, 30000), &R::Height, 30000));
}

}  // namespace

std::vector<TFile> MakeSuite() {
    CSuite suite;
    AddDepths(suite);
    AddTablesAndHeaders(suite);
    AddRuns(suite);
    AddQuestionable(suite);
    AddBad(suite);
    return suite.Take();
}

}  // namespace images
