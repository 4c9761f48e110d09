#include "Playback/Miniaudio/FileWindow.h"

#include "Playback/Miniaudio/ReadBudget.h"

#include <algorithm>
#include <span>

namespace tamsy {

struct FileWindow::Functions {
    static FileWindow& windowOf(ma_vfs_file file) { return *static_cast<FileWindow*>(file); }

    static ma_result open(ma_vfs* self, const char* /*path*/, ma_uint32 mode, ma_vfs_file* file) {
        auto* const window = static_cast<FileWindow*>(self);
        window->position_ = 0;
        *file = window;
        return mode == MA_OPEN_MODE_READ ? MA_SUCCESS : MA_ACCESS_DENIED;
    }

    static ma_result close(ma_vfs* /*self*/, ma_vfs_file /*file*/) { return MA_SUCCESS; }

    static ma_result read(ma_vfs* /*self*/, ma_vfs_file file, void* target, std::size_t size,
                          std::size_t* count) {
        FileWindow& window = windowOf(file);
        const std::uint64_t left = window.size_ - std::min(window.size_, window.position_);
        const auto wanted = static_cast<std::size_t>(std::min<std::uint64_t>(size, left));
        const std::span bytes(static_cast<std::byte*>(target), wanted);
        *count = 0;
        if (!ReadBudget::isSpent())
            *count = window.file_->read(window.start_ + window.position_, bytes).size();
        ReadBudget::take(*count);
        window.position_ += *count;
        return *count == 0 && size > 0 ? MA_AT_END : MA_SUCCESS;
    }

    static ma_result seek(ma_vfs* /*self*/, ma_vfs_file file, ma_int64 offset,
                          ma_seek_origin origin) {
        FileWindow& window = windowOf(file);
        const std::uint64_t from = origin == ma_seek_origin_start     ? 0
                                   : origin == ma_seek_origin_current ? window.position_
                                                                      : window.size_;
        const auto target = static_cast<ma_int64>(from) + offset;
        if (target < 0)
            return MA_BAD_SEEK;
        window.position_ = static_cast<std::uint64_t>(target);
        return MA_SUCCESS;
    }

    static ma_result tell(ma_vfs* /*self*/, ma_vfs_file file, ma_int64* cursor) {
        *cursor = static_cast<ma_int64>(windowOf(file).position_);
        return MA_SUCCESS;
    }

    static ma_result info(ma_vfs* /*self*/, ma_vfs_file file, ma_file_info* info) {
        info->sizeInBytes = windowOf(file).size_;
        return MA_SUCCESS;
    }
};

FileWindow::FileWindow(const AudioFile& file, std::uint64_t start, std::uint64_t end)
    : functions_{.onOpen = &Functions::open,
                 .onOpenW = nullptr,
                 .onClose = &Functions::close,
                 .onRead = &Functions::read,
                 .onWrite = nullptr,
                 .onSeek = &Functions::seek,
                 .onTell = &Functions::tell,
                 .onInfo = &Functions::info},
      file_(&file),
      start_(start),
      size_(end - std::min(start, end)) {}

} // namespace tamsy
