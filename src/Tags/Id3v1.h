#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads the ID3v1 tag (id3.org) at the end of the file, for a title, artist or album that the
/// file's other tags lack. Most files lack none, and their end isn't read.
void readId3v1(MediaParse& parse);

} // namespace tamsy::media
