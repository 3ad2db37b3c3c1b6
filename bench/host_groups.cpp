#include "bench/contest.h"

namespace zulbench {

std::vector<Group> HostGroups() {
    return {{"pens", PenContests},
            {"clips", ClipContests},
            {"depths", DepthContests},
            {"store", StoreContests},
            {"threads", ThreadContests}};
}

}  // namespace zulbench
