/// \file
/// What a user does to a viewer.
#pragma once

#include <string>

#include "zul/geometry/coordinates.h"

namespace zulmap {

struct ViewInput {
    enum class Kind {
        Press,    ///< a button goes down at a pixel
        Release,  ///< and up
        Move,     ///< the pointer comes to a pixel, which during a drag may lie outside the window
        Leave,    ///< the pointer leaves the window
        Wheel,    ///< steps at a pixel; above 0 away from the user
        Key,      ///< a key goes down or repeats
        Resize,   ///< the window has another size
        Abandon,  ///< the window can no longer tell what becomes of a drag
        Quit,
    };
    /// Left drags the map, right draws a band around what is to be shown.
    enum class Button { Left, Right };

    Kind kind = Kind::Leave;
    zul::TLongPoint at{};
    Button button = Button::Left;
    int steps = 0;
    std::string key;  ///< as in Viewer::DescribeKeys(), in small letters
    zul::TSize size{};
};

}  // namespace zulmap
