/// \file
/// The painters of other libraries.
#pragma once

#include <memory>

#include "bench/painter.h"

namespace zulbench {

std::shared_ptr<Painter> MakeAggPainter();
std::shared_ptr<Painter> MakeCairoPainter();
std::shared_ptr<Painter> MakeSdlPainter();

}  // namespace zulbench
