#include "Platform/Storage/DirectoryWalk.h"

#include "Platform/Storage/DirectoryStream.h"
#include "Platform/Storage/NaturalOrder.h"
#include "Utils/FileURL.h"

#include <algorithm>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <vector>

namespace tamsy {
namespace {

enum class EntryKind { File, Directory, Other };

EntryKind kindOf(int directory, const dirent& entry) {
    switch (entry.d_type) {
    case DT_REG:
        return EntryKind::File;
    case DT_DIR:
        return EntryKind::Directory;
    case DT_UNKNOWN:
        break;
    default:
        return EntryKind::Other;
    }
    // Some file systems don't store types in their directories.
    struct stat status {};
    if (::fstatat(directory, entry.d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
        return EntryKind::Other;
    if (S_ISREG(status.st_mode))
        return EntryKind::File;
    return S_ISDIR(status.st_mode) ? EntryKind::Directory : EntryKind::Other;
}

/// The wanted entries of one directory, and the walk's position among them. All names share one
/// buffer, since a directory may have a million entries.
class Listing {
  public:
    struct Entry {
        qsizetype offset;
        qsizetype size;
        bool isDirectory;
    };

    explicit Listing(FileURL directory) : directory_(std::move(directory)) {}

    void read(DirectoryStream& stream, const std::stop_token& stop,
              const DirectoryWalk::NameFilter& isWanted) {
        while (const dirent* entry = stop.stop_requested() ? nullptr : stream.next()) {
            const QByteArrayView name = entry->d_name;
            if (name.startsWith('.'))
                continue;
            const EntryKind kind = kindOf(stream.descriptor(), *entry);
            if (kind == EntryKind::Directory || (kind == EntryKind::File && isWanted(name)))
                add(name, kind == EntryKind::Directory);
        }
        std::sort(entries_.begin(), entries_.end(), [this](const Entry& a, const Entry& b) {
            return naturallyBefore(name(a), name(b));
        });
    }

    [[nodiscard]] std::optional<Entry> next() {
        return next_ < entries_.size() ? std::optional(entries_[next_++]) : std::nullopt;
    }

    [[nodiscard]] FileURL url(const Entry& entry) const {
        return directory_.appending(name(entry));
    }

  private:
    void add(QByteArrayView name, bool isDirectory) {
        entries_.push_back({names_.size(), name.size(), isDirectory});
        names_.append(name);
    }

    [[nodiscard]] QByteArrayView name(const Entry& entry) const {
        return QByteArrayView(names_).sliced(entry.offset, entry.size);
    }

    FileURL directory_;
    QByteArray names_;
    std::vector<Entry> entries_;
    std::size_t next_ = 0;
};

} // namespace

void DirectoryWalk::visitFiles(const FileURL& folder, const std::stop_token& stop,
                               const NameFilter& isWanted, const Visitor& visit) {
    std::vector<Listing> path; // from the folder down to the current directory
    const auto enter = [&](const FileURL& directory, int flags) {
        DirectoryStream stream(openDirectory(directory.path(), flags));
        if (stream.isOpen())
            path.emplace_back(directory).read(stream, stop, isWanted);
    };
    enter(folder, 0);
    while (!path.empty() && !stop.stop_requested()) {
        const auto entry = path.back().next();
        if (!entry)
            path.pop_back();
        else if (entry->isDirectory)
            enter(path.back().url(*entry), O_NOFOLLOW);
        else
            visit(path.back().url(*entry));
    }
}

} // namespace tamsy
