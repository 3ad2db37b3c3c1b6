// The stored forms of everything that the canvas stores or refers to: one row a class.
#include <gtest/gtest.h>

#include <memory>

#include "tests/canvas/canvas_testing.h"
#include "zul/kernel/stream.h"

namespace {

using namespace zultest;

using Object = std::unique_ptr<zul::CAnyObject>;
using Bytes = std::vector<std::uint8_t>;

Object NewPen(bool changed) {
    auto pen = std::make_unique<zul::CPen>();
    if (changed) {
        pen->Create(zul::CPen::PenExtended, 2, 3, 4, 5, 6, 7);
        pen->SetScaled(true);
    }
    return pen;
}
Object NewBrush(bool changed) {
    auto brush = std::make_unique<zul::CBrush>();
    if (changed) brush->Create(zul::CBrush::BrushPattern, 0x010203, -1);
    return brush;
}
Object NewFont(bool changed) {
    auto font = std::make_unique<zul::CFont>();
    if (changed) {
        font->Create(u"Ab", 14, 15, 16);
        font->SetOreolColor(17);
        font->SetAlignment(18);
    }
    return font;
}
Object NewBackground(bool changed) {
    auto background = std::make_unique<zul::CBackground>();
    if (changed) {
        background->SetMode(1);
        background->SetColor(2);
        background->SetRop(1);
    }
    return background;
}
Object NewPalette(bool changed) {
    auto palette = std::make_unique<zul::CPalette>();
    if (changed) {
        palette->SetType(9);
        palette->Append(Red);
        palette->Append(Blue);
    }
    return palette;
}
Object NewGradient(bool changed) {
    auto gradient = std::make_unique<zul::CGradient>();
    if (changed) gradient->Append(1, -2, 0x123456);
    return gradient;
}
Object NewCanvas(bool changed) {
    auto canvas = std::make_unique<zul::CCanvas>();
    if (changed) {
        canvas->GetPen().SetColor(Red);
        canvas->GetBrush().SetColor(Green);
        canvas->GetFont().SetHeight(99);
        canvas->GetBackground().SetColor(Blue);
    }
    return canvas;
}
Object NewBitmap(bool) {
    return std::make_unique<zul::CBitmap>();
}

struct StoredRow {
    const char* name;
    Object (*make)(bool changed);
    std::size_t size;  ///< also what the object expects to take
    Bytes head;        ///< how the changed object's stored form begins
};

const StoredRow Rows[] = {
    {"Pen", NewPen, 29, {3, 0, 0, 0, 2, 0, 0, 0, 5, 0, 0, 0, 3, 0, 0,
                         0, 6, 0, 0, 0, 4, 0, 0, 0, 7, 0, 0, 0, 1}},
    {"Brush", NewBrush, 20, {3, 2, 1, 0, 255, 255, 255, 255, 3, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}},
    {"Font", NewFont, 32, {2, 0,  0, 0, 'A', 0,  'b', 0, 18, 0,  0, 0, 0, 2, 0,
                           0, 15, 0, 0, 0,   17, 0,   0, 0,  14, 0, 0, 0, 16}},
    {"Background", NewBackground, 12, {1, 0, 0, 0, 2, 0, 0, 0, 1, 0, 0, 0}},
    {"Palette", NewPalette, 16, {9, 0, 0, 0, 8, 0, 0, 0, 255, 0, 0, 0, 0, 0, 255, 0}},
    {"Gradient", NewGradient, 20, {16,  0,   0, 0,    1, 0,    0, 0,    254, 255,
                                   255, 255, 0, 0x56, 0, 0x34, 0, 0x12, 0,   0}},
    {"Bitmap", NewBitmap, 8, {0, 0, 0, 0, 0, 0, 0, 0}},
    // Pen, brush, font, background and two references; the estimate counts the region, which takes none.
    {"Canvas", NewCanvas, 29 + 20 + 28 + 12 + 16, {1, 0, 0, 0}},
};

class StoredForm : public testing::TestWithParam<StoredRow> {
protected:
    static Bytes Store(zul::CAnyObject& object) {
        zul::CMemoryStream stream;
        EXPECT_TRUE(object.ObjectToBuffer(&stream));
        return Bytes(stream.GetBuffer(), stream.GetBuffer() + stream.GetSize());
    }
};

TEST_P(StoredForm, HasTheStatedBytes) {
    const Object object = GetParam().make(true);
    Bytes stored = Store(*object);
    EXPECT_EQ(stored.size(), GetParam().size);
    EXPECT_EQ(object->GetPreferredSize(), GetParam().size);
    stored.resize(GetParam().head.size());
    EXPECT_EQ(stored, GetParam().head);
}

TEST_P(StoredForm, ComesBackTheSame) {
    const Bytes stored = Store(*GetParam().make(true));
    const Object copy = GetParam().make(false);
    zul::CMemoryStream stream(stored.data(), stored.size());
    EXPECT_TRUE(copy->ObjectFromBuffer(&stream));
    copy->ObjectFromBuffer(nullptr);
    copy->ObjectToBuffer(nullptr);
    EXPECT_EQ(Store(*copy), stored);
    EXPECT_EQ(stream.GetRemaining(), 0u);
}

TEST_P(StoredForm, CutShortItLeavesAUsableObject) {
    const Bytes stored = Store(*GetParam().make(true));
    for (std::size_t length = 0; length < stored.size(); ++length) {
        const Object object = GetParam().make(false);
        zul::CMemoryStream stream(stored.data(), length);
        object->ObjectFromBuffer(&stream);
        if (length == 0) {
            EXPECT_EQ(Store(*object), Store(*GetParam().make(false)));
        }
        zul::CMemoryStream whole(stored.data(), stored.size());
        object->ObjectFromBuffer(&whole);
        EXPECT_EQ(Store(*object), stored) << "after " << length << " bytes";
    }
}

INSTANTIATE_TEST_SUITE_P(, StoredForm, testing::ValuesIn(Rows),
                         [](const testing::TestParamInfo<StoredRow>& row) { return row.param.name; });

TEST(StoredBrush, ReferenceToAnotherClassIsNoPattern) {
    zul::CScaler notABitmap;
    zul::CAnyRef reference(&notABitmap);
    zul::CMemoryStream stream(Bytes(12).data(), 12);
    stream.SetPosition(12);
    reference.ObjectToBuffer(&stream);
    stream.SetPosition(0);
    zul::CBrush brush;
    brush.ObjectFromBuffer(&stream);
    EXPECT_EQ(brush.GetPattern(), nullptr);
}

TEST(StoredPalette, LengthBeyondTheStreamGivesAnEmptyPalette) {
    const Bytes bytes = {0, 0, 0, 0, 0xFC, 0xFF, 0xFF, 0xFF, 1, 2, 3, 4};
    zul::CMemoryStream stream(bytes.data(), bytes.size());
    zul::CPalette palette;
    palette.Append(Red);
    palette.ObjectFromBuffer(&stream);
    EXPECT_EQ(palette.GetCount(), 0);
}

}  // namespace
