// What a receiver has to know of a transmitted TV standard. Standards are AnalogVideoStandard bits.
#pragma once

#include <cstdint>

namespace zelk::virtual_cards {

enum class ColourSystem { kNtsc = 1, kPal = 2, kSecam = 3 };

struct TvStandard {
  std::uint32_t bits;     // the standards this row describes
  double soundOffsetKHz;  // sound carrier above the picture carrier
  bool positive;          // picture modulation: white at full carrier
  unsigned lines;         // of a frame
  ColourSystem colour;
};

// A standard that no row describes is taken for PAL B/G.
const TvStandard& DescribeStandard(std::uint32_t standard);

}  // namespace zelk::virtual_cards
