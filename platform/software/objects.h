/// \file
/// Handles and the objects behind them.
///
/// A handle packs a type, a generation and a table index into 31 bits:
///
///     30      27 26             16 15                 0
///     | OBJ_*   | generation      | index             |
///
/// so it is never below 0x10000, fits a pointer of any host, and goes stale when its slot is used again.
/// Look-up takes no lock; making and ending objects does.
#pragma once

#include <atomic>
#include <cstdint>
#include <exception>
#include <memory>
#include <new>
#include <utility>

#include "platform/gdi.h"

namespace device {

/// What every handle leads to. The table owns the objects.
struct Object {
    explicit Object(DWORD objectType) : type(objectType) {}
    virtual ~Object() = default;
    Object(const Object&) = delete;
    Object& operator=(const Object&) = delete;

    const DWORD type;  ///< OBJ_*
    HGDIOBJ handle = nullptr;
    bool stock = false;  ///< never deleted, never counted
    std::atomic<int> selections{0};
    std::atomic<bool> doomed{false};  ///< deleted while selected: ends with its last selection
};

/// Sets the calling thread's last error.
void SetError(DWORD error);
/// Sets the last error and gives the null or zero to return: `return Fail(ERROR_INVALID_HANDLE);`
struct Failure {
    template <class T>
    operator T*() const {
        return nullptr;
    }
    operator int() const { return 0; }
};
Failure Fail(DWORD error);

/// Runs what may be short of memory; \returns what it returns, or null or zero with the error set.
template <class Work>
auto WithMemory(Work&& work) -> decltype(work()) {
    try {
        return work();
    } catch (const std::exception&) {
        return Fail(ERROR_NOT_ENOUGH_MEMORY);
    }
}

/// Takes the object into the table. Null, with the error set, when \p object is null (no memory) or the
/// table is full.
HGDIOBJ Publish(std::unique_ptr<Object> object);

/// The object behind a live handle, or null.
Object* Find(HGDIOBJ handle);

/// The object behind a live handle of one type, or null. \p T names its type in `T::kType`.
template <class T>
T* Find(HGDIOBJ handle) {
    Object* object = Find(handle);
    return object != nullptr && object->type == T::kType ? static_cast<T*>(object) : nullptr;
}

/// Makes an object without throwing; null when memory is short.
template <class T, class... Arguments>
std::unique_ptr<T> MakeObject(Arguments&&... arguments) {
    return std::unique_ptr<T>(new (std::nothrow) T(std::forward<Arguments>(arguments)...));
}

/// Takes the object out of the table and destroys it.
void End(Object* object);

/// Counts a selection; stock objects are not counted.
void Select(Object* object);
/// Takes a selection back, which ends an object deleted meanwhile.
void Deselect(Object* object);

}  // namespace device
