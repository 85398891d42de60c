// Signal presence on every kind of tuner, read by read, with a chip on the bus that says what it is
// told.
#include "platform/control.h"
#include "tests/support/card_test.h"
#include "tests/support/reading.h"
#include "tests/support/told_chip.h"

namespace zelk::test {
namespace {

class Signal : public CardTest {
 protected:
  void PlugTold(std::uint32_t type, std::uint8_t address) {
    PlugTv(type);
    card->FitChip(address, &chip);
  }
  Reading Ask(const std::vector<std::uint8_t>& answers, bool withOffset = true) {
    chip.Tell(answers);
    return AskSignal(ZELK_IsSignalPresent, withOffset);
  }

  ToldChip chip;
};

TEST_F(Signal, PllTunerAfc) {
  PlugTold(1, 0xC2);
  for (std::uint8_t code = 0; code < 8; ++code) {
    // The bits above the reading do not matter.
    EXPECT_EQ(Ask({static_cast<std::uint8_t>(0xC8 | code)}), kPllReadings[code]) << +code;
    // Without a place for the offset the raw reading is the strength.
    EXPECT_EQ(Ask({code}, false).strength, code);
  }
}

TEST_F(Signal, DemodulatorAfc) {
  for (const std::uint32_t type : {12u, 21u}) {
    PlugTold(type, 0x86);
    for (std::uint8_t code = 0; code < 16; ++code) {
      EXPECT_EQ(Ask({static_cast<std::uint8_t>(0xE1 | code << 1)}),
                DemodulatorReading(code, code <= 2 || code >= 13));
      EXPECT_EQ(Ask({static_cast<std::uint8_t>(code << 1)}, false).strength, code);
    }
  }
}

TEST_F(Signal, DemodulatorLock) {
  for (const std::uint32_t type : {24u, 37u}) {
    PlugTold(type, 0x86);
    EXPECT_EQ(Ask({0xE0}), (Reading{S_OK, 1, 0, kUntouched}));
    EXPECT_EQ(Ask({0xFF}), (Reading{S_OK, 1, 15, kUntouched}));
    EXPECT_EQ(Ask({0xE2}), (Reading{S_OK, 0, 1, kUntouched}));
    EXPECT_EQ(Ask({0x7F}), (Reading{S_OK, 0, 15, kUntouched}));
  }
}

TEST_F(Signal, SiliconTuners) {
  PlugTold(40, 0x96);
  EXPECT_EQ(Ask({0x80}), (Reading{S_OK, 1, 4, 0.0}));
  EXPECT_EQ(Ask({0x8A}), (Reading{S_OK, 1, 4, -132.0}));
  EXPECT_EQ(Ask({0xC0}), (Reading{S_OK, 1, 0, 844.8}));
  EXPECT_EQ(Ask({0xFF}), (Reading{S_OK, 1, 4, 13.2}));
  EXPECT_EQ(Ask({0x7F}), (Reading{S_OK, 0, 4, 13.2}));

  PlugTold(41, 0x96);
  const auto slept = [] { return host::SleptMilliseconds(); };
  auto before = slept();
  EXPECT_EQ(Ask({0x80}), (Reading{S_OK, 1, 64, 0.0}));
  EXPECT_EQ(slept() - before, 80u);
  // Level 50 is the lowest that counts.
  EXPECT_EQ(Ask({0x8E}), (Reading{S_OK, 1, 50, 14 * -13.2}));
  EXPECT_EQ(Ask({0x8F}), (Reading{S_OK, 0, 49, 15 * -13.2}));
  // No lock at first: the chip gets as much time again, and the second reading is the one that
  // counts.
  before = slept();
  EXPECT_EQ(Ask({0x20, 0x81}), (Reading{S_OK, 1, 63, -13.2}));
  EXPECT_EQ(slept() - before, 160u);
  EXPECT_EQ(Ask({0x20, 0x00}), (Reading{S_OK, 0, 64, 0.0}));
}

TEST_F(Signal, AlpsModulesAskTheDecoder) {
  for (const std::uint32_t type : {46u, 47u, 48u}) {
    PlugTv(type, MakeAir({471250}, AnalogVideo_NTSC_M));
    ZELK_put_TVFormat(AnalogVideo_NTSC_M, 1);
    ZELK_SetFreq(471250, nullptr);
    EXPECT_EQ(Ask({}), (Reading{S_OK, 1, 5, kUntouched}));
    ZELK_SetFreq(479250, nullptr);
    // The strength shows that a place for the presence was given, not the presence.
    EXPECT_EQ(Ask({}), (Reading{S_OK, 0, 5, kUntouched}));
    EXPECT_EQ(test::Ask([](auto* strength) { return ZELK_IsSignalPresent({}, strength, {}); }),
              Answer(S_OK, 0));
  }
}

TEST_F(Signal, SomeModulesNeedTheDecodersWord) {
  for (const std::uint32_t type : {35u, 36u}) {
    PlugTold(type, 0xC2);
    EXPECT_EQ(Ask({2}), (Reading{S_OK, 0, 5, 0.0}));
    card->Refuse("capture query IAMAnalogVideoDecoder", E_NOINTERFACE);
    EXPECT_EQ(Ask({2}), (Reading{E_NOINTERFACE, 0, 5, 0.0}));
    // No reading, no question.
    EXPECT_EQ(Ask({4}), (Reading{S_OK, 0, 0, 125.0}));
  }
}

TEST_F(Signal, FailedReadsFindNothing) {
  for (const std::uint32_t type : {1u, 12u, 24u, 40u, 41u}) {
    PlugTv(type);
    card->Refuse("i2c read", static_cast<HRESULT>(0x8007001F));
    const Reading reading = Ask({});
    EXPECT_LT(reading.result, 0) << type;
    EXPECT_EQ(reading.present, 0u) << type;
  }
}

TEST_F(Signal, NeedsTvModeAndSaysNothing) {
  PlugReady();
  EXPECT_EQ(Ask({}), (Reading{VFW_E_WRONG_STATE, kUntouched, kUntouched, kUntouched}));
  EXPECT_THAT(TakeLog(), IsEmpty());
}

}  // namespace
}  // namespace zelk::test
