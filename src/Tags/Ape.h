#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads the APE tag at the end of the file, or before an ID3v1 tag there: its texts, front cover
/// and lyrics.
void readApeTag(MediaParse& parse);

} // namespace tamsy::media
