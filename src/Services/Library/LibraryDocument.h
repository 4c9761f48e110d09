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

/// One track of the stored library. Its texts are UTF-8 and belong to the document.
struct PersistedTrack {
    QUuid id;
    std::string_view urlString; ///< the absolute text of the file's address
    std::string_view title;
    std::string_view artist;
    std::string_view album;
    double duration = 0; ///< seconds
    std::string_view fileExtension;
};

/// In library order. The memory belongs to the document.
using PersistedTracks = std::pmr::vector<PersistedTrack>;

/// One folder of the stored library.
struct PersistedFolder {
    QUuid id;
    std::string_view bookmarkBase64;
    double dateAdded = 0;                  ///< seconds since 2001-01-01, 00:00 UTC
    std::optional<PersistedTracks> tracks; ///< absent until the first scan has finished
};

/// The stored library and its JSON form: an array of folder objects in the order in which they were
/// added, with the field names above as keys. Unknown keys are ignored, the last of several equal
/// keys counts, and "tracks" may be null. Move-only; default-constructed it is empty.
class LibraryDocument {
  public:
    LibraryDocument();
    LibraryDocument(LibraryDocument&&) noexcept;
    LibraryDocument& operator=(LibraryDocument&&) = delete; // would free the memory of its folders
    ~LibraryDocument();

    /// Nothing if `json` isn't such an array, or if any object lacks a key or has one of the wrong
    /// type.
    [[nodiscard]] static std::optional<LibraryDocument> decode(const QByteArray& json);

    /// Nothing if a number isn't finite: JSON has no form for it.
    [[nodiscard]] std::optional<QByteArray> encode() const;

    /// A copy of `text` in UTF-8 that lives as long as this document.
    [[nodiscard]] std::string_view keep(QStringView text);
    [[nodiscard]] std::string_view keep(QByteArrayView utf8);

    /// An empty list that must not outlive this document.
    [[nodiscard]] PersistedTracks makeTracks() const;

    /// In the order in which they were added.
    [[nodiscard]] const std::vector<PersistedFolder>& folders() const { return folders_; }
    [[nodiscard]] std::vector<PersistedFolder>& folders() { return folders_; }

  private:
    struct Storage;
    explicit LibraryDocument(qsizetype expectedSize);

    std::unique_ptr<Storage> storage_; // owns the texts and track lists; destroyed last
    std::vector<PersistedFolder> folders_;
};

} // namespace tamsy
