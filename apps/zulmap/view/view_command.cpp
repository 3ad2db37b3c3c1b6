#include "apps/zulmap/view/view_command.h"

#include <sstream>

#include "apps/zulmap/tool_report.h"
#include "apps/zulmap/view/view_script.h"
#include "apps/zulmap/view/view_window.h"
#include "apps/zulmap/view/viewer.h"
#include "apps/zulmap/whole_file.h"

namespace zulmap {
namespace {

constexpr zul::TSize kDefaultSize{1280, 800};

std::optional<ViewScript> ReadScript(const ViewRequest& request) {
    if (!request.script) return {};
    std::istringstream file(ReadFile(*request.script));
    return ViewScript(file, *request.script);
}

std::unique_ptr<MapSource> OpenMapsAloud(const MapRequest& request) {
    const ProgressLine progress;
    return OpenMaps(request, [&progress](const std::string& path, std::size_t count) {
        progress.ShowReading(path, count);
    });
}

}  // namespace

std::string GetViewHelp() {
    std::string help = "Keys and pointer:\n";
    for (const std::string& line : Viewer::DescribeKeys()) {
        help += "  " + line + '\n';
    }
    help += "\nLines of a script, each played when the one before is through:\n";
    for (const std::string& line : ViewScript::DescribeLines()) {
        help += "  " + line + '\n';
    }
    return help;
}

void View(const ViewRequest& request, std::ostream& report) {
    const zul::TSize size = request.size ? ParseSize(*request.size) : kDefaultSize;
    const MapStyle style = ParseStyle(request);
    std::optional<ViewScript> script = ReadScript(request);

    CountingErrorHandler errors;
    const zul::CErrorHandlerScope errorScope(&errors);
    const std::unique_ptr<MapSource> source = OpenMapsAloud(request);
    Viewer viewer(*source, style, size);
    const std::string name = request.maps.empty() ? request.rasters.front() : request.maps.front();
    RunViewWindow(viewer, "zulmap " + name, script ? &*script : nullptr, errors, report);
    errors.Tell();
}

}  // namespace zulmap
