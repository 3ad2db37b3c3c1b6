/// \file
/// Views of all kinds for a canvas to draw through.
#pragma once

#include "fuzz/frame/fuzzing.h"
#include "zul/scaler/projective_scaler.h"

namespace fuzz {

/// A flat and a perspective view that an input sets up.
class Views {
public:
    /// Sets one of them up anew, in half of the cases so that it shows what lies near the origin; null for
    /// none.
    zul::CScaler* Change(Input& input) {
        zul::CScaler* const scaler = input.Flag() ? &m_Flat : &m_Projective;
        if (input.Flag()) {
            SetUp(*scaler);
        } else {
            SetUpSomehow(*scaler, input);
        }
        scaler->SetRotationAngle(input.Flag() ? 0.0 : input.Real(360));
        m_Projective.SetHorizonFraction(input.Real(1));
        return input.Below(4) == 0 ? nullptr : scaler;
    }

private:
    static constexpr std::int32_t kSide = 61;

    static void SetUp(zul::CScaler& scaler) {
        scaler.InitScaler({-9999, -9999, 9999, 9999}, {kSide, kSide}, {kSide, kSide}, 40.0, 1.0, 0.001);
        scaler.SetVisibleBox(-kSide, -kSide, kSide, kSide, true);
    }
    static void SetUpSomehow(zul::CScaler& scaler, Input& input) {
        const auto any = [&input] { return input.Number(2 * kSide); };
        const zul::TLongRect bounds{any(), any(), any(), any()}, box{any(), any(), any(), any()};
        const zul::TSize screen{any(), any()}, unwrapped{any(), any()};
        const double resolution = input.Real(90), metres = input.Real(9), fraction = input.Real(1);
        scaler.InitScaler(bounds, screen, unwrapped, resolution, metres, fraction);
        scaler.SetVisibleBox(box.MinX, box.MinY, box.MaxX, box.MaxY, input.Flag());
    }

    zul::CScaler m_Flat;
    zul::CProjectiveScaler m_Projective;
};

}  // namespace fuzz
