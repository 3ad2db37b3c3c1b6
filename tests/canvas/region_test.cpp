// What a region clips, and what of it the canvas's device is told.
#include <gtest/gtest.h>

#include <random>

#include "tests/canvas/canvas_testing.h"
#include "zul/canvas/region.h"

namespace {

using namespace zultest;
using zul::CRegion;

/// 'x' inside; device pixels from (0, 0).
Picture Inside(const CRegion& region, int width, int height) {
    Picture rows(static_cast<std::size_t>(height), std::string(static_cast<std::size_t>(width), '.'));
    for (int y = 0; y < height; ++y)
        for (int x = 0; x < width; ++x)
            if (region.IsInside(x, y)) rows[static_cast<std::size_t>(y)][static_cast<std::size_t>(x)] = 'x';
    return rows;
}

/// What the device of a surface shows under its clip.
Picture Shown(Surface& surface, int width, int height) {
    const HDC device = surface.Canvas.GetHandle();
    const HRGN clip = ::CreateRectRgn(0, 0, 1, 1);
    const HRGN former = ::GetClipRgn(device, clip) == 1 ? clip : nullptr;
    ::SelectClipRgn(device, nullptr);
    surface.Wipe();
    ::SelectClipRgn(device, former);
    ::PatBlt(device, 0, 0, width, height, BLACKNESS);
    ::SelectClipRgn(device, nullptr);
    Picture rows = surface.Look();
    ::SelectClipRgn(device, former);
    ::DeleteObject(clip);
    for (std::string& row : rows)
        std::replace(row.begin(), row.end(), '#', 'x');
    return rows;
}

TEST(Region, NewAndOldAreCombined) {
    struct Row {
        int combine;
        Picture expected;
    };
    const Picture replaced{"xxx..", "xxx..", "....."};
    const Row rows[] = {
        {CRegion::CombineReplace, replaced},
        {CRegion::CombineAnd, {".....", ".xx..", "....."}},
        {CRegion::CombineOr, {"xxx..", "xxxxx", ".xxxx"}},
        {CRegion::CombineXor, {"xxx..", "x..xx", ".xxxx"}},
        {CRegion::CombineDifference, {"xxx..", "x....", "....."}},
        {CRegion::CombineCopy, replaced},
        {6, replaced},
        {-1, replaced},
    };
    for (const Row& row : rows) {
        Surface surface(5, 3);
        CRegion region;
        EXPECT_TRUE(region.IsInside(1 << 30, -5));
        region.Create(1, 1, 5, 3, &surface.Canvas, CRegion::CombineAnd);
        region.Create(3, 2, 0, 0, &surface.Canvas, static_cast<CRegion::TCombine>(row.combine));
        EXPECT_EQ(Inside(region, 5, 3), row.expected) << row.combine;
        EXPECT_EQ(Shown(surface, 5, 3), row.expected) << row.combine;
    }
}

TEST(Region, CornersGoThroughTheScaler) {
    zul::CScaler scaler;
    SetUpSquare(scaler, 8, 10);  // a pixel is 10 map units
    for (const bool pretranslates : {true, false}) {
        Surface surface(8, 8);
        surface.Canvas.SetScaler(&scaler);
        surface.Canvas.SetPretranslation(pretranslates);
        CRegion& region = surface.Canvas.GetRegion();
        const auto box = [&region](zul::CCanvas* canvas) {
            zul::TLongRect result{9, 9, 9, 9};
            region.GetRegionBox(result, canvas);
            return Numbers{result.MinX, result.MinY, result.MaxX, result.MaxY};
        };
        EXPECT_EQ(box(nullptr), (Numbers{9, 9, 9, 9})) << "nothing to tell";
        region.Create(20, 0, 60, 20, &surface.Canvas, CRegion::CombineReplace);
        EXPECT_EQ(box(nullptr), pretranslates ? (Numbers{2, 6, 6, 8}) : (Numbers{20, 0, 60, 20}));
        // The box comes back in map units, and a rectangle is excluded in them, whatever the canvas does.
        region.Create(2, 6, 6, 8, nullptr, CRegion::CombineReplace);
        EXPECT_EQ(box(&surface.Canvas), (Numbers{20, 0, 60, 20}));
        region.SetNullRegion(&surface.Canvas);
        region.ExcludeClipRect(&surface.Canvas, 80, 80, 0, 10);
        EXPECT_EQ(region.GetHandle(), nullptr);
        EXPECT_EQ(box(&surface.Canvas), (Numbers{0, 0, 80, 10}));
        region.ExcludeClipRect(&surface.Canvas, -1000, -1000, 1000, 1000);
        EXPECT_EQ(box(&surface.Canvas), (Numbers{0, 0, 0, 0})) << "an empty box is not mapped";
    }
}

TEST(Region, SavedClipComesBack) {
    const auto& counts = CRegion::GetHandleCounts();
    const std::uint64_t made = counts.Made, deleted = counts.Deleted;
    {
        Surface surface(4, 1);
        CRegion& region = surface.Canvas.GetRegion();
        const auto box = [&](int left, int right) {
            region.Create(left, 0, right, 1, &surface.Canvas, CRegion::CombineReplace);
        };
        region.SaveRegion(&surface.Canvas);  // no clip: none to come back
        box(0, 1);
        region.RestoreRegion(&surface.Canvas);
        EXPECT_EQ(region.GetHandle(), nullptr);
        EXPECT_EQ(Shown(surface, 4, 1), Picture{"xxxx"});
        box(1, 3);
        region.SaveRegion(&surface.Canvas);
        box(2, 4);
        region.SaveRegion(&surface.Canvas);  // in place of the first
        region.Create(2, 0, 3, 1, &surface.Canvas, CRegion::CombineAnd);
        region.RestoreRegion(&surface.Canvas);
        EXPECT_EQ(Inside(region, 4, 1), Picture{"..xx"});
        EXPECT_EQ(Shown(surface, 4, 1), Picture{"..xx"});
        region.Offset(-1, 0, &surface.Canvas);
        EXPECT_EQ(Shown(surface, 4, 1), Picture{".xx."});
        zul::CCanvas other;
        other.CreateMemoryCanvas();
        other.ApplyCanvas(&surface.Canvas, false);
        EXPECT_EQ(Inside(other.GetRegion(), 4, 1), Picture{".xx."});
        EXPECT_EQ(::GetClipRgn(other.GetHandle(), other.GetRegion().GetHandle()), 1);
        other.GetRegion().ApplyRegion(&other.GetRegion(), &other);
        EXPECT_NE(other.GetRegion().GetHandle(), nullptr);
        const CRegion none;
        other.GetRegion().ApplyRegion(&none, &other);
        EXPECT_EQ(::GetClipRgn(other.GetHandle(), nullptr), 0);
    }
    EXPECT_EQ(counts.Made - made, 3u);
    // One save found no clip, one was replaced; each restore ended a region, and one region was left.
    EXPECT_EQ(counts.Deleted - deleted, 5u);
}

TEST(Region, BitmapGivesThePixelsOfOtherColours) {
    std::mt19937 random(6);
    for (const int depth : {1, 32}) {
        for (const int width : {1, 3, 40, 70000}) {
            zul::CBitmap bitmap;
            const int height = width > 1000 ? 2 : 5;
            bitmap.Create(width, height, depth, nullptr);
            zul::CCanvas painter;
            painter.CreateMemoryCanvas();
            painter.AssignBitmap(&bitmap);
            for (int i = 0; i < 60; ++i) {
                const int x = static_cast<int>(random() % static_cast<unsigned>(width));
                painter.SetPixel(x, static_cast<int>(random() % static_cast<unsigned>(height)), White);
            }
            CRegion region;
            region.Create(&bitmap, Black, nullptr, CRegion::CombineReplace);
            EXPECT_EQ(region.GetHandle(), nullptr) << "the painter holds it";
            for (const std::int32_t key : {White, Black, Red, static_cast<std::int32_t>(0xFF000000)}) {
                painter.AssignBitmap(nullptr);
                region.Create(&bitmap, key, nullptr, CRegion::CombineReplace);
                painter.AssignBitmap(&bitmap);
                for (int i = 0; i < std::min(width * height, 400); ++i) {
                    const int x = i % width, y = i / width;
                    ASSERT_EQ(region.IsInside(x, y), painter.GetPixel(x, y) != key) << depth << ' ' << width;
                }
                EXPECT_FALSE(region.IsInside(width, 0) || region.IsInside(0, height));
            }
        }
    }
}

TEST(Region, WhatCannotBeDoneChangesNothing) {
    Surface surface(4, 1);
    CRegion region;
    region.Create(1, 0, 3, 1, &surface.Canvas, CRegion::CombineReplace);
    {
        const Reports reports;
        region.Create(static_cast<zul::CPoints*>(nullptr), &surface.Canvas, CRegion::CombineReplace);
        EXPECT_EQ(reports.Only(), "3: CreatePolygonRegion is not supported in WinCE");
    }
    zul::CBitmap empty;
    region.Create(&empty, 0, &surface.Canvas, CRegion::CombineReplace);
    region.Create(static_cast<zul::CBitmap*>(nullptr), 0, &surface.Canvas, CRegion::CombineReplace);
    region.ApplyRegion(nullptr, &surface.Canvas);
    CRegion other;
    other.Create(0, 0, 1, 1, nullptr, CRegion::CombineReplace);
    {
        const FullDevice full;
        region.Create(0, 0, 4, 1, &surface.Canvas, CRegion::CombineReplace);
        region.ApplyRegion(&other, &surface.Canvas);
    }
    EXPECT_EQ(Inside(region, 4, 1), Picture{".xx."});
    EXPECT_EQ(Shown(surface, 4, 1), Picture{".xx."});
    // Without a device only the region changes.
    zul::CCanvas detached;
    region.SaveRegion(nullptr);
    region.Create(0, 0, 2, 1, &detached, CRegion::CombineAnd);
    region.Offset(1, 0, &detached);
    EXPECT_EQ(Inside(region, 4, 1), Picture{"..x."});
    region.ExcludeClipRect(nullptr, 0, 0, 1, 1);
    EXPECT_EQ(region.GetHandle(), nullptr) << "the clip is the device's alone now";
    region.SetNullRegion(nullptr);
    region.RestoreRegion(nullptr);
    EXPECT_EQ(region.GetHandle(), nullptr);
}

}  // namespace
