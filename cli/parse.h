// What people type, turned into numbers. Everything here throws UsageError for text that means
// nothing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "virtual_cards/air.h"

namespace zelk::cli {

// "194" or "0xC2", at most `highest`. `what` names the argument in the complaint.
std::uint32_t ParseNumber(std::string_view text, std::uint32_t highest, std::string_view what);

// "175250", "175250kHz" or "175.25MHz", letter case ignored, in kHz.
std::uint32_t ParseFrequencyKHz(std::string_view text);

// A channel name of the raster or a frequency. A name goes first: "21" is the channel where the
// plan has one, otherwise 21 kHz.
std::uint32_t ParseChannelOrFrequencyKHz(std::string_view text,
                                         const virtual_cards::Raster& raster);

}  // namespace zelk::cli
