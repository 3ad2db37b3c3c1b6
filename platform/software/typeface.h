/// \file
/// Which font file stands for what a font asks for. Looking up takes a lock; what it gave is good for ever.
#pragma once

#include <string>

#include "platform/gdi.h"

namespace device {

/// A face in a file, and what has to be done to its outlines.
struct Typeface {
    std::string file;                      ///< empty: there is none, and boxes stand for the characters
    int index = 0;                         ///< of the face within its file
    bool embolden = false, slant = false;  ///< asked for, but the file is not bold or slanted itself
    int weight = 400;                      ///< what was asked for, in hundreds
    bool italic = false;

    bool operator<(const Typeface& other) const;
};

/// The face of that name, else one like it. Throws std::bad_alloc.
const Typeface& MatchTypeface(const LOGFONTW& description);
/// A face of the same style that has a character which \p typeface lacks, or null. Throws std::bad_alloc.
const Typeface* MatchCharacter(const Typeface& typeface, char32_t character);

}  // namespace device
