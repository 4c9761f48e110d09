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

/// The user's settings and library: binary values under keys, one file a key in one directory. A
/// value is handed over and written by a thread of its own; reads see it at once. On disk stands
/// either the old value or the new one, also after a power cut: a new file is written beside,
/// synced, and renamed over the old one. Its end waits until everything is written.
///
/// A value that can't be written (full disk, read-only directory) stays readable in this run and is
/// tried again with the next write, from time to time, and at the end; the old file stays as it is.
///
/// Writing belongs to the interface thread; any thread may read.
class UserDefaults : public QObject {
    Q_OBJECT

  public:
    /// The program's own store, in `configurationDirectory()`.
    [[nodiscard]] static UserDefaults& standard();

    /// "$XDG_CONFIG_HOME/Tamsy Music" in bytes; `~/.config` stands in for an unset or relative
    /// variable.
    [[nodiscard]] static QByteArray configurationDirectory();

    /// A store in `directory`, a path in bytes, which the first write makes if it is missing.
    explicit UserDefaults(QByteArray directory);
    ~UserDefaults() override;

    /// The latest value, or nothing if there is none. A file that is there and can't be read gives
    /// nothing too, and is moved aside before it would be overwritten.
    [[nodiscard]] std::optional<QByteArray> dataForKey(QByteArrayView key);

    /// Takes over `value` and returns; the file follows.
    void setObject(QByteArray value, QByteArrayView key);

    /// A number that was stored by `setDouble`; nothing if there is none or it isn't finite.
    [[nodiscard]] std::optional<double> doubleForKey(QByteArrayView key);
    void setDouble(double value, QByteArrayView key);

    /// Says that the stored bytes under `key` are damaged: the next write of it first gives them
    /// the name "<key>.damaged-<time>", which no other file ever had.
    void moveAside(QByteArrayView key);

    /// Waits until everything handed over is on disk. False if something can't be written.
    bool drain();

  Q_SIGNALS:
    /// `key` was given a new value.
    void valueChanged(const QByteArray& key);

  private:
    struct Pending {
        QByteArray value;
        unsigned revision = 0; // tells a value that came while the former one was being written
    };
    [[nodiscard]] StoredFile fileForKey(QByteArrayView key) const;
    void queueUnwritten();
    void runWriter();
    [[nodiscard]] bool write(const QByteArray& key, const QByteArray& value);

    const QByteArray directory_;
    std::mutex mutex_; // guards all that follows, but for the thread
    std::condition_variable changed_;
    QHash<QByteArray, Pending> pending_; // handed over and not on disk yet
    QList<QByteArray> queue_;            // what the writer does next, in order
    QSet<QByteArray> damaged_;
    QByteArray writing_; // the key in the writer's hands
    bool isEnding_ = false;
    std::thread writer_; // starts with the first write; started and joined by the owning thread
};

} // namespace tamsy
