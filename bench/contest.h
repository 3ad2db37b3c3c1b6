/// \file
/// What the benchmarks consist of: our way of doing something beside a peer's.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zulbench {

/// One row of the table. Both ways can be run again and again, and each run does the whole work.
struct Contest {
    std::string name;
    std::function<void()> ours;
    std::function<void()> peer;
    /// The share of the two results that is not alike, after each way ran once.
    std::function<double()> difference;
    double allowedDifference;
    double pixels = 0;  ///< of the line that both ways follow; 0 where the work is no line
};

/// Map points to screen points; the peers are a plain loop and the machine's memory.
std::vector<Contest> MappingContests();
/// Lines and areas; the peer is Cairo without antialiasing.
std::vector<Contest> FigureContests();
/// A long line with extended pens; the peer is our plain solid pen of the same width.
std::vector<Contest> PenContests();
/// Areas through a clip of 10,000 rectangles; the peer is the same without a clip.
std::vector<Contest> ClipContests();
/// The areas of a map file, in view whole and magnified; the peer is Cairo without antialiasing.
/// \throws std::runtime_error when the file cannot be read
std::vector<Contest> MapContests(const std::string& path);
/// Fills and copies of whole surfaces; the peer is the machine's memory.
std::vector<Contest> BlockContests();
/// Copies between pictures of every pair of depths, stretching, copies that leave a colour out; the peers are
/// pixman and the machine's memory.
std::vector<Contest> CopyContests();

}  // namespace zulbench
