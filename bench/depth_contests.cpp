#include <pixman.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "bench/contest.h"
#include "platform/dib_header.h"
#include "zul/canvas/bitmap_canvas.h"
#include "zul/raster/dib_section.h"

namespace zulbench {
namespace {

constexpr std::int32_t kWidth = 512, kHeight = 512;
constexpr WORD kDepths[] = {1, 4, 8, 16, 24, 32};

/// Colours of three different numbers, each table the start of the next one, and every colour one that 15
/// bits hold: so that a copy between any two depths has one right result.
const std::vector<RGBQUAD>& Colors() {
    static const std::vector<RGBQUAD> colors = [] {
        std::mt19937 random(5);
        const auto level = [&random] {
            const auto bits = static_cast<std::uint32_t>(random() & 31u);
            return static_cast<BYTE>(bits << 3 | bits >> 2);
        };
        std::vector<RGBQUAD> table{{0, 0, 0, 0}, {255, 255, 255, 0}};
        while (table.size() < 256)
            table.push_back({level(), level(), level(), 0});
        return table;
    }();
    return colors;
}

/// A section with the table above, shown by a canvas.
struct Picture {
    Picture(WORD depth, std::int32_t width, std::int32_t height) {
        BITMAPINFOHEADER header{40, width, height, 1, depth, 0, 0, 0, 0, 0, 0};
        const auto count = static_cast<std::size_t>(dib::FullColorCount(depth));
        std::vector<std::uint8_t> info(sizeof header + 4 * count);
        std::memcpy(info.data(), &header, sizeof header);
        std::copy_n(reinterpret_cast<const std::uint8_t*>(Colors().data()), 4 * count,
                    info.data() + sizeof header);
        bits = nullptr;
        section = ::CreateDIBSection(nullptr, reinterpret_cast<const BITMAPINFO*>(info.data()),
                                     DIB_RGB_COLORS, &bits, nullptr, 0);
        bitmap.AttachHandle(section);
        canvas = std::make_unique<zul::CBitmapCanvas>(&bitmap);
        size = static_cast<std::size_t>(dib::RowsSize(header));
        row = static_cast<int>(dib::RowSize(header));
    }
    ~Picture() {
        canvas.reset();
        bitmap.Clear();
        ::DeleteObject(section);
    }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    /// Noise of the colours that both depths of a copy have.
    void Fill(WORD otherDepth, WORD ownDepth) {
        const int common = std::min({ownDepth, otherDepth, WORD{8}});
        std::mt19937 random(7);
        for (std::int32_t y = 0; y < kHeight; ++y)
            for (std::int32_t x = 0; x < kWidth; ++x) {
                const RGBQUAD& c = Colors()[random() & ((1u << common) - 1)];
                canvas->SetPixel(x, y, static_cast<std::int32_t>(RGB(c.rgbRed, c.rgbGreen, c.rgbBlue)));
            }
    }

    void* bits;
    HBITMAP section;
    std::size_t size;
    int row;
    zul::CBitmap bitmap;
    std::unique_ptr<zul::CBitmapCanvas> canvas;
};

/// The layouts that pixman can write as the device does, and read, with the device's colours.
pixman_format_code_t PeerFormat(WORD depth) {
    switch (depth) {
        case 8:
            return PIXMAN_c8;
        case 16:
            return PIXMAN_x1r5g5b5;
        case 24:
            return PIXMAN_r8g8b8;
        default:
            return PIXMAN_x8r8g8b8;
    }
}

struct PeerImage {
    PeerImage(const Picture& picture, WORD depth, std::int32_t width, std::int32_t height)
        : image(pixman_image_create_bits(PeerFormat(depth), width, height,
                                         static_cast<std::uint32_t*>(picture.bits), picture.row)) {
        if (depth != 8) return;
        indexed.color = 1;
        for (std::size_t i = 0; i < 256; ++i) {
            const RGBQUAD& c = Colors()[i];
            indexed.rgba[i] =
                0xFF000000u | std::uint32_t{c.rgbRed} << 16 | std::uint32_t{c.rgbGreen} << 8 | c.rgbBlue;
        }
        pixman_image_set_indexed(image, &indexed);
    }
    ~PeerImage() { pixman_image_unref(image); }
    PeerImage(const PeerImage&) = delete;
    PeerImage& operator=(const PeerImage&) = delete;

    pixman_indexed_t indexed{};
    pixman_image_t* image;
};

/// A copy from one depth to another. The peer is pixman where it has both layouts, else the machine's memory:
/// as many bytes moved as the larger of the two pictures has.
struct CopyBench {
    CopyBench(WORD from, WORD to)
        : converts(from >= 8 && to >= 16 && from != to),
          source(from, kWidth, kHeight),
          ours(to, kWidth, kHeight),
          theirs(to, kWidth, kHeight),
          room(std::max(source.size, ours.size)),
          peerSource(source, converts ? from : WORD{32}, converts ? kWidth : 1, kHeight),
          peerTarget(theirs, converts ? to : WORD{32}, converts ? kWidth : 1, kHeight) {
        source.Fill(to, from);
    }

    void Ours() {
        ours.canvas->BitBlt(0, 0, kWidth, kHeight, source.canvas.get(), 0, 0, zul::CBitmap::RopSourceCopy);
    }
    void Peer() {
        if (converts) {
            pixman_image_composite32(PIXMAN_OP_SRC, peerSource.image, nullptr, peerTarget.image, 0, 0, 0, 0,
                                     0, 0, kWidth, kHeight);
        } else {
            std::memcpy(room.data(), source.size < ours.size ? ours.bits : source.bits, room.size());
        }
    }
    /// The pixels that do not show the source's colour; of the peer's too where it converts.
    double Difference() const {
        std::int64_t unlike = 0;
        for (std::int32_t y = 0; y < kHeight; ++y)
            for (std::int32_t x = 0; x < kWidth; ++x) {
                const std::int32_t wanted = source.canvas->GetPixel(x, y);
                unlike += ours.canvas->GetPixel(x, y) != wanted;
                if (converts) unlike += theirs.canvas->GetPixel(x, y) != wanted;
            }
        return static_cast<double>(unlike) / kWidth / kHeight;
    }

    bool converts;
    Picture source, ours, theirs;
    std::vector<std::uint8_t> room;
    PeerImage peerSource, peerTarget;
};

}  // namespace

std::vector<Contest> DepthContests() {
    std::vector<Contest> contests;
    for (const WORD from : kDepths)
        for (const WORD to : kDepths) {
            const auto bench = std::make_shared<CopyBench>(from, to);
            contests.push_back(
                {"copy of " + std::to_string(from) + " to " + std::to_string(to) + " bits",
                 "pixel",
                 kWidth * kHeight,
                 0.0,
                 {{Side::Classes, "", [bench] { bench->Ours(); }},
                  {bench->converts ? Side::Peer : Side::Limit, bench->converts ? "pixman" : "memcpy",
                   [bench] { bench->Peer(); }, [bench] { return bench->Difference(); }}}});
        }
    return contests;
}

}  // namespace zulbench
