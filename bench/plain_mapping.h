/// \file
/// Map units to pixels as anybody would write it down.
#pragma once

#include <cstdint>

#include "zul/geometry/coordinates.h"
#include "zul/scaler/scaler.h"

namespace zulbench {

/// What a scaler does with its view as it is now; the view is not turned.
class PlainMapping {
public:
    explicit PlainMapping(const zul::CScaler& scaler) : m_Scale(scaler.GetScreenToVisible()) {
        scaler.GetVisibleBox(m_View);
    }
    zul::TLongPoint operator()(zul::TPoint point) const {
        return {Round((point.X - m_View.MinX) * m_Scale), Round((m_View.MaxY - point.Y) * m_Scale)};
    }

private:
    static std::int32_t Round(double value) {
        return static_cast<std::int32_t>(value > 0.0 ? value + 0.5 : value - 0.5);
    }

    double m_Scale;
    zul::TLongRect m_View{};
};

}  // namespace zulbench
