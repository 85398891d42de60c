// Sets of tuner type codes, one bit each.
#pragma once

#include <cstdint>
#include <initializer_list>

namespace zelk::virtual_cards {

constexpr std::uint64_t TunerTypes(std::initializer_list<unsigned> types) {
  std::uint64_t bits = 0;
  for (const unsigned type : types) bits |= std::uint64_t{1} << type;
  return bits;
}

constexpr bool HoldsTunerType(std::uint64_t types, std::uint32_t type) {
  return type < 64 && (types >> type & 1) != 0;
}

}  // namespace zelk::virtual_cards
