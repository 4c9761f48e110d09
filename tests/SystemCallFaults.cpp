// A program's own definition of a function comes before the C library's, for its libraries too.
#include "SystemCallFaults.h"

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

namespace {

std::atomic<int> failing = 0; // no call if 0
std::atomic<int> calls = 0;
std::atomic<int> injectedError = 0;

bool fails() {
    if (failing == 0 || ++calls != failing)
        return false;
    errno = injectedError;
    return true;
}

template <typename Result, typename... Arguments>
Result systemCall(const char* name, Arguments... arguments) {
    using Function = Result(Arguments...);
    return reinterpret_cast<Function*>(::dlsym(RTLD_NEXT, name))(arguments...);
}

} // namespace

void tamsy::SystemCallFaults::arm(int number, int error) {
    calls = 0;
    injectedError = error;
    failing = number;
}

int tamsy::SystemCallFaults::disarm() {
    failing = 0;
    return calls;
}

// NOLINTBEGIN(*-vararg,*-function-size,readability-inconsistent-declaration-parameter-name)
extern "C" {

int open(const char* path, int flags, ...) {
    va_list arguments;
    va_start(arguments, flags);
    const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(arguments, mode_t) : 0;
    va_end(arguments);
    return fails() ? -1 : systemCall<int>("open", path, flags, mode);
}

int openat(int directory, const char* path, int flags, ...) {
    return fails() ? -1 : systemCall<int>("openat", directory, path, flags);
}

int close(int descriptor) {
    const int result = systemCall<int>("close", descriptor); // closes in any case
    return fails() ? -1 : result;
}

ssize_t pread(int descriptor, void* target, size_t size, off_t offset) {
    return fails() ? -1 : systemCall<ssize_t>("pread", descriptor, target, size, offset);
}

ssize_t write(int descriptor, const void* bytes, size_t size) {
    return fails() ? -1 : systemCall<ssize_t>("write", descriptor, bytes, size);
}

int fsync(int descriptor) {
    return fails() ? -1 : systemCall<int>("fsync", descriptor);
}

int fstat(int descriptor, struct stat* status) noexcept {
    return fails() ? -1 : systemCall<int>("fstat", descriptor, status);
}

int lstat(const char* path, struct stat* status) noexcept {
    return fails() ? -1 : systemCall<int>("lstat", path, status);
}

int access(const char* path, int mode) noexcept {
    return fails() ? -1 : systemCall<int>("access", path, mode);
}

int mkdir(const char* path, mode_t mode) noexcept {
    return fails() ? -1 : systemCall<int>("mkdir", path, mode);
}

int mkostemp(char* path, int flags) {
    return fails() ? -1 : systemCall<int>("mkostemp", path, flags);
}

int link(const char* from, const char* to) noexcept {
    return fails() ? -1 : systemCall<int>("link", from, to);
}

int unlink(const char* path) noexcept {
    return fails() ? -1 : systemCall<int>("unlink", path);
}

int rename(const char* from, const char* to) noexcept {
    return fails() ? -1 : systemCall<int>("rename", from, to);
}
}
// NOLINTEND(*-vararg,*-function-size,readability-inconsistent-declaration-parameter-name)
