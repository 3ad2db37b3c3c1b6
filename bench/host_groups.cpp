#include "bench/contest.h"

namespace zulbench {

std::vector<Group> HostGroups() {
    return {PenContests, ClipContests, DepthContests};
}

}  // namespace zulbench
