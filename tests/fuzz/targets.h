// The parsers of what people write, as a fuzzer sees them: any text goes in; out comes what the
// parser promises, or the one kind of complaint that it promises.
#pragma once

#include <span>
#include <string_view>

namespace zelk::fuzz {

struct Target {
  std::string_view name;
  // Whether the text was taken. Throws when a promise is broken, and lets through what no parser
  // may throw.
  bool (*takes)(std::string_view text);
};

std::span<const Target> Targets();

}  // namespace zelk::fuzz
