// Transactions that cards of both families know, step by step.
#include "tests/bt_family/noted_card.h"
#include "tests/support/reading.h"

namespace zelk::test {
namespace {

class BtBus : public NotedCardTest {};

TEST_F(BtBus, SoftwareTransfers) {
  for (const CardSetUp& wanted : {kBt878, kBt878Io, kCx2388xIo}) {
    SCOPED_TRACE(wanted.name);
    PlugNoted(wanted);
    pll->Tell({0x4A});
    silicon->Tell({1, 2, 3});
    const Strings start = Start(wanted);
    const Strings stop = Stop(wanted);
    const auto read = [&](const std::string& byte) {
      if (!wanted.ioLibrary) return Strings{"i2c order read-byte", "i2c read-byte -> " + byte};
      return Strings{(wanted.cx2388x ? "io I2CSWRead -> " : "io I2CSWREAD -> ") + byte};
    };
    const std::uint8_t address = wanted.cx2388x ? 0xC0 : 0xC2;
    const std::string written = wanted.PllAddress();
    Slept();
    EXPECT_EQ(Device().I2CWriteDWord(address, 0x0B2C, 0x8EA0), S_OK);
    EXPECT_EQ(TakeTrace(), Joined({start, Sent(wanted, {written, "0B", "2C", "8E", "A0"}), stop}));
    EXPECT_EQ(Slept(), 4u * 20);
    EXPECT_EQ(Device().I2CWriteSequence(address, nullptr, 0), S_OK);
    EXPECT_EQ(TakeTrace(), Joined({start, Sent(wanted, {written}), stop}));
    EXPECT_EQ(Slept(), 0u);
    const auto readByte = [&](std::uint8_t* byte) { return Device().I2CRead(address, byte); };
    EXPECT_EQ(Ask<std::uint8_t>(readByte), Answer(S_OK, 0x4A));
    EXPECT_EQ(TakeTrace(),
              Joined({start, Sent(wanted, {wanted.cx2388x ? "C1" : "C3"}), read("4A"), stop}));
    EXPECT_EQ(Slept(), 20u);
    if (wanted.cx2388x) continue;
    const auto readRegisters = [](std::uint8_t* bytes, std::uint32_t count) {
      return Slot<Bt878Device>()->I2CReadSequence(0x96, 0x1B, bytes, count);
    };
    std::uint8_t bytes[3] = {};
    EXPECT_EQ(readRegisters(bytes, 3), S_OK);
    EXPECT_THAT(bytes, ElementsAre(1, 2, 3));
    const Strings addressed =
        Joined({start, Sent(wanted, {"96", "1B"}), start, Sent(wanted, {"97"})});
    EXPECT_EQ(TakeTrace(), Joined({addressed, read("01"), read("02"), read("03"), stop}));
    // The library's chips get a moment more before the first byte.
    EXPECT_EQ(Slept(), (wanted.ioLibrary ? 6u : 5u) * 20);
    EXPECT_EQ(readRegisters(bytes, 0), S_OK);
    EXPECT_EQ(TakeTrace(), Joined({addressed, stop}));
  }
}

// What the card hears when it is asked for a key, while 8F waits: the lines of a Bt878 but pin 18
// in their order, the upper four of a CX2388x in reverse.
Strings Asked(const CardSetUp& setUp) {
  if (setUp.cx2388x && setUp.ioLibrary) return {"io SetGPIOPort 2", "io GetGPData -> 1F"};
  if (setUp.cx2388x) {
    return {"register select 350010",    "register read 350010 -> 0", "register select 350014",
            "register read 350014 -> 0", "register select 350018",    "register read 350018 -> 1F"};
  }
  Strings lines;
  for (int pin = 15; pin <= 23; ++pin) {
    const std::string number = std::to_string(pin);
    lines = Joined({lines, setUp.ioLibrary ? Strings{"io SETGPIEBIT " + number + " 0"}
                                           : Strings{"gpio " + number + " input", "gpio result"}});
  }
  return Joined({lines, setUp.ioLibrary ? Strings{"io GETGPDATABITS 15-23 -> 11F"}
                                        : Strings{"gpio order 15-23", "gpio 15-23 -> 11F"}});
}

TEST_F(BtBus, RemoteControl) {
  for (const CardSetUp& wanted : {kBt878, kBt878Io, kCx2388x, kCx2388xIo}) {
    SCOPED_TRACE(wanted.name);
    PlugNoted(wanted);
    for (const std::uint8_t key : {0x02, 0xFF, 0x36, 0x7E, 0xAB, 0x8F}) {
      card->PressKey(key);
      TakeTrace();
      EXPECT_EQ(Ask(ZELK_GetRemoteData), Answer(S_OK, key));
    }
    EXPECT_EQ(TakeTrace(), Asked(wanted));
    card->Refuse(!wanted.cx2388x    ? "gpio 15-23"
                 : wanted.ioLibrary ? "io GetGPData"
                                    : "register read 350018",
                 kRefused);
    const Answer answer = Ask(ZELK_GetRemoteData);
    if (wanted.cx2388x) {
      EXPECT_EQ(answer, Answer(E_FAIL, kUntouched));
    } else if (!wanted.ioLibrary) {
      EXPECT_EQ(answer, Answer(kRefused, 0));
    }
    EXPECT_EQ(TakeLog(),
              Strings(wanted.cx2388x && !wanted.ioLibrary, "BT88X Internal_ReadGPIO() fail"));
    card->ClearRefusals();
    // Only the last register's reading counts.
    card->Refuse("register read 350010", kRefused);
    EXPECT_EQ(Ask(ZELK_GetRemoteData), Answer(S_OK, 0x8F));
    card->ReleaseKey();
    EXPECT_EQ(Ask(ZELK_GetRemoteData), Answer(S_OK, 0));
  }
}

TEST_F(BtBus, Locks) {
  for (const CardSetUp& wanted : {kBt878, kCx2388x}) {
    PlugNoted(wanted);
    EXPECT_EQ(ZELK_SetHWLock(0, 1), S_OK);
    EXPECT_EQ(ZELK_SetHWLock(1, 2), S_OK);  // only 1 is on
    EXPECT_EQ(Ask(ZELK_GetHWLock, 0), Answer(S_OK, 1));
    EXPECT_EQ(Ask(ZELK_GetHWLock, 1), Answer(S_OK, 0));
    // On a CX2388x each setting asks for the interface anew.
    const Strings asked(wanted.cx2388x, "capture query IKsPropertySet");
    EXPECT_EQ(
        TakeTrace(),
        Joined({asked, {"lock 0 := 1"}, asked, {"lock 1 := 0"}, {"lock 0 -> 1", "lock 1 -> 0"}}));
    EXPECT_TRUE(card->Lock(0));
    card->Refuse("lock 0", kRefused);
    EXPECT_EQ(ZELK_SetHWLock(0, 0), kRefused);
    EXPECT_EQ(Ask(ZELK_GetHWLock, 0), Answer(kRefused, 0));
    EXPECT_THAT(TakeLog(), IsEmpty());
  }
  card->ClearRefusals();
  card->Refuse("capture query IKsPropertySet", kRefused);
  EXPECT_EQ(ZELK_SetHWLock(0, 1), kRefused);
  EXPECT_THAT(TakeLog(), ElementsAre("BT88X SetHWLock: Get IKsPropertySet interface fail"));
  EXPECT_EQ(ZELK_GetHWLock(0, nullptr), S_OK);
}

TEST_F(BtBus, DecoderLock) {
  const auto ask = [&] {
    return AskSignal([&](std::uint32_t* present, std::uint32_t* strength, double*) {
      return Device().IsSignalPresent_DECODER(present, strength);
    });
  };
  for (const CardSetUp& wanted : {kBt878Tuner, kBt878Io, kCx2388xTuner, kCx2388xIo}) {
    SCOPED_TRACE(wanted.name);
    PlugTv(wanted, {.tunerType = 1}, MakeAir({175250}));
    ZELK_SetFreq(175250, nullptr);
    TakeTrace();
    EXPECT_EQ(ask(), (Reading{S_OK, 1, 5, kUntouched}));
    const std::string heard = ::testing::PrintToString(TakeTrace());
    EXPECT_THAT(heard, HasSubstr(!wanted.ioLibrary ? "horizontal-locked -> 1"
                                 : wanted.cx2388x  ? "io ReadDecoder 100 -> "
                                                   : "io READDECODER 0 -> C0"));
    ZELK_SetFreq(471250, nullptr);
    EXPECT_EQ(ask(), (Reading{S_OK, 0, 0, kUntouched}));
  }
  PlugTv(kBt878, {});
  for (const char* request : {"capture query IAMAnalogVideoDecoder", "capture horizontal-locked"}) {
    card->ClearRefusals();
    card->Refuse(request, kRefused);
    EXPECT_EQ(ask(), (Reading{kRefused, 0, 0, kUntouched}));
  }
}

}  // namespace
}  // namespace zelk::test
