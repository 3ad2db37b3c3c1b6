/// \file
/// Plots of times, drawn with the library itself.
#pragma once

#include <string>
#include <vector>

namespace zulbench {

struct Sample {
    double amount;
    double seconds;
};

struct Series {
    std::string name;
    std::vector<Sample> samples;  ///< by rising amount, all values positive

    /// The most by which time grew faster than the amount from one sample to the next; 1 is linear.
    double Steepest() const;
};

struct Plot {
    std::string title;
    std::string amount;  ///< what is counted along the x axis
    std::vector<Series> series;
};

/// Both axes logarithmic, with a grey line where time grows as the amount does. Writes a PNG file.
/// \throws std::runtime_error when that fails
void WritePlot(const std::string& path, const Plot& plot);

}  // namespace zulbench
