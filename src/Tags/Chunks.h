#pragma once

#include "Tags/MediaParse.h"

#include <string>

namespace tamsy::media {

/// A chunk of an IFF-like file: its four-letter name and the offset of its body.
struct Chunk {
    std::string name;
    std::uint64_t body = 0;
    std::uint64_t size = 0;    ///< the part that is in the file
    std::uint64_t claimed = 0; ///< the size in its header
};

/// How a file format stores a chunk's size.
enum class ChunkSizes { LittleEndian32, BigEndian32, BigEndian64 };

/// Steps through sibling chunks.
class ChunkWalk {
  public:
    ChunkWalk(ByteWindow& window, ChunkSizes sizes, std::uint64_t begin, std::uint64_t end)
        : window_(window), sizes_(sizes), position_(begin), end_(end) {}

    /// The next chunk; nothing at the end.
    [[nodiscard]] std::optional<Chunk> next();

    /// Continues after `size` bytes of the last chunk, whose header has another size.
    void resize(Chunk& chunk, std::uint64_t size);

  private:
    ByteWindow& window_;
    ChunkSizes sizes_;
    std::uint64_t position_;
    std::uint64_t end_;
    int left_ = maxEntries;
};

/// A chunk's text up to its first NUL; nothing if `items` doesn't want it.
[[nodiscard]] std::optional<TagText> chunkText(MediaParse& parse, const Chunk& chunk,
                                               std::optional<CommonKey> key);

/// Adds a chunk's text to the info dictionary only, under the chunk's name.
void addNamedChunk(MediaParse& parse, const Chunk& chunk);

} // namespace tamsy::media
