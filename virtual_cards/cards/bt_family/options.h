// The options of virtual Bt878 and CX2388x cards as a person writes them.
#pragma once

#include <memory>
#include <span>
#include <string_view>

#include "virtual_cards/cards/options.h"
#include "virtual_cards/cards/virtual_card.h"

namespace zelk::virtual_cards {

struct BtKind {
  std::string_view name;  // "bt878-io"
  bool ioLibrary;
  std::string_view description;
};

inline constexpr BtKind kBt878Kinds[] = {
    {"bt878", false, "Bt878, TV with mono sound"},
    {"bt878-io", true, "Bt878 without filters, through its I/O library"},
};
inline constexpr BtKind kCx2388xKinds[] = {
    {"cx2388x", false, "Conexant CX2388x, TV with stereo sound"},
    {"cx2388x-io", true, "Conexant CX2388x without filters, through its I/O library"},
};

// Both plug in a card. They throw std::invalid_argument with a message for people.
std::unique_ptr<VirtualCard> CreateBt878(const BtKind& kind, std::span<const OptionText> options,
                                         Air air);
std::unique_ptr<VirtualCard> CreateCx2388x(const BtKind& kind, std::span<const OptionText> options,
                                           Air air);

}  // namespace zelk::virtual_cards
