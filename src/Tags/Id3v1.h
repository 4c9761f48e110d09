#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads the ID3v1 tag (id3.org) at the file's end: its title, artist and album count where the
/// file's other tags lack them. Most files need no look at their end for it.
void readId3v1(MediaParse& parse);

} // namespace tamsy::media
