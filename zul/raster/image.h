/// \file
/// The image: a picture that is stored by the name of its file.
#pragma once

#include "zul/kernel/string.h"
#include "zul/raster/bitmap.h"

namespace zul {

/// A bitmap from a BMP file in the directory "resource" of the system database (CClient::SetSysDBDir). Only
/// the file's name is stored; the picture is loaded when its handle is first asked for, and again after
/// Clear. Every failure is a false result or a null handle, nothing is reported, and the next use tries
/// again.
class ZUL_API CImage : public CBitmap {
public:
    using CBitmap::Create;

    /// Remembers \p name, relative to the directory, and loads the file.
    /// \returns false for a file that is missing, does not start as a BMP file or cannot be read by the
    /// device. The name is remembered then too, and a picture that was there before stays.
    bool Create(const char16_t* name) override;
    /// Loads the picture when there is none; null without a name and when the file fails.
    HBITMAP GetHandle() override;
    /// As last given to Create or read from a stream.
    const CString& GetPath() const { return m_Path; }

    // --- persist: the name alone ---

    bool ObjectToBuffer(CStream* stream) override;
    /// \returns true. A picture of another name than the one read is dropped; a stream that is too short
    /// leaves no name.
    bool ObjectFromBuffer(CStream* stream) override;
    std::uint32_t GetPreferredSize() override;

private:
    CString m_Path;
};

}  // namespace zul
