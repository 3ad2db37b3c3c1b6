/// \file
/// A window that shows a viewer.
#pragma once

#include <ostream>

#include "apps/zulmap/tool_report.h"
#include "apps/zulmap/view/view_script.h"
#include "apps/zulmap/view/viewer.h"
#include "zul/geometry/coordinates.h"

namespace zulmap {

/// Opens a window, whose surface is the viewer's screen, and lets its user or \p script (may be null) move
/// about until one of them quits or the script is at its end. \p errors hears of what the viewer draws.
/// Inputs are looked at between slices of the drawing; without either the program sleeps. \throws ToolError
/// when there is no display, or when the script cannot write a picture
void RunViewWindow(Viewer& viewer, const std::string& title, ViewScript* script,
                   const CountingErrorHandler& errors, std::ostream& report);

}  // namespace zulmap
