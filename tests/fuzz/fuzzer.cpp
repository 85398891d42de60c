// A program of the fuzzer's, for the target that it is compiled for.
#include <cstdint>

#include "tests/fuzz/targets.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  for (const zelk::fuzz::Target& target : zelk::fuzz::Targets()) {
    if (target.name == ZELK_FUZZ_TARGET) target.takes(text);
  }
  return 0;
}
