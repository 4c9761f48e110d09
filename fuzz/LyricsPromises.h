#pragma once

#include "FuzzTarget.h"
#include "Models/Lyrics.h"

#include <algorithm>
#include <optional>

namespace tamsy::fuzz {

/// Synced lyrics have lines, sorted by time; plain lyrics have no times; no line is empty.
inline void requireSound(const std::optional<Lyrics>& lyrics) {
    if (!lyrics)
        return;
    const auto& lines = lyrics->lines;
    require(!lyrics->isSynced || !lines.isEmpty());
    require(std::ranges::is_sorted(lines, {}, &LyricsLine::time));
    require(std::ranges::none_of(lines, [&](const LyricsLine& line) {
        return line.text.isEmpty() || (!lyrics->isSynced && line.time != 0);
    }));
}

} // namespace tamsy::fuzz
