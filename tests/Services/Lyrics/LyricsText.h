#pragma once

#include "Models/Lyrics.h"

#include <QStringList>

#include <optional>
#include <string>

/// Lyrics in one line of text: "synced: 1.5 words | 2 more", "plain: words | more", "nothing".
inline std::string shown(const std::optional<tamsy::Lyrics>& lyrics) {
    if (!lyrics)
        return "nothing";
    QStringList lines;
    for (const auto& [time, text] : lyrics->lines)
        lines << (lyrics->isSynced || time != 0
                      ? QString(QString::number(time, 'g', 12) + QChar(u' ') + text)
                      : text);
    return (lyrics->isSynced ? "synced: " : "plain: ") + lines.join(u" | "_qs).toStdString();
}
