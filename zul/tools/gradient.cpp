#include "zul/tools/gradient.h"

#include "zul/geometry/points.h"
#include "zul/kernel/modificator.h"
#include "zul/kernel/stream.h"

namespace zul {
namespace {

constexpr std::int64_t MaxVertices = UINT32_MAX / sizeof(TGradVert);

void StoreColor(TGradVert& vertex, std::int32_t color) {
    const auto value = static_cast<std::uint32_t>(color);
    vertex.Red = static_cast<std::uint16_t>((value & 0xFF) << 8);
    vertex.Green = static_cast<std::uint16_t>(value & 0xFF00);
    vertex.Blue = static_cast<std::uint16_t>((value >> 16 & 0xFF) << 8);
    vertex.Alpha = 0;
}

}  // namespace

TGradVert* CGradient::GetVertexes() {
    return GetCount() ? m_Buffer.GetBuffer() : nullptr;
}

std::uint32_t CGradient::GetCount() const {
    return m_Buffer.GetCount();
}

TGradVert CGradient::GetVertex(std::uint32_t index) const {
    return index < GetCount() ? m_Buffer[index] : TGradVert{};
}

void CGradient::GetPoint(std::uint32_t index, std::int32_t* x, std::int32_t* y) const {
    const TGradVert vertex = GetVertex(index);
    if (x) *x = vertex.X;
    if (y) *y = vertex.Y;
}

std::int32_t CGradient::GetColor(std::uint32_t index) const {
    const TGradVert vertex = GetVertex(index);
    return (vertex.Red >> 8) | (vertex.Blue >> 8) << 8 | (vertex.Green >> 8) << 16;
}

void CGradient::Append(std::int32_t x, std::int32_t y, std::int32_t color) {
    const std::uint32_t index = GetCount();
    if (index >= MaxVertices) return;
    CModificator bracket(this);
    NeedMemory(m_Buffer.SetCount(index + 1, true));
    SetVertex(index, x, y, color);
}

void CGradient::SetVertex(std::uint32_t index, std::int32_t x, std::int32_t y, std::int32_t color) {
    if (index >= GetCount()) return;
    CModificator bracket(this);
    m_Buffer[index].X = x;
    m_Buffer[index].Y = y;
    StoreColor(m_Buffer[index], color);
}

void CGradient::SetPoint(std::uint32_t index, std::int32_t x, std::int32_t y) {
    if (index >= GetCount()) return;
    CModificator bracket(this);
    m_Buffer[index].X = x;
    m_Buffer[index].Y = y;
}

void CGradient::SetColor(std::uint32_t index, std::int32_t color) {
    if (index >= GetCount()) return;
    CModificator bracket(this);
    StoreColor(m_Buffer[index], color);
}

std::int32_t CGradient::CreateRadial(const CPoints* points, std::int32_t centerX, std::int32_t centerY,
                                     std::int32_t edgeColor, std::int32_t centerColor,
                                     CBuffer<std::int32_t>& triangles) {
    const std::uint32_t count = points ? points->GetCount() : 0;
    if (count >= MaxVertices) return 0;
    CModificator bracket(this);
    const std::uint32_t figures = count < 2 ? 0 : count - 1;
    NeedMemory(figures == 0 ||
               triangles.Reserve(3 * figures * static_cast<std::uint32_t>(sizeof(std::int32_t))));
    if (count + 1 > GetCount()) NeedMemory(m_Buffer.SetCount(count + 1, true));
    SetVertex(0, centerX, centerY, centerColor);
    for (std::uint32_t i = 0; i < count; ++i)
        SetVertex(i + 1, points->GetPointX(i), points->GetPointY(i), edgeColor);

    triangles.Clear();
    if (count < 2) return 0;
    std::int32_t* corner = triangles.SetCount(3 * figures, false);
    NeedMemory(corner);
    const auto last = static_cast<std::int32_t>(count);
    for (std::int32_t k = 1; k < last; ++k) {
        *corner++ = 0;
        *corner++ = k;
        *corner++ = k + 1;
    }
    return last - 1;
}

void CGradient::ApplyGradient(const CGradient* other) {
    if (!other || other == this) return;
    CModificator bracket(this);
    const std::uint32_t size = other->m_Buffer.GetSize();
    NeedMemory(m_Buffer.Write(0, size, other->m_Buffer.GetBuffer()));
    m_Buffer.Resize(size, true);
}

bool CGradient::ObjectToBuffer(CStream* stream) {
    if (!stream) return false;
    m_Buffer.ObjectToBuffer(stream);
    return CAnyObject::ObjectToBuffer(stream);
}

bool CGradient::ObjectFromBuffer(CStream* stream) {
    if (!stream) return false;
    m_Buffer.ObjectFromBuffer(stream);
    return CAnyObject::ObjectFromBuffer(stream);
}

std::uint32_t CGradient::GetPreferredSize() {
    return m_Buffer.GetPreferredSize();
}

}  // namespace zul
