#include "bench/contest.h"

namespace zulbench {

std::vector<Group> HostGroups() {
    return {DepthContests};
}

}  // namespace zulbench
