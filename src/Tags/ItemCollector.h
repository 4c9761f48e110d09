#pragma once

#include "Tags/MediaItem.h"
#include "Tags/TagText.h"

#include <QHash>

#include <cstdint>
#include <vector>

namespace tamsy::media {

/// Collects the items that the parsers of all containers find, in file order. It knows what the
/// caller wants, so that parsers skip the rest unread, and limits the memory that one file can use.
class ItemCollector {
  public:
    enum class Wanted { CommonTexts, Everything };

    explicit ItemCollector(Wanted wanted);

    /// Whether another item with this meaning is wanted.
    [[nodiscard]] bool wants(std::optional<CommonKey> key) const;

    [[nodiscard]] bool listsEverything() const { return wanted_ == Wanted::Everything; }

    /// Whether a text of `length` bytes is wanted. The limits are 64 KiB for a title, 256 KiB for
    /// all titles and 8 MiB for all texts of a file; longer texts are skipped.
    [[nodiscard]] bool wantsText(std::optional<CommonKey> key, std::uint64_t length);

    /// The maximum size of a text with this meaning, in bytes.
    [[nodiscard]] std::uint64_t maxTextSize(std::optional<CommonKey> key) const;

    /// Whether one more compressed value may be decompressed on request. Files have few of them,
    /// and each can expand a thousandfold.
    [[nodiscard]] bool wantsPackedData() { return packedLeft_-- > 0; }

    /// Adds an item. A title, artist or album gets its key in the info dictionary here.
    void add(MediaItem item);
    void add(MediaItem item, TagText text);

    /// Adds a text of a minor tag, which is used only if the file's other tags lack it.
    void addFallback(CommonKey key, TagText text);

    /// The number of items so far.
    [[nodiscard]] std::size_t count() const { return found_.size(); }

    /// Puts the first `count` items after the others.
    void moveToEnd(std::size_t count);

    /// Appends a value to the text of the item with this meaning among those from index `since` on;
    /// from the hundredth on, values are dropped. False if there is no such item.
    [[nodiscard]] bool appendValue(std::size_t since, CommonKey key, const TagText& text);

    [[nodiscard]] bool hasAllCommonTexts() const;

    /// Decodes the remaining raw texts and returns the items, those of minor tags last.
    [[nodiscard]] std::vector<MediaItem> takeItems();

  private:
    struct Found {
        MediaItem item;
        QByteArray rawBytes;
        bool isFallback = false;
        int values = 1;
    };

    [[nodiscard]] bool has(CommonKey key) const;
    void decodeRawTexts();

    Wanted wanted_;
    std::uint64_t textBudget_;
    int packedLeft_ = 16;
    std::vector<Found> found_;
};

/// The texts of `items` by key: the first non-empty one of each. A blank title, artist or album
/// counts as empty.
[[nodiscard]] QHash<QString, QString> namedTexts(const std::vector<MediaItem>& items);

} // namespace tamsy::media
