#pragma once

#include <QByteArray>
#include <QByteArrayView>
#include <QHashFunctions>
#include <QString>

#include <optional>

namespace tamsy {

/// The address of a local file: its absolute text ("file://" and percent escapes, RFC 8089) over
/// the bytes of a path. File names are bytes on Linux, so a name that isn't valid UTF-8 lists,
/// plays, persists and hashes unchanged; only the shown text replaces what can't be decoded.
///
/// The text is the identity: two addresses are equal when their texts are. Text that was read from
/// a stored document is kept verbatim; text made from a path escapes every byte but letters, digits
/// and
/// `-._~!$&'()*+,:=@/` as %XX in upper case. That form is fixed for ever, since stored documents
/// and cache names hang on it. A copy shares its bytes. A default-made address is empty.
///
/// The text is held in two parts, so that the files of one folder can share the longer one: a large
/// library would hold the same folders' texts ten times over.
class FileURL {
  public:
    FileURL() = default;

    /// The address of `path`, an absolute path in bytes; a slash at its end is dropped.
    [[nodiscard]] static FileURL fromPath(QByteArrayView path);

    /// Reads the text of a file address and keeps it as it stands. Nothing if it is no absolute
    /// address with the file scheme on this machine, or if an escape is broken or hides a NUL.
    [[nodiscard]] static std::optional<FileURL> fromAbsoluteString(QByteArrayView text);

    /// The absolute text, ASCII when made from a path.
    [[nodiscard]] QByteArray absoluteString() const { return folder_ + name_; }

    /// The path's bytes, ready for the system's calls.
    [[nodiscard]] QByteArray path() const;

    /// The last component's bytes; "/" for the root.
    [[nodiscard]] QByteArray lastPathComponent() const;

    /// The last component as it is shown; undecodable bytes become U+FFFD.
    [[nodiscard]] QString lastPathComponentText() const;

    /// The last component without its extension, as it is shown.
    [[nodiscard]] QString nameWithoutExtensionText() const;

    /// What stands behind the last dot of the last component, as it is written: empty without a
    /// dot, with nothing before or behind the dot.
    [[nodiscard]] QByteArray pathExtension() const;

    /// The folder that holds this file.
    [[nodiscard]] FileURL parent() const;

    /// This folder's entry `name`, given in bytes.
    [[nodiscard]] FileURL appending(QByteArrayView name) const;

    /// Takes `neighbour`'s memory for the folder's text if the two lie in the same one.
    void shareFolder(const FileURL& neighbour) {
        if (folder_ == neighbour.folder_)
            folder_ = neighbour.folder_;
    }

    [[nodiscard]] bool isEmpty() const { return folder_.isEmpty(); }

    friend bool operator==(const FileURL& a, const FileURL& b) {
        return a.name_ == b.name_ && a.folder_ == b.folder_;
    }
    friend size_t qHash(const FileURL& url, size_t seed = 0) {
        return qHashMulti(seed, url.folder_, url.name_);
    }

  private:
    explicit FileURL(QByteArrayView text);

    QByteArray folder_; // up to the last slash, which it holds
    QByteArray name_;   // what stands behind it
};

} // namespace tamsy
