// A virtual QL2 card's options as a person writes them.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "virtual_cards/cards/options.h"
#include "virtual_cards/cards/ql2_card.h"

namespace zelk::virtual_cards {

struct Ql2Kind {
  std::string_view name;
  std::string_view description;
};

inline constexpr Ql2Kind kQl2Kinds[] = {
    {"ql2", "QL2, TV with a hardware MPEG encoder"},
};

// Plugs in a card. Throws std::invalid_argument with a message for people.
std::unique_ptr<VirtualCard> CreateQl2(const Ql2Kind& kind, std::span<const OptionText> options,
                                       Air air);

}  // namespace zelk::virtual_cards
