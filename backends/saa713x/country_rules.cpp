#include "backends/saa713x/country_rules.h"

#include <algorithm>
#include <array>
#include <span>

#include "platform/dshow.h"

namespace zelk {
namespace {

// Up to six countries; 0 fills the rest.
using Countries = std::array<std::uint32_t, 6>;

bool Contains(std::span<const std::uint32_t> countries, std::uint32_t country) {
  return std::find(countries.begin(), countries.end(), country) != countries.end();
}

constexpr std::uint32_t kMultiStandardCountries[] = {7, 33, 36, 48, 359, 370, 420, 4201};

struct SubstituteRow {
  std::uint32_t standard;
  std::uint32_t substitute;
  Countries whenChoosingFormat;
  Countries whenTuning;
};

constexpr SubstituteRow kSubstitutes[] = {
    {AnalogVideo_PAL_D, 86, {7, 48, 36}, {7, 36}},
    {AnalogVideo_PAL_B, 52, {33, 36, 370}, {33, 48, 36, 370}},
    {AnalogVideo_PAL_B, 49, {420, 4201, 359}, {420, 359, 4201}},
};

struct CountryStandardRow {
  std::uint32_t standard;
  Countries countries;
};

constexpr CountryStandardRow kCountryStandards[] = {
    {AnalogVideo_SECAM_D, {7}},
    {AnalogVideo_PAL_D, {36, 420, 359, 48, 4201, 370}},
    {AnalogVideo_SECAM_L, {33}},
};

std::optional<std::uint32_t> Substitute(Countries SubstituteRow::*column, std::uint32_t standard,
                                        std::uint32_t country) {
  for (const SubstituteRow& row : kSubstitutes) {
    if (row.standard == standard && country != 0 && Contains(row.*column, country)) {
      return row.substitute;
    }
  }
  return std::nullopt;
}

}  // namespace

bool IsMultiStandardCountry(std::uint32_t country) {
  return Contains(kMultiStandardCountries, country);
}

std::optional<std::uint32_t> SubstituteForFormat(std::uint32_t standard, std::uint32_t country) {
  return Substitute(&SubstituteRow::whenChoosingFormat, standard, country);
}

std::optional<std::uint32_t> SubstituteForTuning(std::uint32_t standard, std::uint32_t country) {
  return Substitute(&SubstituteRow::whenTuning, standard, country);
}

bool IsStandardOfCountry(std::uint32_t standard, std::uint32_t country) {
  for (const CountryStandardRow& row : kCountryStandards) {
    if (row.standard == standard && country != 0 && Contains(row.countries, country)) return true;
  }
  return false;
}

}  // namespace zelk
