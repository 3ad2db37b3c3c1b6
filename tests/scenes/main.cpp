/// \file
/// scenes --seed S (--count N [--kind K] [--first I] [--threads T] | --list FILE) [--dump DIR]
///
/// Draws scenes by lot and prints a line for each: number, kind, hash of the stored pixels. Scene I of a kind
/// depends on nothing but the seed, I and the kind's name, so that any one can be drawn again alone. FILE
/// names scenes: a line each, number and kind. T threads draw all scenes each, every one beginning elsewhere;
/// a scene that they draw differently has no hash but says so, and the status is 1. DIR gets
/// KIND-I-before.ppm and KIND-I.ppm. A scene that takes a minute ends the program with status 3; its line is
/// missing then.
#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

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
    {"perspective", DrawPerspective},
    {"pens", DrawPens},
    {"gradients", DrawGradients},
};
constexpr int kKindCount = sizeof kKinds / sizeof kKinds[0];

struct TOptions {
    std::uint64_t Seed = 1;
    int First = 0;
    int Count = 0;
    int Threads = 0;
    const TKind* Kind = nullptr;
    std::string List, Dump;
};

/// Ends the program when a scene takes too long: a call of the system that does not come back cannot be left.
class CWatchdog {
public:
    CWatchdog() {
        std::thread([this] { Watch(); }).detach();
    }
    void SceneDone() { ++m_Done; }

private:
    void Watch() const {
        for (int before = -1; before != m_Done;) {
            before = m_Done;
            std::this_thread::sleep_for(std::chrono::minutes(1));
        }
        std::fprintf(stderr, "a scene takes too long\n");
        std::_Exit(3);
    }

    std::atomic<int> m_Done{0};
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
        } else if (name == "--threads") {
            options.Threads = std::atoi(value);
        } else if (name == "--list") {
            options.List = value;
        } else if (name == "--dump") {
            options.Dump = value;
        } else if (name == "--kind") {
            options.Kind = FindKind(value);
            if (options.Kind == nullptr) return false;
        } else {
            return false;
        }
    }
    return options.First >= 0 && (options.Count > 0 || !options.List.empty());
}

const TKind& KindOf(const TOptions& options, int number) {
    return options.Kind != nullptr ? *options.Kind : kKinds[number % kKindCount];
}

CRandom RandomOf(const TOptions& options, const TKind& kind, int number) {
    std::uint64_t state = options.Seed * 0x9E3779B97F4A7C15u + static_cast<std::uint64_t>(number);
    for (const char* letter = kind.Name; *letter != '\0'; ++letter)
        state = state * 31 + static_cast<unsigned char>(*letter);
    return CRandom(state);
}

/// Does nothing when no pictures are asked for. \returns false when one cannot be written.
bool Dump(const TOptions& options, const CBoard& board, const TKind& kind, int number, const char* ending) {
    if (options.Dump.empty()) return true;
    const std::string path = options.Dump + "/" + kind.Name + "-" + std::to_string(number) + ending;
    if (board.Write(path.c_str())) return true;
    std::fprintf(stderr, "cannot write %s\n", path.c_str());
    return false;
}

/// Draws one scene; \p hash gets that of its picture. \returns false when a picture cannot be written.
bool DrawScene(const TOptions& options, const TKind& kind, int number, std::uint64_t& hash) {
    CRandom random = RandomOf(options, kind, number);
    const int depth = SomeDepth(random);
    CBoard board(depth, random.OneIn(2));
    if (!random.OneIn(4)) board.Scatter(random);
    if (!Dump(options, board, kind, number, "-before.ppm")) return false;
    kind.Draw(board, random);
    hash = board.Hash();
    return Dump(options, board, kind, number, ".ppm");
}

bool DrawAndPrint(const TOptions& options, const TKind& kind, int number) {
    std::uint64_t hash = 0;
    if (!DrawScene(options, kind, number, hash)) return false;
    std::printf("%d %s %016llx\n", number, kind.Name, static_cast<unsigned long long>(hash));
    std::fflush(stdout);  // after a hang or a crash the list says which scene it was
    return true;
}

/// Draws the scenes that a file names. \returns false when it cannot be read or a scene cannot be drawn.
bool DrawList(const TOptions& options, CWatchdog& watchdog) {
    std::ifstream list(options.List);
    int number = 0;
    std::string name;
    while (list >> number >> name) {
        const TKind* const kind = FindKind(name.c_str());
        if (kind == nullptr || !DrawAndPrint(options, *kind, number)) return false;
        watchdog.SceneDone();
    }
    return list.eof();
}

bool DrawRange(const TOptions& options, CWatchdog& watchdog) {
    for (int number = options.First; number < options.First + options.Count; ++number) {
        if (!DrawAndPrint(options, KindOf(options, number), number)) return false;
        watchdog.SceneDone();
    }
    return true;
}

bool DrawInThreads(const TOptions& options, CWatchdog& watchdog) {
    std::vector<std::vector<std::uint64_t>> hashes(static_cast<std::size_t>(options.Threads));
    std::vector<std::thread> threads;
    for (int thread = 0; thread < options.Threads; ++thread) {
        std::vector<std::uint64_t>& mine = hashes[static_cast<std::size_t>(thread)];
        mine.resize(static_cast<std::size_t>(options.Count));
        threads.emplace_back([&options, &watchdog, &mine, thread] {
            for (int i = 0; i < options.Count; ++i) {
                const int at = static_cast<int>((i + std::int64_t{thread} * options.Count / options.Threads) %
                                                options.Count);
                const int number = options.First + at;
                DrawScene(options, KindOf(options, number), number, mine[static_cast<std::size_t>(at)]);
                watchdog.SceneDone();
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    bool alike = true;
    for (int i = 0; i < options.Count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        const bool same = std::all_of(hashes.begin(), hashes.end(),
                                      [&](const auto& of) { return of[at] == hashes[0][at]; });
        const int number = options.First + i;
        std::printf("%d %s ", number, KindOf(options, number).Name);
        std::printf(same ? "%016llx\n" : "drawn differently\n",
                    static_cast<unsigned long long>(hashes[0][at]));
        alike = alike && same;
    }
    return alike;
}

}  // namespace

int main(int argc, char** argv) {
    TOptions options;
    if (!Read(options, argc, argv)) {
        std::fprintf(stderr,
                     "scenes --seed S (--count N [--kind K] [--first I] [--threads T] | --list FILE) [--dump "
                     "DIR]\nkinds:");
        for (const TKind& kind : kKinds)
            std::fprintf(stderr, " %s", kind.Name);
        std::fprintf(stderr, "\n");
        return 2;
    }
    static CWatchdog watchdog;
    const auto draw = !options.List.empty() ? DrawList : options.Threads > 0 ? DrawInThreads : DrawRange;
    return draw(options, watchdog) ? 0 : 1;
}
