// The answers of a signal query, comparable and printable as one.
#pragma once

#include <cstdint>
#include <ostream>

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

}  // namespace zelk::test
