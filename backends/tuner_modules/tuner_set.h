// A set of tuner type codes, for the tables that are keyed by them.
#pragma once

#include <cstdint>
#include <initializer_list>

namespace zelk {

class TunerSet {
 public:
  constexpr TunerSet(std::initializer_list<std::uint32_t> types) {
    for (const std::uint32_t type : types) bits_ |= std::uint64_t{1} << type;
  }
  constexpr bool Has(std::uint32_t type) const { return type < 64 && ((bits_ >> type) & 1) != 0; }

 private:
  std::uint64_t bits_ = 0;
};

}  // namespace zelk
