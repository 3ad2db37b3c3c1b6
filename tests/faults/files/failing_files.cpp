#include "tests/faults/files/failing_files.h"

#include <fcntl.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <vector>

// The one place from which the kernel takes calls as they are. (Linux, x86-64: number in rax, arguments in
// rdi, rsi, rdx, r10, r8, r9.)
extern "C" long faults_call(long number, const long* arguments);
extern "C" const char faults_called[];
asm(R"(
    .text
    .globl faults_call
faults_call:
    mov %rdi, %rax
    mov %rsi, %r11
    mov 0(%r11), %rdi
    mov 8(%r11), %rsi
    mov 16(%r11), %rdx
    mov 32(%r11), %r8
    mov 40(%r11), %r9
    mov 24(%r11), %r10
    syscall
    .globl faults_called
faults_called:
    ret
)");

namespace faults {
namespace {

constexpr std::size_t kMostFiles = 4096;
enum Does { Other, Sleeps, Duplicates, Opens, Closes, Reads, Writes, Syncs, Removes, WantsRoom, Locks };

/// Which arguments say what file is meant: by name or by number; -1: none.
struct Call {
    long number;
    const char* name;
    int path, otherPath, file;
    Does does;
};
constexpr Call kCalls[] = {
    {SYS_clock_nanosleep, "sleep", -1, -1, -1, Sleeps},
    {SYS_dup, "dup", -1, -1, -1, Duplicates},
    {SYS_dup2, "dup2", -1, -1, -1, Duplicates},
    {SYS_open, "open", 0, -1, -1, Opens},
    {SYS_openat, "open", 1, -1, -1, Opens},
    {SYS_close, "close", -1, -1, 0, Closes},
    {SYS_read, "read", -1, -1, 0, Reads},
    {SYS_pread64, "pread", -1, -1, 0, Reads},
    {SYS_readv, "readv", -1, -1, 0, Other},
    {SYS_getdents64, "getdents", -1, -1, 0, Other},
    {SYS_mmap, "mmap", -1, -1, 4, Other},
    {SYS_write, "write", -1, -1, 0, Writes},
    {SYS_pwrite64, "pwrite", -1, -1, 0, Writes},
    {SYS_writev, "writev", -1, -1, 0, WantsRoom},
    {SYS_fallocate, "fallocate", -1, -1, 0, WantsRoom},
    {SYS_ftruncate, "ftruncate", -1, -1, 0, Other},
    {SYS_fsync, "fsync", -1, -1, 0, Syncs},
    {SYS_fdatasync, "fdatasync", -1, -1, 0, Syncs},
    {SYS_fcntl, "fcntl", -1, -1, 0, Locks},
    {SYS_fstat, "fstat", -1, -1, 0, Other},
    {SYS_stat, "stat", 0, -1, -1, Other},
    {SYS_lstat, "lstat", 0, -1, -1, Other},
    {SYS_newfstatat, "fstatat", 1, -1, 0, Other},
    {SYS_access, "access", 0, -1, -1, Other},
    {SYS_readlink, "readlink", 0, -1, -1, Other},
    {SYS_rename, "rename", 0, 1, -1, Other},
    {SYS_link, "link", 0, 1, -1, WantsRoom},
    {SYS_mkdir, "mkdir", 0, -1, -1, WantsRoom},
    {SYS_unlink, "unlink", 0, -1, -1, Removes},
    {SYS_unlinkat, "unlinkat", 1, -1, -1, Removes},
};

// Of the process, and touched by the handler: nothing here allocates.
std::array<bool, kMostFiles> s_isWatched;
char s_folder[512];
Kind s_kind;
bool s_isArmed;
bool s_isFull;  // after a write that was cut short
unsigned s_n, s_calls, s_failed;
bool s_kept;
const char* s_firstName;
char s_firstFile[256];

const char* PathOf(const Call& call, const long* arguments) {
    return call.path < 0 ? "" : reinterpret_cast<const char*>(arguments[call.path]);
}

bool IsWatched(const Call& call, const long* arguments) {
    if (const char* path = PathOf(call, arguments); path != nullptr && *path != 0) {
        return *path != '/' || std::strncmp(path, s_folder, std::strlen(s_folder)) == 0;
    }
    const long file = call.file < 0 ? -1 : arguments[call.file];
    if (file < 0 || file >= static_cast<long>(kMostFiles) || !s_isWatched[static_cast<std::size_t>(file)])
        return false;
    // Locking fails, letting go of a lock does not.
    return call.does != Locks ||
           (arguments[1] == F_SETLK && reinterpret_cast<const flock*>(arguments[2])->l_type != F_UNLCK);
}

bool IsCounted(const Call& call, const long* arguments) {
    switch (s_kind) {
        case Kind::Full:
            return call.does == Writes || call.does == WantsRoom ||
                   (call.does == Opens && (arguments[call.path + 1] & O_CREAT) != 0);
        case Kind::Short:
            return (call.does == Writes || call.does == Reads) && arguments[2] > 1;
        default:
            return true;
    }
}

void Note(const Call& call, const long* arguments) {
    if (call.does == Removes) s_kept = true;
    if (s_failed++ != 0) return;
    s_firstName = call.name;
    std::strncpy(s_firstFile, PathOf(call, arguments), sizeof s_firstFile - 1);
    if (*s_firstFile == 0) std::snprintf(s_firstFile, sizeof s_firstFile, "%ld", arguments[call.file]);
}

/// The call's result, after the fault that it is to have.
long Answer(const Call& call, long* arguments) {
    const auto real = [&] { return call.does == Syncs ? 0 : faults_call(call.number, arguments); };
    if (!s_isArmed) return real();
    const bool wantsRoom = call.does == Writes || call.does == WantsRoom;
    if (s_isFull && wantsRoom) return Note(call, arguments), -ENOSPC;
    if (!IsCounted(call, arguments)) return real();
    ++s_calls;
    const bool fails = s_kind != Kind::None &&
                       (s_calls == s_n || (s_calls > s_n && (s_kind == Kind::Ever || s_kind == Kind::Full)));
    if (!fails) return real();
    Note(call, arguments);
    if (s_kind == Kind::Short) {
        arguments[2] /= 2;
        s_isFull = call.does == Writes;
        return real();
    }
    // The number is free all the same.
    if (call.does == Closes) real();
    return s_kind == Kind::Full ? -ENOSPC : -EIO;
}

void OnCall(int, siginfo_t* info, void* context) {
    greg_t* const registers = static_cast<ucontext_t*>(context)->uc_mcontext.gregs;
    long arguments[] = {registers[REG_RDI], registers[REG_RSI], registers[REG_RDX],
                        registers[REG_R10], registers[REG_R8],  registers[REG_R9]};
    const auto* const call = std::find_if(std::begin(kCalls), std::end(kCalls), [info](const Call& each) {
        return each.number == info->si_syscall;
    });
    if (call->does == Sleeps) {  // waiting for better times helps nobody here
        registers[REG_RAX] = 0;
        return;
    }
    const bool isWatched = IsWatched(*call, arguments);
    const long file = call->does == Opens ? 0 : arguments[0];
    const long result = isWatched ? Answer(*call, arguments) : faults_call(call->number, arguments);
    const bool isNew = call->does == Opens || call->does == Duplicates;
    if (isNew && result >= 0 && result < static_cast<long>(kMostFiles)) {
        const bool inherits =
            call->does == Duplicates && s_isWatched[static_cast<std::size_t>(file) % kMostFiles];
        s_isWatched[static_cast<std::size_t>(result)] = isWatched || inherits;
    } else if (call->does == Closes && file >= 0 && file < static_cast<long>(kMostFiles)) {
        s_isWatched[static_cast<std::size_t>(file)] = false;
    }
    registers[REG_RAX] = result;
}

/// Our own place is let through, the listed calls are trapped, the others pass.
std::vector<sock_filter> MakeFilter() {
    const auto place = reinterpret_cast<std::uint64_t>(faults_called);
    constexpr std::uint32_t kPlace = offsetof(seccomp_data, instruction_pointer);
    std::vector<sock_filter> filter = {
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kPlace),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(place), 0, 3),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kPlace + 4),
        BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(place >> 32), 0, 1),
        BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
    };
    for (const Call& call : kCalls) {
        filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<std::uint32_t>(call.number), 0, 1));
        filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_TRAP));
    }
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    return filter;
}

}  // namespace

bool WatchFiles(const std::string& folder) {
    std::strncpy(s_folder, folder.c_str(), sizeof s_folder - 1);
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code ignored;
        const std::string target = std::filesystem::read_symlink(entry.path(), ignored);
        s_isWatched[std::stoul(entry.path().filename()) % kMostFiles] =
            target.compare(0, folder.size(), folder) == 0;
    }
    struct sigaction action {};
    action.sa_sigaction = OnCall;
    action.sa_flags = SA_SIGINFO | SA_NODEFER;
    std::vector<sock_filter> filter = MakeFilter();
    const sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    return ::sigaction(SIGSYS, &action, nullptr) == 0 && ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) == 0;
}

void Arm(Kind kind, unsigned n) {
    s_kind = kind;
    s_n = n;
    s_calls = s_failed = 0;
    s_isFull = s_kept = false;
    s_firstName = "";
    *s_firstFile = 0;
    s_isArmed = true;
}

Record Disarm() {
    s_isArmed = false;
    return {s_calls, s_failed, s_kept, std::string(s_firstName) + " " + s_firstFile};
}

}  // namespace faults
