/// \file
/// Inputs from a file.
#pragma once

#include <cstddef>
#include <istream>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "apps/zulmap/tool_report.h"
#include "apps/zulmap/view/view_input.h"
#include "apps/zulmap/view/viewer.h"

namespace zulmap {

/// Plays what a file says, a line after the other, and does so again and again alike: it waits for drawings
/// to be complete and for keys, never for time.
class ViewScript {
public:
    /// \param name  how errors call the file. \throws ToolError for a line that is not understood
    ViewScript(std::istream& file, const std::string& name);

    /// The lines that a file may have, for the help text.
    static std::vector<std::string> DescribeLines();

    bool IsDone() const { return m_Next == m_Steps.size() && !IsAwaitingKey(); }
    /// Whether nothing more is to come before a key is pressed.
    bool IsAwaitingKey() const { return !m_AwaitedKey.empty(); }
    /// Takes the next step if its time has come: saves and prints by itself, \returns an input to be given to
    /// the viewer. \throws ToolError when a picture cannot be written, and when \p errors know of something
    /// that it lacks
    std::optional<ViewInput> Next(Viewer& viewer, const CountingErrorHandler& errors, std::ostream& report);
    /// To be told of the keys that the user presses.
    void Notice(const std::string& key);

private:
    enum class Act { Give, Idle, Await, Save, Print };
    struct Step {
        Act act = Act::Idle;
        ViewInput input;
        std::string text;  ///< file or key
        bool hasOverlays = false;
    };

    bool ParseLine(const std::string& line);
    void GiveDrag(const std::vector<int>& numbers, ViewInput::Button button);
    void Give(ViewInput::Kind kind, zul::TLongPoint at, ViewInput::Button button = ViewInput::Button::Left);

    std::vector<Step> m_Steps;
    std::size_t m_Next = 0;
    std::string m_AwaitedKey;
};

}  // namespace zulmap
