// What the EEPROM of a Bt878 board makes of the card, and what stands in for it.
#include <fstream>

#include "tests/support/bt_test.h"

namespace zelk::test {
namespace {

using ::testing::ElementsAre;
using virtual_cards::EepromState;

class Bt878Board : public BtTest {
 protected:
  ZELK_HWInfo InfoOf(const Board& board, const CardSetUp& wanted = kBt878) {
    Plug(wanted, board);
    EXPECT_EQ(Init(), S_OK);
    ZELK_HWInfo info = {};
    EXPECT_EQ(ZELK_GetHWInfo(&info), S_OK);
    return info;
  }
  static std::uint32_t TunerType() {
    std::uint32_t type = 77;
    EXPECT_EQ(ZELK_GetTunerType(&type), S_OK);
    return type;
  }
  static void WriteProfile(const std::string& lines) {
    std::ofstream("Telmora2k.ini") << "[PRODUCTINFO]\n" << lines;
  }
};

struct TunerCase {
  unsigned maker, fm, series, model;
  std::uint32_t type, tvLow, tvHigh;
};

TEST_F(Bt878Board, EveryTunerOfTheEeprom) {
  const TunerCase cases[] = {
      {5, 0, 0, 0, 10, 91250, 765250},
      {5, 0, 3, 15, 10, 91250, 765250},
      {5, 1, 1, 7, 11, 91250, 765250},
      {2, 0, 2, 1, 0, 48250, 855250},
      {2, 1, 0, 15, 1, 48250, 855250},
      {0, 0, 2, 1, 0, 48250, 855250},
      {0, 0, 2, 0, 4, 55250, 801250},
      {0, 0, 2, 3, 6, 48250, 855250},
      {0, 0, 2, 2, 8, 48250, 855250},
      {0, 1, 2, 1, 1, 48250, 855250},
      {0, 1, 2, 0, 5, 55250, 801250},
      {0, 1, 2, 3, 7, 48250, 855250},
      {0, 1, 2, 2, 9, 48250, 855250},
      {0, 0, 3, 10, 14, 48250, 863250},
      {0, 0, 3, 0, 12, 55250, 801250},
      {0, 1, 3, 10, 15, 48250, 863250},
      {0, 1, 3, 0, 13, 55250, 801250},
      {0, 0, 0, 13, 40, 40000, 864000},
      {0, 0, 1, 10, 20, 48250, 863250},
      {0, 1, 1, 10, 21, 48250, 863250},
      {7, 0, 0, 0, 42, 55250, 801250},
      {7, 0, 0, 9, 43, 45250, 864250},
      {7, 1, 0, 0, 44, 55250, 801250},
      {7, 1, 0, 9, 45, 45250, 864250},
      // Combinations that name nothing keep the default.
      {5, 2, 0, 0, 4, 55250, 801250},
      {2, 3, 0, 0, 4, 55250, 801250},
      {0, 0, 2, 4, 4, 55250, 801250},
      {0, 0, 3, 1, 4, 55250, 801250},
      {0, 1, 0, 13, 4, 55250, 801250},
      {0, 0, 1, 9, 4, 55250, 801250},
      {7, 0, 1, 0, 4, 55250, 801250},
      {7, 1, 0, 8, 4, 55250, 801250},
      {1, 0, 2, 1, 4, 55250, 801250},
  };
  for (const TunerCase& one : cases) {
    const auto tuner = static_cast<std::uint8_t>(one.maker | one.fm << 3 | one.series << 5);
    const auto options = static_cast<std::uint8_t>(one.model << 4);
    SCOPED_TRACE(::testing::Message() << std::hex << +tuner << " " << +options);
    const ZELK_HWInfo info = InfoOf({.eeprom = MakeEeprom({{0x41, tuner}, {0x42, options}})});
    EXPECT_EQ(TunerType(), one.type);
    EXPECT_EQ(info.FmTuner, one.fm);
    EXPECT_EQ(info.TvLowKHz, one.tvLow);
    EXPECT_EQ(info.TvHighKHz, one.tvHigh);
    EXPECT_EQ(info.FmLowKHz, one.type == 5 ? 76000u : 87500u);
    EXPECT_EQ(info.FmHighKHz, 108000u);
  }
}

TEST_F(Bt878Board, OptionsAndProduct) {
  const auto image = [](std::uint8_t options, std::uint8_t product) {
    return MakeEeprom({{0x41, 2}, {0x42, options}, {0xFD, product}});
  };
  ZELK_HWInfo info = InfoOf({.eeprom = image(0x0F, 0)});
  EXPECT_EQ(info.BoardOptionCode, 7u);
  EXPECT_EQ(info.BoardOptionBit, 1u);
  EXPECT_EQ(info.BoardCode9, 0u);
  info = InfoOf({.eeprom = image(0xF4, 0)});
  EXPECT_EQ(info.BoardOptionCode, 2u);
  EXPECT_EQ(info.BoardOptionBit, 0u);
  for (const unsigned product : {0u, 2u, 3u, 4u, 5u, 6u, 7u, 8u, 9u, 0xFFu}) {
    info = InfoOf({.eeprom = image(0, static_cast<std::uint8_t>(product))});
    const bool newer = product == 7 || product == 8;
    EXPECT_EQ(info.BoardFlag5, newer || product == 3 || product == 4 ? 1u : 0u) << product;
    EXPECT_EQ(info.BoardCode6, newer ? 2u : 0xFFu) << product;
  }
}

// Without an EEPROM the profile file describes the board; older products then count as newer ones.
TEST_F(Bt878Board, ProfileStandsInForTheEeprom) {
  WriteProfile("0x41=103\n0x42=160\n0xFD=3\n");  // 0x67 0xA0: no such tuner
  for (const EepromState state : {EepromState::kMissing, EepromState::kBlank}) {
    const ZELK_HWInfo info = InfoOf({.eepromState = state});
    EXPECT_THAT(TakeLog(), ::testing::Contains("BT878 HWInit(): No EEPROM"));
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
  struct Case {
    const char* text;
    std::uint8_t byte;
  };
  for (const Case& one : {Case{"65", 65},
                          {"+66", 66},
                          {"-1", 0xFF},
                          {"-254", 2},
                          {"258", 2},
                          {"7x9", 7},
                          {"0x12", 0},
                          {"x", 0},
                          {"", 0xFF},
                          {"\"\t 9\"", 9},
                          {"123456789012345999", 0x79}}) {
    WriteProfile(std::string("0x41=2\n0xC=") + one.text + "\n");
    InfoOf({.eepromState = EepromState::kMissing});
    std::uint8_t byte = 0xAA;
    EXPECT_EQ(ZELK_ReadEEPROM(0x0C, &byte), E_FAIL);
    EXPECT_EQ(byte, one.byte) << one.text;
  }
}

// A blank byte of a good EEPROM is looked up too, any other is not.
TEST_F(Bt878Board, BytesOfTheEeprom) {
  WriteProfile("0x42=5\n0x50=17\n");
  InfoOf({.eeprom = MakeEeprom({{0x41, 2}, {0x42, 0x10}})});
  std::uint8_t byte = 0;
  EXPECT_EQ(ZELK_ReadEEPROM(0x42, &byte), S_OK);
  EXPECT_EQ(byte, 0x10);
  EXPECT_EQ(ZELK_ReadEEPROM(0x50, &byte), E_FAIL);
  EXPECT_EQ(byte, 17);
  EXPECT_EQ(ZELK_ReadEEPROM(0x50, nullptr), E_FAIL);
}

// The I/O library's EEPROM is never read: an acknowledge makes the profile count, its absence
// leaves the defaults.
TEST_F(Bt878Board, OverTheIoLibrary) {
  InfoOf({.tunerType = 15}, kBt878Io);
  EXPECT_THAT(TakeLog(), ElementsAre("BT878 HWInit(): No EEPROM"));
  EXPECT_EQ(TunerType(), 15u);
  const ZELK_HWInfo info =
      InfoOf({.tunerType = 15, .eepromState = EepromState::kMissing}, kBt878Io);
  EXPECT_THAT(TakeLog(), ElementsAre("BT878 HWInit(): No EEPROM"));
  EXPECT_EQ(TunerType(), 4u);
  EXPECT_EQ(info.FmTuner, 0u);
  EXPECT_EQ(info.BoardFlag5, 0u);
  Plug(kBt878Io, {.eepromState = EepromState::kBlank});
  EXPECT_EQ(Init(), E_FAIL);
}

}  // namespace
}  // namespace zelk::test
