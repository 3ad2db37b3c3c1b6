/// \file
/// A file opened for reading.
#pragma once

#include <cstdint>

#include "zul/kernel/export.h"
#include "zul/kernel/system/file_handle.h"

namespace zulsys {

/// Reads a file from its first byte on. Owns the open file; closed by `Disconnect` or the destructor.
class ZUL_KERNEL_API CFile {
public:
    CFile() = default;

    /// Opens an existing file for reading; a file that was open before is closed first, also when this fails.
    /// The further arguments are accepted for older callers and have no effect: a file is always opened for
    /// shared reading and never made.
    /// \returns false when the path is null, is no file, or cannot be opened.
    bool Connect(const char16_t* path, bool readOnly = true, const char16_t* templateName = nullptr,
                 int attributes = 8, int access = 3);

    void Disconnect() { m_File.reset(); }                   ///< Harmless when no file is open.
    bool IsConnected() const { return m_File != nullptr; }  ///< Whether a file is open.

    /// True only when all \p size bytes came; otherwise \p data holds what the file still had.
    bool Read(void* data, std::int64_t size);

private:
    FileHandle m_File;
};

}  // namespace zulsys
