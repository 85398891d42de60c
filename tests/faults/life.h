// A card's whole life in the library's hands, in few calls of every kind.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "virtual_cards/cards/virtual_card.h"

namespace zelk::faults {

// The card that is plugged in.
extern std::unique_ptr<virtual_cards::VirtualCard> card;
void Plug(const std::string& description);
// ZELK_HWInit with stand-ins for the card's filters.
HRESULT InitCard();

// Initialised, used in every way, freed. Answers everything that the library answered, as text.
std::string Life();
// Every export with null and with absurd arguments, whatever state the library is in.
void AbsurdCalls();

// Done at each event of a scan; nothing while it is empty.
extern std::function<void()> atEvent;

}  // namespace zelk::faults
