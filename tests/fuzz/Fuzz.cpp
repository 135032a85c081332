// SPDX-License-Identifier: GPL-3.0-or-later

// Has libFuzzer make inputs for one target, SPRIG_FUZZ_TARGET.

#include <cstddef>
#include <cstdint>

#include "fuzz/Targets.h"

// The name is libFuzzer's.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  sprig::fuzz::SPRIG_FUZZ_TARGET({reinterpret_cast<const char*>(data), size});
  return 0;
}
