// What the EEPROM makes of the card.
#include "tests/bt_family/noted_card.h"

namespace zelk::test {
namespace {

using virtual_cards::EepromState;

class BtBoard : public NotedCardTest {
 protected:
  void ExpectTuner(const CardSetUp& wanted, const EepromImage& image, std::uint32_t type,
                   std::uint32_t fm, std::uint32_t tvLow, std::uint32_t tvHigh) {
    const ZELK_HWInfo info = InfoOf(wanted, {.eeprom = image});
    EXPECT_EQ(TunerType(), type);
    EXPECT_EQ(info.FmTuner, fm);
    EXPECT_EQ(info.TvLowKHz, tvLow);
    EXPECT_EQ(info.TvHighKHz, tvHigh);
    EXPECT_EQ(info.FmLowKHz, type == 5 ? 76000u : 87500u);
    EXPECT_EQ(info.FmHighKHz, 108000u);
  }
};

// Combinations that name nothing, the last nine, keep the default.
TEST_F(BtBoard, TunersOfBt878Boards) {
  struct Case {
    unsigned maker, fm, series, model, type, tvLow, tvHigh;
  };
  const Case cases[] = {{5, 0, 0, 0, 10, 91250, 765250},  {5, 0, 3, 15, 10, 91250, 765250},
                        {5, 1, 1, 7, 11, 91250, 765250},  {2, 0, 2, 1, 0, 48250, 855250},
                        {2, 1, 0, 15, 1, 48250, 855250},  {0, 0, 2, 1, 0, 48250, 855250},
                        {0, 0, 2, 0, 4, 55250, 801250},   {0, 0, 2, 3, 6, 48250, 855250},
                        {0, 0, 2, 2, 8, 48250, 855250},   {0, 1, 2, 0, 5, 55250, 801250},
                        {0, 1, 2, 3, 7, 48250, 855250},   {0, 1, 2, 2, 9, 48250, 855250},
                        {0, 0, 3, 10, 14, 48250, 863250}, {0, 0, 3, 0, 12, 55250, 801250},
                        {0, 1, 3, 10, 15, 48250, 863250}, {0, 1, 3, 0, 13, 55250, 801250},
                        {0, 0, 0, 13, 40, 40000, 864000}, {0, 0, 1, 10, 20, 48250, 863250},
                        {0, 1, 1, 10, 21, 48250, 863250}, {7, 0, 0, 0, 42, 55250, 801250},
                        {7, 0, 0, 9, 43, 45250, 864250},  {7, 1, 0, 0, 44, 55250, 801250},
                        {7, 1, 0, 9, 45, 45250, 864250},  {5, 2, 0, 0, 4, 55250, 801250},
                        {2, 3, 0, 0, 4, 55250, 801250},   {0, 0, 2, 4, 4, 55250, 801250},
                        {0, 0, 3, 1, 4, 55250, 801250},   {0, 1, 0, 13, 4, 55250, 801250},
                        {0, 0, 1, 9, 4, 55250, 801250},   {7, 0, 1, 0, 4, 55250, 801250},
                        {7, 1, 0, 8, 4, 55250, 801250},   {1, 0, 2, 1, 4, 55250, 801250}};
  for (const Case& one : cases) {
    const auto tuner = static_cast<std::uint8_t>(one.maker | one.fm << 3 | one.series << 5);
    const auto options = static_cast<std::uint8_t>(one.model << 4);
    SCOPED_TRACE(::testing::Message() << std::hex << +tuner << " " << +options);
    ExpectTuner(kBt878, MakeEeprom({{0x41, tuner}, {0x42, options}}), one.type, one.fm, one.tvLow,
                one.tvHigh);
  }
}

// Bytes at both ends of each run of tuners; those that name nothing are type 4.
TEST_F(BtBoard, TunersOfCx2388xBoards) {
  struct Case {
    std::uint8_t byte;
    std::uint32_t type, tvLow, tvHigh;
  };
  const Case cases[] = {
      {0x00, 0, 48250, 855250},  {0x03, 3, 48250, 855250},  {0x04, 4, 55250, 801250},
      {0x05, 5, 55250, 801250},  {0x09, 9, 48250, 855250},  {0x0A, 14, 48250, 863250},
      {0x0B, 15, 48250, 863250}, {0x0C, 10, 91250, 765250}, {0x0D, 11, 91250, 765250},
      {0x0E, 16, 91250, 765250}, {0x0F, 17, 91250, 765250}, {0x10, 12, 55250, 801250},
      {0x11, 13, 55250, 801250}, {0x12, 4, 55250, 801250},  {0x19, 4, 55250, 801250},
      {0x1A, 20, 48250, 863250}, {0x1B, 21, 48250, 863250}, {0x1C, 4, 55250, 801250},
      {0x20, 24, 91250, 765250}, {0x21, 4, 55250, 801250},  {0x7F, 4, 55250, 801250},
      {0x80, 25, 48250, 855250}, {0x84, 29, 55250, 801250}, {0x85, 30, 55250, 801250},
      {0x86, 4, 55250, 801250},  {0xFF, 4, 55250, 801250}};
  for (const Case& one : cases) {
    for (const CardSetUp& wanted : {kCx2388x, kCx2388xIo}) {
      SCOPED_TRACE(::testing::Message() << wanted.name << std::hex << " " << +one.byte);
      ExpectTuner(wanted, MakeEeprom({{6, one.byte}, {0x42, 0}}), one.type, one.type & 1, one.tvLow,
                  one.tvHigh);
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
      EXPECT_EQ(info.BoardOptionCode, wanted.cx2388x ? codes[code] : code);
      EXPECT_EQ(info.BoardOptionBit, code & 1) << code;
      EXPECT_EQ(info.BoardFlag5, wanted.cx2388x ? 1u : 0u);
      EXPECT_EQ(info.BoardCode6, 0xFFu);
      EXPECT_EQ(info.BoardCode9, 0u);
    }
  }
  for (const std::uint8_t product : {2, 3, 4, 5, 6, 7, 8, 9, 0xFF}) {
    const ZELK_HWInfo info =
        InfoOf(kBt878, {.eeprom = MakeEeprom({{0x41, 2}, {0x42, 0}, {0xFD, product}})});
    const bool newer = product == 7 || product == 8;
    EXPECT_EQ(info.BoardFlag5, newer || product == 3 || product == 4 ? 1u : 0u) << +product;
    EXPECT_EQ(info.BoardCode6, newer ? 2u : 0xFFu) << +product;
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
