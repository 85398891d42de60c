// What exports answer, comparable and printable as one; and what tuner modules mean by their
// readings.
#pragma once

#include <cstdint>
#include <ostream>
#include <utility>

#include "ZElkAPI.h"

namespace zelk::test {

constexpr std::uint32_t kUntouched = 77;

struct Reading {
  HRESULT result;
  std::uint32_t present, strength;
  double offset;

  friend bool operator==(const Reading&, const Reading&) = default;
  friend void PrintTo(const Reading& r, std::ostream* out) {
    *out << r.result << " present " << r.present << " strength " << r.strength << " offset "
         << r.offset;
  }
};

// Asks `query`, ZELK_IsSignalPresent or ZELK_FMIsSignalPresent, with a place for the offset or
// without.
template <class Query>
Reading AskSignal(Query query, bool withOffset = true) {
  Reading reading = {0, kUntouched, kUntouched, kUntouched};
  reading.result =
      query(&reading.present, &reading.strength, withOffset ? &reading.offset : nullptr);
  return reading;
}

// What an export answered whose last argument is a place for one number.
using Answer = std::pair<HRESULT, std::uint32_t>;
template <class Value = std::uint32_t, class Export, class... Arguments>
Answer Ask(Export get, Arguments... arguments) {
  Value value = kUntouched;
  const HRESULT result = get(arguments..., &value);
  return {result, value};
}

// The three-bit reading of a PLL's own AFC, from 0 on.
inline constexpr Reading kPllReadings[] = {
    {S_OK, 0, 0, -125.0}, {S_OK, 1, 3, -62.5}, {S_OK, 1, 5, 0.0},   {S_OK, 1, 3, 62.5},
    {S_OK, 0, 0, 125.0},  {S_OK, 0, 5, 125.0}, {S_OK, 0, 6, 125.0}, {S_OK, 0, 7, 125.0},
};

// The four-bit reading of an IF demodulator, which says itself what of it is a carrier.
inline Reading DemodulatorReading(std::uint8_t code, bool present) {
  constexpr std::uint32_t kStrengths[] = {5, 4, 4, 3, 2, 1, 0, 0, 0, 0, 1, 2, 3, 4, 4, 5};
  const double offset = code < 8 ? -12.5 - 25.0 * code : 12.5 + 25.0 * (15 - code);
  return {S_OK, present, kStrengths[code], offset};
}

}  // namespace zelk::test
