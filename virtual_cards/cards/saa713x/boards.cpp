#include "virtual_cards/cards/saa713x/boards.h"

namespace zelk::virtual_cards {

namespace {

// The first row of a tuner type is its usual board.
constexpr Saa713xBoard kBoards[] = {
    {0, 0x00},
    {1, 0x01},
    {2, 0x02},
    {3, 0x03},
    {4, 0x04},
    {5, 0x05},
    {6, 0x06},
    {7, 0x07},
    {8, 0x08},
    {9, 0x09},
    {14, 0x0A},
    {15, 0x0B},
    {10, 0x0C},
    {11, 0x0D},
    {16, 0x0E},
    {17, 0x0F},
    {12, 0x10},
    {13, 0x11},
    {18, 0x14},
    {19, 0x15},
    {20, 0x1A},
    {21, 0x1B},
    {41, 0x1C},
    {41, 0x1D},
    {40, 0x1E},
    {40, 0x1F},
    {24, 0x20},
    {35, 0x22},
    {36, 0x24},
    {37, 0x26},
    {38, 0x28},
    {48, 0x40},
    {46, 0x42},
    {25, 0x80},
    {26, 0x81},
    {27, 0x82},
    {28, 0x83},
    {29, 0x84},
    {30, 0x85},
    {48, 0xE0},
    {48, 0xE1, Eeprom::kErased, true},
    {46, 0xE2},
    {46, 0xE3, Eeprom::kErased, true},
    {47, 0xE8},
    {47, 0xE9, Eeprom::kErased, true},
    {40, 0xEE},
    // Later modules went onto the boards of type 4 and 5; the EEPROM tells them apart.
    {31, 0x04, 0x10},
    {32, 0x05, 0x11},
    {33, 0x04, 0x12},
    {34, 0x05, 0x13},
    {42, 0x04, 0x18},
    {43, 0x04, 0x19},
    {44, 0x05, 0x1A},
    {45, 0x05, 0x1B},
};

constexpr std::size_t kTunerByte = 0x20;
constexpr std::size_t kVariantByte = 0x21;
constexpr std::size_t kRemoteByte = 0x22;
// Clear on boards with a receiver chip.
constexpr std::uint8_t kRemoteByGpio = 0x04;

}  // namespace

const Saa713xBoard* BoardForTuner(std::uint32_t tunerType) {
  for (const Saa713xBoard& board : kBoards) {
    if (board.tunerType == tunerType) return &board;
  }
  return nullptr;
}

const Saa713xBoard* BoardForCode(std::uint8_t boardCode) {
  for (const Saa713xBoard& board : kBoards) {
    if (board.boardCode == boardCode) return &board;
  }
  return nullptr;
}

Eeprom::Image DefaultEeprom(const Saa713xBoard& board, bool remoteChip) {
  Eeprom::Image image;
  image.fill(Eeprom::kErased);
  image[kTunerByte] = board.eepromTuner;
  image[kVariantByte] = 0;  // first variant of the board
  if (remoteChip) image[kRemoteByte] &= static_cast<std::uint8_t>(~kRemoteByGpio);
  return image;
}

}  // namespace zelk::virtual_cards
