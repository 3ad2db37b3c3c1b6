// The stored forms of everything that the canvas stores or refers to: one row a class.
#include <gtest/gtest.h>

#include <memory>

#include "tests/canvas/canvas_testing.h"
#include "zul/kernel/stream.h"

namespace {

using namespace zultest;

using Object = std::unique_ptr<zul::CAnyObject>;
using Bytes = std::vector<std::uint8_t>;

/// A new object of T, or one that \p Change went over.
template <class T, void (*Change)(T&)>
Object New(bool changed) {
    auto object = std::make_unique<T>();
    if (changed) Change(*object);
    return object;
}

void ChangePen(zul::CPen& pen) {
    pen.Create(zul::CPen::PenExtended, 2, 3, 4, 5, 6, 7);
    pen.SetScaled(true);
}
void ChangeBrush(zul::CBrush& brush) {
    brush.Create(zul::CBrush::BrushPattern, 0x010203, -1);
}
void ChangeFont(zul::CFont& font) {
    font.Create(u"Ab", 14, 15, 16);
    font.SetOreolColor(17);
    font.SetAlignment(18);
}
void ChangeBackground(zul::CBackground& background) {
    background.SetMode(1);
    background.SetColor(2);
    background.SetRop(1);
}
void ChangePalette(zul::CPalette& palette) {
    palette.SetType(9);
    palette.Append(Red);
    palette.Append(Blue);
}
void ChangeGradient(zul::CGradient& gradient) {
    gradient.Append(1, -2, 0x123456);
}
void ChangeCanvas(zul::CCanvas& canvas) {
    canvas.GetPen().SetColor(Red);
    canvas.GetBrush().SetColor(Green);
    canvas.GetFont().SetHeight(99);
    canvas.GetBackground().SetColor(Blue);
}
void ChangeBitmap(zul::CBitmap&) {}

struct StoredRow {
    const char* name;
    Object (*make)(bool changed);
    std::size_t size;  ///< also what the object expects to take
    Bytes head;        ///< how the changed object's stored form begins
};

const StoredRow Rows[] = {
    {"Pen", New<zul::CPen, ChangePen>, 29, {3, 0, 0, 0, 2, 0, 0, 0, 5, 0, 0, 0, 3, 0, 0,
                                            0, 6, 0, 0, 0, 4, 0, 0, 0, 7, 0, 0, 0, 1}},
    {"Brush", New<zul::CBrush, ChangeBrush>, 20, {3, 2, 1, 0, 255, 255, 255, 255, 3, 0,
                                                  0, 0, 0, 0, 0,   0,   0,   0,   0, 0}},
    {"Font", New<zul::CFont, ChangeFont>, 32, {2, 0,  0, 0, 'A', 0,  'b', 0, 18, 0,  0, 0, 0, 2, 0,
                                               0, 15, 0, 0, 0,   17, 0,   0, 0,  14, 0, 0, 0, 16}},
    {"Background", New<zul::CBackground, ChangeBackground>, 12, {1, 0, 0, 0, 2, 0, 0, 0, 1, 0, 0, 0}},
    {"Palette", New<zul::CPalette, ChangePalette>, 16, {9, 0, 0, 0, 8, 0, 0, 0, 255, 0, 0, 0, 0, 0, 255, 0}},
    {"Gradient", New<zul::CGradient, ChangeGradient>, 20, {16,  0,   0, 0,    1, 0,    0, 0,    254, 255,
                                                           255, 255, 0, 0x56, 0, 0x34, 0, 0x12, 0,   0}},
    {"Bitmap", New<zul::CBitmap, ChangeBitmap>, 8, {0, 0, 0, 0, 0, 0, 0, 0}},
    // Pen, brush, font, background and two references; the estimate counts the region, which takes none.
    {"Canvas", New<zul::CCanvas, ChangeCanvas>, 29 + 20 + 28 + 12 + 16, {1, 0, 0, 0}},
};

Bytes Store(zul::CAnyObject& object) {
    zul::CMemoryStream stream;
    EXPECT_TRUE(object.ObjectToBuffer(&stream));
    return Bytes(stream.GetBuffer(), stream.GetBuffer() + stream.GetSize());
}

TEST(StoredForm, HasTheStatedBytesAndComesBackAlsoAfterOneThatWasCutShort) {
    for (const StoredRow& row : Rows) {
        SCOPED_TRACE(row.name);
        const Object changed = row.make(true);
        const Bytes stored = Store(*changed);
        EXPECT_EQ(stored.size(), row.size);
        EXPECT_EQ(changed->GetPreferredSize(), row.size);
        EXPECT_EQ(Bytes(stored.data(), stored.data() + row.head.size()), row.head);
        for (std::size_t length = 0; length < stored.size(); ++length) {
            const Object object = row.make(false);
            zul::CMemoryStream stream(stored.data(), length);
            object->ObjectFromBuffer(&stream);
            if (length == 0) {
                EXPECT_EQ(Store(*object), Store(*row.make(false)));
            }
            zul::CMemoryStream whole(stored.data(), stored.size());
            EXPECT_TRUE(object->ObjectFromBuffer(&whole));
            EXPECT_EQ(whole.GetRemaining(), 0u);
            object->ObjectFromBuffer(nullptr);
            object->ObjectToBuffer(nullptr);
            EXPECT_EQ(Store(*object), stored) << "after " << length << " bytes";
        }
    }
}

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
