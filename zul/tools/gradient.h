/// \file
/// The gradient: coloured vertices.
#pragma once

#include <cstdint>

#include "zul/geometry/coordinates.h"
#include "zul/kernel/any_object.h"
#include "zul/kernel/buffer.h"
#include "zul/kernel/export.h"

namespace zul {

class CPoints;

/// One coloured vertex, in the platform's layout: the high byte of a component is its 8-bit value.
struct TGradVert {
    std::int32_t X;       ///< right, in the unit of the canvas
    std::int32_t Y;       ///< down, or up in map units
    std::uint16_t Red;    ///< 0 to 0xFF00
    std::uint16_t Green;  ///< 0 to 0xFF00
    std::uint16_t Blue;   ///< 0 to 0xFF00
    std::uint16_t Alpha;  ///< not used
};
static_assert(sizeof(TGradVert) == 16, "stored and handed to the device as 16 bytes");

/// A list of coloured vertices, in the canvas's coordinates, that CCanvas::DrawGradient fills between. A new
/// one is empty. Vertex indices outside the list change nothing and read as zero.
class ZUL_API CGradient : public CAnyObject {
public:
    /// How the vertices of a gradient fill are taken.
    enum TMode : std::int32_t { RectHorizontal = 0, RectVertical = 1, Triangles = 2 };
    /// How a source is blended over a destination, in the platform's layout.
    struct TBlend {
        std::uint8_t Operation;    ///< 0, source over destination
        std::uint8_t Flags;        ///< 0
        std::uint8_t SourceAlpha;  ///< 255 for opaque
        std::uint8_t AlphaFormat;  ///< whether the source has an alpha channel
    };

    CGradient() = default;
    CGradient(const CGradient&) = delete;
    CGradient& operator=(const CGradient&) = delete;

    // --- query ---

    /// The vertices themselves; changes in them are not recorded.
    CBuffer<TGradVert>& GetBuffer() { return m_Buffer; }
    /// The vertices, valid until the next change; null when there are none.
    TGradVert* GetVertexes();
    std::uint32_t GetCount() const;                  ///< Vertices.
    TGradVert GetVertex(std::uint32_t index) const;  ///< All zeros outside the list.
    /// Either pointer may be null.
    void GetPoint(std::uint32_t index, std::int32_t* x, std::int32_t* y) const;
    /// Red in bits 0 to 7, blue in 8 to 15, green in 16 to 23: green and blue come back exchanged against
    /// what was set. Kept on purpose, callers rely on it.
    std::int32_t GetColor(std::uint32_t index) const;

    // --- change ---

    /// Colours are 0x00BBGGRR. Recorded as a modification.
    void Append(std::int32_t x, std::int32_t y, std::int32_t color);
    void SetVertex(std::uint32_t index, std::int32_t x, std::int32_t y, std::int32_t color);
    void SetPoint(std::uint32_t index, std::int32_t x, std::int32_t y);
    void SetColor(std::uint32_t index, std::int32_t color);
    /// A fan of triangles from a centre over consecutive points; it is not closed from the last point to the
    /// first. \p triangles receives three vertex indices a triangle. Vertices are added where there are too
    /// few, never taken away. \returns the number of triangles.
    std::int32_t CreateRadial(const CPoints* points, std::int32_t centerX, std::int32_t centerY,
                              std::int32_t edgeColor, std::int32_t centerColor,
                              CBuffer<std::int32_t>& triangles);
    /// Takes over the vertices. Null and the gradient itself are ignored.
    void ApplyGradient(const CGradient* other);

    // --- persist: the vertices ---

    bool ObjectToBuffer(CStream* stream) override;
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override;

private:
    CBuffer<TGradVert> m_Buffer;
};

}  // namespace zul
