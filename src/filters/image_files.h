// Filter images on file handles: saved images, which can follow each other, and the older layout.
#pragma once

#include <windows.h>

#include <optional>

#include "native/zlog/bit_map.h"

namespace qv::filters {

// Writes the image at the handle's position and leaves the position behind it. False when anything
// could not be written; what was written then is no image.
bool save_image(HANDLE file, native::zlog::ConstBitSpan set);

// Reads the image at the handle's position and leaves the position behind it. None for what is no
// whole, sound image. A length in the file is believed only as far as the file reaches.
std::optional<native::zlog::BitMap> load_image(HANDLE file);
std::optional<native::zlog::BitMap> load_older_image(HANDLE file);

}  // namespace qv::filters
