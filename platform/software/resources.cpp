#include "platform/software/resources.h"

#include <algorithm>
#include <exception>
#include <map>
#include <mutex>
#include <string>
#include <utility>

#include "platform/dib_header.h"
#include "platform/software/objects.h"
#include "platform/software/trace.h"

namespace device {
namespace {

/// A text in one case, or "#" and a number: as a text too, "#12" names number 12.
std::u16string NormalName(LPCWSTR name) {
    std::u16string normal;
    if (IS_INTRESOURCE(name)) {
        for (const char digit : '#' + std::to_string(reinterpret_cast<std::uintptr_t>(name)))
            normal += static_cast<char16_t>(digit);
        return normal;
    }
    for (; *name != 0; ++name) {
        const bool lower = *name >= u'a' && *name <= u'z';
        normal += lower ? static_cast<char16_t>(*name - u'a' + u'A') : *name;
    }
    return normal;
}

struct Resource {
    std::uintptr_t handle;
    ResourceBytes bytes;
    std::vector<ResourceBytes> replaced;  ///< readers may still hold their addresses
};

struct Registry {
    std::mutex mutex;
    std::map<std::pair<HMODULE, std::u16string>, Resource> resources;
    std::uintptr_t last = 0xFFFF;
};

/// Outlives every static object of a program.
Registry& TheRegistry() {
    static Registry& registry = *new Registry;
    return registry;
}

/// Runs \p work under the lock on the resource with this handle; \returns its result, null for a stale
/// handle.
template <class Work>
auto WithResource(HMODULE module, HRSRC handle, Work&& work) -> decltype(work(std::declval<Resource&>())) {
    Registry& registry = TheRegistry();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    const auto found =
        std::find_if(registry.resources.begin(), registry.resources.end(), [=](const auto& entry) {
            return entry.first.first == module &&
                   entry.second.handle == reinterpret_cast<std::uintptr_t>(handle);
        });
    if (found == registry.resources.end()) return Fail(ERROR_INVALID_HANDLE), decltype(work(found->second))();
    return work(found->second);
}

/// The resource's handle and bytes; a handle of 0 when there is none.
std::pair<std::uintptr_t, ResourceBytes> Look(HMODULE module, LPCWSTR name) try {
    Registry& registry = TheRegistry();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    const auto found = registry.resources.find({module, NormalName(name)});
    if (found == registry.resources.end()) return {};
    return {found->second.handle, found->second.bytes};
} catch (const std::exception&) {
    return {};
}

}  // namespace

bool RegisterBitmapResource(HMODULE module, LPCWSTR name, const void* bytes, std::size_t size) try {
    if (module == nullptr || name == nullptr || bytes == nullptr) return false;
    const auto* first = static_cast<const std::uint8_t*>(bytes);
    if (size > dib::kFileHeaderSize && first[0] == 'B' && first[1] == 'M') {
        first += dib::kFileHeaderSize;
        size -= dib::kFileHeaderSize;
    }
    auto copy = std::make_shared<const std::vector<std::uint8_t>>(first, first + size);
    Registry& registry = TheRegistry();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    Resource& resource = registry.resources[{module, NormalName(name)}];
    if (resource.bytes != nullptr) resource.replaced.push_back(resource.bytes);
    resource.handle = ++registry.last;
    resource.bytes = std::move(copy);
    return true;
} catch (const std::exception&) {
    return false;
}

void RemoveBitmapResources(HMODULE module) {
    Registry& registry = TheRegistry();
    const std::lock_guard<std::mutex> lock(registry.mutex);
    for (auto entry = registry.resources.begin(); entry != registry.resources.end();) {
        entry = entry->first.first == module ? registry.resources.erase(entry) : std::next(entry);
    }
}

ResourceBytes FindBitmapResource(HMODULE module, LPCWSTR name) {
    return Look(module, name).second;
}

}  // namespace device

using namespace device;

HRSRC FindResourceW(HMODULE module, LPCWSTR name, LPCWSTR type) {
    Trace("FindResourceW", module, name, type);
    const std::uintptr_t handle = type == RT_BITMAP ? Look(module, name).first : 0;
    if (handle == 0) return Fail(ERROR_RESOURCE_NAME_NOT_FOUND);
    return reinterpret_cast<HRSRC>(handle);
}

HGLOBAL LoadResource(HMODULE module, HRSRC handle) {
    Trace("LoadResource", module, handle);
    return WithResource(module, handle, [](const Resource& resource) -> void* {
        return const_cast<std::uint8_t*>(resource.bytes->data());
    });
}

void* LockResource(HGLOBAL loaded) {
    Trace("LockResource", loaded);
    return loaded;
}

DWORD SizeofResource(HMODULE module, HRSRC handle) {
    Trace("SizeofResource", module, handle);
    return WithResource(module, handle, [](const Resource& resource) {
        return static_cast<DWORD>(std::min<std::size_t>(resource.bytes->size(), 0xFFFFFFFFu));
    });
}
