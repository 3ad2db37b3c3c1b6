/// \file
/// What the fuzzers have in common. Each defines Run; the frame calls it for every input, with the classes
/// registered and reports kept silent, and requires that no handle is left.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>

namespace fuzz {

/// Ends the program with \p what unless it holds.
void Require(bool holds, const char* what);

/// An input read as arguments, from its first byte on. One that has ended gives zeros.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : m_Data(data), m_Left(size) {}

    bool IsLeft() const { return m_Left > 0; }
    bool Flag() { return Below(2) != 0; }
    /// \p end > 0
    int Below(int end);
    /// Any value of an arithmetic type.
    template <class T>
    T Any() {
        T value{};
        const std::size_t count = std::min(m_Left, sizeof value);
        if (count > 0) std::memcpy(&value, m_Data, count);
        Skip(count);
        return value;
    }
    template <class T, std::size_t Count>
    T OneOf(const T (&values)[Count]) {
        return values[Below(static_cast<int>(Count))];
    }

    /// Mostly within \p near of zero, else from the edges of 16 and 32 bits or anywhere. \p near >= 0
    std::int32_t Number(std::int32_t near);
    /// As Number, with fractions; or not finite, or at the edges of what a double holds.
    double Real(std::int32_t near);
    /// Up to \p longest units: mostly ASCII, else of other scripts, marks, controls and halves of pairs.
    std::u16string Text(int longest);
    /// Up to \p longest bytes as they stand.
    std::string Bytes(std::size_t longest);
    std::string Rest();

private:
    void Skip(std::size_t count) {
        m_Data += count;
        m_Left -= count;
    }

    const std::uint8_t* m_Data;
    std::size_t m_Left;
};

/// The file of this process. It stands in the folder "resource" of a directory of its own, which goes with
/// it.
class ScratchFile {
public:
    ~ScratchFile();
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    const std::filesystem::path& Directory() const { return m_Directory; }
    const std::filesystem::path& Path() const { return m_Path; }
    std::u16string Wide() const { return m_Path.u16string(); }
    void Fill(const std::string& bytes) const;
    std::string Bytes() const;

private:
    friend const ScratchFile& Scratch();
    ScratchFile();

    std::filesystem::path m_Directory, m_Path;
};
const ScratchFile& Scratch();

/// The fuzzer's own: does with an input what it is there for.
void Run(const std::uint8_t* data, std::size_t size);

}  // namespace fuzz
