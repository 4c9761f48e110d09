#include "Playback/FFmpeg/CoverChunks.h"

#include "Formats/ByteCursor.h"
#include "Playback/FFmpeg/FileInput.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace tamsy {
namespace {

struct Chunk {
    std::string_view name; // valid until the finder's next read
    std::int64_t nameOffset = 0;
    std::int64_t body = 0;
    std::int64_t end = 0;
};

class Finder {
  public:
    explicit Finder(const FileInput& file) : file_(file) {}

    std::vector<std::int64_t> find() {
        const std::int64_t size = file_.size();
        file_.expectRandomReads(true);
        const auto bytes = file_.readAt(0, start_);
        const std::string_view start(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        if (start.substr(std::min<std::size_t>(4, start.size()), 4) == "ftyp")
            visitAtoms(0, size, 0);
        else if (start.starts_with("FORM"))
            visitIffChunks(start.size(), size);
        file_.expectRandomReads(false);
        return std::move(found_);
    }

  private:
    // A box's size precedes its name and includes both; a chunk's follows its name and includes
    // neither.
    enum class Layout { Atom, Chunk };

    std::optional<Chunk> chunkAt(std::int64_t offset, std::int64_t end, Layout layout) {
        if (offset >= end || chunksLeft_ == 0)
            return std::nullopt;
        --chunksLeft_;
        ByteCursor cursor(file_.readAt(offset, header_));
        std::int64_t size = 0;
        std::int64_t nameOffset = offset;
        if (layout == Layout::Atom) {
            size = cursor.readU32().value_or(0);
            nameOffset += 4;
        }
        const auto name = cursor.readBytes(4);
        if (!name)
            return std::nullopt;
        if (layout == Layout::Chunk)
            size = std::int64_t{8} + cursor.readU32().value_or(0);
        else if (size == 1)
            size = static_cast<std::int64_t>(
                std::min<std::uint64_t>(cursor.readU64().value_or(0), INT64_MAX));
        const auto headerSize = static_cast<std::int64_t>(cursor.position());
        if (size < headerSize || size > end - offset)
            return std::nullopt;
        return Chunk{{reinterpret_cast<const char*>(name->data()), name->size()},
                     nameOffset,
                     offset + headerSize,
                     offset + size};
    }

    /// `depth` is an index into the path.
    void visitAtoms(std::int64_t offset, std::int64_t end, std::size_t depth) {
        static constexpr std::array<std::string_view, 4> path{"moov", "udta", "meta", "ilst"};
        while (const auto atom = chunkAt(offset, end, Layout::Atom)) {
            constexpr std::int64_t versionSize = 4; // at the start of "meta"
            offset = atom->end;
            if (atom->name == "covr")
                found_.push_back(atom->nameOffset);
            else if (depth < path.size() && atom->name == path[depth])
                visitAtoms(atom->body + (atom->name == "meta" ? versionSize : 0), atom->end,
                           depth + 1);
        }
    }

    void visitIffChunks(std::size_t start, std::int64_t end) {
        auto offset = static_cast<std::int64_t>(start);
        while (const auto chunk = chunkAt(offset, end, Layout::Chunk)) {
            if (chunk->name == "ID3 ")
                found_.push_back(chunk->nameOffset);
            offset = chunk->end + (chunk->end - chunk->body) % 2;
        }
    }

    const FileInput& file_;
    int chunksLeft_ = 200; // a music file has some dozens
    std::array<std::byte, 12> start_{};
    std::array<std::byte, 16> header_{};
    std::vector<std::int64_t> found_;
};

} // namespace

std::vector<std::int64_t> findCoverChunks(const FileInput& file) {
    return Finder(file).find();
}

} // namespace tamsy
