#pragma once

#include "Tags/MediaParse.h"

namespace tamsy::media {

/// Reads the APE tag at the end of the file, or ahead of the ID3v1 tag there: its texts, its front
/// cover and its lyrics.
void readApeTag(MediaParse& parse);

} // namespace tamsy::media
