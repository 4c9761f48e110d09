#pragma once

#include "Platform/Storage/StoredFile.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QHash>
#include <QList>
#include <QObject>
#include <QSet>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

namespace tamsy {

/// The user's settings and library: binary values under keys, one file per key in one directory. A
/// thread of its own writes them; reads see a new value at once. The disk always has the old value
/// or the new one, even after a power cut: a temporary file is written, synced and renamed over the
/// old one. The destructor waits until everything is written.
///
/// A value that can't be written (full disk, read-only directory) stays readable and is retried
/// with the next write, periodically, and at the end; the old file stays.
///
/// Only the interface thread writes; any thread may read.
class UserDefaults : public QObject {
    Q_OBJECT

  public:
    /// The program's store, in `configurationDirectory()`.
    [[nodiscard]] static UserDefaults& standard();

    /// "$XDG_CONFIG_HOME/Tamsy Music" in bytes, with `~/.config` as the default.
    [[nodiscard]] static QByteArray configurationDirectory();

    /// A store in `directory`, a path in bytes. The first write creates it if it is missing.
    explicit UserDefaults(QByteArray directory);
    ~UserDefaults() override;

    /// The latest value; nothing if there is none. Something that isn't a regular file gives
    /// nothing too and is moved aside before it is overwritten. A file that can't be read now (an
    /// I/O error, no permission, no free descriptor, a directory that has vanished) gives nothing,
    /// and the key takes no new value until it has been read: what it would overwrite is unknown.
    [[nodiscard]] std::optional<QByteArray> dataForKey(QByteArrayView key);

    /// Sets the value and returns at once; the file is written later. False, and nothing changes,
    /// if the last read of `key` failed.
    bool setObject(QByteArray value, QByteArrayView key);

    /// Makes the next write of `key` keep the value it replaces in the file "<key>.previous". Only
    /// the last one is kept.
    void keepPrevious(QByteArrayView key);

    /// A number stored by `setDouble`; nothing if there is none or it isn't finite.
    [[nodiscard]] std::optional<double> doubleForKey(QByteArrayView key);
    void setDouble(double value, QByteArrayView key);

    /// Marks the stored bytes under `key` as damaged: its next write first renames them to an
    /// unused name, "<key>.damaged-<time>".
    void moveAside(QByteArrayView key);

    /// Waits until all values are on disk. False if one can't be written.
    bool drain();

  Q_SIGNALS:
    /// `key` has a new value.
    void valueChanged(const QByteArray& key);

  private:
    struct Pending {
        QByteArray value;
        unsigned revision = 0; // detects a value set while the previous one was being written
    };
    [[nodiscard]] StoredFile fileForKey(QByteArrayView key) const;
    void queueUnwritten();
    void runWriter();
    [[nodiscard]] bool hasVanished() const;
    [[nodiscard]] bool write(const QByteArray& key, const QByteArray& value);

    const QByteArray directory_;
    std::mutex mutex_; // guards everything below except `writer_`
    std::condition_variable changed_;
    QHash<QByteArray, Pending> pending_; // not on disk yet
    QList<QByteArray> queue_;            // keys to write, in order
    QSet<QByteArray> damaged_;
    QSet<QByteArray> unreadable_;            // keys whose last read failed
    QHash<QByteArray, QByteArray> previous_; // values to keep; null for the one on disk
    bool hasSeenDirectory_ = false;          // a value was read or written there
    QByteArray writing_;                     // the key that is being written
    bool isEnding_ = false;
    std::thread writer_; // starts with the first write; started and joined by the owning thread
};

} // namespace tamsy
