/// \file
/// Sheets of samples become picture files.
#pragma once

#include <ostream>
#include <string>

#include "apps/zulmap/memory_picture.h"
#include "apps/zulmap/picture_file.h"

namespace zulmap {

/// Draws what \p painter has (`GetSize`, `Paint`) and writes the picture. Says on \p report where it stands
/// and how large it is.
/// \throws ToolError when the picture cannot be made; then no file was made or changed
template <class TPainter>
void WriteSheet(const TPainter& painter, const std::string& output, std::ostream& report) {
    PictureFormatOf(output);
    const zul::TSize size = painter.GetSize();
    MemoryPicture picture(size.Width, size.Height);
    painter.Paint(picture.GetCanvas());
    WritePicture(output, picture.GetView());
    report << output << ' ' << size.Width << 'x' << size.Height << '\n';
}

}  // namespace zulmap
