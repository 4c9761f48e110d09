#pragma once

#include "Tags/MediaItem.h"
#include "Tags/TagText.h"

#include <QHash>

#include <cstdint>
#include <vector>

namespace tamsy::media {

/// Where the parsers of all containers put what they find, in file order. It knows what the caller
/// is out for, so that a parser passes over the rest unread, and limits what one file may fill
/// memory with.
class ItemCollector {
  public:
    enum class Wanted { CommonTexts, Everything };

    explicit ItemCollector(Wanted wanted);

    /// Whether a further item with this meaning is worth reading.
    [[nodiscard]] bool wants(std::optional<CommonKey> key) const;

    [[nodiscard]] bool listsEverything() const { return wanted_ == Wanted::Everything; }

    /// Whether a text of `length` bytes is to be read. No title is as long as 64 KiB, and no file
    /// has 8 MiB of texts to show, or titles of 256 KiB: what claims so is passed over.
    [[nodiscard]] bool wantsText(std::optional<CommonKey> key, std::uint64_t length);

    /// Bytes that a text with this meaning may have at the most.
    [[nodiscard]] std::uint64_t roomForText(std::optional<CommonKey> key) const;

    /// Whether one more compressed value may be unpacked when its bytes are asked for. No file has
    /// more than a few; each may be a thousand times as large as what stands in the file.
    [[nodiscard]] bool wantsPackedData() { return packedLeft_-- > 0; }

    /// Takes an item; a title, artist or album is named in the info dictionary by itself.
    void add(MediaItem item);
    void add(MediaItem item, TagText text);

    /// Takes a text of a poorer tag, which counts only if the file's other tags lack it.
    void addFallback(CommonKey key, TagText text);

    /// Items taken so far.
    [[nodiscard]] std::size_t count() const { return found_.size(); }

    /// Appends a further value to the text of the item with this meaning that was taken when
    /// `since` or more others were in; the hundredth and later ones are dropped. False if there is
    /// no item to append to.
    [[nodiscard]] bool appendValue(std::size_t since, CommonKey key, const TagText& text);

    [[nodiscard]] bool hasAllCommonTexts() const;

    /// Decodes what was left undecided and gives the items, the fallback ones last.
    [[nodiscard]] std::vector<MediaItem> takeItems();

  private:
    struct Found {
        MediaItem item;
        QByteArray undecided;
        bool isFallback = false;
        int values = 1;
    };

    [[nodiscard]] bool has(CommonKey key) const;
    void decodeUndecided();

    Wanted wanted_;
    std::uint64_t textBudget_;
    int packedLeft_ = 16;
    std::vector<Found> found_;
};

/// The texts of `items` by their names, the first of each name that isn't empty; a title, artist or
/// album that is white space counts as empty.
[[nodiscard]] QHash<QString, QString> namedTexts(const std::vector<MediaItem>& items);

} // namespace tamsy::media
