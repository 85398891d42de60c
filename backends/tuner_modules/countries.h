// Countries and their television standards, as far as the tuner drivers need to be told about them.
// Countries are international dialling codes.
#pragma once

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <optional>

#include "platform/dshow.h"

namespace zelk {

// The country that stands for a standard with a sound system (1, 2, 4 or another). 0 leaves it to
// the card what to take.
struct SystemCountryRow {
  std::uint32_t standards;  // one bit each
  std::uint32_t system1;
  std::uint32_t system2;
  std::uint32_t system4;
  std::uint32_t otherwise;
};

inline constexpr SystemCountryRow kSystemCountries[] = {
    {AnalogVideo_NTSC_M | AnalogVideo_NTSC_M_J | AnalogVideo_NTSC_433, 1, 1, 1, 1},
    {AnalogVideo_PAL_B | AnalogVideo_PAL_G, 49, 34, 0, 0},
    {AnalogVideo_PAL_D, 420, 86, 0, 0},
    {AnalogVideo_PAL_I, 0, 44, 0, 0},
    {AnalogVideo_PAL_M, 0, 0, 55, 0},
    {AnalogVideo_PAL_N, 0, 0, 54, 0},
    {AnalogVideo_PAL_60, 0, 0, 0, 0},
    {AnalogVideo_SECAM_D | AnalogVideo_SECAM_K | AnalogVideo_SECAM_K1, 0, 7, 0, 0},
    {AnalogVideo_SECAM_L | AnalogVideo_SECAM_L1, 0, 33, 0, 0},
};

// Empty for a standard that has no row, and for several standards at once. `unlisted` is taken
// where the table names no country.
constexpr std::optional<std::uint32_t> CountryForSystem(std::uint32_t standard,
                                                        std::uint32_t system,
                                                        std::uint32_t unlisted) {
  if ((standard & (standard - 1)) != 0) return std::nullopt;
  for (const SystemCountryRow& row : kSystemCountries) {
    if ((row.standards & standard) == 0) continue;
    const std::uint32_t country = system == 1   ? row.system1
                                  : system == 2 ? row.system2
                                  : system == 4 ? row.system4
                                                : row.otherwise;
    return country != 0 ? country : unlisted;
  }
  return std::nullopt;
}

// Countries whose transmitters use both PAL and SECAM, or PAL B/G beside D/K. A driver knows one
// standard for each country, so that for these another country is named whose standard is wanted.
inline constexpr std::uint32_t kMixedStandardCountries[] = {36, 359, 48, 420};
// While one of these is in force the next country is substituted as well.
inline constexpr std::uint32_t kMixedStandardPredecessors[] = {4201, 370};
// Two more, with which the silicon tuners deal in a way of their own.
inline constexpr std::uint32_t kFrance = 33;
inline constexpr std::uint32_t kRussia = 7;
// Those that are named in their place.
inline constexpr std::uint32_t kSpain = 34;  // PAL B
inline constexpr std::uint32_t kChina = 86;  // PAL D

constexpr bool HasMixedStandards(std::uint32_t country, std::uint32_t countryInForce) {
  const auto listed = [](const auto& countries, std::uint32_t wanted) {
    return std::find(std::begin(countries), std::end(countries), wanted) != std::end(countries);
  };
  return listed(kMixedStandardCountries, country) ||
         listed(kMixedStandardPredecessors, countryInForce);
}

constexpr bool NeedsSubstitute(std::uint32_t country, std::uint32_t countryInForce) {
  return HasMixedStandards(country, countryInForce) || country == kFrance || country == kRussia;
}

// The country to name in place of `country`.
constexpr std::uint32_t CountryWithStandard(std::uint32_t standard, std::uint32_t country) {
  switch (standard) {
    case AnalogVideo_PAL_B:
      return kSpain;
    case AnalogVideo_PAL_D:
      return kChina;
    default:
      return country;
  }
}

}  // namespace zelk
