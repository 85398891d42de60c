#include "virtual_cards/cards/bt878/eeprom_image.h"

namespace zelk::virtual_cards {

namespace {

// Tuner byte: bits 2-0 the module's series, bits 4-3 its FM section, bits 6-5 the sub-series.
constexpr std::uint8_t TunerByte(unsigned series, unsigned fm, unsigned subSeries) {
  return static_cast<std::uint8_t>(series | fm << 3 | subSeries << 5);
}

// Option byte: bits 7-4 the module's country variant; the options of the board are not fitted.
constexpr std::uint8_t OptionByte(unsigned variant) {
  return static_cast<std::uint8_t>(variant << 4);
}

struct Row {
  std::uint32_t tunerType;
  std::uint8_t tunerByte;
  std::uint8_t optionByte;
};

constexpr Row kRows[] = {
    {0, TunerByte(2, 0, 0), OptionByte(0)},   {1, TunerByte(2, 1, 0), OptionByte(0)},
    {10, TunerByte(5, 0, 0), OptionByte(0)},  {11, TunerByte(5, 1, 0), OptionByte(0)},
    {4, TunerByte(0, 0, 2), OptionByte(0)},   {5, TunerByte(0, 1, 2), OptionByte(0)},
    {6, TunerByte(0, 0, 2), OptionByte(3)},   {7, TunerByte(0, 1, 2), OptionByte(3)},
    {8, TunerByte(0, 0, 2), OptionByte(2)},   {9, TunerByte(0, 1, 2), OptionByte(2)},
    {12, TunerByte(0, 0, 3), OptionByte(0)},  {13, TunerByte(0, 1, 3), OptionByte(0)},
    {14, TunerByte(0, 0, 3), OptionByte(10)}, {15, TunerByte(0, 1, 3), OptionByte(10)},
    {20, TunerByte(0, 0, 1), OptionByte(10)}, {21, TunerByte(0, 1, 1), OptionByte(10)},
    {40, TunerByte(0, 0, 0), OptionByte(13)}, {42, TunerByte(7, 0, 0), OptionByte(0)},
    {43, TunerByte(7, 0, 0), OptionByte(9)},  {44, TunerByte(7, 1, 0), OptionByte(0)},
    {45, TunerByte(7, 1, 0), OptionByte(9)},
};

// A product without special equipment.
constexpr std::uint8_t kPlainProduct = 1;

}  // namespace

std::optional<Eeprom::Image> Bt878EepromImage(std::uint32_t tunerType) {
  for (const Row& row : kRows) {
    if (row.tunerType != tunerType) continue;
    Eeprom::Image image;
    image.fill(Eeprom::kErased);
    image[kBt878TunerByte] = row.tunerByte;
    image[kBt878OptionByte] = row.optionByte;
    image[kBt878ProductByte] = kPlainProduct;
    return image;
  }
  return std::nullopt;
}

}  // namespace zelk::virtual_cards
