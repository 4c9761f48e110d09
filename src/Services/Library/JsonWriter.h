#pragma once

#include <QByteArray>
#include <QUuid>

#include <optional>
#include <string_view>

namespace tamsy {

/// Writes one JSON text (RFC 8259) from front to back, as fast as memory takes it: a library of
/// 100,000 tracks is written while the interface waits.
class JsonWriter {
  public:
    /// `expectedSize` in bytes saves growing; the text may become longer.
    explicit JsonWriter(qsizetype expectedSize);

    /// Punctuation and keys, as they stand.
    void raw(std::string_view json);

    /// A string: `utf8` in quotes, with the escapes that the format demands.
    void text(std::string_view utf8);

    /// The shortest number that reads back as `value`. A number that is not finite has no JSON form
    /// and spoils the whole text.
    void number(double value);

    /// A string: the canonical 36 characters in upper case.
    void uuid(const QUuid& id);

    /// The text written so far, or nothing if a number spoiled it. The writer is empty then.
    [[nodiscard]] std::optional<QByteArray> take();

  private:
    char* room(std::size_t size);
    void finishedAt(const char* end) { size_ = end - buffer_.constData(); }

    QByteArray buffer_; // its size is the room; the text takes the first `size_` bytes
    qsizetype size_ = 0;
    bool isSpoiled_ = false;
};

} // namespace tamsy
