#pragma once

#include "Tags/MediaParse.h"

#include <string>

namespace tamsy::media {

/// One chunk of an IFF-like file: its four-letter name and the place of its body.
struct Chunk {
    std::string name;
    std::uint64_t body = 0;
    std::uint64_t size = 0;    ///< as much of it as the file has
    std::uint64_t claimed = 0; ///< as much as its header says
};

/// How a family of files writes a chunk's size.
enum class ChunkSizes { LittleEndian32, BigEndian32, BigEndian64 };

/// Steps through the chunks that stand side by side.
class ChunkWalk {
  public:
    ChunkWalk(ByteWindow& window, ChunkSizes sizes, std::uint64_t begin, std::uint64_t end)
        : window_(window), sizes_(sizes), position_(begin), end_(end) {}

    /// The next chunk; nothing at the end.
    [[nodiscard]] std::optional<Chunk> next();

    /// Goes on behind `size` bytes of the chunk that was given last, which claimed another size.
    void resize(Chunk& chunk, std::uint64_t size);

  private:
    ByteWindow& window_;
    ChunkSizes sizes_;
    std::uint64_t position_;
    std::uint64_t end_;
    int left_ = mostEntries;
};

/// The text of a chunk up to its first NUL; nothing if `items` doesn't want it.
[[nodiscard]] std::optional<TagText> chunkText(MediaParse& parse, const Chunk& chunk,
                                               std::optional<CommonKey> key);

/// Takes the text of a chunk that no list has, only the info dictionary, under the chunk's name.
void addNamedChunk(MediaParse& parse, const Chunk& chunk);

} // namespace tamsy::media
