/// \file
/// What the table of speed consists of: rows of the same work, done in several ways.
///
/// To add rows, write a function that returns them, put it on the list of `Groups()` (groups.cpp; what needs
/// a library that Windows builds lack goes to host_groups.cpp), and give each row
///  - a first way, which the others are held against: the library's classes;
///  - the same through the device's calls, where the device does it; what stands between is the library's
///  own;
///  - peers, and a limit where one can be written down;
///  - in `difference`, what makes sure that a way did the same work as the first.
/// Everything that a row needs is owned by its functions, so that it goes with the row.
#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zulbench {

/// Who does the work.
enum class Side {
    Classes,    ///< the library's public classes
    Device,     ///< the device's calls alone
    Classes16,  ///< the classes, on a surface of 16 bits a pixel
    Peer,       ///< somebody else's library, or a plain loop
    Limit,      ///< no more than moving the memory that the result takes
};

/// One way of doing a row's work. It can be run again and again, and each run does the whole work.
struct Way {
    Side side;
    std::string name;  ///< of a peer
    std::function<void()> run;
    /// The share of the result that is not like the first way's, asked for when every way has run once, and
    /// free to run anything again. None: there is no result to look at.
    std::function<double()> difference = nullptr;
    double allowed = 0.0;  ///< of the difference
};

/// One row of the table.
struct Contest {
    std::string name;
    std::string unit;   ///< what times are given for: "point", "frame"
    double units = 1;   ///< in one run
    double goal = 0.0;  ///< our time over the best peer's that is wanted at most; 0: the row is not judged
    std::vector<Way> ways;
};

/// A subject's rows. Groups are made, run and dropped one after another.
struct Group {
    const char* name;
    std::vector<Contest> (*make)();
};
/// All of them, in the order of the table.
std::vector<Group> Groups();
/// Those of them that Windows builds leave out, since they need other libraries or are about our device.
std::vector<Group> HostGroups();

/// Map points to screen points.
std::vector<Contest> MappingContests();
/// Lines and areas.
std::vector<Contest> FigureContests();
/// A map's areas from map units to pixels: whole, magnified, scrolled.
std::vector<Contest> FrameContests();
/// Whole frames from several threads; the peer is one thread that draws them all.
std::vector<Contest> ThreadContests();
/// Fills, copies, stretching, copies that leave a colour out.
std::vector<Contest> BlockContests();
/// Short labels, drawn and measured.
std::vector<Contest> TextContests();
/// A long line with extended pens; the peer is our plain solid pen of the same width.
std::vector<Contest> PenContests();
/// Areas through a clip of 10,000 rectangles; the peer is the same without a clip.
std::vector<Contest> ClipContests();
/// Copies between pictures of every pair of depths.
std::vector<Contest> DepthContests();
/// Objects into a store's file and out of it.
std::vector<Contest> StoreContests();

}  // namespace zulbench
