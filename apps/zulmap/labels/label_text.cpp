#include "apps/zulmap/labels/label_text.h"

#include <algorithm>
#include <limits>

namespace zulmap {
namespace {

/// A piece of a name that stays whole.
struct Word {
    std::uint32_t begin;
    std::uint32_t end;
};

std::vector<Word> WordsOf(const zul::CString& name) {
    const char16_t* text = name.GetBuffer();
    const std::uint32_t length = name.GetLength();
    std::vector<Word> words;
    std::uint32_t begin = 0;
    for (std::uint32_t i = 0; i <= length; ++i) {
        const bool isBlank = i < length && text[i] == u' ';
        const bool isBehindHyphen = i > begin && i < length && text[i - 1] == u'-';
        if (i < length && !isBlank && !isBehindHyphen) continue;
        if (i > begin) words.push_back({begin, i});
        begin = isBlank ? i + 1 : i;
    }
    return words;
}

}  // namespace

std::vector<zul::CString> BreakName(const zul::CString& name, std::size_t count, const MeasureText& measure) {
    if (count == 1) return {name};
    const std::vector<Word> words = WordsOf(name);
    if (words.size() < count) return {};
    std::vector<double> ends;  // of the words, as if all stood on one line
    std::vector<double> widths;
    for (const Word& word : words) {
        widths.push_back(measure(zul::CString(name.GetBuffer() + word.begin, word.end - word.begin)));
        ends.push_back(measure(zul::CString(name.GetBuffer(), word.end)));
    }
    const auto widthOf = [&](std::size_t first, std::size_t last) {
        return ends[last] - ends[first] + widths[first];
    };
    // Line by line: the best way to break the words up to each one.
    std::vector<double> longest(words.size());
    for (std::size_t last = 0; last < words.size(); ++last) {
        longest[last] = widthOf(0, last);
    }
    std::vector<std::vector<std::size_t>> starts;  // of the last line, by lines and last word
    for (std::size_t line = 1; line < count; ++line) {
        std::vector<double> next(words.size(), std::numeric_limits<double>::infinity());
        starts.emplace_back(words.size(), 0);
        for (std::size_t last = line; last < words.size(); ++last) {
            for (std::size_t start = line; start <= last; ++start) {
                const double width = std::max(longest[start - 1], widthOf(start, last));
                if (width >= next[last]) continue;
                next[last] = width;
                starts.back()[last] = start;
            }
        }
        longest = std::move(next);
    }
    std::vector<zul::CString> lines(count);
    std::size_t last = words.size() - 1;
    for (std::size_t line = count; line-- > 0;) {
        const std::size_t start = line > 0 ? starts[line - 1][last] : 0;
        lines[line] =
            zul::CString(name.GetBuffer() + words[start].begin, words[last].end - words[start].begin);
        last = start - 1;
    }
    return lines;
}

}  // namespace zulmap
