// A library to be preloaded: one call of the system on files of a folder fails, as the environment says.
//
// FAILING_FOLDER  only calls on files in it count
// FAILING_CALL    the name of the call, "open" for example
// FAILING_NUMBER  which of these calls fails, beginning with 1; none for 0
// FAILING_ERROR   with which number of the system
// FAILING_COUNT   a file that is told how many there were

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

const char *setting(const char *name) {
    const char *const value = std::getenv(name);
    return value ? value : "";
}

std::atomic<int> count = 0;

struct Counter {
    ~Counter() {
        if (std::FILE *const file = std::fopen(setting("FAILING_COUNT"), "w")) {
            std::fprintf(file, "%d", count.load());
            std::fclose(file);
        }
    }
} counter;

/// Whether this call is the one that fails; errno is set then.
bool fails(const char *call, const char *path) {
    static const char *const folder = setting("FAILING_FOLDER");
    if (std::strcmp(call, setting("FAILING_CALL")) != 0 || *folder == '\0' ||
        std::strncmp(path, folder, std::strlen(folder)) != 0)
        return false;
    if (++count != std::atoi(setting("FAILING_NUMBER")))
        return false;
    errno = std::atoi(setting("FAILING_ERROR"));
    return true;
}

bool fails(const char *call, int descriptor) {
    std::array<char, 64> link{};
    std::array<char, 4096> path{};
    std::snprintf(link.data(), link.size(), "/proc/self/fd/%d", descriptor);
    return ::readlink(link.data(), path.data(), path.size() - 1) > 0 && fails(call, path.data());
}

template <typename Function>
Function *real(const char *name) {
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

} // namespace

// What follows has the names and the forms of the C library.
#define ON_DESCRIPTOR(result, call, name, parameters, ...)                                                   \
    result name parameters {                                                                                 \
        static auto *const original = real<result parameters>(#name);                                        \
        return fails(call, descriptor) ? -1 : original(__VA_ARGS__);                                         \
    }
#define ON_PATH(call, name, parameters, ...)                                                                 \
    int name parameters {                                                                                    \
        static auto *const original = real<int parameters>(#name);                                           \
        return fails(call, path) ? -1 : original(__VA_ARGS__);                                               \
    }
#define OPENING(name)                                                                                        \
    int name(const char *path, int flags, ...) {                                                             \
        va_list rest;                                                                                        \
        va_start(rest, flags);                                                                               \
        const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(rest, mode_t) : 0;                               \
        va_end(rest);                                                                                        \
        static auto *const original = real<int(const char *, int, ...)>(#name);                              \
        return fails("open", path) ? -1 : original(path, flags, mode);                                       \
    }
#define CONTROLLING(name)                                                                                    \
    int name(int descriptor, int command, ...) {                                                             \
        va_list rest;                                                                                        \
        va_start(rest, command);                                                                             \
        void *const argument = va_arg(rest, void *);                                                         \
        va_end(rest);                                                                                        \
        static auto *const original = real<int(int, int, ...)>(#name);                                       \
        return fails("fcntl", descriptor) ? -1 : original(descriptor, command, argument);                    \
    }

extern "C" {

OPENING(open)
OPENING(open64)
CONTROLLING(fcntl)
CONTROLLING(fcntl64)
ON_DESCRIPTOR(int, "fstat", fstat, (int descriptor, struct stat *status), descriptor, status)
ON_DESCRIPTOR(int, "fstat", fstat64, (int descriptor, struct stat64 *status), descriptor, status)
ON_DESCRIPTOR(int, "fsync", fsync, (int descriptor), descriptor)
ON_DESCRIPTOR(int, "flock", flock, (int descriptor, int operation), descriptor, operation)
ON_DESCRIPTOR(int, "fchmod", fchmod, (int descriptor, mode_t mode), descriptor, mode)
ON_DESCRIPTOR(ssize_t, "read", read, (int descriptor, void *room, size_t size), descriptor, room, size)
ON_DESCRIPTOR(ssize_t, "write", write, (int descriptor, const void *bytes, size_t size), descriptor, bytes,
              size)
ON_PATH("stat", stat, (const char *path, struct stat *status), path, status)
ON_PATH("stat", stat64, (const char *path, struct stat64 *status), path, status)
ON_PATH("lstat", lstat, (const char *path, struct stat *status), path, status)
ON_PATH("lstat", lstat64, (const char *path, struct stat64 *status), path, status)
ON_PATH("mkdir", mkdir, (const char *path, mode_t mode), path, mode)
ON_PATH("unlink", unlink, (const char *path), path)
ON_PATH("access", access, (const char *path, int mode), path, mode)
ON_PATH("rename", rename, (const char *path, const char *to), path, to)

} // extern "C"
