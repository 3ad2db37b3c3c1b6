/// \file
/// `zulmap pens`: pictures of what the library's pens look like.
#pragma once

#include <iosfwd>
#include <string>

namespace zulmap {

/// The request as it was typed.
struct PensRequest {
    std::string output = "pens.png";
    std::string sheet = "styles";
};

/// Draws a sheet and writes the picture. Says on \p report where it stands and how large it is.
/// \throws ToolError when the picture cannot be made; then no file was made or changed
void DrawPens(const PensRequest& request, std::ostream& report);

}  // namespace zulmap
