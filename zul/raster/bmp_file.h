/// \file
/// Writing BMP files.
#pragma once

#include <cstdint>

#include "platform/gdi.h"
#include "zul/kernel/system/file_handle.h"
#include "zul/kernel/system/new_file.h"

namespace zul {

/// A BMP file while it is written, part by part. After the first part that fails nothing more is written.
/// What stood in its place stays until the file is complete.
class CBmpFile {
public:
    explicit CBmpFile(const char16_t* path);

    bool IsOpen() const { return m_File != nullptr; }
    /// The file header of a file that has the three parts after it: info header, colour table, rows.
    void WriteFileHeader(std::int64_t colorTableSize, std::int64_t imageSize);
    /// \p size bytes: the \p held ones at \p data, then zeros. \p data may be null when nothing is held.
    void Write(const void* data, std::int64_t held, std::int64_t size);
    /// Closes the file and puts it in its place. \returns whether all of it was written.
    bool Finish();

private:
    zulsys::CNewFile m_Place;
    zulsys::FileHandle m_File;
    bool m_Written = true;
};

}  // namespace zul
