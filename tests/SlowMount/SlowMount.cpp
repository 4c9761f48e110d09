// A passthrough file system that is as slow as the one it stands for:
//   slow_mount FOLDER MOUNTPOINT REQUEST_MILLISECONDS MEGABYTES_PER_SECOND
// Each lookup, open, getattr, readdir and read is delayed, and what is read takes its share of one
// rate. A new mount has nothing cached. SIGUSR1 makes all requests hang, SIGUSR2 lets them go on.

#define FUSE_USE_VERSION 31
#include <fuse3/fuse.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <mutex>
#include <string>
#include <thread>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

using Clock = std::chrono::steady_clock;
using Seconds = std::chrono::duration<double>;

std::string root;
Seconds delay{0};
double bytesPerSecond = 0;
std::atomic<bool> hangs = false;

std::mutex bucketMutex; // guards what follows
Clock::time_point bucketFree;

void waitWhileHanging() {
    while (hangs)
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
}

/// One request: its delay, and the time that `bytes` take after all that were asked for before.
void takeTime(std::size_t bytes = 0) {
    waitWhileHanging();
    std::this_thread::sleep_for(delay);
    if (bytes > 0) {
        Clock::time_point done;
        {
            const std::scoped_lock lock(bucketMutex);
            bucketFree = std::max(bucketFree, Clock::now()) +
                         std::chrono::duration_cast<Clock::duration>(
                             Seconds(static_cast<double>(bytes) / bytesPerSecond));
            done = bucketFree;
        }
        std::this_thread::sleep_until(done);
    }
    waitWhileHanging();
}

std::string real(const char* path) {
    return root + path;
}

int result(int value) {
    return value < 0 ? -errno : 0;
}

void* start(fuse_conn_info* /*connection*/, fuse_config* config) {
    // As network file systems do: what has been read stays until the file changes.
    config->auto_cache = 1;
    config->entry_timeout = config->attr_timeout = config->negative_timeout = 1;
    return nullptr;
}

int getAttributes(const char* path, struct stat* status, fuse_file_info* /*file*/) {
    takeTime();
    return result(::lstat(real(path).c_str(), status));
}

int readDirectory(const char* path, void* buffer, fuse_fill_dir_t fill, off_t /*offset*/,
                  fuse_file_info* /*file*/, fuse_readdir_flags /*flags*/) {
    takeTime();
    DIR* directory = ::opendir(real(path).c_str());
    if (directory == nullptr)
        return -errno;
    while (const dirent* entry = ::readdir(directory))
        fill(buffer, entry->d_name, nullptr, 0, fuse_fill_dir_flags(0));
    ::closedir(directory);
    return 0;
}

int openFile(const char* path, fuse_file_info* file) {
    takeTime();
    const int descriptor = ::open(real(path).c_str(), O_RDONLY | O_CLOEXEC);
    file->fh = static_cast<std::uint64_t>(descriptor);
    return result(descriptor);
}

int readFile(const char* /*path*/, char* buffer, std::size_t size, off_t offset,
             fuse_file_info* file) {
    const ssize_t count = ::pread(static_cast<int>(file->fh), buffer, size, offset);
    takeTime(static_cast<std::size_t>(std::max<ssize_t>(0, count)));
    return count < 0 ? -errno : static_cast<int>(count);
}

int closeFile(const char* /*path*/, fuse_file_info* file) {
    return result(::close(static_cast<int>(file->fh)));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 5) {
        std::fputs("usage: slow_mount folder mountpoint milliseconds megabytes-per-second\n",
                   stderr);
        return 2;
    }
    root = std::filesystem::absolute(argv[1]); // the library leaves the working directory
    delay = Seconds(std::atof(argv[3]) / 1000);
    bytesPerSecond = std::atof(argv[4]) * 1e6;
    std::signal(SIGUSR1, [](int) { hangs = true; });
    std::signal(SIGUSR2, [](int) { hangs = false; });
    fuse_operations operations{};
    operations.init = start;
    operations.getattr = getAttributes;
    operations.readdir = readDirectory;
    operations.open = openFile;
    operations.read = readFile;
    operations.release = closeFile;
    char foreground[] = "-f";
    char options[] = "-oro,fsname=slow";
    char* arguments[] = {argv[0], foreground, options, argv[2], nullptr};
    return fuse_main(4, arguments, &operations, nullptr);
}
