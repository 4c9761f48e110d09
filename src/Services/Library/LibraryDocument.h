#pragma once

#include <QByteArray>
#include <QStringView>
#include <QUuid>

#include <memory>
#include <memory_resource>
#include <optional>
#include <string_view>
#include <vector>

namespace tamsy {

/// One track of the stored library. Its texts are views, UTF-8, that the document keeps valid.
struct PersistedTrack {
    QUuid id;
    std::string_view urlString; ///< the absolute text of the file's address
    std::string_view title;
    std::string_view artist;
    std::string_view album;
    double duration = 0; ///< seconds
    std::string_view fileExtension;
};

/// In library order, in memory of the document's.
using PersistedTracks = std::pmr::vector<PersistedTrack>;

/// One folder of the stored library.
struct PersistedFolder {
    QUuid id;
    std::string_view bookmarkBase64;
    double dateAdded = 0;                  ///< seconds since 2001-01-01, 00:00 UTC
    std::optional<PersistedTracks> tracks; ///< absent until a first scan has finished
};

/// The stored library and its JSON form: an array of folder objects, in the order of adding, with
/// the field names above as keys. Keys that aren't known are passed over, of a key that comes twice
/// the later counts, and "tracks" may be null. Move-only; a default-made one is empty.
class LibraryDocument {
  public:
    LibraryDocument();
    LibraryDocument(LibraryDocument&&) noexcept;
    LibraryDocument& operator=(LibraryDocument&&) = delete; // would free the texts before the lists
    ~LibraryDocument();

    /// Nothing if `json` isn't such an array: a missing key or a wrong type anywhere counts.
    [[nodiscard]] static std::optional<LibraryDocument> decode(const QByteArray& json);

    /// Nothing if a number isn't finite, for which JSON has no form.
    [[nodiscard]] std::optional<QByteArray> encode() const;

    /// A copy of `text` in UTF-8 that lives as long as this document.
    [[nodiscard]] std::string_view keep(QStringView text);
    [[nodiscard]] std::string_view keep(QByteArrayView utf8);

    /// An empty list that must not outlive this document.
    [[nodiscard]] PersistedTracks makeTracks() const;

    /// In the order of adding.
    [[nodiscard]] const std::vector<PersistedFolder>& folders() const { return folders_; }
    [[nodiscard]] std::vector<PersistedFolder>& folders() { return folders_; }

  private:
    struct Storage;
    explicit LibraryDocument(qsizetype expectedSize);

    std::unique_ptr<Storage> storage_; // holds the texts and the track lists
    std::vector<PersistedFolder> folders_;
};

} // namespace tamsy
