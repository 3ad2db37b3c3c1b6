#include "bench/contest.h"

namespace zulbench {

std::vector<Group> Groups() {
    std::vector<Group> groups{{"mapping", MappingContests},
                              {"figures", FigureContests},
                              {"frames", FrameContests},
                              {"blocks", BlockContests},
                              {"labels", TextContests}};
    const std::vector<Group> more = HostGroups();
    groups.insert(groups.end(), more.begin(), more.end());
    return groups;
}

}  // namespace zulbench
