#include "platform/crt.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <cwchar>
#include <locale>
#include <string>

namespace {

/// UTF-8 of a text that must be valid UTF-16: half a surrogate pair would name another file than was meant.
/// False when it is not, or has more than \p room bytes with its end.
bool ToUtf8(const char16_t* text, char* result, std::size_t room) {
    using Codec = std::codecvt<char16_t, char, std::mbstate_t>;
    const auto& codec = std::use_facet<Codec>(std::locale::classic());
    const char16_t* const end = text + std::char_traits<char16_t>::length(text);
    std::mbstate_t state{};
    const char16_t* read = text;
    char* written = result;
    const auto outcome = codec.out(state, text, end, read, result, result + room - 1, written);
    *written = '\0';
    return outcome == std::codecvt_base::ok && read == end;
}

/// A path as the system wants it. Needs no memory: a file can be removed when there is none.
class NativePath {
public:
    explicit NativePath(const char16_t* path) : m_IsPath(path != nullptr && ToUtf8(path, m_Text, PATH_MAX)) {
        if (!m_IsPath) m_Text[0] = '\0';
        std::replace(m_Text, m_Text + std::strlen(m_Text), '\\', '/');
    }
    /// Whether it is one, as far as its text tells.
    explicit operator bool() const { return m_IsPath; }
    const char* Get() const { return m_Text; }
    /// The folder's "." in place of the last name.
    void CutToFolder() {
        char* const slash = std::strrchr(m_Text, '/');
        std::strcpy(slash != nullptr ? slash + 1 : m_Text, ".");
    }

private:
    char m_Text[PATH_MAX + 1];  // and the folder's dot
    bool m_IsPath;
};

bool IsDirectory(std::FILE* file) {
    struct stat info {};
    return fstat(fileno(file), &info) == 0 && S_ISDIR(info.st_mode);
}

}  // namespace

std::FILE* zul_wfopen(const char16_t* path, const char16_t* mode) {
    const NativePath name(path);
    char access[16];
    if (!name || mode == nullptr || !ToUtf8(mode, access, sizeof access)) return nullptr;
    std::FILE* const file = std::fopen(name.Get(), access);
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
    NativePath name(path);
    if (name.Get()[0] == '\0') return false;
    struct stat info {};
    const bool exists = lstat(name.Get(), &info) == 0;
    if (exists ? !S_ISREG(info.st_mode) || access(name.Get(), W_OK) != 0 : errno != ENOENT) return false;
    name.CutToFolder();
    return access(name.Get(), W_OK | X_OK) == 0;
}

bool zul_wreplace(const char16_t* from, const char16_t* to) {
    const NativePath name(from), place(to);
    return name && place && std::rename(name.Get(), place.Get()) == 0;
}

bool zul_wremove(const char16_t* path) {
    const NativePath name(path);
    return name && unlink(name.Get()) == 0;
}
