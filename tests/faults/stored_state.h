// What objects are, as a short text to compare.
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

#include "zul/kernel/any_object.h"
#include "zul/kernel/references.h"
#include "zul/kernel/stream.h"

namespace faults {

/// FNV-1a.
inline std::string HashOf(const void* bytes, std::size_t size) {
    std::uint64_t hash = 0xCBF29CE484222325;
    for (std::size_t i = 0; i < size; ++i)
        hash = (hash ^ static_cast<const std::uint8_t*>(bytes)[i]) * 0x100000001B3;
    return std::to_string(hash) + ' ';
}

/// Keeps stored forms, with nothing of references but that they are there.
class CStateStream : public zul::CMemoryStream {
public:
    std::int64_t ToStoredId(const zul::CAnyObject* object) override { return object != nullptr; }
    std::int64_t ToStoredId(const zul::CObjectID& id) override { return !id.IsNull(); }
};

inline std::string StateOf(std::initializer_list<zul::CAnyObject*> objects) {
    std::string text;
    for (zul::CAnyObject* object : objects) {
        CStateStream stream;
        object->ObjectToBuffer(&stream);
        text += HashOf(stream.GetBuffer(), stream.GetSize());
    }
    return text;
}

}  // namespace faults
