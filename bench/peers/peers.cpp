#include "bench/peers/peers.h"

namespace zulbench {

Painters PeerPainters() {
    return {MakeAggPainter(), MakeSdlPainter(), MakeCairoPainter()};
}

}  // namespace zulbench
