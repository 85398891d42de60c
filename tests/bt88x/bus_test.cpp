// The CX2388x's hardware I2C and its EEPROM, step by step.
#include "tests/bt_family/noted_card.h"
#include "tests/support/reading.h"

namespace zelk::test {
namespace {

class Bt88xBus : public NotedCardTest {};

TEST_F(Bt88xBus, TransfersOverTheDriver) {
  PlugNoted(kCx2388x);
  demodulator->Tell({0xE2});
  EXPECT_EQ(Device().I2CWriteDWord(0xC0, 0x0B2C, 0x8EA0), S_OK);
  EXPECT_THAT(TakeTrace(), ElementsAre("i2c write C0: 0B 2C 8E A0"));
  const auto readByte = [&](std::uint8_t* byte) { return Device().I2CRead(0x86, byte); };
  EXPECT_EQ(Ask<std::uint8_t>(readByte), Answer(S_OK, 0xE2));
  EXPECT_THAT(TakeTrace(), ElementsAre("i2c select 86", "i2c read 86 -> E2"));
}

// A failed write has the line of a read. A transfer that the bus refuses succeeds as a request; a
// refusal that is no code, 14, stands for it.
TEST_F(Bt88xBus, Failures) {
  for (const std::string request : {"i2c write", "i2c select", "i2c read"}) {
    for (const HRESULT refusal : {kRefused, static_cast<HRESULT>(14)}) {
      PlugNoted(kCx2388x);
      card->Refuse(request, refusal);
      std::uint8_t byte = 0xAA;
      EXPECT_EQ(request == "i2c write" ? Device().I2CWriteDWord(0xC0, 1, 2)
                                       : Device().I2CRead(0xC0, &byte),
                E_FAIL)
          << request;
      EXPECT_THAT(TakeLog(),
                  ElementsAre(request == "i2c select" ? "BT88X I2CRead(): Set Read Address fail"
                                                      : "BT88X I2CRead(): Read data fail"));
    }
  }
}

TEST_F(Bt88xBus, Eeprom) {
  const auto image = MakeEeprom({{6, 0}, {0x50, 0x5A}});
  PlugNoted(kCx2388x, {.eeprom = image});
  EXPECT_EQ(Ask<std::uint8_t>(ZELK_ReadEEPROM, 0x50), Answer(S_OK, 0x5A));
  EXPECT_THAT(TakeTrace(), ElementsAre("eeprom select 50", "eeprom read 50 -> 5A"));
  card->Refuse("eeprom read", kRefused);
  EXPECT_EQ(Ask<std::uint8_t>(ZELK_ReadEEPROM, 0x50), Answer(kRefused, 0));
  card->ClearRefusals();
  // The selection's own failure is not asked for.
  card->Refuse("eeprom select", kRefused);
  EXPECT_EQ(ZELK_ReadEEPROM(0x51, nullptr), S_OK);
  EXPECT_THAT(TakeLog(), IsEmpty());

  PlugNoted(kCx2388xIo, {.eeprom = image});
  Slept();
  EXPECT_EQ(Ask<std::uint8_t>(ZELK_ReadEEPROM, 0x50), Answer(S_OK, 0x5A));
  EXPECT_EQ(Slept(), 0u);
  const Strings start = Start(kCx2388xIo);
  EXPECT_EQ(TakeTrace(), Joined({start,
                                 Sent(kCx2388xIo, {"A0", "50"}),
                                 start,
                                 Sent(kCx2388xIo, {"A1"}),
                                 {"io I2CSWRead -> 5A", "io I2CSWStop"}}));
}

}  // namespace
}  // namespace zelk::test
