// The options that stand before or behind any command.
#pragma once

#include <optional>
#include <string>

#include "virtual_cards/air.h"

namespace zelk::cli {

struct Options {
  std::string card = "virtual:saa7134";
  std::string tuner;  // of a card that is named by its device; empty: the one that belongs to it
  std::string plug;   // a virtual card to be plugged in among the system's devices; empty: none
  std::string air{virtual_cards::kDefaultPlace};
  std::string raster;                    // empty: the one that the air stands on
  std::string standard;                  // empty: the raster's
  std::optional<std::uint32_t> country;  // absent: the raster's
  bool easternFm = false;                // the FM band begins at 62 MHz
  bool json = false;
  bool trace = false;
  bool realtime = false;
};

}  // namespace zelk::cli
