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
/// The text is the identity: two addresses are equal when their texts are. Text read from a stored
/// document is kept verbatim; text made from a path escapes every byte but letters, digits and
/// `-._~!$&'()*+,:=@/` as %XX in upper case. That form must never change: stored documents and
/// cache file names depend on it. Copies share their bytes. A default-constructed address is empty.
///
/// The text is held in two parts, folder and name, so that the files of one folder can share the
/// folder's text: a large library would otherwise hold it ten times over.
class FileURL {
  public:
    FileURL() = default;

    /// The address of `path`, an absolute path in bytes; trailing slashes are dropped.
    [[nodiscard]] static FileURL fromPath(QByteArrayView path);

    /// Takes the text of a file address verbatim. Nothing unless it is an absolute address on this
    /// machine with the file scheme, or if an escape is malformed or encodes a NUL.
    [[nodiscard]] static std::optional<FileURL> fromAbsoluteString(QByteArrayView text);

    /// The absolute text, ASCII when made from a path.
    [[nodiscard]] QByteArray absoluteString() const { return folder_ + name_; }

    /// The path's bytes, as system calls take them.
    [[nodiscard]] QByteArray path() const;

    /// The last component's bytes; "/" for the root.
    [[nodiscard]] QByteArray lastPathComponent() const;

    /// The last component for display; undecodable bytes become U+FFFD.
    [[nodiscard]] QString lastPathComponentText() const;

    /// The last component without its extension, for display.
    [[nodiscard]] QString nameWithoutExtensionText() const;

    /// The text after the last dot of the last component, its case unchanged; empty if there is no
    /// dot or nothing before or after it.
    [[nodiscard]] QByteArray pathExtension() const;

    /// The folder that contains this file.
    [[nodiscard]] FileURL parent() const;

    /// The address of the entry `name` (bytes) in this folder.
    [[nodiscard]] FileURL appending(QByteArrayView name) const;

    /// Shares the memory of `neighbour`'s folder text if both are in the same folder.
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

    QByteArray folder_; // up to and including the last slash
    QByteArray name_;   // everything after it
};

} // namespace tamsy
