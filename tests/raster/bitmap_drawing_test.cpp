#include <gtest/gtest.h>

#include <memory>

#include "tests/canvas/canvas_testing.h"
#include "zul/kernel/message.h"

namespace {

using namespace zultest;
using zul::CBitmap;

/// The picture of a bitmap that no canvas holds.
Picture Look(CBitmap& bitmap) {
    std::int32_t width, height;
    bitmap.GetSize(width, height);
    zul::CCanvas canvas;
    canvas.CreateMemoryCanvas();
    canvas.AssignBitmap(&bitmap);
    const Picture picture = PictureOf(canvas, width, height);
    canvas.AssignBitmap(nullptr);
    return picture;
}

/// 4 x 2: a red, a green, a blue and a white column.
class BitmapDrawing : public testing::Test {
protected:
    BitmapDrawing() {
        // Blue lies in the lowest byte.
        const std::uint32_t bits[] = {0xFF0000, 0x00FF00, 0x0000FF, 0xFFFFFF,
                                      0xFF0000, 0x00FF00, 0x0000FF, 0xFFFFFF};
        EXPECT_TRUE(m_Bitmap.Create(4, 2, 32, bits));
    }

    CBitmap m_Bitmap;
};

TEST_F(BitmapDrawing, BlitsItsPartOntoCanvasesAndBitmaps) {
    Surface target(6, 3);
    m_Bitmap.BitBlt(&target.Canvas, 1, 1, 2, 2, 1, 0, CBitmap::RopSourceCopy);
    EXPECT_EQ(target.Look(), (Picture{"......", ".gb...", ".gb..."}));
    m_Bitmap.BitBlt(&target.Canvas, 0, 0, 4, 1, 0, 0, CBitmap::RopSourceInvert);
    EXPECT_EQ(target.Canvas.GetPixel(0, 0), White ^ Red);
    CBitmap other;
    ASSERT_TRUE(other.Create(3, 2, 32, nullptr));
    other.Fill(White);
    m_Bitmap.BitBlt(&other, 1, 1, 2, 1, 0, 0, CBitmap::RopSourceCopy);
    EXPECT_EQ(Look(other), (Picture{"...", ".rg"}));
}

TEST_F(BitmapDrawing, StretchesByDroppingPixels) {
    Surface target(8, 2);
    m_Bitmap.StretchBlt(&target.Canvas, 0, 0, 8, 2, 0, 0, 4, 2, CBitmap::RopSourceCopy);
    EXPECT_EQ(target.Look(), (Picture{"rrggbb..", "rrggbb.."}));
    m_Bitmap.StretchBlt(&target.Canvas, 0, 0, 2, 1, 0, 0, 4, 2, CBitmap::RopSourceCopy);
    const std::string shrunk = target.Look()[0].substr(0, 2);
    EXPECT_EQ(shrunk.find_first_of("#?"), std::string::npos) << "colours are mixed: " << shrunk;
    EXPECT_NE(::GetStretchBltMode(target.Canvas.GetHandle()), COLORONCOLOR) << "the mode is put back";
}

TEST_F(BitmapDrawing, LeavesOutTheTransparentColour) {
    Surface target(4, 2);
    target.Canvas.FillRect(0, 0, 4, 2, nullptr);
    m_Bitmap.Transparent(&target.Canvas, 0, 0, 4, 2, 0, 0, 4, 2, Green);
    EXPECT_EQ(target.Look(), (Picture{"r.b.", "r.b."}));
}

TEST_F(BitmapDrawing, ExtractsAndStretchesNewBitmaps) {
    const std::unique_ptr<CBitmap> part(m_Bitmap.ExtractBitmap(1, 0, 2, 1));
    ASSERT_NE(part, nullptr);
    EXPECT_EQ(Look(*part), (Picture{"gb"}));
    const std::unique_ptr<CBitmap> wide(m_Bitmap.Stretch(8, 1));
    ASSERT_NE(wide, nullptr);
    EXPECT_EQ(Look(*wide), (Picture{"rrggbb.."}));
    CBitmap empty;
    EXPECT_EQ(empty.Stretch(2, 2), nullptr);
    const std::unique_ptr<CBitmap> huge(m_Bitmap.ExtractBitmap(0, 0, 1 << 20, 1 << 20));
    ASSERT_NE(huge, nullptr);
    EXPECT_FALSE(huge->IsValid());
}

TEST_F(BitmapDrawing, PaintsItselfAndAnswersDraw) {
    for (const bool byMessage : {false, true}) {
        Surface target(5, 3);
        EXPECT_TRUE(byMessage ? target.Canvas.Draw(&m_Bitmap, nullptr)
                              : m_Bitmap.DoPaint(&target.Canvas, nullptr));
        EXPECT_EQ(target.Look(), (Picture{"rgb..", "rgb..", "....."}));
    }
    zul::CMessage withoutCanvas(zul::CString(u"Draw"));
    EXPECT_FALSE(m_Bitmap.DoMessage(&withoutCanvas));
    EXPECT_EQ(m_Bitmap.GetBitmapMaskColor(), Red);
}

TEST_F(BitmapDrawing, WhatTheDeviceCannotIsReported) {
    Surface target(4, 2);
    {
        Reports reports;
        m_Bitmap.AlphaFade(&target.Canvas, 0, 0, 5);
        EXPECT_EQ(reports.Only(), "4: AlphaFading not supported in WINCE. <CBitmap::AlphaFade>");
    }
    ThrowingScope throwing;
    EXPECT_THROW(m_Bitmap.AlphaBlend(&target.Canvas, 0, 0, 4, 2, 0, 0, 4, 2, {}), zul::CRunError);
    EXPECT_THROW(m_Bitmap.PlgBlt(&target.Canvas, nullptr, 0, 0, 4, 2, nullptr, 0, 0), zul::CRunError);
    EXPECT_EQ(target.Look(), target.Blank());
}

TEST_F(BitmapDrawing, NullTargetsAndEmptyBitmapsDrawNothing) {
    CBitmap empty;
    Surface target(4, 2);
    for (CBitmap* bitmap : {&empty, &m_Bitmap}) {
        zul::CCanvas* const noCanvas = nullptr;
        CBitmap* const noBitmap = nullptr;
        bitmap->BitBlt(noCanvas, 0, 0, 4, 2, 0, 0, CBitmap::RopSourceCopy);
        bitmap->BitBlt(noBitmap, 0, 0, 4, 2, 0, 0, CBitmap::RopSourceCopy);
        bitmap->StretchBlt(noCanvas, 0, 0, 4, 2, 0, 0, 4, 2, CBitmap::RopSourceCopy);
        bitmap->Transparent(noCanvas, 0, 0, 4, 2, 0, 0, 4, 2, Red);
        bitmap->AlphaBlend(noCanvas, 0, 0, 4, 2, 0, 0, 4, 2, {});
        bitmap->PlgBlt(noCanvas, nullptr, 0, 0, 4, 2, nullptr, 0, 0);
        EXPECT_TRUE(bitmap->DoPaint(nullptr, nullptr));
    }
    EXPECT_TRUE(empty.DoPaint(&target.Canvas, nullptr));
    empty.Fill(Red);
    EXPECT_EQ(target.Look(), target.Blank());
}

}  // namespace
