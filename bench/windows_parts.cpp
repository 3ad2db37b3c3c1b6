// What a build without other libraries has: no peers, and the rings from a file.
#include <stdexcept>

#include "bench/allocations.h"
#include "bench/blocks.h"
#include "bench/growth.h"
#include "bench/labels.h"
#include "bench/painter.h"
#include "bench/rings.h"

namespace zulbench {

std::vector<Group> HostGroups() {
    return {};
}

Painters PeerPainters() {
    return {};
}

std::vector<BlockPeer> BlockPeers(Block, std::uint32_t*, std::uint32_t*) {
    return {};
}

Allocations CountAllocations(const std::function<void()>& work) {
    work();
    return {-1, 0};
}

void MeasureGrowth(const std::string&) {
    throw std::runtime_error("growth is measured on the host only");
}

Letterers PeerLetterers(bool /*hard*/) {
    return {};
}

/// The system decides by itself.
EdgeSetting::EdgeSetting(bool hard) : m_Holds(!hard) {}
EdgeSetting::~EdgeSetting() = default;

std::vector<zul::CPoints> WorldRings() {
    return ReadRings(ZULBENCH_RINGS);
}

}  // namespace zulbench
