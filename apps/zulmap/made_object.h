/// \file
/// Objects of the library made with `new`, whose allocator answers null where others throw.
#pragma once

#include <memory>
#include <utility>

#include "zul/kernel/buffer.h"
#include "zul/kernel/references.h"

namespace zulmap {

/// \throws std::bad_alloc
template <class T, class... Arguments>
std::unique_ptr<T> MakeObject(Arguments&&... arguments) {
    std::unique_ptr<T> made(new T(std::forward<Arguments>(arguments)...));
    zul::NeedMemory(made != nullptr);
    return made;
}

/// An object that goes with the last reference to it. \throws std::bad_alloc
template <class T, class... Arguments>
zul::CRef<T> MakeReferred(Arguments&&... arguments) {
    auto made = MakeObject<T>(std::forward<Arguments>(arguments)...);
    zul::CRef<T> reference;
    reference.DoAdoptInstance(made.release());
    return reference;
}

}  // namespace zulmap
