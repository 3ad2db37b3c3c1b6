#include "platform/crt.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cwchar>
#include <locale>
#include <optional>
#include <string>

namespace {

/// UTF-8 of a text that must be valid UTF-16: half a surrogate pair would name another file than was meant.
std::optional<std::string> ToUtf8(const char16_t* text) {
    using Codec = std::codecvt<char16_t, char, std::mbstate_t>;
    const auto& codec = std::use_facet<Codec>(std::locale::classic());
    const std::size_t length = std::char_traits<char16_t>::length(text);
    std::string result(length * 3, '\0');
    std::mbstate_t state{};
    const char16_t* read = text;
    char* written = result.data();
    const auto outcome =
        codec.out(state, text, text + length, read, result.data(), result.data() + result.size(), written);
    if (outcome != std::codecvt_base::ok || read != text + length) return std::nullopt;
    result.resize(static_cast<std::size_t>(written - result.data()));
    return result;
}

/// A path as the system wants it; nothing for what is none.
std::optional<std::string> ToNative(const char16_t* path) {
    if (path == nullptr) return std::nullopt;
    auto name = ToUtf8(path);
    if (name) std::replace(name->begin(), name->end(), '\\', '/');
    return name;
}

bool IsDirectory(std::FILE* file) {
    struct stat info {};
    return fstat(fileno(file), &info) == 0 && S_ISDIR(info.st_mode);
}

}  // namespace

std::FILE* zul_wfopen(const char16_t* path, const char16_t* mode) {
    if (path == nullptr || mode == nullptr) return nullptr;
    const auto name = ToNative(path);
    const auto access = ToUtf8(mode);
    if (!name || !access) return nullptr;
    std::FILE* const file = std::fopen(name->c_str(), access->c_str());
    if (file == nullptr || !IsDirectory(file)) return file;
    // A directory opens for reading here and fails only later; elsewhere it does not open.
    std::fclose(file);
    return nullptr;
}

static_assert(sizeof(off_t) == sizeof(std::int64_t), "files of any length are opened");

int zul_fseek(std::FILE* file, std::int64_t offset, int origin) {
    return fseeko(file, offset, origin);
}

std::int64_t zul_ftell(std::FILE* file) {
    return ftello(file);
}

bool zul_wreplaceable(const char16_t* path) {
    const auto name = ToNative(path);
    if (!name || name->empty()) return false;
    struct stat info {};
    const bool exists = lstat(name->c_str(), &info) == 0;
    if (exists ? !S_ISREG(info.st_mode) || access(name->c_str(), W_OK) != 0 : errno != ENOENT) return false;
    const std::string folder = name->substr(0, name->rfind('/') + 1) + ".";
    return access(folder.c_str(), W_OK | X_OK) == 0;
}

bool zul_wreplace(const char16_t* from, const char16_t* to) {
    const auto name = ToNative(from), place = ToNative(to);
    return name && place && std::rename(name->c_str(), place->c_str()) == 0;
}

bool zul_wremove(const char16_t* path) {
    const auto name = ToNative(path);
    return name && unlink(name->c_str()) == 0;
}
