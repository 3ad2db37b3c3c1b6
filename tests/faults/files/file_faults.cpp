// Every path that reads or writes files, with each of its calls failing in turn: by itself, with all that
// follow, for want of room, and half done. What must hold after each: the path said that it failed and left
// the old state, or it is done and right; no file is left open or lying about; and done again without a fault
// it succeeds.
//
//     file_faults [WORD...]       the paths whose names contain one of the words, each with its figures
#include "tests/faults/files/file_faults.h"

#include <dirent.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <utility>

#include "tests/faults/files/failing_files.h"
#include "zul/kernel/client.h"
#include "zul/kernel/library.h"
#include "zul/kernel/stream.h"

namespace faults {
namespace {

namespace fs = std::filesystem;

constexpr unsigned kPatience = 60;        // seconds for an act
constexpr unsigned kMostViolations = 50;  // of a path; nobody reads more
constexpr unsigned kMostCalls = 20000;    // of one act

class Reports : public zul::CErrorHandler {
public:
    void OnError(const zul::TErrorReport&) override { ++count; }
    std::size_t count = 0;
};
Reports s_reports;

/// What lies in the folder, but for \p besides.
std::vector<std::string> FilesLying(const std::string& besides) {
    std::set<std::string> names;
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator("."))
        names.insert(entry.path());
    // What a store keeps beside its file belongs to it, and to no other.
    const auto belongs = [&names](const std::string& name) {
        const std::size_t dash = name.rfind('-');
        return dash != name.npos && names.count(name.substr(0, dash)) != 0;
    };
    std::vector<std::string> lying;
    for (const std::string& name : names) {
        if (!belongs(name) && name != besides) lying.push_back(name);
    }
    return lying;
}

std::size_t CountOpenFiles() {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator("/proc/self/fd"), {}));
}

/// A state as a fault may leave it.
struct State {
    std::string contents;
    std::vector<std::string> lying;
};

struct Attempt {
    Record record;
    State goal;
    std::string violation;
};

/// In a process of its own. \p goal is null for the undisturbed act.
Attempt Try(const Path& path, Kind kind, unsigned n, const State* goal) {
    Attempt attempt;
    const auto expect = [&attempt](bool holds, const char* otherwise) {
        if (!holds && attempt.violation.empty()) attempt.violation = otherwise;
    };
    const std::size_t open = CountOpenFiles();
    expect(WatchFiles(fs::current_path()), "the system traps no calls");
    const Run run = path.setUp();
    const auto& kept = run.kept ? run.kept : run.made;
    const std::string before = kept();
    const std::vector<std::string> lyingBefore = FilesLying(run.remains);
    TakeReports();
    Arm(kind, n);
    const bool isWell = run.act();
    attempt.record = Disarm();
    const std::vector<std::string> lying = FilesLying(run.remains);
    TakeReports();
    if (isWell) {
        attempt.goal = {run.made(), lying};
        expect(goal == nullptr || attempt.goal.contents == goal->contents,
               "it says that all is well, and it is not");
        expect(goal == nullptr || lying == goal->lying || attempt.record.kept,
               "files lie about after a success");
    } else {
        expect(attempt.record.failed > 0, "it fails by itself");
        // A device that is gone while a store commits may have the whole new state when it comes back.
        const bool isNew = kind == Kind::Ever && goal != nullptr && run.made() == goal->contents;
        expect(isNew || kept() == before, "the old state is gone");
        expect(lying == lyingBefore || attempt.record.kept, "files lie about");
        TakeReports();
        expect(run.act(), "it fails again without a fault");
        expect(goal == nullptr || run.made() == goal->contents, "done again it comes out otherwise");
    }
    if (run.end) run.end();
    expect(CountOpenFiles() == open, "a file stays open");
    return attempt;
}

void Put(std::FILE* out, const std::string& text) {
    const std::size_t size = text.size();
    std::fwrite(&size, sizeof size, 1, out);
    std::fwrite(text.data(), 1, size, out);
}

std::string Get(std::FILE* in) {
    std::size_t size = 0;
    if (std::fread(&size, sizeof size, 1, in) != 1) return {};
    std::string text(size, '\0');
    text.resize(std::fread(text.data(), 1, size, in));
    return text;
}

