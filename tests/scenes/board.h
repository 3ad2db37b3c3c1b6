/// \file
/// The surface that scenes are drawn on: a section of any depth in a memory context, and its pixels.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/gdi.h"
#include "tests/scenes/random.h"

namespace scenes {

class CBoard {
public:
    /// A multiple of 32, so that no depth leaves unused bytes at the end of a row.
    static constexpr int Width = 96;
    static constexpr int Height = 80;

    /// Black at first; indexed depths have a table of distinct colours.
    CBoard(int bitsPixel, bool topDown);
    ~CBoard();
    CBoard(const CBoard&) = delete;
    CBoard& operator=(const CBoard&) = delete;

    HDC Get() const { return m_Context; }
    int GetDepth() const { return m_BitsPixel; }

    /// Gives every pixel a value of its own, or the whole surface one.
    void Scatter(CRandom& random);
    /// Of all bits that are stored, unused ones included.
    std::uint64_t Hash() const;
    /// The colours, as a PPM. \returns false when it cannot be written.
    bool Write(const char* path) const;

private:
    std::size_t Size() const;
    /// Makes the system finish what it may still hold back.
    void Settle() const { ::GetPixel(m_Context, 0, 0); }

    int m_BitsPixel;
    HDC m_Context;
    HBITMAP m_Bitmap;
    HGDIOBJ m_Previous;
    std::uint8_t* m_Pixels = nullptr;
};

/// One of 1, 8, 16, 24 and 32.
int SomeDepth(CRandom& random);

}  // namespace scenes
