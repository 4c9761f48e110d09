#pragma once

#include "Formats/Mp4Atom.h"
#include "Tags/MediaParse.h"

#include <string>
#include <vector>

namespace tamsy::media {

/// Reads the three kinds of tags in an MPEG-4 file: the item list, the list with named keys, and
/// QuickTime's user data texts.
class Mp4Tags {
  public:
    Mp4Tags(MediaParse& parse, int& atomsLeft) : parse_(parse), atomsLeft_(atomsLeft) {}

    /// Reads a `udta` atom: its texts, and the `meta` atom in it.
    void readUserData(const Mp4Atom& userData);

    /// Reads a `meta` atom and its lists.
    void readMeta(const Mp4Atom& meta);

  private:
    /// A value of a list item: a `data` atom's contents after type and locale.
    struct Value {
        std::uint32_t type = 0;
        std::uint64_t offset = 0;
        std::uint64_t size = 0;
    };

    void readKeys(const Mp4Atom& keys);
    void readList(const Mp4Atom& list);
    void readListItem(const Mp4Atom& entry);
    void readUserText(const Mp4Atom& atom);
    void addValues(const MediaItem& item, const std::vector<Value>& values);
    [[nodiscard]] MediaItem itemFor(const Mp4Atom& entry, const std::string& freeName) const;
    [[nodiscard]] std::optional<TagText> textOf(const MediaItem& item, const Value& value);
    void setReader(MediaItem& item, std::uint64_t offset, std::uint64_t size) const;

    MediaParse& parse_;
    int& atomsLeft_;
    bool namesKeys_ = false;
    std::vector<std::string> keys_;
};

} // namespace tamsy::media