/// Tries in a child, which brings down only itself.
Attempt TryApart(const Path& path, Kind kind, unsigned n, const State* goal, const std::string& folder) {
    fs::remove_all(folder);
    fs::create_directories(folder);
    int ends[2];
    if (::pipe(ends) != 0) std::abort();
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        ::alarm(kPatience);
        fs::current_path(folder);
        std::FILE* const out = ::fdopen(ends[1], "wb");
        Attempt attempt;
        try {
            attempt = Try(path, kind, n, goal);
        } catch (const std::exception& error) {
            attempt.record = Disarm();
            attempt.violation = std::string("an exception comes through: ") + error.what();
        }
        std::fwrite(&attempt.record, 2 * sizeof(unsigned), 1, out);
        Put(out, attempt.record.first);
        Put(out, attempt.violation);
        Put(out, attempt.goal.contents);
        for (const std::string& name : attempt.goal.lying)
            Put(out, name);
        std::fclose(out);
        ::_exit(0);
    }
    ::close(ends[1]);
    std::FILE* const in = ::fdopen(ends[0], "rb");
    Attempt attempt;
    const bool came = std::fread(&attempt.record, 2 * sizeof(unsigned), 1, in) == 1;
    attempt.record.first = Get(in);
    attempt.violation = Get(in);
    attempt.goal.contents = Get(in);
    for (std::string name = Get(in); !name.empty(); name = Get(in))
        attempt.goal.lying.push_back(name);
    std::fclose(in);
    int status = 0;
    ::waitpid(child, &status, 0);
    if (!came)
        attempt.violation = WIFSIGNALED(status) ? std::string("it ends by ") + strsignal(WTERMSIG(status))
                                                : "it ends the process";
    return attempt;
}

struct Figures {
    unsigned attempts = 0, failed = 0, violations = 0;
};

void TryAll(const Path& path, const std::string& folder, Figures& figures) {
    const struct {
        Kind kind;
        const char* name;
    } kinds[] = {{Kind::Once, "one call"},
                 {Kind::Ever, "all from it on"},
                 {Kind::Full, "disk full"},
                 {Kind::Short, "half done"}};
    const auto complain = [&](const std::string& how, const Attempt& attempt) {
        std::printf("%s: %s: %s\n", path.name.c_str(), how.c_str(), attempt.violation.c_str());
        ++figures.violations;
    };
    const Attempt undisturbed = TryApart(path, Kind::None, 0, nullptr, folder);
    if (!undisturbed.violation.empty()) return complain("undisturbed", undisturbed);
    for (const auto& [kind, name] : kinds) {
        for (unsigned n = 1; n < kMostCalls && figures.violations < kMostViolations; ++n) {
            const Attempt attempt = TryApart(path, kind, n, &undisturbed.goal, folder);
            ++figures.attempts;
            figures.failed += attempt.record.failed;
            if (!attempt.violation.empty())
                complain(std::string(name) + " " + std::to_string(n) + " (" + attempt.record.first + ")",
                         attempt);
            if (attempt.record.failed == 0 && attempt.violation.empty()) break;
        }
    }
}

bool IsWanted(const std::string& name, int count, char** words) {
    return count == 0 || std::any_of(words, words + count,
                                     [&name](const char* word) { return name.find(word) != name.npos; });
}

}  // namespace

std::size_t TakeReports() {
    return std::exchange(s_reports.count, 0);
}

std::string ReadWhole(const std::string& file) {
    std::ifstream in(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

void WriteWhole(const std::string& file, const std::string& bytes) {
    std::ofstream(file, std::ios::binary) << bytes;
}

std::string FormOf(zul::CAnyObject& object) {
    zul::CMemoryStream stream;
    object.DoSerialize(&stream);
    return {reinterpret_cast<const char*>(stream.GetBuffer()), stream.GetSize()};
}

}  // namespace faults

int main(int argc, char** argv) {
    using namespace faults;
    AutoRegister();
    InitializeLibrary();
    const zul::CErrorHandlerScope scope(&s_reports);
    std::string folder = fs::temp_directory_path() / "zul-faults-XXXXXX";
    if (::mkdtemp(folder.data()) == nullptr) return 2;
    fs::current_path(folder);
    WarmUp();
    std::vector<Path> paths = LibraryPaths();
    for (const auto& more : {StorePaths(), ProgramPaths()})
        paths.insert(paths.end(), more.begin(), more.end());
    Figures all;
    std::size_t count = 0;
    for (const Path& path : paths) {
        if (!IsWanted(path.name, argc - 1, argv + 1)) continue;
        ++count;
        Figures figures;
        TryAll(path, folder + "/work", figures);
        std::printf("%-32s %5u faults, %6u failed calls, %u violations\n", path.name.c_str(),
                    figures.attempts, figures.failed, figures.violations);
        std::fflush(stdout);
        all = {all.attempts + figures.attempts, all.failed + figures.failed,
               all.violations + figures.violations};
    }
    fs::remove_all(folder);
    FinalizeLibrary();
    std::printf("%zu paths, %u faults, %u failed calls, %u violations\n", count, all.attempts, all.failed,
                all.violations);
    return all.violations == 0 && count != 0 ? 0 : 1;
}
