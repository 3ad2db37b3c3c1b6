/// \file
/// `zulbench`: times the library beside its peers and prints a table.

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <regex>
#include <stdexcept>
#include <string>
#include <vector>

#include "bench/contest.h"
#include "bench/rings.h"
#include "bench/table.h"

namespace zulbench {
namespace {

constexpr char kUsage[] =
    "usage: zulbench [--filter REGEX] [--seconds N] [--json | --markdown]\n"
    "  --filter REGEX   only rows whose name has it\n"
    "  --seconds N      processor time for the rounds of a row that has a goal, 1 at first\n"
    "  --json           every time, in nanoseconds\n"
    "  --markdown       the table as it stands in docs/performance.md\n"
    "  --device-times FILE  also writes what the device's calls took\n"
    "  --gdi FILE       shows such times of another run as GDI's\n"
    "  --write-rings FILE  only writes the map's rings, for builds that cannot read maps\n";

struct Options {
    std::regex filter{""};
    double seconds = 1.0;
    TableForm form = TableForm::Text;
    std::string deviceTimesFile;
    std::string gdiFile;
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
        if (name == "--filter") {
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

int Main(const std::vector<std::string>& arguments) {
    const Options options = ReadOptions(arguments);
    if (options.help) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (!options.ringsFile.empty()) {
        WriteRings(options.ringsFile, WorldRings());
        return 0;
    }
    std::vector<Timing> timings;
    bool alike = true;
    for (const Group group : Groups()) {
        for (const Contest& contest : group()) {
            if (!std::regex_search(contest.name, options.filter)) continue;
            std::fprintf(stderr, "%s\n", contest.name.c_str());
            // A race between different results would mean nothing; the others go on, so that one run names
            // everything that is wrong.
            if (Agree(contest)) {
                // Rows that are not judged are there to be looked at: a third of the time will do.
                timings.push_back(Measure(contest, options.seconds / (contest.goal > 0.0 ? 1.0 : 3.0)));
            } else {
                alike = false;
            }
        }
    }
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
