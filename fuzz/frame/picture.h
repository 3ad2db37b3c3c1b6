/// \file
/// A context on a section of pixels, which tells what was drawn where it should not have been.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "fuzz/frame/fuzzing.h"
#include "platform/gdi.h"
#include "zul/canvas/canvas.h"

namespace fuzz {

class Picture {
public:
    /// Pixels either way: odd, so that rows are padded at every depth but 32.
    static constexpr int kSide = 61;

    static int SomeDepth(Input& input);
    /// \p bits  of a pixel, one of SomeDepth's
    explicit Picture(int bits);
    ~Picture();
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    HDC Dc() const { return m_Dc; }
    HBITMAP Bitmap() const { return m_Bitmap; }

    /// Runs \p draw and requires that it left alone what the clip excludes, and the padding. A picture whose
    /// context is gone or holds another bitmap is not looked at.
    template <class Draw>
    void Guard(Draw&& draw) {
        Remember();
        draw();
        Compare();
    }
    /// Runs \p draw once as it is and once again, on the same picture, cut to a smaller clip besides;
    /// requires that this changes nothing inside it. What \p draw leaves behind besides pixels must not
    /// matter.
    template <class Draw>
    void GuardCut(Input& input, Draw&& draw) {
        Guard(draw);
        if (m_Before.empty() || !IsThere()) return;
        const std::vector<std::uint8_t> whole(m_Memory, m_Memory + Bytes());
        std::copy(m_Before.begin(), m_Before.end(), m_Memory);
        const Cut cut(*this, input);
        Guard(draw);
        RequireEqualInside(whole);
    }

private:
    /// A smaller clip for a while.
    class Cut {
    public:
        Cut(const Picture& picture, Input& input);
        ~Cut();
        Cut(const Cut&) = delete;
        Cut& operator=(const Cut&) = delete;

    private:
        HDC m_Dc;
        HRGN m_Former;
        bool m_Clipped;
    };

    int Bytes() const { return m_RowBytes * kSide; }
    bool IsThere() const;
    void Remember();
    void Compare() const;
    void RequireEqualInside(const std::vector<std::uint8_t>& whole) const;
    /// Calls visit(isPixel, isAllowed) for what differs: padding is no pixel, allowed is what the clip shows.
    template <class Visit>
    void ForDifferent(const std::vector<std::uint8_t>& other, Visit&& visit) const;

    HRGN m_Clip;
    HDC m_Dc;
    HBITMAP m_Bitmap;
    std::uint8_t* m_Memory = nullptr;
    int m_Bits, m_RowBytes;
    std::vector<std::uint8_t> m_Before;
    std::vector<std::uint8_t> m_Allowed;  ///< a flag a pixel; empty without a clip
};

/// Makes the canvas's region what its device is cut to. Text that is to be clipped is cut to its rectangle
/// and the region: what else cuts the device does not count for it.
inline void TakeOverClip(zul::CCanvas& canvas) {
    canvas.GetRegion().SaveRegion(&canvas);
    canvas.GetRegion().RestoreRegion(&canvas);
}

}  // namespace fuzz
