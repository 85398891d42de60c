// What the EEPROM of a CX2388x board makes of the card.
#include <map>

#include "tests/support/bt_test.h"

namespace zelk::test {
namespace {

using virtual_cards::EepromState;

class Bt88xBoard : public BtTest {
 protected:
  ZELK_HWInfo InfoOf(const Board& board, const CardSetUp& wanted = kCx2388x) {
    Plug(wanted, board);
    EXPECT_EQ(Init(), S_OK);
    ZELK_HWInfo info = {};
    EXPECT_EQ(ZELK_GetHWInfo(&info), S_OK);
    return info;
  }
};

TEST_F(Bt88xBoard, EveryTunerByte) {
  const std::map<int, std::uint32_t> tuners = {
      {0x00, 0},  {0x01, 1},  {0x02, 2},  {0x03, 3},  {0x05, 5},  {0x06, 6},  {0x07, 7},
      {0x08, 8},  {0x09, 9},  {0x0A, 14}, {0x0B, 15}, {0x0C, 10}, {0x0D, 11}, {0x0E, 16},
      {0x0F, 17}, {0x10, 12}, {0x11, 13}, {0x1A, 20}, {0x1B, 21}, {0x20, 24}, {0x80, 25},
      {0x81, 26}, {0x82, 27}, {0x83, 28}, {0x84, 29}, {0x85, 30}};
  const auto lowOf = [](std::uint32_t type) {
    if (type >= 10 && type <= 17 && type != 12 && type != 13 && type != 14 && type != 15)
      return 91250u;
    if (type == 24) return 91250u;
    return type == 4 || type == 5 || type == 12 || type == 13 || type >= 29 ? 55250u : 48250u;
  };
  for (int byte = 0; byte < 256; ++byte) {
    const auto found = tuners.find(byte);
    const std::uint32_t expected = found == tuners.end() ? 4 : found->second;
    const ZELK_HWInfo info =
        InfoOf({.eeprom = MakeEeprom({{6, static_cast<std::uint8_t>(byte)}, {0x42, 0}})},
               byte % 2 ? kCx2388x : kCx2388xIo);
    std::uint32_t type = 77;
    EXPECT_EQ(ZELK_GetTunerType(&type), S_OK);
    EXPECT_EQ(type, expected) << std::hex << byte;
    EXPECT_EQ(info.FmTuner, expected & 1) << std::hex << byte;
    EXPECT_EQ(info.TvLowKHz, lowOf(expected)) << std::hex << byte;
    EXPECT_EQ(info.TvHighKHz, lowOf(expected) == 91250                           ? 765250u
                              : lowOf(expected) == 55250                         ? 801250u
                              : (expected & ~1u) == 14 || (expected & ~1u) == 20 ? 863250u
                                                                                 : 855250u)
        << std::hex << byte;
    EXPECT_EQ(info.FmLowKHz, expected == 5 ? 76000u : 87500u);
    EXPECT_EQ(info.FmHighKHz, 108000u);
  }
}

TEST_F(Bt88xBoard, Options) {
  const std::uint32_t codes[] = {0, 1, 2, 3, 3, 0, 0, 0};  // the last three change nothing
  for (std::uint32_t code = 0; code < 8; ++code) {
    const auto options = static_cast<std::uint8_t>(code << 1 | (code & 1));
    const ZELK_HWInfo info = InfoOf({.eeprom = MakeEeprom({{6, 0}, {0x42, options}})});
    EXPECT_EQ(info.BoardOptionCode, codes[code]) << code;
    EXPECT_EQ(info.BoardOptionBit, code & 1) << code;
    EXPECT_EQ(info.BoardFlag5, 1u);
    EXPECT_EQ(info.BoardCode6, 0xFFu);
    EXPECT_EQ(info.BoardCode9, 0u);
  }
}

// An EEPROM that cannot be read is no reason to refuse the card.
TEST_F(Bt88xBoard, WithoutAnEeprom) {
  InfoOf({.eepromState = EepromState::kMissing});
  std::uint32_t type = 77;
  EXPECT_EQ(ZELK_GetTunerType(&type), S_OK);
  EXPECT_EQ(type, 0u);
  EXPECT_TRUE(TakeLog().empty());
  InfoOf({.eepromState = EepromState::kBlank});
  EXPECT_EQ(ZELK_GetTunerType(&type), S_OK);
  EXPECT_EQ(type, 4u);
}

}  // namespace
}  // namespace zelk::test
