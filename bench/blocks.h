/// \file
/// Work on whole blocks of pixels, and who else does it.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "bench/surface.h"

namespace zulbench {

enum class Block {
    Copy,     ///< the whole surface
    Invert,   ///< the whole surface, exclusive-or
    Stretch,  ///< the upper left quarter to the whole, nearest pixels
    Keyed,    ///< kKeyedSide each way, but not the pixels of colour 0
};

constexpr std::int32_t kKeyedSide = 256;

struct BlockPeer {
    std::string name;
    std::function<void()> run;
};

/// Those who can do the work from \p source to \p target, both kWidth x kHeight pixels that outlive them.
std::vector<BlockPeer> BlockPeers(Block block, std::uint32_t* source, std::uint32_t* target);

}  // namespace zulbench
