/// \file
/// Damage that a reader of BMP images minds: to the numbers of their headers.
#pragma once

#include <cstddef>
#include <cstdint>

namespace fuzz {

/// Changes a BMP file, or what stands behind its file header, as LLVMFuzzerCustomMutator is asked to. Now and
/// then the image becomes another one, sound or questionable.
std::size_t MutateBmp(std::uint8_t* data, std::size_t size, std::size_t mostSize, unsigned seed,
                      bool fileHeader);

}  // namespace fuzz
