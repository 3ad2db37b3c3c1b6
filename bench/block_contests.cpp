#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>

#include "apps/zulmap/memory_picture.h"
#include "bench/contest.h"

namespace zulbench {
namespace {

constexpr std::int32_t kWidth = 1920;
constexpr std::int32_t kHeight = 1080;

struct BlockBench {
    BlockBench()
        : source(kWidth, kHeight),
          target(kWidth, kHeight),
          memory(static_cast<std::size_t>(kWidth) * kHeight) {
        zul::CCanvas& canvas = source.GetCanvas();
        for (std::int32_t i = 0; i < kHeight; ++i) {
            canvas.GetBrush().SetColor(i * 7919 & 0xFFFFFF);
            canvas.FillRect(0, i, kWidth, i + 1, nullptr);
        }
    }

    void FillOurs() {
        zul::CCanvas& canvas = target.GetCanvas();
        canvas.GetBrush().SetColor(0);
        canvas.FillRect(0, 0, kWidth, kHeight, nullptr);
    }
    void FillPeer() { std::memset(memory.data(), 0, Bytes()); }

    void CopyOurs() {
        target.GetCanvas().BitBlt(0, 0, kWidth, kHeight, &source.GetCanvas(), 0, 0,
                                  zul::CBitmap::RopSourceCopy);
    }
    void CopyPeer() { std::memcpy(memory.data(), source.GetView().pixels, Bytes()); }

    std::size_t Bytes() const { return memory.size() * sizeof memory[0]; }

    double Difference() const {
        const std::uint32_t* pixels = target.GetView().pixels;
        std::size_t unlike = 0;
        for (std::size_t i = 0; i < memory.size(); ++i) {
            unlike += pixels[i] != memory[i];
        }
        return static_cast<double>(unlike) / static_cast<double>(memory.size());
    }

    zulmap::MemoryPicture source;
    zulmap::MemoryPicture target;
    std::vector<std::uint32_t> memory;
};

}  // namespace

std::vector<Contest> BlockContests() {
    const auto bench = std::make_shared<BlockBench>();
    const auto difference = [bench] { return bench->Difference(); };
    return {
        {"fill of 1920 x 1080 (memset)", [bench] { bench->FillOurs(); }, [bench] { bench->FillPeer(); },
         difference, 0.0},
        {"copy of 1920 x 1080 (memcpy)", [bench] { bench->CopyOurs(); }, [bench] { bench->CopyPeer(); },
         difference, 0.0},
    };
}

}  // namespace zulbench
