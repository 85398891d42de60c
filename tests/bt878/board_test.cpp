// What the profile file says of a Bt878 board whose EEPROM cannot be read.
#include <fstream>

#include "tests/bt_family/noted_card.h"
#include "tests/support/reading.h"

namespace zelk::test {
namespace {

using virtual_cards::EepromState;

class Bt878Board : public NotedCardTest {
 protected:
  // The same with the driver.
  ZELK_HWInfo InfoOf(const Board& board) { return NotedCardTest::InfoOf(kBt878, board); }
  static void WriteProfile(const std::string& lines) {
    std::ofstream("Telmora2k.ini") << "[PRODUCTINFO]\n" << lines;
  }
};

// Without an EEPROM the profile file describes the board; older products then count as newer ones.
TEST_F(Bt878Board, ProfileStandsInForTheEeprom) {
  WriteProfile("0x41=103\n0x42=160\n0xFD=3\n");  // 0x67 0xA0: no such tuner
  for (const EepromState state : {EepromState::kMissing, EepromState::kBlank}) {
    const ZELK_HWInfo info = InfoOf({.eepromState = state});
    EXPECT_THAT(TakeLog(), Contains("BT878 HWInit(): No EEPROM"));
    EXPECT_EQ(TunerType(), 4u);
    EXPECT_EQ(info.BoardFlag5, 1u);
    EXPECT_EQ(info.BoardCode6, 2u);
  }
  WriteProfile("0x41=2\n");
  InfoOf({.eepromState = EepromState::kMissing});
  EXPECT_EQ(TunerType(), 0u);
  WriteProfile("0x42=2\n");
  Plug(kBt878, {.eepromState = EepromState::kMissing});
  EXPECT_EQ(Init(), E_FAIL);
}

TEST_F(Bt878Board, NumbersOfTheProfile) {
  const std::pair<const char*, std::uint8_t> numbers[] = {
      {"65", 65}, {"+66", 66},     {"-1", 0xFF},
      {"258", 2}, {"7x9", 7},      {"x", 0},
      {"", 0xFF}, {"\"\t 9\"", 9}, {"123456789012345999", 0x79}};
  for (const auto& [text, number] : numbers) {
    WriteProfile(std::string("0x41=2\n0xC=") + text + "\n");
    InfoOf({.eepromState = EepromState::kMissing});
    EXPECT_EQ(Ask<std::uint8_t>(ZELK_ReadEEPROM, 0x0C), Answer(E_FAIL, number)) << text;
  }
}

// A blank byte of a good EEPROM is looked up too, any other is not.
TEST_F(Bt878Board, BytesOfTheEeprom) {
  WriteProfile("0x42=5\n0x50=17\n");
  InfoOf({.eeprom = MakeEeprom({{0x41, 2}, {0x42, 0x10}})});
  EXPECT_EQ(Ask<std::uint8_t>(ZELK_ReadEEPROM, 0x42), Answer(S_OK, 0x10));
  EXPECT_EQ(Ask<std::uint8_t>(ZELK_ReadEEPROM, 0x50), Answer(E_FAIL, 17));
  EXPECT_EQ(ZELK_ReadEEPROM(0x50, nullptr), E_FAIL);
}

// The I/O library's EEPROM is never read: an acknowledge makes the profile count, its absence
// leaves the defaults.
TEST_F(Bt878Board, OverTheIoLibrary) {
  NotedCardTest::InfoOf(kBt878Io, {.tunerType = 15});
  EXPECT_THAT(TakeLog(), ElementsAre("BT878 HWInit(): No EEPROM"));
  EXPECT_EQ(TunerType(), 15u);
  const ZELK_HWInfo info =
      NotedCardTest::InfoOf(kBt878Io, {.tunerType = 15, .eepromState = EepromState::kMissing});
  EXPECT_THAT(TakeLog(), ElementsAre("BT878 HWInit(): No EEPROM"));
  EXPECT_EQ(TunerType(), 4u);
  EXPECT_EQ(info.FmTuner, 0u);
  EXPECT_EQ(info.BoardFlag5, 0u);
  Plug(kBt878Io, {.eepromState = EepromState::kBlank});
  EXPECT_EQ(Init(), E_FAIL);
}

}  // namespace
}  // namespace zelk::test
