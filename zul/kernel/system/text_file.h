/// \file
/// A text file of 8-bit characters, read and written line by line.
#pragma once

#include <cstdint>

#include "zul/kernel/export.h"
#include "zul/kernel/system/file_handle.h"
#include "zul/kernel/system/string.h"

namespace zulsys {

/// UTF-8 text. The file is opened binary on every host, so that a line ends with what was written: a bare
/// line feed. Owns the open file.
class ZUL_KERNEL_API CTextFile {
public:
    CTextFile() = default;

    /// Opens an existing file for reading. \returns false when that fails; nothing is open then.
    bool Connect(const char16_t* path);

    /// Makes a new file, or empties an old one, for writing. \returns false when that fails; nothing is open
    /// then.
    bool Create(const char16_t* path);

    /// Closes the file. \returns false when something could not be read, or what was written could not be
    /// stored completely: a full disk may show only here.
    bool Disconnect();

    bool IsConnected() const { return m_File != nullptr; }  ///< Whether a file is open.
    /// Whether reading or writing failed since the file was opened; nothing can be read then.
    bool HasFailed() const { return m_File != nullptr && std::ferror(m_File.get()) != 0; }

    /// Reads one line without its line feed and a carriage return before that, always zero-terminated, at
    /// most \p size - 1 bytes; what is left of a longer line is the next line. \returns false at the end of
    /// the file, where it cannot be read, without a file, and for a null buffer or a size below 2.
    bool ReadString(char* buffer, std::uint32_t size);

    /// Whether the last ReadString stopped inside a line, the rest of which the next one reads.
    bool IsInsideLine() const { return m_InsideLine; }

    /// Writes the text as it stands; line feeds are the caller's. \returns false when it could not be written
    /// or is null.
    bool WriteString(const char* text);

private:
    bool Open(const char16_t* path, const char16_t* mode);

    FileHandle m_File;
    bool m_InsideLine = false;
    bool m_IsWritten = false;
};

}  // namespace zulsys
