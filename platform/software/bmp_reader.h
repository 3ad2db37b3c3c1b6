/// \file
/// Reads BMP images. The layouts are those of the platform's documentation of bitmap storage: core, info, V4
/// and V5 headers, run-length compression of 4 and 8 bits, colour masks.
#pragma once

#include <memory>

#include "platform/software/byte_source.h"
#include "platform/software/context.h"

namespace device {

/// The image as a section: at the depth it is stored with, for runs and masks as well; masks that no layout
/// of the device has become 32 bits. Pixels that a run-length image passes over are 0. \p fileHeader: whether
/// the 14 bytes come first that a file begins with. \returns null for anything but one whole image, and when
/// memory is short.
std::unique_ptr<Bitmap> ReadBmp(ByteSource& source, bool fileHeader);

}  // namespace device
