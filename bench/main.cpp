/// \file
/// `zulbench`: times the library beside its peers and prints a table.

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/contest.h"
#include "bench/growth.h"
#include "bench/rings.h"
#include "bench/table.h"

namespace zulbench {
namespace {

constexpr char kUsage[] =
    "usage: zulbench [OPTION]...\n"
    "  --only GROUP     only one group of rows; the groups are named below\n"
    "  --filter REGEX   only rows whose name has it\n"
    "  --ours           only our ways of doing a row, for profiles\n"
    "  --seconds N      processor time for the rounds of a row that has a goal, 1 at first\n"
    "  --json           every time, in nanoseconds\n"
    "  --markdown       the table as it stands in docs/performance.md\n"
    "  --device-times FILE  also writes what the device's calls took\n"
    "  --gdi FILE       shows such times of another run as GDI's\n"
    "  --growth FOLDER  only measures how time grows with the work, and writes plots of it\n"
    "  --write-rings FILE  only writes the map's rings, for builds that cannot read maps\n";

struct Options {
    std::string group;
    std::regex filter{""};
    bool oursOnly = false;
    double seconds = 1.0;
    TableForm form = TableForm::Text;
    std::string deviceTimesFile;
    std::string gdiFile;
    std::string growthFolder;
    std::string ringsFile;
    bool help = false;
};

/// \throws std::invalid_argument for what is no option
Options ReadOptions(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string& name = arguments[i];
        const auto value = [&]() -> const std::string& {
            if (i + 1 == arguments.size()) throw std::invalid_argument(name + " needs a value");
            return arguments[++i];
        };
        if (name == "--only") {
            options.group = value();
        } else if (name == "--ours") {
            options.oursOnly = true;
        } else if (name == "--filter") {
            options.filter = std::regex(value());
        } else if (name == "--seconds") {
            options.seconds = std::stod(value());
        } else if (name == "--json") {
            options.form = TableForm::Json;
        } else if (name == "--markdown") {
            options.form = TableForm::Markdown;
        } else if (name == "--device-times") {
            options.deviceTimesFile = value();
        } else if (name == "--gdi") {
            options.gdiFile = value();
        } else if (name == "--growth") {
            options.growthFolder = value();
        } else if (name == "--write-rings") {
            options.ringsFile = value();
        } else if (name == "--help") {
            options.help = true;
        } else {
            throw std::invalid_argument("unknown option " + name);
        }
    }
    return options;
}

/// Without peers and limits: what a profile is to see.
void KeepOurs(Contest& contest) {
    std::vector<Way>& ways = contest.ways;
    ways.erase(
        std::remove_if(ways.begin(), ways.end(),
                       [](const Way& way) { return way.side == Side::Peer || way.side == Side::Limit; }),
        ways.end());
}

/// \returns whether all ways of all rows did the same work. A race between different results would mean
/// nothing; the other rows go on, so that one run names everything that is wrong.
bool RunRows(const Options& options, std::vector<Timing>& timings) {
    bool alike = true;
    for (const Group& group : Groups()) {
        if (!options.group.empty() && options.group != group.name) continue;
        for (Contest& contest : group.make()) {
            if (!std::regex_search(contest.name, options.filter)) continue;
            std::fprintf(stderr, "%s\n", contest.name.c_str());
            if (options.oursOnly) KeepOurs(contest);
            if (Agree(contest)) {
                // Rows that are not judged are there to be looked at: a third of the time will do.
                timings.push_back(Measure(contest, options.seconds / (contest.goal > 0.0 ? 1.0 : 3.0)));
            } else {
                alike = false;
            }
        }
    }
    return alike;
}

bool IsGroup(const std::string& name) {
    const std::vector<Group> groups = Groups();
    return std::any_of(groups.begin(), groups.end(), [&](const Group& group) { return group.name == name; });
}

int Main(const std::vector<std::string>& arguments) {
    const Options options = ReadOptions(arguments);
    if (options.help) {
        std::fputs(kUsage, stdout);
        for (const Group& group : Groups())
            std::printf("    %s\n", group.name);
        return 0;
    }
    if (!options.ringsFile.empty()) {
        WriteRings(options.ringsFile, WorldRings());
        return 0;
    }
    if (!options.growthFolder.empty()) {
        MeasureGrowth(options.growthFolder);
        return 0;
    }
    if (!options.group.empty() && !IsGroup(options.group))
        throw std::invalid_argument("there is no group " + options.group);
    std::vector<Timing> timings;
    const bool alike = RunRows(options, timings);
    if (!options.deviceTimesFile.empty()) WriteDeviceTimes(options.deviceTimesFile, timings);
    if (!options.gdiFile.empty()) ReadDeviceTimes(options.gdiFile, timings);
    std::fputs(Format(timings, options.form).c_str(), stdout);
    return alike ? 0 : 1;
}

}  // namespace
}  // namespace zulbench

int main(int argc, char** argv) {
    try {
        return zulbench::Main({argv + 1, argv + argc});
    } catch (const std::exception& error) {
        std::cerr << "zulbench: " << error.what() << '\n';
        return 2;
    }
}
