// The cards of the record, and the one that is plugged in.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "virtual_cards/cards/virtual_card.h"

namespace zelk::record {

struct SetUp {
  std::string name;
  std::function<std::unique_ptr<virtual_cards::VirtualCard>(virtual_cards::Air)> make;
};

// A card of the catalogue by its description.
SetUp Described(const std::string& description);

// Every tuner module that a family's boards carry, over every transport, and boards with a part
// missing or out of order.
std::vector<SetUp> EverySetUp();
// One or two of each family and transport, for what takes many runs.
std::vector<SetUp> FewSetUps();
// Boards that differ in what their configuration or EEPROM says: for initialisation alone.
std::vector<SetUp> EveryBoard();

// How TV is broadcast where the plugged card's tuner is at home.
struct Country {
  std::uint32_t standard, code;
};
Country HomeOfTuner();

// Puts the card in, with an air of carriers and stations in its own bands.
void Plug(const SetUp& setUp);
// Puts another in its place under the same air, without a word to the library.
void Exchange(const SetUp& setUp);
void Unplug();
virtual_cards::VirtualCard* Plugged();
virtual_cards::Air& AirOfCard();
// ZELK_HWInit with the plugged card's filters and name.
void InitCard(std::uint32_t russiaFlag = 0);
// ZELK_Free; what is still held of the card is noted.
void FreeCard();

}  // namespace zelk::record
