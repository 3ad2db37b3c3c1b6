#include "bench/table.h"

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace zulbench {
namespace {

constexpr char kLegend[] =
    "ratio: our time over the best peer's, so below 1 is faster; limit: only the memory moved\n";
constexpr char kMemoryLegend[] =
    "allocations, peak: what one frame takes from the heap when others were drawn before\n";

using Cells = std::vector<std::string>;

std::string Number(const char* format, double value) {
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

/// Three figures and the unit that suits: "1.80 ns", "39.1 us", "7.40 ms".
std::string TimeText(double nanoseconds) {
    if (nanoseconds < 0.0) return "";
    static constexpr const char* kUnits[] = {" ns", " us", " ms", " s"};
    std::size_t unit = 0;
    for (; nanoseconds >= 999.5 && unit + 1 < std::size(kUnits); ++unit)
        nanoseconds /= 1000.0;
    const char* format = nanoseconds < 0.9995  ? "%.3g"
                         : nanoseconds < 9.995 ? "%.2f"
                         : nanoseconds < 99.95 ? "%.1f"
                                               : "%.0f";
    return Number(format, nanoseconds) + kUnits[unit];
}

/// The peers with their times, the best first.
std::string PeersText(const Timing& timing) {
    std::vector<std::size_t> peers;
    for (std::size_t i = 0; i < timing.times.size(); ++i)
        if (timing.sides[i] == Side::Peer) peers.push_back(i);
    std::sort(peers.begin(), peers.end(),
              [&timing](std::size_t a, std::size_t b) { return timing.times[a] < timing.times[b]; });
    std::string text;
    for (const std::size_t i : peers)
        text += (text.empty() ? "" : ", ") + timing.names[i] + " " + TimeText(timing.times[i]);
    return text;
}

Cells Header() {
    return {"work", "per", "classes", "device", "16 bits", "GDI", "limit", "ratio", "goal", "met", "peers"};
}

Cells Row(const Timing& timing) {
    return {timing.name,
            timing.unit,
            TimeText(timing.TimeOf(Side::Classes)),
            TimeText(timing.TimeOf(Side::Device)),
            TimeText(timing.TimeOf(Side::Classes16)),
            TimeText(timing.elsewhere),
            TimeText(timing.TimeOf(Side::Limit)),
            timing.Ratio() > 0.0 ? Number("%.2f", timing.Ratio()) : "",
            timing.IsJudged() ? Number("%.2f", timing.goal) : "",
            !timing.IsJudged() ? ""
            : timing.IsMet()   ? "yes"
                               : "NO",
            PeersText(timing)};
}

std::string Aligned(const std::vector<Cells>& rows) {
    std::vector<std::size_t> widths(rows[0].size());
    for (const Cells& row : rows)
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    std::string text;
    for (const Cells& row : rows) {
        std::string line;
        for (std::size_t i = 0; i < row.size(); ++i) {
            const std::string gap(widths[i] - row[i].size(), ' ');
            const bool isText = i < 2 || i + 1 == row.size();
            line += (isText ? row[i] + gap : gap + row[i]) + "  ";
        }
        text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    }
    return text;
}

std::string Markdown(const std::vector<Cells>& rows) {
    std::string text;
    for (std::size_t r = 0; r < rows.size(); ++r) {
        text += "|";
        for (const std::string& cell : rows[r])
            text += " " + cell + " |";
        text += "\n";
        if (r > 0) continue;
        for (std::size_t i = 0; i < rows[r].size(); ++i)
            text += "|---";
        text += "|\n";
    }
    return text;
}

std::string Quoted(const std::string& text) {
    std::string quoted = "\"";
    for (const char c : text) {
        if (c == '"' || c == '\\') quoted += '\\';
        quoted += c;
    }
    return quoted + "\"";
}

/// What frames take from the heap, a row for each way.
std::vector<Cells> MemoryRows(const std::vector<Timing>& timings) {
    std::vector<Cells> rows{{"work", "way", "allocations", "peak, bytes"}};
    for (const Timing& timing : timings) {
        if (timing.unit != "frame") continue;
        for (std::size_t i = 0; i < timing.memory.size(); ++i) {
            if (timing.sides[i] == Side::Limit || timing.memory[i].count < 0) continue;
            rows.push_back({timing.name,
                            timing.names[i].empty() ? SideName(timing.sides[i]) : timing.names[i],
                            std::to_string(timing.memory[i].count), std::to_string(timing.memory[i].peak)});
        }
    }
    return rows;
}

std::string Json(const std::vector<Timing>& timings) {
    std::string text = "[";
    for (const Timing& timing : timings) {
        text += text.size() > 1 ? ",\n {" : "\n {";
        text += "\"work\": " + Quoted(timing.name) + ", \"per\": " + Quoted(timing.unit) + ", \"ways\": [";
        for (std::size_t i = 0; i < timing.times.size(); ++i) {
            text += i > 0 ? ", " : "";
            text += "{\"side\": " + Quoted(SideName(timing.sides[i])) +
                    ", \"name\": " + Quoted(timing.names[i]) +
                    ", \"nanoseconds\": " + Number("%.6g", timing.times[i]) +
                    ", \"allocations\": " + std::to_string(timing.memory[i].count) +
                    ", \"peak\": " + std::to_string(timing.memory[i].peak) + "}";
        }
        text += "]";
        if (timing.elsewhere >= 0.0) text += ", \"gdi\": " + Number("%.6g", timing.elsewhere);
        if (timing.Ratio() > 0.0) text += ", \"ratio\": " + Number("%.4g", timing.Ratio());
        if (timing.IsJudged())
            text += ", \"goal\": " + Number("%.4g", timing.goal) +
                    ", \"met\": " + (timing.IsMet() ? "true" : "false");
        text += "}";
    }
    return text + "\n]\n";
}

}  // namespace

std::string Format(const std::vector<Timing>& timings, TableForm form) {
    if (form == TableForm::Json) return Json(timings);
    std::vector<Cells> rows{Header()};
    for (const Timing& timing : timings)
        rows.push_back(Row(timing));
    const auto put = form == TableForm::Markdown ? Markdown : Aligned;
    std::string text = put(rows) + "\n" + kLegend;
    const std::vector<Cells> memory = MemoryRows(timings);
    if (memory.size() > 1) text += "\n" + put(memory) + "\n" + kMemoryLegend;
    return text;
}

void WriteDeviceTimes(const std::string& path, const std::vector<Timing>& timings) {
    std::ofstream file(path, std::ios::binary);  // the same line ends on every host
    for (const Timing& timing : timings) {
        if (timing.TimeOf(Side::Device) >= 0.0)
            file << timing.TimeOf(Side::Device) << ' ' << timing.name << '\n';
    }
    file.close();
    if (!file) throw std::runtime_error("cannot write " + path);
}

void ReadDeviceTimes(const std::string& path, std::vector<Timing>& timings) {
    std::ifstream file(path);
    if (!file) throw std::runtime_error("cannot read " + path);
    double time = 0.0;
    std::string name;
    while (file >> time >> std::ws && std::getline(file, name)) {
        for (Timing& timing : timings)
            if (timing.name == name) timing.elsewhere = time;
    }
}

}  // namespace zulbench
