/// \file
/// What the fuzzers have in common. Each defines Run; the frame calls it for every input, with the classes
/// registered and reports kept silent, and requires that no handle is left.
#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

namespace fuzz {

/// Ends the program with \p what unless it holds.
void Require(bool holds, const char* what);

/// An input read as arguments, by turns. One that has ended gives the least of everything.
class Input {
public:
    Input(const std::uint8_t* data, std::size_t size) : m_Data(data, size) {}

    bool IsLeft() { return m_Data.remaining_bytes() > 0; }
    bool Flag() { return m_Data.ConsumeBool(); }
    /// \p end > 0
    int Below(int end) { return m_Data.ConsumeIntegralInRange(0, end - 1); }
    template <class T>
    T Any() {
        return m_Data.ConsumeIntegral<T>();
    }
    template <class T, std::size_t Count>
    T OneOf(const T (&values)[Count]) {
        return m_Data.PickValueInArray(values);
    }

    /// Mostly within \p near of zero, else from the edges of 16 and 32 bits or anywhere.
    std::int32_t Number(std::int32_t near);
    /// As Number, with fractions; or not finite, or at the edges of what a double holds.
    double Real(std::int32_t near);
    /// Up to \p longest units: mostly ASCII, else of other scripts, marks, controls and halves of pairs.
    std::u16string Text(int longest);
    /// Up to \p longest bytes as they stand.
    std::string Bytes(std::size_t longest) { return m_Data.ConsumeRandomLengthString(longest); }
    std::string Rest() { return m_Data.ConsumeRemainingBytesAsString(); }

private:
    FuzzedDataProvider m_Data;
};

/// A file of this process, gone with it.
class ScratchFile {
public:
    explicit ScratchFile(const char* extension = "");
    ~ScratchFile();
    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    const std::filesystem::path& Path() const { return m_Path; }
    std::u16string Wide() const { return m_Path.u16string(); }
    void Fill(const std::string& bytes) const;
    std::string Bytes() const;

private:
    std::filesystem::path m_Path;
};

/// The fuzzer's own: does with an input what it is there for.
void Run(const std::uint8_t* data, std::size_t size);

}  // namespace fuzz
