#include "platform/software/run_lengths.h"

namespace device {

namespace {

/// Places pixels one after the other along a row, the rows upwards.
class Pen {
public:
    explicit Pen(const Surface& target)
        : m_Target(target), m_Nibbles(target.format == Format::Indexed4), m_Y(target.height - 1) {}

    bool IsAboveTop() const { return m_Y < 0; }
    void NextRow() {
        m_X = 0;
        --m_Y;
    }
    /// Code of any length moves no further than just outside.
    void Move(std::int32_t right, std::int32_t up) {
        m_X = std::min(m_X + right, m_Target.width);
        m_Y = std::max(m_Y - up, -1);
    }
    void Put(std::uint8_t value) {
        if (m_Y < 0 || m_X >= m_Target.width) return;
        std::uint8_t* const row = m_Target.Row(m_Y);
        if (!m_Nibbles) {
            row[m_X] = value;
        } else {
            std::uint8_t& pair = row[m_X / 2];
            pair =
                static_cast<std::uint8_t>(m_X % 2 == 0 ? (pair & 0x0F) | value << 4 : (pair & 0xF0) | value);
        }
        ++m_X;
    }

private:
    const Surface& m_Target;
    const bool m_Nibbles;
    std::int32_t m_X = 0, m_Y;
};

}  // namespace

bool DecodeRuns(const Surface& target, const std::uint8_t* code, std::size_t size) {
    enum Escape : std::uint8_t { kEndOfRow, kEndOfImage, kMove };
    const bool nibbles = target.format == Format::Indexed4;
    // The n-th pixel of two that share a byte, or the byte.
    const auto pixel = [nibbles](std::uint8_t byte, unsigned n) {
        if (!nibbles) return byte;
        return static_cast<std::uint8_t>(n % 2 == 0 ? byte >> 4 : byte & 0x0F);
    };
    Pen pen(target);
    std::size_t at = 0;
    while (size - at >= 2 && !pen.IsAboveTop()) {
        const std::uint8_t count = code[at], value = code[at + 1];
        at += 2;
        if (count > 0) {
            for (unsigned i = 0; i < count; ++i)
                pen.Put(pixel(value, i));
        } else if (value == kEndOfRow) {
            pen.NextRow();
        } else if (value == kEndOfImage) {
            return true;
        } else if (value == kMove) {
            if (size - at < 2) return false;
            pen.Move(code[at], code[at + 1]);
            at += 2;
        } else {  // so many pixels as they are, in bytes up to an even number
            const std::size_t bytes = nibbles ? (value + 1u) / 2 : value;
            if (size - at < bytes) return false;
            for (unsigned i = 0; i < value; ++i)
                pen.Put(pixel(code[at + (nibbles ? i / 2 : i)], i));
            at += std::min(bytes + bytes % 2, size - at);
        }
    }
    return pen.IsAboveTop();
}

}  // namespace device
