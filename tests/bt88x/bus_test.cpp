// Each transaction of a CX2388x card step by step, over its driver and over PioGate880.dll.
#include "api/library.h"
#include "platform/control.h"
#include "tests/support/bt_test.h"

namespace zelk::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Strings = std::vector<std::string>;

constexpr HRESULT kRefused = static_cast<HRESULT>(0x8007001F);

class Bt88xBus : public BtTest {
 protected:
  Bt88xDevice& Device() { return *Slot<Bt88xDevice>(); }
  void PlugBoard(const CardSetUp& wanted, const Board& board = {}) {
    PlugTv(wanted, board);
    FitNotedChips();
    TakeTrace();
  }
};

TEST_F(Bt88xBus, TransfersOverTheDriver) {
  PlugBoard(kCx2388x);
  demodulator->Tell({0xE2});
  EXPECT_EQ(Device().I2CWriteDWord(0xC0, 0x0B2C, 0x8EA0), S_OK);
  EXPECT_THAT(TakeTrace(), ElementsAre("i2c write C0: 0B 2C 8E A0"));
  std::uint8_t byte = 0;
  EXPECT_EQ(Device().I2CRead(0x86, &byte), S_OK);
  EXPECT_EQ(byte, 0xE2);
  EXPECT_THAT(TakeTrace(), ElementsAre("i2c select 86", "i2c read 86 -> E2"));
}

TEST_F(Bt88xBus, TransfersOverTheLibrary) {
  PlugBoard(kCx2388xIo);
  demodulator->Tell({0xE2});
  const auto before = host::SleptMilliseconds();
  EXPECT_EQ(Device().I2CWriteDWord(0xC0, 0x0B2C, 0x8EA0), S_OK);
  EXPECT_EQ(host::SleptMilliseconds() - before, 4u * 20);
  EXPECT_THAT(TakeTrace(),
              ElementsAre("io I2CSWStart", "io I2CSWWrite C0 -> 1", "io I2CSWWrite 0B -> 1",
                          "io I2CSWWrite 2C -> 1", "io I2CSWWrite 8E -> 1", "io I2CSWWrite A0 -> 1",
                          "io I2CSWStop"));
  std::uint8_t byte = 0;
  EXPECT_EQ(Device().I2CRead(0x86, &byte), S_OK);
  EXPECT_EQ(byte, 0xE2);
  EXPECT_THAT(TakeTrace(), ElementsAre("io I2CSWStart", "io I2CSWWrite 87 -> 1",
                                       "io I2CSWRead -> E2", "io I2CSWStop"));
}

TEST_F(Bt88xBus, Failures) {
  struct Case {
    const char* request;
    HRESULT refusal;
    bool reads;
    const char* log;
  };
  constexpr const char* kSelect = "BT88X I2CRead(): Set Read Address fail";
  constexpr const char* kRead = "BT88X I2CRead(): Read data fail";
  for (const Case& one : {
           // A failed write has the line of a read. A transfer that the bus refuses succeeds as a
           // request; a refusal that is no code stands for it.
           Case{"i2c write", kRefused, false, kRead},
           {"i2c write", 14, false, kRead},
           {"i2c select", kRefused, true, kSelect},
           {"i2c select", 14, true, kSelect},
           {"i2c read", kRefused, true, kRead},
           {"i2c read", 14, true, kRead},
       }) {
    PlugBoard(kCx2388x);
    card->Refuse(one.request, one.refusal);
    std::uint8_t byte = 0xAA;
    EXPECT_EQ(one.reads ? Device().I2CRead(0xC0, &byte) : Device().I2CWriteDWord(0xC0, 1, 2),
              E_FAIL)
        << one.request;
    EXPECT_THAT(TakeLog(), ElementsAre(one.log));
  }
}

TEST_F(Bt88xBus, Eeprom) {
  const auto image = MakeEeprom({{6, 0}, {0x50, 0x5A}});
  std::uint8_t byte = 0;
  PlugBoard(kCx2388x, {.eeprom = image});
  EXPECT_EQ(ZELK_ReadEEPROM(0x50, &byte), S_OK);
  EXPECT_EQ(byte, 0x5A);
  EXPECT_THAT(TakeTrace(), ElementsAre("eeprom select 50", "eeprom read 50 -> 5A"));
  card->Refuse("eeprom read", kRefused);
  EXPECT_EQ(ZELK_ReadEEPROM(0x50, &byte), kRefused);
  EXPECT_EQ(byte, 0);
  card->ClearRefusals();
  // The selection's own failure is not asked for.
  card->Refuse("eeprom select", kRefused);
  EXPECT_EQ(ZELK_ReadEEPROM(0x51, &byte), S_OK);
  EXPECT_THAT(TakeLog(), IsEmpty());

  PlugBoard(kCx2388xIo, {.eeprom = image});
  const auto before = host::SleptMilliseconds();
  EXPECT_EQ(ZELK_ReadEEPROM(0x50, &byte), S_OK);
  EXPECT_EQ(byte, 0x5A);
  EXPECT_EQ(host::SleptMilliseconds(), before);
  EXPECT_THAT(
      TakeTrace(),
      ElementsAre("io I2CSWStart", "io I2CSWWrite A0 -> 1", "io I2CSWWrite 50 -> 1",
                  "io I2CSWStart", "io I2CSWWrite A1 -> 1", "io I2CSWRead -> 5A", "io I2CSWStop"));
}

