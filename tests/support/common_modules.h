// What the card families have in common about tuner modules: where their bands change and what
// their PLL is then sent, their TV bands, and how boards name them.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <span>
#include <vector>

#include "ZElkAPI.h"

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

// Bytes that name consecutive tuner types.
struct TunerRun {
  std::uint32_t first, last, tunerType;
};

inline std::uint32_t TunerNamed(std::span<const TunerRun> runs, std::uint32_t byte,
                                std::uint32_t otherwise) {
  for (const TunerRun& run : runs) {
    if (run.first <= byte && byte <= run.last) return run.tunerType + byte - run.first;
  }
  return otherwise;
}

// The TV band of consecutive tuner types, in kHz.
struct TvLimits {
  std::uint32_t first, last, low, high;
};

inline constexpr TvLimits kCommonTvLimits[] = {
    {0, 3, 48250, 855250},   {4, 5, 55250, 801250},   {6, 9, 48250, 855250},
    {10, 11, 91250, 765250}, {12, 13, 55250, 801250}, {14, 15, 48250, 863250},
    {16, 17, 91250, 765250}, {18, 19, 49250, 863250}, {20, 21, 48250, 863250},
    {24, 24, 91250, 765250}, {25, 28, 48250, 855250}, {29, 32, 55250, 801250},
    {33, 34, 48250, 855250}, {44, 44, 55250, 801250}, {0, 0xFFFFFFFF, 52250, 802000}};

// `own` are the modules whose band the family draws otherwise.
inline void ExpectTvLimits(const ZELK_HWInfo& info, std::span<const TvLimits> own,
                           std::uint32_t tunerType) {
  for (const std::span<const TvLimits> rows : {own, std::span<const TvLimits>(kCommonTvLimits)}) {
    for (const TvLimits& row : rows) {
      if (tunerType < row.first || row.last < tunerType) continue;
      EXPECT_EQ(info.TvLowKHz, row.low) << "tuner type " << tunerType;
      EXPECT_EQ(info.TvHighKHz, row.high) << "tuner type " << tunerType;
      return;
    }
  }
}

}  // namespace zelk::test
