// A virtual SAA713x card's options as a person writes them.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "virtual_cards/cards/options.h"
#include "virtual_cards/cards/saa713x_card.h"

namespace zelk::virtual_cards {

struct Saa713xKind {
  std::string_view name;  // "saa7134"
  std::uint32_t chipId;
  std::string_view friendlyName;
  std::string_view description;
};

inline constexpr Saa713xKind kSaa713xKinds[] = {
    {"saa7134", 0x7134, "Korvane, Telmora WDM Video Capture (7134)",
     "Philips SAA7134, TV with stereo sound"},
    {"saa7130", 0x7130, "Korvane, Telmora WDM Video Capture (7130)",
     "Philips SAA7130, TV with mono sound"},
    {"saa7133", 0x7133, "Korvane, Telmora WDM Video Capture (7133)",
     "Philips SAA7133, TV with stereo sound and a sound processor"},
    {"saa7135", 0x7135, "Korvane, Telmora WDM Video Capture (7133/7135)",
     "Philips SAA7135, TV with all sound systems and sound effects"},
};

// Plugs in a card. Throws std::invalid_argument with a message for people.
std::unique_ptr<VirtualCard> CreateSaa713x(const Saa713xKind& kind,
                                           std::span<const OptionText> options, Air air);

}  // namespace zelk::virtual_cards
