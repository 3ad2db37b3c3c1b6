// What a build without other libraries has: no peers, and the rings from a file.
#include "bench/painter.h"
#include "bench/rings.h"

namespace zulbench {

std::vector<Group> HostGroups() {
    return {};
}

Painters PeerPainters() {
    return {};
}

std::vector<zul::CPoints> WorldRings() {
    return ReadRings(ZULBENCH_RINGS);
}

}  // namespace zulbench
