/// \file
/// Sheets of samples become picture files.
#pragma once

#include <ostream>
#include <string>

#include "apps/zulmap/memory_picture.h"
#include "apps/zulmap/picture_file.h"
#include "apps/zulmap/tool_report.h"

namespace zulmap {

/// Draws what a painter of \p samples has (`GetSize`, `Paint`) and writes the picture. Says on \p report
/// where it stands and how large it is. \throws ToolError when the picture cannot be made; then no file was
/// made or changed
template <class TPainter, class... TSamples>
void WriteSheet(const std::string& output, std::ostream& report, const TSamples&... samples) {
    PictureFormatOf(output);
    CountingErrorHandler errors;
    const zul::CErrorHandlerScope errorScope(&errors);
    const TPainter painter(samples...);
    const zul::TSize size = painter.GetSize();
    MemoryPicture picture(size.Width, size.Height);
    painter.Paint(picture.GetCanvas());
    errors.NeedMemory();
    WritePicture(output, picture.GetView());
    report << output << ' ' << size.Width << 'x' << size.Height << '\n';
    errors.Tell();
}

}  // namespace zulmap
