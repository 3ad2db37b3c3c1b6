#include "apps/zulmap/pens/pens_command.h"

#include <ostream>

#include "apps/zulmap/memory_picture.h"
#include "apps/zulmap/pens/pen_sheet.h"
#include "apps/zulmap/pens/sheet_painter.h"
#include "apps/zulmap/picture_file.h"

namespace zulmap {

void DrawPens(const PensRequest& request, std::ostream& report) {
    PictureFormatOf(request.output);
    const PenSheet sheet = MakePenSheet(request.sheet);
    const SheetPainter painter(sheet);
    const zul::TSize size = painter.GetSize();
    MemoryPicture picture(size.Width, size.Height);
    painter.Paint(picture.GetCanvas());
    WritePicture(request.output, picture.GetView());
    report << request.output << ' ' << size.Width << 'x' << size.Height << '\n';
}

}  // namespace zulmap
