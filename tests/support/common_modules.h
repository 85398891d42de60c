// The tuner modules that every card family drives alike: where their bands change and what their
// PLL is then sent.
#pragma once

#include <cstdint>
#include <vector>

namespace zelk::test {

struct TunerModule {
  std::vector<std::uint32_t> types;
  std::uint32_t midFrom, highFrom;  // kHz
  const char* dividerAtMid;         // at midFrom
  const char* dividerAtHigh;        // at highFrom
  const char *low, *mid, *high;     // control and band byte
};

inline const TunerModule kCommonModules[] = {
    {{0, 1, 6, 7, 8, 9}, 170000, 450000, "0D 0E", "1E 8E", "CE A0", "CE 90", "CE 30"},
    {{26, 28, 33, 34}, 170000, 450000, "0D 0E", "1E 8E", "CE A0", "CE 90", "CE 30"},
    {{2, 3}, 170000, 450000, "0D 0E", "1E 8E", "8E A1", "8E 91", "8E 31"},
    {{4, 5, 31, 32}, 160000, 454000, "0C DC", "1F 3C", "8E A0", "8E 90", "8E 30"},
    {{10, 11}, 160000, 454000, "0D AC", "20 0C", "8E A0", "8E 90", "8E 30"},
    {{12, 13}, 160000, 442000, "0C DC", "1E 7C", "86 41", "86 42", "86 44"},
    {{14, 15}, 158000, 442000, "0C 4E", "1E 0E", "86 21", "86 22", "86 24"},
    {{16, 17}, 160000, 442000, "0D AC", "1F 4C", "86 41", "86 42", "86 44"},
    {{20, 21}, 158000, 422000, "0C 4E", "1C CE", "CE 01", "CE 02", "CE 04"},
    {{24}, 170000, 468000, "0D 7C", "20 1C", "CE 01", "CE 02", "CE 08"},
    {{25, 27}, 170000, 450000, "0D 0E", "1E 8E", "CE 01", "CE 02", "CE 08"},
    {{29, 30}, 170000, 450000, "0D 7E", "1E FE", "8E 01", "8E 02", "8E 08"},
};

}  // namespace zelk::test
