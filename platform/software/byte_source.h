/// \file
/// Bytes that an image is read from: a file, or memory that somebody else keeps.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

#include "platform/crt.h"

namespace device {

/// Bytes of known number, read from any place.
class ByteSource {
public:
    virtual ~ByteSource() = default;
    std::int64_t Size() const { return m_Size; }
    /// Whether \p count bytes lie at \p offset. Neither need be sensible.
    bool Holds(std::int64_t offset, std::int64_t count) const {
        return offset >= 0 && count >= 0 && count <= m_Size && offset <= m_Size - count;
    }
    /// False, and \p to is not to be used, when the bytes are not all there or cannot be read.
    bool Read(std::int64_t offset, void* to, std::int64_t count) {
        return Holds(offset, count) && DoRead(offset, to, static_cast<std::size_t>(count));
    }

protected:
    explicit ByteSource(std::int64_t size) : m_Size(size) {}
    virtual bool DoRead(std::int64_t offset, void* to, std::size_t count) = 0;

private:
    std::int64_t m_Size;
};

class MemorySource final : public ByteSource {
public:
    MemorySource(const std::uint8_t* bytes, std::size_t size)
        : ByteSource(static_cast<std::int64_t>(size)), m_Bytes(bytes) {}

private:
    bool DoRead(std::int64_t offset, void* to, std::size_t count) override {
        std::memcpy(to, m_Bytes + offset, count);
        return true;
    }

    const std::uint8_t* m_Bytes;
};

/// A file that can be sought in; anything else (a pipe, a null file) holds no bytes.
class FileSource final : public ByteSource {
public:
    /// Takes the file over and closes it in the end.
    explicit FileSource(std::FILE* file) : ByteSource(SizeOf(file)), m_File(file) {}

private:
    struct Close {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    static std::int64_t SizeOf(std::FILE* file) {
        if (file == nullptr || zul_fseek(file, 0, SEEK_END) != 0) return 0;
        const std::int64_t size = zul_ftell(file);
        return size > 0 ? size : 0;
    }
    bool DoRead(std::int64_t offset, void* to, std::size_t count) override {
        return zul_fseek(m_File.get(), offset, SEEK_SET) == 0 &&
               std::fread(to, 1, count, m_File.get()) == count;
    }

    std::unique_ptr<std::FILE, Close> m_File;
};

}  // namespace device
