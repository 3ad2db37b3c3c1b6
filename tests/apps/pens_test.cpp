#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "apps/zulmap/memory_picture.h"
#include "apps/zulmap/pens/pen_sheet.h"
#include "apps/zulmap/pens/sheet_painter.h"

namespace zulmap {
namespace {

/// A painted sheet.
struct Painted {
    explicit Painted(const char* name)
        : sheet(MakePenSheet(name)),
          painter(sheet),
          picture(painter.GetSize().Width, painter.GetSize().Height) {
        painter.Paint(picture.GetCanvas());
    }

    /// What a cell shows, row by row; 0 is what its corner shows, so that the colour of the paper does not
    /// count.
    std::vector<std::uint32_t> Look(std::size_t row, std::size_t block, std::size_t sample) const {
        const zul::TLongRect cell = painter.GetCell(row, block, sample);
        const PictureView view = picture.GetView();
        const auto at = [&view](std::int32_t x, std::int32_t y) { return view.pixels[y * view.width + x]; };
        const std::uint32_t paper = at(cell.MinX, cell.MinY);
        std::vector<std::uint32_t> look;
        int onRim = 0;
        for (std::int32_t y = cell.MinY; y < cell.MaxY; ++y) {
            for (std::int32_t x = cell.MinX; x < cell.MaxX; ++x) {
                look.push_back(at(x, y) == paper ? 0 : at(x, y));
                const bool isRim =
                    x == cell.MinX || y == cell.MinY || x == cell.MaxX - 1 || y == cell.MaxY - 1;
                onRim += isRim && look.back() != 0;
            }
        }
        EXPECT_EQ(onRim, 0) << sheet.rows[row].caption << " sticks out, block " << block << ", sample "
                            << sample;
        return look;
    }

    PenSheet sheet;
    SheetPainter painter;
    MemoryPicture picture;
};

/// Rows that look like one above them: styles without pens of their own are drawn solid, the narrowest casing
/// has one thickness only, and an arrow takes the place of a dot.
bool IsRepeated(const std::string& sheet, const std::string& label, std::size_t block) {
    const std::set<std::string> solid = {"2", "3", "4", "5", "6", "15", "16", "17", "18", "22"};
    return (sheet == "styles" && (solid.count(label) != 0 || (label == "42" && block == 0))) ||
           (sheet == "endings" && label == "0xF");
}

TEST(PenSheets, RowsLookDifferentUnlessTheirLinesAreTheSame) {
    for (const char* name : {"styles", "endings", "metres"}) {
        const Painted painted(name);
        for (std::size_t block = 0; block < painted.sheet.blocks.size(); ++block) {
            std::map<std::vector<std::uint32_t>, std::string> rows;
            for (std::size_t row = 0; row < painted.sheet.rows.size(); ++row) {
                std::vector<std::uint32_t> looks;
                for (std::size_t sample = 0; sample < painted.sheet.samples.size(); ++sample) {
                    const std::vector<std::uint32_t> look = painted.Look(row, block, sample);
                    looks.insert(looks.end(), look.begin(), look.end());
                }
                const std::string& label = painted.sheet.rows[row].label;
                const auto [twin, isNew] = rows.emplace(looks, label);
                EXPECT_EQ(isNew, !IsRepeated(name, label, block))
                    << name << ' ' << label << " like " << twin->second << " in block " << block;
            }
        }
    }
}

}  // namespace
}  // namespace zulmap
