/// \file
/// A file that comes whole or not at all.
#pragma once

#include <string>

#include "zul/kernel/export.h"

namespace zulsys {

/// The name under which a file is written beside its place, and the step that moves it there once it is
/// complete: whoever looks at the place sees what it held before, or all of the new file. A place that files
/// cannot be moved to (a device, a link, a folder or a file that is write-protected) is written itself.
class ZUL_KERNEL_API CNewFile {
public:
    /// \param path the place; null gives a name that nothing can be written to.
    explicit CNewFile(const char16_t* path);
    /// Removes what was written and not kept.
    ~CNewFile();
    CNewFile(const CNewFile&) = delete;
    CNewFile& operator=(const CNewFile&) = delete;

    /// Where to write; to be closed before it is kept.
    const char16_t* GetPath() const { return m_Name.c_str(); }
    /// Moves the file to its place. \returns false when that fails; the place is as it was then.
    bool Keep();

private:
    std::u16string m_Place;
    std::u16string m_Name;
    bool m_Kept = false;
};

}  // namespace zulsys