TEST_F(Bt88xBus, RemoteControl) {
  for (const CardSetUp& wanted : {kCx2388x, kCx2388xIo}) {
    PlugBoard(wanted);
    std::uint32_t code = 0xAAAAAAAA;
    for (const std::uint8_t key : {0x02, 0xFF, 0x36, 0x8F}) {
      card->PressKey(key);
      TakeTrace();
      EXPECT_EQ(ZELK_GetRemoteData(&code), S_OK);
      EXPECT_EQ(code, key);
    }
    // The upper four lines are in reverse order: 1F on the lines.
    EXPECT_EQ(TakeTrace(), wanted.ioLibrary
                               ? (Strings{"io SetGPIOPort 2", "io GetGPData -> 1F"})
                               : (Strings{"register select 350010", "register read 350010 -> 0",
                                          "register select 350014", "register read 350014 -> 0",
                                          "register select 350018", "register read 350018 -> 1F"}));
    card->Refuse(wanted.ioLibrary ? "io GetGPData" : "register read 350018", kRefused);
    code = 0xAAAAAAAA;
    EXPECT_EQ(ZELK_GetRemoteData(&code), E_FAIL);
    EXPECT_EQ(code, 0xAAAAAAAAu);
    EXPECT_EQ(TakeLog(), wanted.ioLibrary ? Strings{} : Strings{"BT88X Internal_ReadGPIO() fail"});
    // Only the last register's reading counts.
    card->ClearRefusals();
    card->Refuse("register read 350010", kRefused);
    EXPECT_EQ(ZELK_GetRemoteData(&code), S_OK);
    EXPECT_EQ(code, 0x8Fu);
    card->ReleaseKey();
    EXPECT_EQ(ZELK_GetRemoteData(&code), S_OK);
    EXPECT_EQ(code, 0u);
  }
}

TEST_F(Bt88xBus, Locks) {
  PlugBoard(kCx2388x);
  std::uint32_t on = 77;
  EXPECT_EQ(ZELK_SetHWLock(0, 1), S_OK);
  EXPECT_EQ(ZELK_SetHWLock(1, 0), S_OK);
  EXPECT_EQ(ZELK_GetHWLock(0, &on), S_OK);
  EXPECT_EQ(on, 1u);
  EXPECT_EQ(ZELK_GetHWLock(1, &on), S_OK);
  EXPECT_EQ(on, 0u);
  // Each setting asks for the interface anew.
  EXPECT_THAT(TakeTrace(), ElementsAre("capture query IKsPropertySet", "lock 0 := 1",
                                       "capture query IKsPropertySet", "lock 1 := 0", "lock 0 -> 1",
                                       "lock 1 -> 0"));
  card->Refuse("capture query IKsPropertySet", kRefused);
  EXPECT_EQ(ZELK_SetHWLock(0, 1), kRefused);
  EXPECT_THAT(TakeLog(), ElementsAre("BT88X SetHWLock: Get IKsPropertySet interface fail"));
  EXPECT_EQ(ZELK_GetHWLock(0, &on), S_OK);
}

TEST_F(Bt88xBus, DecoderLock) {
  for (const CardSetUp& wanted : {kCx2388x, kCx2388xIo}) {
    PlugTv(wanted, {.tunerType = 1}, MakeAir({175250}));
    ZELK_SetFreq(175250, nullptr);
    std::uint32_t present = 77;
    std::uint32_t strength = 77;
    TakeTrace();
    EXPECT_EQ(Device().IsSignalPresent_DECODER(&present, &strength), S_OK);
    EXPECT_EQ(present, 1u);
    EXPECT_EQ(strength, 5u);
    if (wanted.ioLibrary) {
      const Strings trace = TakeTrace();
      ASSERT_EQ(trace.size(), 1u);
      EXPECT_TRUE(trace[0].starts_with("io ReadDecoder 100 -> ")) << trace[0];
    }
  }
}

}  // namespace
}  // namespace zelk::test
