#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

#include "apps/zulmap/label_sheet/label_sheet_painter.h"
#include "apps/zulmap/memory_picture.h"

namespace zulmap {
namespace {

TEST(LabelSheet, SamplesOfARowLookDifferent) {
    const LabelSheetPainter painter;
    const zul::TSize size = painter.GetSize();
    MemoryPicture picture(size.Width, size.Height);
    painter.Paint(picture.GetCanvas());
    const PictureView view = picture.GetView();
    // On a turned map clipped text at the top and at the bottom is out of its rectangle altogether.
    for (std::size_t block = 0; block < LabelSheetPainter::TurnedMap; ++block) {
        for (std::size_t row = 0; row < painter.GetRows().size(); ++row) {
            std::map<std::vector<std::uint32_t>, std::string> looks;
            const auto& samples = painter.GetRows()[row].samples;
            for (std::size_t i = 0; i < samples.size(); ++i) {
                const zul::TLongRect cell = painter.GetCell(block, row, i);
                std::vector<std::uint32_t> look;
                for (std::int32_t y = cell.MinY; y < cell.MaxY; ++y) {
                    const auto* line = view.pixels + static_cast<std::ptrdiff_t>(y) * view.width;
                    look.insert(look.end(), line + cell.MinX, line + cell.MaxX);
                }
                const auto [twin, isNew] = looks.emplace(look, samples[i].caption);
                EXPECT_TRUE(isNew) << block << ": " << samples[i].caption << " like " << twin->second;
            }
        }
    }
}

}  // namespace
}  // namespace zulmap
