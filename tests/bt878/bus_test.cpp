// Each transaction of a Bt878 card step by step, over its driver and over PioGate.dll.
#include <functional>

#include "api/library.h"
#include "platform/control.h"
#include "tests/support/bt_test.h"

namespace zelk::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Strings = std::vector<std::string>;
using virtual_cards::EepromState;

constexpr HRESULT kRefused = static_cast<HRESULT>(0x8007001F);

class Bt878Bus : public BtTest {
 protected:
  Bt878Device& Device() { return *Slot<Bt878Device>(); }
  void PlugBoard(const CardSetUp& wanted, const Board& board = {}) {
    PlugTv(wanted, board);
    FitNotedChips();
    TakeTrace();
  }
};

// The steps of `bytes`, each acknowledged.
Strings Sent(const CardSetUp& setUp, std::initializer_list<const char*> bytes) {
  Strings lines;
  for (const char* byte : bytes) {
    lines.push_back(setUp.ioLibrary ? std::string("io I2CSWWRITE ") + byte + " -> 1"
                                    : std::string("i2c write-byte ") + byte + " -> ack");
  }
  return lines;
}

Strings Joined(std::initializer_list<Strings> parts) {
  Strings all;
  for (const Strings& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

TEST_F(Bt878Bus, SoftwareTransfers) {
  for (const CardSetUp& wanted : {kBt878, kBt878Io}) {
    SCOPED_TRACE(wanted.name);
    PlugBoard(wanted);
    pll->Tell({0x4A});
    silicon->Tell({1, 2, 3});
    const Strings start = {wanted.ioLibrary ? "io I2CSWSTART" : "i2c start"};
    const Strings stop = {wanted.ioLibrary ? "io I2CSWSTOP" : "i2c stop"};
    const auto read = [&](const char* byte) {
      return wanted.ioLibrary
                 ? Strings{std::string("io I2CSWREAD -> ") + byte}
                 : Strings{"i2c order read-byte", std::string("i2c read-byte -> ") + byte};
    };
    auto slept = [before = host::SleptMilliseconds()]() mutable {
      return host::SleptMilliseconds() - std::exchange(before, host::SleptMilliseconds());
    };
    EXPECT_EQ(Device().I2CWriteDWord(0xC2, 0x0B2C, 0x8EA0), S_OK);
    EXPECT_EQ(TakeTrace(), Joined({start, Sent(wanted, {"C2", "0B", "2C", "8E", "A0"}), stop}));
    EXPECT_EQ(slept(), 4u * 20);
    EXPECT_EQ(Device().I2CWriteSequence(0xC2, nullptr, 0), S_OK);
    EXPECT_EQ(TakeTrace(), Joined({start, Sent(wanted, {"C2"}), stop}));
    EXPECT_EQ(slept(), 0u);
    std::uint8_t byte = 0;
    EXPECT_EQ(Device().I2CRead(0xC2, &byte), S_OK);
    EXPECT_EQ(byte, 0x4A);
    EXPECT_EQ(TakeTrace(), Joined({start, Sent(wanted, {"C3"}), read("4A"), stop}));
    EXPECT_EQ(slept(), 20u);
    std::uint8_t bytes[3] = {};
    EXPECT_EQ(Device().I2CReadSequence(0x96, 0x1B, bytes, 3), S_OK);
    EXPECT_THAT(bytes, ElementsAre(1, 2, 3));
    EXPECT_EQ(TakeTrace(), Joined({start, Sent(wanted, {"96", "1B"}), start, Sent(wanted, {"97"}),
                                   read("01"), read("02"), read("03"), stop}));
    // The library's chips get a moment more before the first byte.
    EXPECT_EQ(slept(), (wanted.ioLibrary ? 6u : 5u) * 20);
    EXPECT_EQ(Device().I2CReadSequence(0x96, 0x1B, bytes, 0), S_OK);
    EXPECT_EQ(TakeTrace(),
              Joined({start, Sent(wanted, {"96", "1B"}), start, Sent(wanted, {"97"}), stop}));
  }
}

// Between InitialFM's bracket and its end the engine in use is the hardware one.
TEST_F(Bt878Bus, DemodulatorByHardware) {
  PlugFm(kBt878, {.tunerType = 13});
  FitNotedChips();
  TakeTrace();
  EXPECT_EQ(ZELK_FMSetAudioMode(1), S_OK);
  const Strings before = {"i2c setup hardware 100000", "i2c setup hardware 100000"};
  EXPECT_EQ(
      TakeTrace(),
      Joined({before, {"i2c write 86: 00 4E 90 4B", "i2c result", "i2c setup software 100000"}}));
  demodulator->Tell({0xE0});
  std::uint32_t present = 0;
  EXPECT_EQ(ZELK_FMIsSignalPresent(&present, nullptr, nullptr), S_OK);
  EXPECT_EQ(present, 1u);
  EXPECT_EQ(
      TakeTrace(),
      Joined({before, {"i2c order read 86", "i2c read 86 -> E0", "i2c setup software 100000"}}));
  // Over the library there is one engine: the change is refused, with its line, and nothing else.
  PlugFm(kBt878Io, {.tunerType = 13});
  FitNotedChips();
  EXPECT_EQ(ZELK_FMSetAudioMode(1), S_OK);
  EXPECT_EQ(TakeNotes(), Strings{"86: 00 4E 90 4B"});
  EXPECT_THAT(TakeLog(), ElementsAre("BT878 Internal_I2C_Init() no video caprture filter",
                                     "BT878 Internal_I2C_Init() no video caprture filter"));
}

// What one refused request makes of an operation: its result and the lines of the log.
TEST_F(Bt878Bus, RefusedRequests) {
  const auto tune = [] { return ZELK_SetFreq(175250, nullptr); };
  std::uint32_t present = 0;
  const auto read = [&] { return ZELK_IsSignalPresent(&present, nullptr, nullptr); };
  const auto setAudio = [] { return ZELK_FMInit(), ZELK_FMSetAudioMode(1); };
  const auto readAudio = [&] {
    return ZELK_FMInit(), ZELK_FMIsSignalPresent(&present, nullptr, nullptr);
  };
  struct Case {
    const char* request;
    std::function<HRESULT()> operation;
    HRESULT result;
    Strings log;
  };
  // Without a start nobody listens to the bytes.
  const Strings unheard(6, "BT878 Internal_I2CSWWrite() fail");
  const Strings noSequence = {"BT878 Internal_I2CHWWriteSequence() fail"};
  const Case cases[] = {
      {"i2c start", tune, S_OK, Joined({{"BT878 Internal_I2CSWStart() fail"}, unheard})},
      {"i2c write-byte", tune, S_OK, unheard},
      {"i2c stop", tune, kRefused, {"BT878 Internal_I2CSWStop() fail"}},
      {"i2c order read-byte", read, S_OK, {}},
      {"i2c read-byte", read, S_OK, {"BT878 Internal_I2CSWRead() fail"}},
      {"capture query IAMAnalogVideoDecoder", read, S_OK, {}},
      {"i2c setup software", setAudio, S_OK, {"BT878: Initial I2C fail"}},
      {"i2c write 86: 00 4E 90 4B", setAudio, kRefused, noSequence},
      {"i2c result", setAudio, kRefused, noSequence},
      {"i2c order read 86", readAudio, S_OK, {}},
      {"i2c read 86", readAudio, kRefused, {"BT878 Internal_I2CHWRead() fail"}},
  };
  for (const Case& one : cases) {
    PlugBoard(kBt878, {.tunerType = 13});
    card->Refuse(one.request, one.result == S_OK ? E_FAIL : one.result);
    EXPECT_EQ(one.operation(), one.result) << one.request;
    EXPECT_EQ(TakeLog(), one.log) << one.request;
  }
}

TEST_F(Bt878Bus, EepromOverTheDriver) {
  PlugBoard(kBt878, {.eeprom = MakeEeprom({{0x41, 2}, {0x50, 0x5A}})});
  std::uint8_t byte = 0;
  const Strings probe = Joined({{"i2c start"}, Sent(kBt878, {"A0"}), {"i2c stop"}});
  const Strings addressed = Joined({{"i2c start"},
                                    Sent(kBt878, {"A0", "50"}),
                                    {"i2c stop"},
                                    {"i2c start"},
                                    Sent(kBt878, {"A1"})});
  const auto before = host::SleptMilliseconds();
  EXPECT_EQ(ZELK_ReadEEPROM(0x50, &byte), S_OK);
  EXPECT_EQ(byte, 0x5A);
  EXPECT_EQ(host::SleptMilliseconds() - before, 20u + 20 + 35);
  EXPECT_EQ(TakeTrace(),
            Joined({probe, addressed, {"i2c order read-byte", "i2c read-byte -> 5A", "i2c stop"}}));

  // Nobody there: three probes.
  card->FitChip(0xA0, nullptr);
  EXPECT_EQ(ZELK_ReadEEPROM(0x50, &byte), E_FAIL);
  EXPECT_EQ(byte, 0xFF);
  const Strings unheard = {"i2c start", "i2c write-byte A0 -> nak", "i2c stop"};
  EXPECT_EQ(TakeTrace(), Joined({unheard, unheard, unheard}));

  // A chip that does not hear its register, or not the reading: ten attempts, then the eleventh's
  // stop and start.
  const Strings a0 = Sent(kBt878, {"A0"});
  const Strings a050 = Sent(kBt878, {"A0", "50"});
  for (const auto& [refused, attempt] :
       {std::pair{"50", Joined({{"i2c start"}, a0, {"i2c write-byte 50 -> 80004005"}})},
        {"A1", Joined({{"i2c start"},
                       a050,
                       {"i2c stop", "i2c start"},
                       {"i2c write-byte A1 -> 80004005"}})}}) {
    PlugBoard(kBt878, {.eeprom = MakeEeprom({{0x41, 2}, {0x50, 0x5A}})});
    card->Refuse(std::string("i2c write-byte ") + refused, E_FAIL);
    byte = 0xAA;
    EXPECT_EQ(ZELK_ReadEEPROM(0x50, &byte), E_FAIL);
    EXPECT_EQ(byte, 0xAA) << "the place is left alone";
    Strings expected = probe;
    for (int i = 0; i < 10; ++i) expected = Joined({expected, attempt, {"i2c stop", "i2c stop"}});
    expected.push_back("i2c start");
    EXPECT_EQ(TakeTrace(), expected) << refused;
  }
}

TEST_F(Bt878Bus, EepromOverTheLibrary) {
  PlugBoard(kBt878Io);
  std::uint8_t byte = 0;
  const Strings probe = Joined({{"io I2CSWSTART"}, Sent(kBt878Io, {"A0"})});
  EXPECT_EQ(ZELK_ReadEEPROM(0x50, &byte), E_FAIL);
  EXPECT_EQ(byte, 0xFF);
  EXPECT_EQ(TakeTrace(), Joined({probe, probe, probe}));
  card->FitChip(0xA0, nullptr);
  byte = 0xAA;
  EXPECT_EQ(ZELK_ReadEEPROM(0x50, &byte), E_FAIL);
  EXPECT_EQ(byte, 0xAA);
  EXPECT_THAT(TakeTrace(), ElementsAre("io I2CSWSTART", "io I2CSWWRITE A0 -> 0"));
}

TEST_F(Bt878Bus, RemoteControl) {
  std::uint32_t code = 0xAAAAAAAA;
  for (const CardSetUp& wanted : {kBt878, kBt878Io}) {
    PlugBoard(wanted);
    Strings expected;
    for (int pin = 15; pin <= 23; ++pin) {
      const std::string number = std::to_string(pin);
      expected = Joined({expected, wanted.ioLibrary
                                       ? Strings{"io SETGPIEBIT " + number + " 0"}
                                       : Strings{"gpio " + number + " input", "gpio result"}});
    }
    EXPECT_EQ(ZELK_GetRemoteData(&code), S_OK);
    EXPECT_EQ(code, 0u);
    EXPECT_EQ(
        TakeTrace(),
        Joined({expected, wanted.ioLibrary ? Strings{"io GETGPDATABITS 15-23 -> 0"}
                                           : Strings{"gpio order 15-23", "gpio 15-23 -> 0"}}));
    for (const std::uint8_t key : {0xFF, 0x02, 0x7E, 0xAB}) {
      card->PressKey(key);
      EXPECT_EQ(ZELK_GetRemoteData(&code), S_OK);
      EXPECT_EQ(code, key);
    }
    card->ReleaseKey();
    EXPECT_EQ(ZELK_GetRemoteData(&code), S_OK);
    EXPECT_EQ(code, 0u);
  }
  PlugBoard(kBt878);
  card->PressKey(0xFF);
  card->Refuse("gpio 15-23", kRefused);
  code = 77;
  EXPECT_EQ(ZELK_GetRemoteData(&code), kRefused);
  EXPECT_EQ(code, 0u);
  EXPECT_THAT(TakeLog(), IsEmpty());
}

TEST_F(Bt878Bus, Locks) {
  PlugBoard(kBt878);
  std::uint32_t on = 77;
  EXPECT_EQ(ZELK_SetHWLock(0, 1), S_OK);
  EXPECT_EQ(ZELK_SetHWLock(1, 2), S_OK);  // only 1 is on
  EXPECT_EQ(ZELK_GetHWLock(0, &on), S_OK);
  EXPECT_EQ(on, 1u);
  EXPECT_EQ(ZELK_GetHWLock(1, &on), S_OK);
  EXPECT_EQ(on, 0u);
  EXPECT_THAT(TakeTrace(), ElementsAre("lock 0 := 1", "lock 1 := 0", "lock 0 -> 1", "lock 1 -> 0"));
  EXPECT_TRUE(card->Lock(0));
  card->Refuse("lock 0", kRefused);
  EXPECT_EQ(ZELK_SetHWLock(0, 0), kRefused);
  EXPECT_EQ(ZELK_GetHWLock(0, &on), kRefused);
  EXPECT_EQ(on, 0u);
}

TEST_F(Bt878Bus, DecoderLock) {
  for (const CardSetUp& wanted : {kBt878Tuner, kBt878Io}) {
    PlugTv(wanted, {.tunerType = 1}, MakeAir({175250}));
    std::uint32_t present = 77;
    std::uint32_t strength = 77;
    ZELK_SetFreq(175250, nullptr);
    TakeTrace();
    EXPECT_EQ(Device().IsSignalPresent_DECODER(&present, &strength), S_OK);
    EXPECT_EQ(present, 1u);
    EXPECT_EQ(strength, 5u);
    EXPECT_EQ(TakeTrace(), wanted.ioLibrary ? Strings{"io READDECODER 0 -> C0"}
                                            : (Strings{"capture query IAMAnalogVideoDecoder",
                                                       "capture horizontal-locked -> 1"}));
    ZELK_SetFreq(471250, nullptr);
    EXPECT_EQ(Device().IsSignalPresent_DECODER(&present, &strength), S_OK);
    EXPECT_EQ(present, 0u);
    EXPECT_EQ(strength, 0u);
  }
  PlugTv(kBt878, {});
  for (const char* request : {"capture query IAMAnalogVideoDecoder", "capture horizontal-locked"}) {
    card->ClearRefusals();
    card->Refuse(request, kRefused);
    std::uint32_t present = 77;
    EXPECT_EQ(Device().IsSignalPresent_DECODER(&present, nullptr), kRefused);
    EXPECT_EQ(present, 0u);
  }
}

}  // namespace
}  // namespace zelk::test
