#include "bench/table.h"

#include <algorithm>
#include <cstdio>

namespace zulbench {
namespace {

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
    const char* format = nanoseconds < 9.995 ? "%.2f" : nanoseconds < 99.95 ? "%.1f" : "%.0f";
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
    return {"work", "per", "classes", "device", "16 bits", "limit", "ratio", "goal", "met", "peers"};
}

Cells Row(const Timing& timing) {
    return {timing.name,
            timing.unit,
            TimeText(timing.TimeOf(Side::Classes)),
            TimeText(timing.TimeOf(Side::Device)),
            TimeText(timing.TimeOf(Side::Classes16)),
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
    return text +
           "ratio: our time over the best peer's, so below 1 is faster; limit: only the memory moved\n";
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

std::string Json(const std::vector<Timing>& timings) {
    std::string text = "[";
    for (const Timing& timing : timings) {
        text += text.size() > 1 ? ",\n {" : "\n {";
        text += "\"work\": " + Quoted(timing.name) + ", \"per\": " + Quoted(timing.unit) + ", \"ways\": [";
        for (std::size_t i = 0; i < timing.times.size(); ++i) {
            text += i > 0 ? ", " : "";
            text += "{\"side\": " + Quoted(SideName(timing.sides[i])) +
                    ", \"name\": " + Quoted(timing.names[i]) +
                    ", \"nanoseconds\": " + Number("%.6g", timing.times[i]) + "}";
        }
        text += "]";
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
    return form == TableForm::Markdown ? Markdown(rows) : Aligned(rows);
}

}  // namespace zulbench
