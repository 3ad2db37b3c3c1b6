#include "apps/zulmap/view/view_script.h"

#include <algorithm>
#include <iterator>
#include <sstream>

#include "apps/zulmap/picture_file.h"
#include "apps/zulmap/tool_error.h"

namespace zulmap {
namespace {

/// Moves that a drag consists of.
constexpr int kDragMoves = 8;

constexpr int kFarthest = 100'000;

enum class Word { Press, Release, Move, Drag, Band, Wheel, Key, Resize, Idle, Await, Save, Print, Quit };

struct WordRow {
    const char* name;
    Word word;
    std::size_t numbers;
    bool hasText;
    const char* help;
};

constexpr WordRow kWords[] = {
    {"press", Word::Press, 2, false, "press X Y          the left button goes down at a pixel"},
    {"move", Word::Move, 2, false, "move X Y           the pointer goes to a pixel"},
    {"release", Word::Release, 2, false, "release X Y        the button goes up"},
    {"drag", Word::Drag, 4, false, "drag X Y X2 Y2     all of that in one"},
    {"band", Word::Band, 4, false, "band X Y X2 Y2     zoom to what lies between two pixels"},
    {"wheel", Word::Wheel, 3, false, "wheel X Y STEPS    above 0 for more detail"},
    {"key", Word::Key, 0, true, "key NAME           as in the list of keys"},
    {"resize", Word::Resize, 2, false, "resize W H         another size of the window"},
    {"idle", Word::Idle, 0, false, "idle               wait until the map is drawn"},
    {"await", Word::Await, 0, true, "await NAME         wait until the user presses that key"},
    {"save", Word::Save, 0, true,
     "save FILE [screen]  write the map, or all of the screen, when it is drawn"},
    {"print", Word::Print, 0, false, "print              say on standard output what the view shows"},
    {"quit", Word::Quit, 0, false, "quit"},
};

}  // namespace

std::vector<std::string> ViewScript::DescribeLines() {
    std::vector<std::string> lines;
    std::transform(std::begin(kWords), std::end(kWords), std::back_inserter(lines),
                   [](const WordRow& row) { return std::string(row.help); });
    lines.emplace_back("# ...              a remark");
    return lines;
}

ViewScript::ViewScript(std::istream& file, const std::string& name) {
    file.exceptions(std::ios::badbit);  // a line that cannot be kept is not the end of the file
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        const std::string place = name + ", line " + std::to_string(number) + ": ";
        try {
            if (!ParseLine(line)) throw ToolError("'" + line + "' is not understood");
        } catch (const ToolError& error) {
            throw ToolError(place + error.what());
        }
    }
}

bool ViewScript::ParseLine(const std::string& line) {
    std::istringstream words(line);
    words.exceptions(std::ios::badbit);
    std::string name;
    if (!(words >> name) || name.front() == '#') return true;
    const auto* row = std::find_if(std::begin(kWords), std::end(kWords),
                                   [&name](const WordRow& r) { return name == r.name; });
    if (row == std::end(kWords)) return false;
    std::vector<int> numbers(row->numbers);
    for (int& number : numbers) {
        if (!(words >> number) || number < -kFarthest || number > kFarthest) return false;
    }
    Step step;
    if (row->hasText && !(words >> step.text)) return false;
    std::string rest;
    if (words >> rest) {
        if (row->word != Word::Save || rest != "screen" || words >> rest) return false;
        step.hasOverlays = true;
    }

    const auto at = [&numbers] { return zul::TLongPoint{numbers[0], numbers[1]}; };
    switch (row->word) {
        case Word::Press:
            Give(ViewInput::Kind::Press, at());
            return true;
        case Word::Release:
            Give(ViewInput::Kind::Release, at());
            return true;
        case Word::Move:
            Give(ViewInput::Kind::Move, at());
            return true;
        case Word::Drag:
            GiveDrag(numbers, ViewInput::Button::Left);
            return true;
        case Word::Band:
            GiveDrag(numbers, ViewInput::Button::Right);
            return true;
        case Word::Wheel:
            Give(ViewInput::Kind::Wheel, at());
            m_Steps.back().input.steps = numbers[2];
            return true;
        case Word::Key:
            Give(ViewInput::Kind::Key, {});
            m_Steps.back().input.key = step.text;
            return true;
        case Word::Resize:
            if (numbers[0] < 1 || numbers[1] < 1) return false;
            Give(ViewInput::Kind::Resize, {});
            m_Steps.back().input.size = {numbers[0], numbers[1]};
            return true;
        case Word::Quit:
            Give(ViewInput::Kind::Quit, {});
            return true;
        case Word::Idle:
            step.act = Act::Idle;
            break;
        case Word::Await:
            step.act = Act::Await;
            break;
        case Word::Save:
            PictureFormatOf(step.text);
            step.act = Act::Save;
            break;
        case Word::Print:
            step.act = Act::Print;
            break;
    }
    m_Steps.push_back(step);
    return true;
}

void ViewScript::Give(ViewInput::Kind kind, zul::TLongPoint at, ViewInput::Button button) {
    Step step;
    step.act = Act::Give;
    step.input.kind = kind;
    step.input.at = at;
    step.input.button = button;
    m_Steps.push_back(step);
}

void ViewScript::GiveDrag(const std::vector<int>& numbers, ViewInput::Button button) {
    const auto between = [&numbers](int move) {
        return zul::TLongPoint{numbers[0] + (numbers[2] - numbers[0]) * move / kDragMoves,
                               numbers[1] + (numbers[3] - numbers[1]) * move / kDragMoves};
    };
    Give(ViewInput::Kind::Press, between(0), button);
    for (int move = 1; move < kDragMoves; ++move) {
        Give(ViewInput::Kind::Move, between(move), button);
    }
    Give(ViewInput::Kind::Release, between(kDragMoves), button);
}

void ViewScript::Notice(const std::string& key) {
    if (key == m_AwaitedKey) m_AwaitedKey.clear();
}

std::optional<ViewInput> ViewScript::Next(Viewer& viewer, const CountingErrorHandler& errors,
                                          std::ostream& report) {
    if (IsDone() || IsAwaitingKey()) return {};
    const Step& step = m_Steps[m_Next];
    const bool waits = step.act == Act::Idle || step.act == Act::Save;
    if (waits && !viewer.IsComplete()) return {};
    ++m_Next;
    switch (step.act) {
        case Act::Give:
            return step.input;
        case Act::Idle:
            break;
        case Act::Await:
            m_AwaitedKey = step.text;
            break;
        case Act::Save:
            errors.NeedMemory();
            WritePicture(step.text, step.hasOverlays ? viewer.GetScreen() : viewer.GetMapPicture());
            break;
        case Act::Print:
            report << viewer.GetView().Describe() << '\n' << std::flush;
            break;
    }
    return {};
}

}  // namespace zulmap
