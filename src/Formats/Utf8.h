#pragma once

#include <QByteArrayView>
#include <QString>
#include <QStringDecoder>

#include <optional>
#include <utility>

namespace tamsy {

/// Decodes UTF-8, without a leading byte order mark; nothing if `bytes` aren't valid.
[[nodiscard]] inline std::optional<QString> decodeStrictUtf8(QByteArrayView bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    QString text = decoder(bytes);
    return decoder.hasError() ? std::nullopt : std::optional(std::move(text));
}

} // namespace tamsy
