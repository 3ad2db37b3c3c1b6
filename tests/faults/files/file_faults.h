/// \file
/// What is done with files while their calls fail, and what must hold then.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "zul/kernel/any_object.h"

namespace faults {

/// One path, set up in an empty working directory.
struct Run {
    /// Does it. \returns whether it says that all is well: by its result, a report, or what else its contract
    /// names.
    std::function<bool()> act;
    /// What the act brings about. After one that says that all is well it is what an undisturbed act brings
    /// about.
    std::function<std::string()> made;
    /// What an act that says it failed must leave as it was; \ref made unless given.
    std::function<std::string()> kept{};
    /// A file that a failure may leave behind, in a state that \ref kept looks at.
    std::string remains{};
    /// Closes what the set-up opened.
    std::function<void()> end{};
};

struct Path {
    std::string name;
    std::function<Run()> setUp;
};

// The tables of the rooms.
std::vector<Path> LibraryPaths();
std::vector<Path> StorePaths();
std::vector<Path> ProgramPaths();

/// Has the libraries open what they open once for all, in an empty working directory.
void WarmUp();

/// Reports to the library's error handler since the last call; a path that is judged by them asks before and
/// after.
std::size_t TakeReports();

// --- for the tables ---

std::string ReadWhole(const std::string& file);
void WriteWhole(const std::string& file, const std::string& bytes);
std::string FormOf(zul::CAnyObject& object);

/// Objects of a path, kept by its functions.
template <class T, class... Arguments>
std::shared_ptr<T> Held(Arguments&&... arguments) {
    return std::make_shared<T>(std::forward<Arguments>(arguments)...);
}

}  // namespace faults
