// Countries whose transmitters use several standards. The tuner drivers know one standard for each
// country, so that for the others a country is named whose standard is the wanted one.
#pragma once

#include <cstdint>
#include <optional>

namespace zelk {

// Whether the country is one of those with several standards.
bool IsMultiStandardCountry(std::uint32_t country);

// The country to name instead, if any. Choosing a format and tuning know different countries: 48 is
// replaced by 86 when the format is chosen, by 52 when tuning.
std::optional<std::uint32_t> SubstituteForFormat(std::uint32_t standard, std::uint32_t country);
std::optional<std::uint32_t> SubstituteForTuning(std::uint32_t standard, std::uint32_t country);

// Whether a standard that the decoder found on the air is one of the country's own, so that it is
// to be taken over.
bool IsStandardOfCountry(std::uint32_t standard, std::uint32_t country);

}  // namespace zelk
