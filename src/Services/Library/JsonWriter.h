#pragma once

#include <QByteArray>
#include <QUuid>

#include <optional>
#include <string_view>

namespace tamsy {

/// Writes one JSON text (RFC 8259) from front to back. It must be fast: the interface waits while a
/// library of 100,000 tracks is written.
class JsonWriter {
  public:
    /// `expectedSize`, in bytes, saves reallocations; the text may become longer.
    explicit JsonWriter(qsizetype expectedSize);

    /// Appends punctuation and keys verbatim.
    void raw(std::string_view json);

    /// Appends `utf8` as a string, escaped as the format requires.
    void text(std::string_view utf8);

    /// Appends the shortest number that reads back as `value`. A number that isn't finite has no
    /// JSON form and makes the whole text invalid.
    void number(double value);

    /// Appends a string: the canonical 36 characters in upper case.
    void uuid(const QUuid& id);

    /// The text written so far, or nothing if it is invalid. The writer is empty afterwards.
    [[nodiscard]] std::optional<QByteArray> take();

  private:
    char* room(std::size_t size);
    void finishedAt(const char* end) { size_ = end - buffer_.constData(); }

    QByteArray buffer_; // the text is its first `size_` bytes
    qsizetype size_ = 0;
    bool isInvalid_ = false;
};

} // namespace tamsy
