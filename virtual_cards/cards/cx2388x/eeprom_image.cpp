#include "virtual_cards/cards/cx2388x/eeprom_image.h"

namespace zelk::virtual_cards {

namespace {

struct Row {
  std::uint32_t tunerType;
  std::uint8_t tunerByte;
};

constexpr Row kRows[] = {
    {0, 0x00},  {1, 0x01},  {2, 0x02},  {3, 0x03},  {4, 0x04},  {5, 0x05},  {6, 0x06},
    {7, 0x07},  {8, 0x08},  {9, 0x09},  {14, 0x0A}, {15, 0x0B}, {10, 0x0C}, {11, 0x0D},
    {16, 0x0E}, {17, 0x0F}, {12, 0x10}, {13, 0x11}, {20, 0x1A}, {21, 0x1B}, {24, 0x20},
    {25, 0x80}, {26, 0x81}, {27, 0x82}, {28, 0x83}, {29, 0x84}, {30, 0x85},
};

}  // namespace

std::optional<Eeprom::Image> Cx2388xEepromImage(std::uint32_t tunerType) {
  for (const Row& row : kRows) {
    if (row.tunerType != tunerType) continue;
    Eeprom::Image image;
    image.fill(Eeprom::kErased);
    image[kCx2388xTunerByte] = row.tunerByte;
    image[kCx2388xOptionByte] = 0;  // the options of the board are not fitted
    return image;
  }
  return std::nullopt;
}

}  // namespace zelk::virtual_cards
