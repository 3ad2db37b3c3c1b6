/// \file
/// Short texts, as the labels of a map are, and who draws and measures them.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bench/contest.h"
#include "bench/surface.h"
#include "zul/geometry/coordinates.h"
#include "zul/kernel/string.h"

namespace zulbench {

constexpr std::int32_t kLabelPoints = 12, kLabelPixels = 16;  ///< the same height on a screen
constexpr char kLabelFace[] = "Liberation Sans";
constexpr std::size_t kLongestLabel = 16;

struct Label {
    zul::CString text;
    std::string ascii;
    zul::TLongPoint at;  ///< the upper left corner
};

struct LabelWork {
    std::vector<Label> labels;
    COLORREF color = 0;
    /// How far we go on after a character, and rows above the baseline: so peers put the same glyphs in the
    /// same places.
    std::array<std::int32_t, 128> advances{};
    std::int32_t ascent = 0;
};

/// Draws on a picture of kWidth x kHeight pixels, which is black at first, and measures.
class Letterer {
public:
    virtual ~Letterer() = default;
    virtual Side GetSide() const = 0;
    virtual const char* GetName() const { return ""; }
    /// The first \p count labels.
    virtual void Draw(const LabelWork& work, std::size_t count) = 0;
    /// The widths of all labels together.
    virtual double Measure(const LabelWork& work) = 0;
    virtual void Wipe() = 0;
    virtual Picture GetPicture() = 0;
};

using Letterers = std::vector<std::shared_ptr<Letterer>>;

/// Those of other libraries, with hard or smooth edges. \throws std::runtime_error when the font is missing
Letterers PeerLetterers(bool hard);

/// Pictures made while it lives have such edges, where that can be settled.
class EdgeSetting {
public:
    explicit EdgeSetting(bool hard);
    ~EdgeSetting();
    EdgeSetting(const EdgeSetting&) = delete;
    EdgeSetting& operator=(const EdgeSetting&) = delete;

    bool Holds() const { return m_Holds; }

private:
    bool m_Holds;
};

}  // namespace zulbench
