/// \file
/// scenes --seed S --count N [--kind K] [--first I] [--dump DIR]
///
/// Draws scenes by lot and prints a line for each: number, kind, hash of the stored pixels. Scene I of a kind
/// depends on nothing but the seed, I and the kind's name, so that any one can be drawn again alone.
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "tests/scenes/kinds.h"

namespace {

using namespace scenes;

constexpr TKind kKinds[] = {
    {"lines", DrawLines},
    {"polylines", DrawPolylines},
    {"wide-lines", DrawWideLines},
    {"dashes", DrawDashes},
    {"polygons", DrawPolygons},
    {"rectangles", DrawRectangles},
    {"ellipses", DrawEllipses},
    {"every-rop", DrawEveryRop},
    {"fills", DrawFills},
    {"patterns", DrawPatterns},
    {"copies", DrawCopies},
    {"pattern-copies", DrawCopiesWithPattern},
    {"overlaps", DrawOverlaps},
    {"stretched", DrawStretched},
    {"transparent", DrawTransparent},
    {"mono", DrawMono},
    {"edges", DrawEdges},
    {"scrolled", DrawScrolled},
    {"pixels", DrawPixels},
    {"regions", DrawRegions},
    {"canvas", DrawCanvas},
    {"turned-canvas", DrawTurnedCanvas},
};
constexpr int kKindCount = sizeof kKinds / sizeof kKinds[0];

struct TOptions {
    std::uint64_t Seed = 1;
    int First = 0;
    int Count = 0;
    const TKind* Kind = nullptr;
    std::string Dump;
};

const TKind* FindKind(const char* name) {
    for (const TKind& kind : kKinds) {
        if (std::strcmp(kind.Name, name) == 0) return &kind;
    }
    return nullptr;
}

bool Read(TOptions& options, int argc, char** argv) {
    for (int i = 1; i < argc; i += 2) {
        const std::string name = argv[i];
        const char* const value = i + 1 < argc ? argv[i + 1] : nullptr;
        if (value == nullptr) return false;
        if (name == "--seed") {
            options.Seed = std::strtoull(value, nullptr, 10);
        } else if (name == "--count") {
            options.Count = std::atoi(value);
        } else if (name == "--first") {
            options.First = std::atoi(value);
        } else if (name == "--dump") {
            options.Dump = value;
        } else if (name == "--kind") {
            options.Kind = FindKind(value);
            if (options.Kind == nullptr) return false;
        } else {
            return false;
        }
    }
    return options.First >= 0 && options.Count > 0;
}

CRandom RandomOf(const TOptions& options, const TKind& kind, int number) {
    std::uint64_t state = options.Seed * 0x9E3779B97F4A7C15u + static_cast<std::uint64_t>(number);
    for (const char* letter = kind.Name; *letter != '\0'; ++letter)
        state = state * 31 + static_cast<unsigned char>(*letter);
    return CRandom(state);
}

bool DrawScene(const TOptions& options, int number) {
    const TKind& kind = options.Kind != nullptr ? *options.Kind : kKinds[number % kKindCount];
    CRandom random = RandomOf(options, kind, number);
    const int depth = SomeDepth(random);
    CBoard board(depth, random.OneIn(2));
    if (!random.OneIn(4)) board.Scatter(random);
    kind.Draw(board, random);
    std::printf("%d %s %016llx\n", number, kind.Name, static_cast<unsigned long long>(board.Hash()));
    std::fflush(stdout);  // after a hang or a crash the list says which scene it was
    if (options.Dump.empty()) return true;
    return board.Write((options.Dump + "/" + kind.Name + "-" + std::to_string(number) + ".ppm").c_str());
}

}  // namespace

int main(int argc, char** argv) {
    TOptions options;
    if (!Read(options, argc, argv)) {
        std::fprintf(stderr, "scenes --seed S --count N [--kind K] [--first I] [--dump DIR]\nkinds:");
        for (const TKind& kind : kKinds)
            std::fprintf(stderr, " %s", kind.Name);
        std::fprintf(stderr, "\n");
        return 2;
    }
    for (int i = 0; i < options.Count; ++i) {
        if (!DrawScene(options, options.First + i)) {
            std::fprintf(stderr, "cannot write into %s\n", options.Dump.c_str());
            return 1;
        }
    }
    return 0;
}
