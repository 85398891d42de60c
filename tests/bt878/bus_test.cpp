// The Bt878's two I2C engines and the EEPROM behind them, step by step.
#include <functional>

#include "tests/bt_family/noted_card.h"
#include "tests/support/reading.h"

namespace zelk::test {
namespace {

class Bt878Bus : public NotedCardTest {};

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
  EXPECT_EQ(ZELK_FMIsSignalPresent(nullptr, nullptr, nullptr), S_OK);
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
  const auto read = [] { return ZELK_IsSignalPresent(nullptr, nullptr, nullptr); };
  const auto setAudio = [] { return ZELK_FMInit(), ZELK_FMSetAudioMode(1); };
  const auto readAudio = [] {
    return ZELK_FMInit(), ZELK_FMIsSignalPresent(nullptr, nullptr, nullptr);
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
    PlugNoted(kBt878, {.tunerType = 13});
    card->Refuse(one.request, one.result == S_OK ? E_FAIL : one.result);
    EXPECT_EQ(one.operation(), one.result) << one.request;
    EXPECT_EQ(TakeLog(), one.log) << one.request;
  }
}

TEST_F(Bt878Bus, EepromOverTheDriver) {
  const Board board = {.eeprom = MakeEeprom({{0x41, 2}, {0x50, 0x5A}})};
  PlugNoted(kBt878, board);
  const Strings start = Start(kBt878);
  const Strings stop = Stop(kBt878);
  const Strings probe = Joined({start, Sent(kBt878, {"A0"}), stop});
  Slept();
  EXPECT_EQ(Ask<std::uint8_t>(ZELK_ReadEEPROM, 0x50), Answer(S_OK, 0x5A));
  EXPECT_EQ(Slept(), 20u + 20 + 35);
  EXPECT_EQ(TakeTrace(), Joined({probe,
                                 start,
                                 Sent(kBt878, {"A0", "50"}),
                                 stop,
                                 start,
                                 Sent(kBt878, {"A1"}),
                                 {"i2c order read-byte", "i2c read-byte -> 5A", "i2c stop"}}));

  // Nobody there: three probes.
  card->FitChip(0xA0, nullptr);
  EXPECT_EQ(Ask<std::uint8_t>(ZELK_ReadEEPROM, 0x50), Answer(E_FAIL, 0xFF));
  const Strings unheard = {"i2c start", "i2c write-byte A0 -> nak", "i2c stop"};
  EXPECT_EQ(TakeTrace(), Joined({unheard, unheard, unheard}));

  // A chip that does not hear its register, or not the reading: ten attempts, then the eleventh's
  // stop and start.
  const Strings toRegister = Joined({start, Sent(kBt878, {"A0"})});
  const Strings toReading = Joined({start, Sent(kBt878, {"A0", "50"}), stop, start});
  for (const auto& [refused, heard] : {std::pair("50", toRegister), {"A1", toReading}}) {
    PlugNoted(kBt878, board);
    const std::string request = std::string("i2c write-byte ") + refused;
    card->Refuse(request, E_FAIL);
    EXPECT_EQ(Ask<std::uint8_t>(ZELK_ReadEEPROM, 0x50), Answer(E_FAIL, kUntouched));
    Strings expected = probe;
    for (int i = 0; i < 10; ++i) {
      expected = Joined({expected, heard, {request + " -> 80004005", "i2c stop", "i2c stop"}});
    }
    EXPECT_EQ(TakeTrace(), Joined({expected, start})) << refused;
  }
}

TEST_F(Bt878Bus, EepromOverTheLibrary) {
  PlugNoted(kBt878Io);
  const Strings probe = Joined({Start(kBt878Io), Sent(kBt878Io, {"A0"})});
  EXPECT_EQ(Ask<std::uint8_t>(ZELK_ReadEEPROM, 0x50), Answer(E_FAIL, 0xFF));
  EXPECT_EQ(TakeTrace(), Joined({probe, probe, probe}));
  card->FitChip(0xA0, nullptr);
  EXPECT_EQ(Ask<std::uint8_t>(ZELK_ReadEEPROM, 0x50), Answer(E_FAIL, kUntouched));
  EXPECT_THAT(TakeTrace(), ElementsAre("io I2CSWSTART", "io I2CSWWRITE A0 -> 0"));
}

}  // namespace
}  // namespace zelk::test
