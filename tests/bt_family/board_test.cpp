// What the EEPROM makes of the card.
#include "tests/bt_family/noted_card.h"
#include "tests/support/common_modules.h"

namespace zelk::test {
namespace {

using virtual_cards::EepromState;

class BtBoard : public NotedCardTest {
 protected:
  void ExpectTuner(const CardSetUp& wanted, const EepromImage& image, std::uint32_t type,
                   std::uint32_t fm) {
    constexpr TvLimits kTvLimits[] = {{40, 40, 40000, 864000},
                                      {42, 42, 55250, 801250},
                                      {43, 43, 45250, 864250},
                                      {45, 45, 45250, 864250}};
    const ZELK_HWInfo info = InfoOf(wanted, {.eeprom = image});
    EXPECT_EQ(TunerType(), type);
    EXPECT_EQ(info.FmTuner, fm);
    ExpectTvLimits(info, kTvLimits, type);
    EXPECT_EQ(info.FmLowKHz, type == 5 ? 76000u : 87500u);
    EXPECT_EQ(info.FmHighKHz, 108000u);
  }
};

// The module's maker, FM section, series and model, for the tuner types that there are.
constexpr unsigned kAny = 0xFF;
struct Module {
  unsigned maker, fm, series, model;
  std::uint32_t type;
};
constexpr Module kModules[] = {
    {5, 0, kAny, kAny, 10}, {5, 1, kAny, kAny, 11}, {2, 0, kAny, kAny, 0}, {2, 1, kAny, kAny, 1},
    {0, 0, 2, 1, 0},        {0, 0, 2, 0, 4},        {0, 0, 2, 3, 6},       {0, 0, 2, 2, 8},
    {0, 1, 2, 1, 1},        {0, 1, 2, 0, 5},        {0, 1, 2, 3, 7},       {0, 1, 2, 2, 9},
    {0, 0, 3, 10, 14},      {0, 0, 3, 0, 12},       {0, 1, 3, 10, 15},     {0, 1, 3, 0, 13},
    {0, 0, 0, 13, 40},      {0, 0, 1, 10, 20},      {0, 1, 1, 10, 21},     {7, 0, 0, 0, 42},
    {7, 0, 0, 9, 43},       {7, 1, 0, 0, 44},       {7, 1, 0, 9, 45}};

// Combinations that name nothing keep the default; the first byte's highest bit means nothing.
TEST_F(BtBoard, EveryTunerOfBt878Boards) {
  for (unsigned combination = 0; combination < 0x1000; ++combination) {
    const unsigned tuner = combination & 0xFF;
    if (tuner == 0xFF) continue;  // blank
    const unsigned model = combination >> 8;
    const unsigned maker = tuner & 7, fm = tuner >> 3 & 3, series = tuner >> 5 & 3;
    std::uint32_t type = 4;
    for (const Module& row : kModules) {
      if (row.maker == maker && row.fm == fm && (row.series == kAny || row.series == series) &&
          (row.model == kAny || row.model == model)) {
        type = row.type;
      }
    }
    SCOPED_TRACE(::testing::Message() << std::hex << tuner << " " << model);
    ExpectTuner(kBt878,
                MakeEeprom({{0x41, static_cast<std::uint8_t>(tuner)},
                            {0x42, static_cast<std::uint8_t>(model << 4 | 0xF)}}),
                type, fm);
  }
}

// Bytes that name nothing are type 4.
TEST_F(BtBoard, EveryTunerOfCx2388xBoards) {
  constexpr TunerRun kTuners[] = {{0x00, 0x03, 0},  {0x05, 0x09, 5},  {0x0A, 0x0B, 14},
                                  {0x0C, 0x0D, 10}, {0x0E, 0x0F, 16}, {0x10, 0x11, 12},
                                  {0x1A, 0x1B, 20}, {0x20, 0x20, 24}, {0x80, 0x85, 25}};
  for (const CardSetUp& wanted : {kCx2388x, kCx2388xIo}) {
    for (std::uint32_t byte = 0; byte <= 0xFF; ++byte) {
      SCOPED_TRACE(::testing::Message() << wanted.name << std::hex << " " << byte);
      const std::uint32_t type = TunerNamed(kTuners, byte, 4);
      ExpectTuner(wanted, MakeEeprom({{6, static_cast<std::uint8_t>(byte)}, {0x42, 0}}), type,
                  type & 1);
    }
  }
}

TEST_F(BtBoard, OptionsAndProducts) {
  // A CX2388x board's last three codes change nothing.
  const std::uint32_t codes[] = {0, 1, 2, 3, 3, 0, 0, 0};
  for (std::uint32_t code = 0; code < 8; ++code) {
    const auto options = static_cast<std::uint8_t>(0xF0 | code << 1 | (code & 1));
    for (const CardSetUp& wanted : {kBt878, kCx2388x}) {
      const ZELK_HWInfo info =
          InfoOf(wanted, {.eeprom = MakeEeprom({{6, 0}, {0x41, 2}, {0x42, options}, {0xFD, 0}})});
      EXPECT_THAT(Words(info), ElementsAre(0, wanted.cx2388x ? codes[code] : code, code & 1, 87500,
                                           108000, wanted.cx2388x, 0xFF, 48250, 855250, 0));
    }
  }
  for (unsigned product = 0; product <= 0xFF; ++product) {
    const ZELK_HWInfo info = InfoOf(
        kBt878,
        {.eeprom = MakeEeprom({{0x41, 2}, {0x42, 0}, {0xFD, static_cast<std::uint8_t>(product)}})});
    const bool newer = product == 7 || product == 8;
    EXPECT_EQ(info.BoardFlag5, newer || product == 3 || product == 4 ? 1u : 0u) << product;
    EXPECT_EQ(info.BoardCode6, newer ? 2u : 0xFFu) << product;
  }
}

// An EEPROM that cannot be read is no reason to refuse a CX2388x.
TEST_F(BtBoard, Cx2388xWithoutAnEeprom) {
  for (const auto& [state, type] :
       {std::pair(EepromState::kMissing, 0u), {EepromState::kBlank, 4}}) {
    InfoOf(kCx2388x, {.eepromState = state});
    EXPECT_EQ(TunerType(), type);
    EXPECT_TRUE(TakeLog().empty());
  }
}

}  // namespace
}  // namespace zelk::test
